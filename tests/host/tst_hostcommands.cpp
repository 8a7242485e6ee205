// The commands, the session behind them and the table of exports, against a stand-in module.
#include "command_table.h"
#include "fakescreen.h"
#include "host_error.h"
#include "session.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <mutex>

using namespace zrhost;

namespace {

/// Records what the session asks of the program around it.
class FakeStage : public Stage
{
public:
    HWND nativeWindow(WindowId id) override
    {
        return reinterpret_cast<HWND>(static_cast<uintptr_t>(id));
    }
    Size windowSize(WindowId) override { return {800, 450}; }
    void resizeWindow(WindowId, Size size) override
    {
        note("resize " + std::to_string(size.width));
    }
    void saveWindow(WindowId, const std::string& file) override { note("save " + file); }
    void print(const std::string& line) override { note(line); }
    void fail(const std::string& line) override { note("FAIL " + line); }
    void quit() override { note("quit"); }
    void post(std::function<void()> task) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    void holdCommands(int ms) override { note("hold " + std::to_string(ms)); }

    bool hasTasks()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return !m_tasks.empty();
    }
    /// Runs what media threads have posted.
    void runTasks()
    {
        std::vector<std::function<void()>> tasks;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            tasks.swap(m_tasks);
        }
        for (const auto& task : tasks)
            task();
    }
    QStringList take() { return std::exchange(m_notes, {}); }

private:
    void note(const std::string& text) { m_notes << QString::fromStdString(text); }

    std::mutex m_mutex;
    std::vector<std::function<void()>> m_tasks;
    QStringList m_notes;
};

QStringList takeCalls()
{
    QStringList calls;
    for (const std::string& call : takeFakeCalls())
        calls << QString::fromStdString(call);
    return calls;
}

} // namespace

class TestHostCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theExportListIsComplete();
    void missingExportsAreNamed();
    void examplesReachEveryExport();
    void commandsCall_data();
    void commandsCall();
    void commandsFail_data();
    void commandsFail();
    void framesCarryThePicture();
    void theScreenFollowsItsWindow();
    void leavingIsOrderly();
    void sourcesThatEndAreReported();
    void messagesNameTheParticipant();

private:
    void run(const QString& line) { bindCommand(splitWords(line.toStdString())).run(*m_session); }

    ScreenApi m_api;
    FakeStage m_stage;
    std::unique_ptr<Session> m_session;
};

void TestHostCommands::init()
{
    m_api = ScreenApi::resolve([](const char* name) { return fakeExport(name); });
    m_session = std::make_unique<Session>(m_api, m_stage, Session::Settings());
    m_session->openScreen(WindowId::Main);
    m_session->add("alice", "Alice", SourceSpec::parse("none"));
    m_session->add("bob", "Bob", SourceSpec::parse("none"));
    (void)takeFakeFrames();
    (void)takeCalls();
    m_stage.take();
}

void TestHostCommands::cleanup()
{
    m_session.reset();
    (void)takeCalls();
}

void TestHostCommands::theExportListIsComplete()
{
    QFile header(ZRHOST_PUBLIC_HEADER);
    QVERIFY(header.open(QIODevice::ReadOnly));
    const QRegularExpression declaration(QStringLiteral("^ZR_API .* ZR_CALL ZRScreen_(\\w+)\\("),
                                         QRegularExpression::MultilineOption);
    QSet<QString> declared;
    auto match = declaration.globalMatch(QString::fromUtf8(header.readAll()));
    while (match.hasNext())
        declared << match.next().captured(1);
    QSet<QString> listed;
#define ZRHOST_NAME(name) listed << QStringLiteral(#name);
    ZRHOST_SCREEN_EXPORTS(ZRHOST_NAME)
#undef ZRHOST_NAME
    QCOMPARE(declared.size(), 47);
    QCOMPARE(listed, declared);
}

void TestHostCommands::missingExportsAreNamed()
{
    try {
        (void)ScreenApi::resolve([](const char* name) -> void* {
            const std::string wanted = name;
            return wanted == "ZRScreen_Init" || wanted == "ZRScreen_SetMute" ? nullptr
                                                                             : fakeExport(wanted);
        });
        QFAIL("no failure");
    } catch (const HostError& error) {
        QCOMPARE(error.what(), "the library does not export ZRScreen_Init, ZRScreen_SetMute");
    }
}

