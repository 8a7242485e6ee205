// Options, sources, words, scenarios: what the host reads from its user.
#include "host_error.h"
#include "messages.h"
#include "options.h"
#include "scenario.h"
#include "zrscreenmod/zrscreenmod.h"

#include <QtTest>

using namespace zrhost;

namespace {

/// @return the message of the HostError that `action` throws, empty when it throws none
template<typename Action>
QString failureOf(Action action)
{
    try {
        action();
    } catch (const HostError& error) {
        return QString::fromStdString(error.what());
    }
    return {};
}

std::vector<std::string> words(const QString& text)
{
    std::vector<std::string> result;
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& part : parts)
        result.push_back(part.toStdString());
    return result;
}

} // namespace

class TestHostParsers : public QObject
{
    Q_OBJECT

private slots:
    void wordsAreSplit_data();
    void wordsAreSplit();
    void linesAreCollected();
    void sourcesAreParsed_data();
    void sourcesAreParsed();
    void optionsAreParsed();
    void optionsCount_data();
    void optionsCount();
    void wrongOptionsAreRefused_data();
    void wrongOptionsAreRefused();
    void scenarioTimes();
    void wrongScenariosAreRefused_data();
    void wrongScenariosAreRefused();
    void messagesAreDescribed_data();
    void messagesAreDescribed();
};

void TestHostParsers::wordsAreSplit_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected"); // joined with |, or "!" for a failure
    QTest::newRow("blanks") << " a\t b  c\r"
                            << "a|b|c";
    QTest::newRow("empty") << "   "
                           << "";
    QTest::newRow("comment") << "a b # c"
                             << "a|b";
    QTest::newRow("hash inside a word") << "a b#c"
                                        << "a|b#c";
    QTest::newRow("quoted") << "name \"Ann \\\"A\\\" \\\\ 李\" x"
                            << "name|Ann \"A\" \\ 李|x";
    QTest::newRow("quoted hash") << "\"# a\""
                                 << "# a";
    QTest::newRow("empty quoted word") << "a \"\" b"
                                       << "a||b";
    QTest::newRow("open quote") << "a \"b"
                                << "!";
    QTest::newRow("escape at the end") << "\"a\\"
                                       << "!";
}

void TestHostParsers::wordsAreSplit()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    QString got;
    const QString failure = failureOf([&] {
        QStringList parts;
        for (const std::string& word : splitWords(line.toStdString()))
            parts << QString::fromStdString(word);
        got = parts.join(QLatin1Char('|'));
    });
    QCOMPARE(failure.isEmpty() ? got : QStringLiteral("!"), expected);
}

void TestHostParsers::linesAreCollected()
{
    LineBuffer buffer;
    QVERIFY(buffer.add("mute al").empty());
    const std::vector<std::string> lines = buffer.add("ice on\r\n\nquit");
    QCOMPARE(lines, (std::vector<std::string>{"mute alice on", ""}));
    QCOMPARE(buffer.takeRest(), std::string("quit"));
    QCOMPARE(buffer.takeRest(), std::string());
    // Input without line ends must not fill the memory.
    for (int i = 0; i < 10; ++i)
        QVERIFY(buffer.add(std::string(1000, 'x')).empty());
    QCOMPARE(buffer.takeRest().size(), LineBuffer::kMaxLineBytes);
}

void TestHostParsers::sourcesAreParsed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected"); // text form, size, rate; or part of the failure
    QTest::newRow("plain") << "synthetic"
                           << "synthetic 0x0 0";
    QTest::newRow("none") << "none"
                          << "none 0x0 0";
    QTest::newRow("size and rate") << "synthetic@320x180/12.5"
                                   << "synthetic 320x180 12.5";
    QTest::newRow("file with colon, at and slash") << "y4m/10:C:/a@b/c.y4m"
                                                   << "y4m:C:/a@b/c.y4m 0x0 10";
    QTest::newRow("scaled video") << "video@640x360:talk 1.mp4"
                                  << "video:talk 1.mp4 640x360 0";
    QTest::newRow("largest") << "synthetic@16384x1"
                             << "synthetic 16384x1 0";
    QTest::newRow("unknown kind") << "film:a.mp4"
                                  << "! unknown kind 'film'";
    QTest::newRow("empty") << ""
                           << "! unknown kind ''";
    QTest::newRow("no file") << "video:"
                             << "! no file given";
    QTest::newRow("file for a drawing") << "synthetic:a"
                                        << "! takes no file";
    QTest::newRow("scaled y4m") << "y4m@2x2:a"
                                << "! has the size of its file";
    QTest::newRow("too wide") << "synthetic@16385x1"
                              << "! '16385' is not a whole number";
    QTest::newRow("no height") << "synthetic@640"
                               << "! '640' is not a size";
    QTest::newRow("height with rest") << "synthetic@640x36O"
                                      << "! '36O' is not";
    QTest::newRow("rate of zero") << "synthetic/0"
                                  << "! '0' is not a number";
    QTest::newRow("rate that is none") << "synthetic/nan"
                                       << "! 'nan' is not a number";
}

