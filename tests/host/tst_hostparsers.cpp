// Options, sources, words, scenarios, streams of pictures: what the host reads.
#include "host_error.h"
#include "media_source.h"
#include "messages.h"
#include "options.h"
#include "scenario.h"
#include "scenario_player.h"
#include "scenariowords.h"
#include "statistics.h"
#include "traced_words.h"
#include "y4m_reader.h"
#include "zrscreenmod/zrscreenmod.h"

#include <QtTest>

#include <algorithm>
#include <cstring>

using namespace zrhost;

namespace {

/// What is given, and what `make` is to turn it into. "! text" stands for a HostError with this
/// text in it.
template<typename Make>
void compareRows(const std::vector<std::pair<std::string, QString>>& rows, Make make)
{
    for (const auto& [given, expected] : rows) {
        QString got;
        try {
            got = make(given);
        } catch (const HostError& error) {
            got = QStringLiteral("! ") + error.what();
        }
        const bool refused = expected.startsWith("! ") && got.startsWith("! ");
        QVERIFY2(refused ? got.contains(expected.mid(2)) : got == expected,
                 qPrintable(QString::fromStdString(given) + " became '" + got + "' and not '"
                            + expected + "'"));
    }
}

/// Bytes in memory, handed out in small pieces as a pipe does.
struct MemoryBytes : ByteSource
{
    explicit MemoryBytes(std::string allBytes, bool loops = false)
        : bytes(std::move(allBytes))
        , canRewind(loops)
    {
    }
    std::size_t read(std::uint8_t* to, std::size_t size) override
    {
        const std::size_t count = std::min({size, std::size_t(7), bytes.size() - at});
        std::memcpy(to, bytes.data() + at, count);
        at += count;
        return count;
    }
    bool rewind() override
    {
        at = 0;
        return canRewind;
    }
    const std::string bytes;
    const bool canRewind;
    std::size_t at = 0;
};

std::string frame(const std::string& header, std::size_t bytes, char value)
{
    return header + "\n" + std::string(bytes, value);
}

/// Reads everything. @return the frames' first bytes and what ended them, for example "ab."
QString readAll(PictureSource& source, int atMost)
{
    QString seen;
    try {
        Picture picture;
        while (seen.size() < atMost && source.next(picture))
            seen += QLatin1Char(char(picture.data[0]));
    } catch (const HostError& error) {
        return seen + "! " + error.what();
    }
    return seen.size() < atMost ? seen + '.' : seen;
}

} // namespace

class TestHostParsers : public QObject
{
    Q_OBJECT

private slots:
    void wordsAreSplit()
    {
        compareRows({{" a\t b  c\r", "a|b|c"},
                     {"a b # c", "a|b"},
                     {"a b#c", "a|b#c"},
                     {"name \"Ann \\\"A\\\" \\\\ 李\" x", "name|Ann \"A\" \\ 李|x"},
                     {"\"# a\"", "# a"},
                     {"a \"\" b", "a||b"},
                     {"\"a\\", "! a quote is not closed"}},
                    [](const std::string& line) {
                        QStringList words;
                        for (const std::string& word : splitWords(line))
                            words << QString::fromStdString(word);
                        return words.join('|');
                    });

        LineBuffer buffer;
        QVERIFY(buffer.add("mute al").empty());
        QCOMPARE(buffer.add("ice on\r\n\nquit"), (std::vector<std::string>{"mute alice on", ""}));
        QCOMPARE(buffer.takeRest(), std::string("quit"));
        QCOMPARE(buffer.takeRest(), std::string());
        // Input without line ends must not fill the memory.
        for (int i = 0; i < 10; ++i)
            QVERIFY(buffer.add(std::string(1000, 'x')).empty());
        QCOMPARE(buffer.takeRest().size(), LineBuffer::kMaxLineBytes);
    }