void TestHostCommands::examplesReachEveryExport()
{
    QSet<QString> called;
    for (const Command& command : commandTable()) {
        // A meeting of its own for each: some examples end it.
        cleanup();
        init();
        if (command.name == "init")
            m_session->closeScreen();
        const BoundCommand bound = bindCommand(splitWords(command.example));
        QCOMPARE(bound.command, &command);
        QVERIFY(!command.help.empty());
        (void)takeCalls();
        bound.run(*m_session);
        const QStringList calls = takeCalls();
        for (const QString& call : calls) {
            QVERIFY2(!call.contains(QLatin1String("wrong screen")), qPrintable(call));
            called << call.section(QLatin1Char('('), 0, 0);
        }
        if (!takeFakeFrames().empty())
            called << QStringLiteral("PlayFrame");
    }
#define ZRHOST_CHECK(name) QVERIFY2(called.contains(#name), #name " is not reached");
    ZRHOST_SCREEN_EXPORTS(ZRHOST_CHECK)
#undef ZRHOST_CHECK
}

void TestHostCommands::commandsCall_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("calls");
    const auto row = [](const char* line, const QStringList& calls) {
        QTest::newRow(line) << QString::fromUtf8(line) << calls;
    };
    row("add carol none \"Carol 李\"", {"AddPerson(carol, Carol 李, 3000)"});
    row("add carol", {"AddPerson(carol, carol, 3000)", "SetMute(carol, 0)", "Preview(carol, 1)"});
    row("delete 2", {"DelPerson(bob)"});
    row("mute alice on", {"SetMute(alice, 1)"});
    row("mute Bob off", {"SetMute(bob, 0)"});
    row("volume alice 60", {"SetVolume(alice, 60)"});
    row("preview alice off", {"Preview(alice, 0)"});
    row("hand alice on", {"SetPersonHandUp(alice, 1)"});
    row("name alice 爱丽丝", {"SetPersonInfo(alice, 0, 0, 爱丽丝, 0)"});
    row("role bob admin 5", {"SetPersonInfo(bob, 0, 2, Bob, 5)"});
    row("self bob on", {"SetPersonInfo(bob, 1, 0, Bob, 0)"});
    row("net alice receive 1 on", {"UpdateUserNetStatus(alice, 2, 1, 1)"});
    row("net alice send 5", {"UpdateUserNetStatus(alice, 1, 0, 5)"});
    row("focus alice", {"FocusByUserID(alice, 0)"});
    row("focus nobody voice", {"FocusByUserID(nobody, 1)"});
    row("lock alice on", {"LockLook(alice, 1)"});
    row("all alice off", {"AllLook(alice, 0)"});
    row("active alice", {"SetActivateUser(alice)"});
    row("speaking alice", {"SetCurrentSpeakingPerson(alice)"});
    row("share add bob none", {"SetShareSponsor(bob)", "AddPerson(sharescreen_bob, , 3000)"});
    row("share self on off", {"PopSelfShareWnd(1, 0)"});
    row("mode 2 0=bob 1=alice", {"ChangeLayout(2, 0=bob;1=alice;)"});
    row("mode 99", {"ChangeLayout(99, )"}); // the module decides what it refuses
    row("layoutctrl on off 3 4 on", {"SetLayoutCtrl(1, 0, 3, 4, 1)"});
    row("polling on 5", {"SetOpenPollingPage(1, 5)"});
    row("extend on", {"SetExtendScreen(1, 0)"});
    row("showsmall on off", {"ShowSmallWnd(1, 0)"});
    row("toolbar 10 20 300 40 on", {"SetVideoToolbarStatus(10 20 310 60, 1)"});
    row("move -5 0 10 20", {"MoveWindow(-5 0 5 20)"});
    row("subtitle open", {"OpenSubtitle(1)"});
    row("subtitle close", {"OpenSubtitle(0)"});
    row("subtitle add 7 2 Ann \"Good morning\"", {"AddSentence(7, 2, Ann, Good morning)"});
    row("reparent second", {"SetParent()", "MoveWindow(0 0 800 450)"});
    row("reparent none", {"SetParent()"});
    row("release", {"DelPerson(bob)", "DelPerson(alice)", "Release(0)"});
}

void TestHostCommands::commandsCall()
{
    QFETCH(QString, line);
    run(line);
    QTEST(takeCalls(), "calls");
}