void TestHostParsers::sourcesAreParsed()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QString got;
    const QString failure = failureOf([&] {
        const SourceSpec spec = SourceSpec::parse(text.toStdString());
        got = QStringLiteral("%1 %2x%3 %4")
                  .arg(QString::fromStdString(spec.toText()))
                  .arg(spec.size.width)
                  .arg(spec.size.height)
                  .arg(spec.fps);
    });
    if (expected.startsWith(QLatin1Char('!')))
        QVERIFY2(failure.contains(expected.mid(2)), qPrintable(failure + got));
    else
        QCOMPARE(failure + got, expected);
}

void TestHostParsers::optionsAreParsed()
{
    const Options options =
        parseOptions(words(QStringLiteral("--participants 3 --names=Ann,李娜 --source "
                                          "2=video@320x180:a=b.mp4 --source none --mode 12 "
                                          "--size 800x600 --duration 1.25 --seed 4294967295 --fps "
                                          "30 --screenshot s.png --interactive "
                                          "--library l.so --picture 322x180 --mode 7")));
    QCOMPARE(options.participantCount(), 3);
    QCOMPARE(options.nameOf(2), std::string("李娜"));
    QCOMPARE(options.nameOf(3), std::string("Participant 3"));
    QCOMPARE(options.sourceOf(2).file, std::string("a=b.mp4"));
    QCOMPARE(options.sourceOf(2).size.width, 320);
    QCOMPARE(int(options.sourceOf(1).kind), int(SourceKind::None));
    QCOMPARE(options.mode, 7); // the last one counts
    QCOMPARE(options.windowSize.height, 600);
    QCOMPARE(options.pictureSize.width, 322);
    QCOMPARE(options.durationMs, 1250);
    QCOMPARE(options.seed, 4294967295U);
    QCOMPARE(options.fps, 30.0);
    QVERIFY(options.interactive && !options.headless && !options.help);
    QCOMPARE(options.screenshot, std::string("s.png"));
    QCOMPARE(options.library, std::string("l.so"));
}

void TestHostParsers::optionsCount_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("count");
    QTest::newRow("nothing said") << "" << 4;
    QTest::newRow("a scenario") << "--scenario a" << 0;
    QTest::newRow("names") << "--names a,b --scenario a" << 2;
    QTest::newRow("sources") << "--names a,b --source 3=none" << 3;
    QTest::newRow("source for all") << "--source none" << 4;
    QTest::newRow("fewer than names") << "--names a,b --participants 1" << 1;
    QTest::newRow("nobody") << "--participants 0" << 0;
}

void TestHostParsers::optionsCount()
{
    QFETCH(QString, line);
    QTEST(parseOptions(words(line)).participantCount(), "count");
}

void TestHostParsers::wrongOptionsAreRefused_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("failure");
    QTest::newRow("unknown") << "--colour red"
                             << "unknown option '--colour'";
    QTest::newRow("bare word") << "hello"
                               << "'hello' is not an option";
    QTest::newRow("value missing") << "--mode"
                                   << "--mode needs a value";
    QTest::newRow("value too many") << "--headless=1"
                                    << "--headless takes no value";
    QTest::newRow("mode too large") << "--mode 15"
                                    << "--mode: '15' is not";
    QTest::newRow("mode too small") << "--mode 0"
                                    << "--mode: '0' is not";
    QTest::newRow("not a number") << "--participants 4x"
                                  << "--participants: '4x' is not";
    QTest::newRow("overflow") << "--seed 99999999999999999999"
                              << "--seed: ";
    QTest::newRow("negative duration") << "--duration -1"
                                       << "--duration: '-1' is not";
    QTest::newRow("size") << "--size 1280"
                          << "--size: '1280' is not a size";
    QTest::newRow("source of nobody") << "--participants 2 --source 3=none"
                                      << "participant 3 of 2";
    QTest::newRow("source zero") << "--source 0=none"
                                 << "--source: '0' is not";
    QTest::newRow("no window to grab") << "--headless --screenshot a.png"
                                       << "needs a window";
}

void TestHostParsers::wrongOptionsAreRefused()
{
    QFETCH(QString, line);
    QFETCH(QString, failure);
    const QString got = failureOf([&] { (void)parseOptions(words(line)); });
    QVERIFY2(got.contains(failure), qPrintable(got));
    QVERIFY_EXCEPTION_THROWN((void)parseOptions(words(line)), UsageError);
}