    /// What frequent steps are is told by the command, and a trace remains one.
    void aTraceIsStepped()
    {
        std::vector<std::string> run;
        int ends = 0;
        ScenarioPlayer player({[&](const ScenarioStep& step) { run.push_back(step.command); },
                               [](int, const auto&) {}, [&] { ++ends; }});
        player.load({{0, 1, "trace"},
                     {1, 2, "call ZRScreen_PlayFrame s1 p1 2x2"},
                     {2, 3, "say ann \"the volume network \""},
                     {3, 4, "call ZRScreen_SetVolume s1 p1 3"},
                     {4, 5, "expect s1 ZRMSG_SCREEN_MODE 6 0"}});
        player.record("people");
        QVERIFY(player.isReplay() && player.steps()[1].command == "people");
        player.stepToChange();
        QCOMPARE(run.back(), player.steps()[3].command);
        QCOMPARE(ends, 0);
        player.stepToChange();
        QCOMPARE(run.size(), std::size_t(5)); // "people" was run by whoever records it
        QCOMPARE(ends, 1);
    }

    void optionsAreParsed()
    {
        const Options options = parseOptions(
            splitWords("--participants 3 --names=Ann,李娜 --source 2=y4m/15:a=b.y4m --source none "
                       "--mode 12 --size 800x600 --duration 1.25 --interactive --mode 7"));
        QCOMPARE(options.nameOf(2), std::string("李娜"));
        QCOMPARE(options.nameOf(3), std::string("Participant 3"));
        QCOMPARE(options.sourceOf(2).file, std::string("a=b.y4m"));
        QCOMPARE(int(options.sourceOf(1).kind), int(SourceKind::None));
        QCOMPARE(options.mode, 7); // the last one counts
        QCOMPARE(options.windowSize.height, 600);
        QCOMPARE(options.durationMs, 1250);
        QVERIFY(options.interactive && !options.headless && !options.help);
    }

    /// Of the last run only, and not before all participants of a block are there.
    void newestStatisticsAreFound()
    {
        const std::string begin = "[1][attach():5]  \r\n\r\n Init sys\r\n";
        const auto head = [](const std::string& count, const std::string& stall) {
            return "[2][log():7]  stats: " + count
                   + " participants, 25.5 compositions/s, longest paint 1.5 ms, longest stall "
                   + stall + " ms\r\n";
        };
        const auto tile = [](const std::string& id) {
            return "[3][log():8]  stats " + id
                   + ": in 25.0/s, refused 2, painted 5.5/s, 640x360, grade 3, stream open, opened "
                     "6 times, "
                     "told shown 4, hidden 3 times\r\n";
        };
        const std::string whole =
            head("2", "40") + tile("ann: in") + "[4][x():1]  other\r\n" + tile("bob");
        const QString expected = "40 ms|ann: in: 19.5 refused 2 640x360 3 6|bob: 19.5 refused 2 "
                                 "640x360 3 6";
        compareRows({{begin + whole + head("1", "50"), expected},
                     {begin + head("2", "30") + tile("ann") + whole, expected},
                     {begin + head("0", "7"), "7 ms"},
                     {begin + whole + begin + head("1", "50"), "none"},
                     {begin + tile("ann"), "none"}},
                    [](const std::string& log) {
                        const auto found = newestStatistics(log);
                        if (!found)
                            return QStringLiteral("none");
                        QString text = QString::number(found->longestStallMs) + " ms";
                        for (const TileStatistics& one : found->tiles)
                            text += QStringLiteral("|%1: %2 refused %3 %4x%5 %6 %7")
                                        .arg(QString::fromStdString(one.userId))
                                        .arg(one.coalescedPerS())
                                        .arg(one.refused)
                                        .arg(one.picture.width)
                                        .arg(one.picture.height)
                                        .arg(one.grade)
                                        .arg(one.timesOpened);
                        return text;
                    });
    }