void TestHostCommands::commandsFail_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("failure");
    QTest::newRow("nobody") << "mute carol on"
                            << "there is no participant 'carol'";
    QTest::newRow("taken") << "add alice none"
                           << "there is a participant 'alice' already";
    QTest::newRow("no file") << "add carol y4m:/nonexistent/a"
                             << "cannot read '/nonexistent/a'";
    QTest::newRow("folder") << "add carol video:/tmp"
                            << "cannot read '/tmp'";
    QTest::newRow("second screen") << "init"
                                   << "there is a screen already";
}

void TestHostCommands::commandsFail()
{
    QFETCH(QString, line);
    QFETCH(QString, failure);
    try {
        run(line);
        QFAIL("no failure");
    } catch (const HostError& error) {
        QVERIFY2(QString::fromStdString(error.what()).startsWith(failure), error.what());
    }
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(m_session->people().size(), std::size_t(2));

    // Without a screen no command reaches the module with an old handle.
    run("release");
    (void)takeCalls();
    QVERIFY_EXCEPTION_THROWN(run("curmode"), HostError);
    QVERIFY_EXCEPTION_THROWN(run("add carol none"), HostError);
    QCOMPARE(takeCalls(), QStringList());
}

void TestHostCommands::framesCarryThePicture()
{
    run("frame alice 33x17");
    QCOMPARE(takeFakeFrames(), std::vector<std::string>{"alice 33x17 235"});
    run("add carol synthetic@64x36/100");
    // The condition of QTRY_VERIFY is evaluated more often than it succeeds: it must take nothing.
    QTRY_VERIFY(fakeFrameCount() > 0);
    QCOMPARE(takeFakeFrames().front(), std::string("carol 64x36 235"));
}

void TestHostCommands::theScreenFollowsItsWindow()
{
    m_session->onWindowResized(WindowId::Main, {1000, 500});
    QCOMPARE(takeCalls(), QStringList{"MoveWindow(0 0 1000 500)"});
    m_session->onWindowResized(WindowId::Second, {300, 200});
    QCOMPARE(takeCalls(), QStringList());
    run("reparent second");
    (void)takeCalls();
    m_session->onWindowResized(WindowId::Main, {10, 10});
    m_session->onWindowResized(WindowId::Second, {300, 200});
    QCOMPARE(takeCalls(), QStringList{"MoveWindow(0 0 300 200)"});
}

void TestHostCommands::leavingIsOrderly()
{
    run("add carol synthetic@64x36/200");
    run("add dave synthetic@64x36/200");
    QTRY_VERIFY(fakeFrameCount() > 0);
    run("delete carol");
    (void)takeFakeFrames();
    QTest::qWait(50);
    for (const std::string& frame : takeFakeFrames())
        QVERIFY2(frame.rfind("dave ", 0) == 0, frame.c_str());
    (void)takeCalls();
    m_session->closeScreen();
    QCOMPARE(takeCalls(),
             (QStringList{"DelPerson(dave)", "DelPerson(bob)", "DelPerson(alice)", "Release(0)"}));
    (void)takeFakeFrames();
    QTest::qWait(30);
    QVERIFY(takeFakeFrames().empty());
    // Numbers are not used again, so that a late message cannot name the wrong participant.
    run("init");
    run("add erin none");
    QCOMPARE(m_session->person("erin").number, 5);
}

void TestHostCommands::sourcesThatEndAreReported()
{
    QTemporaryDir folder;
    QFile file(folder.filePath("a.y4m"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("GIF89a, no stream");
    file.close();
    run("add carol \"y4m:" + file.fileName() + "\"");
    QTRY_VERIFY(m_stage.hasTasks());
    m_stage.runTasks();
    QCOMPARE(m_stage.take().last(),
             "FAIL source of carol (y4m:" + file.fileName() + "): not a YUV4MPEG2 stream");
}

void TestHostCommands::messagesNameTheParticipant()
{
    QVERIFY(fakeNotify());
    run("delete bob");
    m_stage.take();
    fakeNotify()(4, 0x20, 1);
    fakeNotify()(ZRMSG_PERSON_REMOVED, 0x20, 2); // comes after bob has left
    QCOMPARE(m_stage.take(),
             (QStringList{"stream request grade=4 for alice",
                          "message ZRMSG_PERSON_REMOVED person=0x20 hostValue=bob"}));
}

QTEST_GUILESS_MAIN(TestHostCommands)
#include "tst_hostcommands.moc"