void TestHostParsers::scenarioTimes()
{
    const std::vector<ScenarioStep> steps = parseScenario("\xEF\xBB\xBF# opening\r\n"
                                                          "at 1.5 add alice\r\n"
                                                          "mute alice on   # the same time\n"
                                                          "+0.25 hand alice on\n"
                                                          "wait 2\n"
                                                          "\n"
                                                          "share pause on\n"
                                                          "0.5 add bob none \"Bob 李\"\n"
                                                          "+0 quit",
                                                          "test");
    QStringList got;
    for (const ScenarioStep& step : steps)
        got << QStringLiteral("%1:%2:%3")
                   .arg(step.timeMs)
                   .arg(step.line)
                   .arg(QString::fromStdString(step.command.command->name));
    QCOMPARE(got, (QStringList{"500:8:add", "500:9:quit", "1500:2:add", "1500:3:mute",
                               "1750:4:hand", "3750:7:share pause"}));
    QCOMPARE(steps[0].command.arguments.text(2), std::string("Bob 李"));
}

void TestHostParsers::wrongScenariosAreRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("failure");
    QTest::newRow("unknown command") << "1 add a\n2 dance a"
                                     << "t:2: unknown command 'dance'";
    QTest::newRow("half a command") << "share"
                                    << "t:1: unknown command 'share'";
    QTest::newRow("too few") << "mute a"
                             << "t:1: too few arguments: mute WHO on|off";
    QTest::newRow("too many") << "quit now"
                              << "t:1: too many arguments: quit";
    QTest::newRow("not on or off") << "mute a maybe"
                                   << "'maybe' is not 'on' or 'off'";
    QTest::newRow("not a choice") << "role a king"
                                  << "'king' is none of none, host, admin";
    QTest::newRow("not a source") << "add a film:x"
                                  << "unknown kind 'film'";
    QTest::newRow("not an order") << "mode 1 alice"
                                  << "'alice' is not POSITION=ID";
    QTest::newRow("not a size") << "resize 10"
                                << "'10' is not a size";
    QTest::newRow("no time") << "at add a"
                             << "no time after 'at'";
    QTest::newRow("not a time") << "1,5 add a"
                                << "time: '1,5' is not";
    QTest::newRow("time alone") << "+1"
                                << "no command after the time";
    QTest::newRow("open quote") << "name a \"b"
                                << "a quote is not closed";
}

void TestHostParsers::wrongScenariosAreRefused()
{
    QFETCH(QString, text);
    QFETCH(QString, failure);
    const QString got = failureOf([&] { (void)parseScenario(text.toStdString(), "t"); });
    QVERIFY2(got.startsWith("t:") && got.contains(failure), qPrintable(got));
}

void TestHostParsers::messagesAreDescribed_data()
{
    QTest::addColumn<uint>("message");
    QTest::addColumn<qulonglong>("wParam");
    QTest::addColumn<qlonglong>("lParam");
    QTest::addColumn<QString>("text");
    static const char userId[] = "bob";
    const auto row = [](uint message, qulonglong w, qlonglong l, const char* text) {
        QTest::newRow(text) << message << w << l << QString::fromUtf8(text);
    };
    row(ZRMSG_VIDEO_SHOWN, 0x1f, 7, "message ZRMSG_VIDEO_SHOWN person=0x1f hostValue=alice");
    row(ZRMSG_CLICK_AUDIO, 0, 8, "message ZRMSG_CLICK_AUDIO person=0x0 hostValue=8");
    row(ZRMSG_CLICK_MORE, qulonglong(-5), 7, "message ZRMSG_CLICK_MORE right=-5 hostValue=alice");
    row(3, 0x1f, 7, "stream request grade=3 for alice");
    row(ZRMSG_SCREEN_MODE, 12, 0, "message ZRMSG_SCREEN_MODE mode=12");
    row(ZRMSG_FOCUS_STREAM, reinterpret_cast<quintptr>(userId), 1,
        "message ZRMSG_FOCUS_STREAM userId=bob focus=new");
    row(ZRMSG_TILE_CLICK, 0, 0, "message ZRMSG_TILE_CLICK");
    row(ZRMSG_SHARE_RECT_CHANGED, 1, 0, "message ZRMSG_SHARE_RECT_CHANGED shown=1");
    row(17, 2, 3, "message 17 wParam=0x2 lParam=3");
}

void TestHostParsers::messagesAreDescribed()
{
    QFETCH(uint, message);
    QFETCH(qulonglong, wParam);
    QFETCH(qlonglong, lParam);
    const std::string got = describeMessage(message, wParam, lParam, [](long long value) {
        return value == 7 ? std::string("alice") : std::string();
    });
    QTEST(QString::fromStdString(got), "text");
}

QTEST_APPLESS_MAIN(TestHostParsers)
#include "tst_hostparsers.moc"