    void participantsAreCounted()
    {
        compareRows({{"", "4"},
                     {"--scenario a", "0"},
                     {"--names a,b --scenario a", "2"},
                     {"--names a,b --source 3=none", "3"},
                     {"--names a,b --participants 1", "1"},
                     {"--participants 0", "0"},
                     {"hello", "! 'hello' is not an option"},
                     {"--mode", "! --mode needs a value"},
                     {"--headless=1", "! --headless takes no value"},
                     {"--mode 15", "! --mode: '15' is not"},
                     {"--seed 99999999999999999999", "! --seed: "},
                     {"--participants 2 --source 3=none", "! participant 3 of 2"},
                     {"--source 0=none", "! --source: '0' is not"},
                     {"--source 1=film:a.mp4", "! unknown kind 'film'"},
                     {"--source 1=y4m:", "! no file given"},
                     {"--source 1=synthetic:a", "! takes no file"},
                     {"--source 1=y4m@2x2:a", "! has the size of its file"},
                     {"--source 1=synthetic@16384x1/12.5", "1"},
                     {"--source 1=synthetic@16385x1", "! '16385' is not a whole number"},
                     {"--source 1=synthetic/0", "! '0' is not a number"},
                     {"--source 1=synthetic/nan", "! 'nan' is not a number"},
                     {"--headless --screenshot a.png", "! needs a window"}},
                    [](const std::string& line) {
                        return QString::number(parseOptions(splitWords(line)).participantCount());
                    });
    }

    void scenarios()
    {
        const std::vector<ScenarioStep> steps = parseScenario("\xEF\xBB\xBF# opening\r\n"
                                                              "at 1.5 add alice\r\n"
                                                              "mute alice on   # the same time\n"
                                                              "+0.25 preview alice on\n"
                                                              "wait 2\n"
                                                              "\n"
                                                              "call ZRScreen_GetCurMode\n"
                                                              "0.5 add bob none \"Bob 李\"\n"
                                                              "+0 quit",
                                                              "test");
        QStringList got;
        for (const ScenarioStep& step : steps)
            got << QStringLiteral("%1:%2:%3")
                       .arg(step.timeMs)
                       .arg(step.line)
                       .arg(QString::fromStdString(step.command));
        QCOMPARE(got, (QStringList{"500:8:add bob none \"Bob 李\"", "500:9:quit",
                                   "1500:2:add alice", "1500:3:mute alice on",
                                   "1750:4:preview alice on", "3750:7:call ZRScreen_GetCurMode"}));

        compareRows(
            {{"1 add a\n2 dance a", "! t:2: unknown command 'dance'"},
             {"mute a", "! t:1: too few arguments: mute WHO on|off"},
             {"quit now", "! t:1: too many arguments: quit"},
             {"mute a maybe", "! 'maybe' is not 'on' or 'off'"},
             {"ext hide", "! 'hide' is none of show, close"},
             {"call ZRScreen_Dance", "! there is no export 'ZRScreen_Dance'"},
             {"call ZRScreen_SetMute a", "! write ZRScreen_SetMute WHO on|off"},
             {"call ZRScreenDate_Init main", "! write NAME=ZRScreenDate_Init none|main|second"},
             {"at add a", "! no time after 'at'"},
             {"1,5 add a", "! time: '1,5' is not"},
             {"+1", "! no command after the time"}},
            [](const std::string& text) {
                return QString::number(parseScenario(text, "t").size());
            });
    }

    /// What the module writes into a trace, the host reads.
    void recordedTextsComeBack()
    {
        for (const char* const given : {"", "Ann", "Ann \"B\" \\ 李", "a\\ b", "# a", "!null", "!x",
                                        "a\nb\t", "\xff\xfe", "\x7f", "a,b=c", "100%", "%41"}) {
            const std::string text = given;
            const auto word = [](const QByteArray& written) {
                const std::vector<std::string> words = splitWords(written.toStdString());
                return words.size() == 1 ? words[0] : "split";
            };
            QCOMPARE(decodeText(word(zr::textWord(given, zr::TextEncoding::Utf8)), false), text);
            QCOMPARE(decodeList(word(zr::listWord({given, "x"}))),
                     (std::vector<std::string>{text, "x"}));
        }
    }

    void messagesAreDescribed()
    {
        const std::tuple<unsigned long, unsigned long long, long long, const char*> rows[] = {
            {ZRMSG_VIDEO_SHOWN, 0x1f, 7, "message ZRMSG_VIDEO_SHOWN person=0x1f hostValue=alice"},
            {ZRMSG_CLICK_MORE, -5ULL, 8, "message ZRMSG_CLICK_MORE right=-5 hostValue=8"},
            {3, 0x1f, 7, "stream request grade=3 for alice"},
            {ZRMSG_FOCUS_STREAM, reinterpret_cast<uintptr_t>("bob"), 1,
             "message ZRMSG_FOCUS_STREAM userId=bob focus=new"},
            {17, 2, 3, "message 17 wParam=0x2 lParam=3"},
        };
        const auto nameOf = [](long long value) { return std::string(value == 7 ? "alice" : ""); };
        for (const auto& [message, wParam, lParam, text] : rows)
            QCOMPARE(describeMessage(message, wParam, lParam, false, nameOf).line(),
                     std::string(text));
    }

    void headers()
    {
        compareRows({{"YUV4MPEG2 W320 H240 F30000:1001 Ip A1:1 C420jpeg XA=\"b", "320x240 29.97"},
                     {"YUV4MPEG2 F10:1 H2 W3", "3x2 10"},
                     {"YUV4MPEG2 W2 H2", "2x2 25"},
                     {"YUV4MPEG2 W2 H2 F0:0", "2x2 25"},
                     {"YUV4MPEG W2 H2", "! not a YUV4MPEG2 stream"},
                     {"YUV4MPEG2 H2", "! without a width"},
                     {"YUV4MPEG2 W0 H2", "! width: '0' is not"},
                     {"YUV4MPEG2 W2 H2 F25", "! is not a ratio"},
                     {"YUV4MPEG2 W2 H2 C420p10", "! chroma '420p10' is not supported"}},
                    [](const std::string& line) {
                        const Y4mHeader header = Y4mHeader::parse(line);
                        return QStringLiteral("%1x%2 ").arg(header.width).arg(header.height)
                               + QString::number(header.fps, 'g', 4);
                    });
    }

    void streams()
    {
        // 3 x 3 pixels: 9 bytes of luma, 2 x 2 for each chroma plane.
        constexpr std::size_t kOddBytes = 9 + 4 + 4;
        const std::string head = "YUV4MPEG2 W3 H3 F25:1\n";
        const std::string first = head + frame("FRAME", kOddBytes, 'a');
        compareRows(
            {{first + frame("FRAME Ip XY", kOddBytes, 'b'), "ab."},
             {head, "! the stream has no frames"},
             {first + frame("FRAME", 16, 'b'), "a! truncated frame 2: 16 of 17 bytes"},
             {first + "FRA", "a! truncated YUV4MPEG2 header"},
             {first + "a" + frame("FRAME", kOddBytes, 'b'), "a! no FRAME header before frame 2"},
             {head + frame("FRAMES", kOddBytes, 'a'), "! no FRAME header before frame 1"},
             // What is not a stream at all is said before the first picture is asked for.
             {"", "! the stream is empty"},
             {"\x89PNG.....", "! not a YUV4MPEG2 stream"},
             {"YUV4MPEG2 W2 H2", "! truncated YUV4MPEG2 header"},
             {"YUV4MPEG2 " + std::string(5000, 'X'), "! YUV4MPEG2 header line without an end"}},
            [](const std::string& bytes) {
                Y4mSource source(std::make_unique<MemoryBytes>(bytes), 0);
                return readAll(source, 10);
            });

        const std::string two =
            "YUV4MPEG2 W2 H2 F50:1\n" + frame("FRAME", 6, 'a') + frame("FRAME", 6, 'b');
        Y4mSource looped(std::make_unique<MemoryBytes>(two, true), 0);
        QCOMPARE(readAll(looped, 5), QStringLiteral("ababa"));
        QCOMPARE(looped.fps(), 50.0);
        QCOMPARE(Y4mSource(std::make_unique<MemoryBytes>(two), 12.5).fps(), 12.5);
    }
};

QTEST_APPLESS_MAIN(TestHostParsers)
#include "tst_hostparsers.moc"
