// The commands, the session behind them and the table of exports, against a stand-in module.
#include "command_table.h"
#include "fakescreen.h"
#include "hosttest.h"
#include "session.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

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
    void click(WindowId, Point at, int times) override
    {
        note("click " + std::to_string(at.x) + " x" + std::to_string(times));
    }
    void turnWheel(WindowId, Point at, int steps) override
    {
        note("wheel " + std::to_string(at.y) + " by " + std::to_string(steps));
    }
    void typeText(const std::string& utf8) override { note("type " + utf8); }
    void pressKey(Key key) override { note("key " + std::to_string(static_cast<int>(key))); }
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
    void examplesReachEveryExport();
    void commandsCall();
    void withoutAScreenTheModuleIsNotCalled();
    void framesCarryThePicture();
    void theScreenFollowsItsWindow();
    void leavingIsOrderly();
    void sourcesThatEndAreReported();
    void messagesNameTheParticipant();
    void controlsReportAndAreGivenBack();
    void streamsFollowTheMessages();

private:
    void run(const std::string& line) { bindCommand(splitWords(line)).run(*m_session); }

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
    run("edit add title 10 20 300 30 Room");
    run("box add minutes 10 60 300 200 1 2 3");
    run("date add when");
    run("ext show alice");
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
            QVERIFY2(!call.contains(QLatin1String("with a wrong")), qPrintable(call));
            called << call.section(QLatin1Char('('), 0, 0);
        }
        if (!takeFakeFrames().empty())
            called << QStringLiteral("PlayFrame");
    }
#define ZRHOST_CHECK(name) QVERIFY2(called.contains(#name), #name " is not reached");
    ZRHOST_SCREEN_EXPORTS(ZRHOST_CHECK)
#undef ZRHOST_CHECK
#define ZRHOST_CHECK(name) QVERIFY2(called.contains("Edit." #name), #name " is not reached");
    ZRHOST_EDIT_EXPORTS(ZRHOST_CHECK)
#undef ZRHOST_CHECK
    for (const char* name : {"Box.Init", "Box.Release", "Box.SetText", "Date.Init", "Date.Release",
                             "Date.Move", "Date.Hide"})
        QVERIFY2(called.contains(name), name);
}

void TestHostCommands::commandsCall()
{
    compareRows({{"add carol none \"Carol 李\"", "AddPerson(carol, Carol 李, 3000)"},
                 {"add carol", "AddPerson(carol, carol, 3000) SetMute(carol, 0) Preview(carol, 1)"},
                 {"delete 2", "DelPerson(bob)"},
                 {"mute Bob on", "SetMute(bob, 1)"},
                 {"volume alice 60", "SetVolume(alice, 60)"},
                 {"preview alice off", "Preview(alice, 0)"},
                 {"name alice 爱丽丝", "SetPersonInfo(alice, 0, 0, 爱丽丝, 0)"},
                 {"role bob admin 5", "SetPersonInfo(bob, 0, 2, Bob, 5)"},
                 {"self bob on", "SetPersonInfo(bob, 1, 0, Bob, 0)"},
                 {"net alice receive 1 on", "UpdateUserNetStatus(alice, 2, 1, 1)"},
                 {"net alice send 5", "UpdateUserNetStatus(alice, 1, 0, 5)"},
                 {"focus nobody voice", "FocusByUserID(nobody, 1)"},
                 {"lock alice on", "LockLook(alice, 1)"},
                 {"all alice off", "AllLook(alice, 0)"},
                 {"share add bob none", "SetShareSponsor(bob) AddPerson(sharescreen_bob, , 3000)"},
                 {"share self on off", "PopSelfShareWnd(1, 0)"},
                 {"mode 2 0=bob 1=alice", "ChangeLayout(2, 0=bob;1=alice;)"},
                 {"mode 99", "ChangeLayout(99, )"}, // the module decides what it refuses
                 {"layoutctrl on off 3 4 on", "SetLayoutCtrl(1, 0, 3, 4, 1)"},
                 {"polling on 5", "SetOpenPollingPage(1, 5)"},
                 {"extend on", "SetExtendScreen(1, 0)"},
                 {"showsmall on off", "ShowSmallWnd(1, 0)"},
                 {"toolbar 10 20 300 40 on", "SetVideoToolbarStatus(10 20 310 60, 1)"},
                 {"move -5 0 10 20", "MoveWindow(-5 0 5 20)"},
                 {"subtitle close", "OpenSubtitle(0)"},
                 {"subtitle add 7 2 Ann \"Good morning\"", "AddSentence(7, 2, Ann, Good morning)"},
                 {"watermark set 1 Ann 13812345678", "Wtmark.SetInfo(1, 1, Ann, 13812345678, )"},
                 {"watermark set 2 Ann \"\" a@b.c", "Wtmark.SetInfo(1, 2, Ann, , a@b.c)"},
                 {"watermark show off", "Wtmark.SetEnabled(0)"},
                 {"reparent second", "SetParent() MoveWindow(0 0 800 450)"},
                 {"reparent none", "SetParent()"},
                 {"edit add chat 1 2 30 40", "Edit.Init(1 2 31 42, )"},
                 {"edit move title 5 6 70 80", "Edit.MoveWindow(5 6 75 86)"},
                 {"edit echo title password", "Edit.SetEchoMode(2)"},
                 {"edit get title", "Edit.GetText(0) Edit.GetText(7)"},
                 {"edit select title 2 -1", "Edit.SetSelection(2, -1)"},
                 {"edit text when x", "! there is no such control 'when'"},
                 {"date add title", "! there is a control 'title' already"},
                 {"date open when 9 8", "Date.Move(9, 8, -1, -1, -1, -1, -1, -1)"},
                 {"date open when 9 8 2150 1 -1 0", "Date.Move(9, 8, 2150, 1, -1, 0, -1, -1)"},
                 {"ext show bob", "Ext.SetPersonInfo(somebody, bob, 0, 0, Bob, 0) Ext.Preview(0)"},
                 {"ext clear", "Ext.SetPersonInfo(nobody, , 0, 0, , 0)"},
                 {"ext net bob send 2", "Ext.UpdateUserNetStatus(bob, 1, 0, 2)"},
                 {"ext volume alice 50", "Ext.SetVolume(alice, 50)"},
                 {"ext close", "Ext.Release()"},
                 {"delete alice", "Ext.SetPersonInfo(nobody, , 0, 0, , 0) DelPerson(alice)"},
                 {"release", "DelPerson(bob) Ext.SetPersonInfo(nobody, , 0, 0, , 0) "
                             "DelPerson(alice) Release(0)"},
                 {"mute carol on", "! there is no participant 'carol'"},
                 {"add alice none", "! there is a participant 'alice' already"},
                 {"add carol y4m:/nonexistent/a", "! cannot read '/nonexistent/a'"},
                 {"add carol video:/tmp", "! cannot read '/tmp'"},
                 {"init", "! there is a screen already"}},
                [this](const std::string& line) {
                    cleanup();
                    init();
                    const QString failure = failureOf([&] { run(line); });
                    const QString calls = takeCalls().join(QLatin1Char(' '));
                    if (!failure.isEmpty() && calls.isEmpty() && m_session->people().size() == 2)
                        throw HostError(failure.toStdString());
                    return calls + failure;
                });
}

void TestHostCommands::withoutAScreenTheModuleIsNotCalled()
{
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
    const auto resizeBoth = [this] {
        (void)takeCalls();
        m_session->onWindowResized(WindowId::Main, {1000, 500});
        m_session->onWindowResized(WindowId::Second, {300, 200});
        return takeCalls();
    };
    QCOMPARE(resizeBoth(), (QStringList{"MoveWindow(0 0 1000 500)", "Ext.Move(0 0 300 200)"}));
    run("reparent second");
    QCOMPARE(resizeBoth(), (QStringList{"MoveWindow(0 0 300 200)", "Ext.Move(0 0 300 200)"}));
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
    QCOMPARE(takeCalls(), (QStringList{"DelPerson(dave)", "DelPerson(bob)",
                                       "Ext.SetPersonInfo(nobody, , 0, 0, , 0)", "DelPerson(alice)",
                                       "Release(0)"}));
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
    run("add carol y4m:" ZRHOST_PUBLIC_HEADER);
    QTRY_VERIFY(m_stage.hasTasks());
    m_stage.runTasks();
    QCOMPARE(m_stage.take().last(), QStringLiteral("FAIL source of carol (y4m:" ZRHOST_PUBLIC_HEADER
                                                   "): not a YUV4MPEG2 stream"));
}

void TestHostCommands::messagesNameTheParticipant()
{
    QVERIFY(fakeNotify());
    run("delete bob");
    m_stage.take();
    fakeNotify()(4, 0x20, 1);
    fakeNotify()(ZRMSG_PERSON_REMOVED, 0x20, 2); // comes after bob has left
    fakeNotify()(ZRMSG_FOCUS_STREAM, reinterpret_cast<uintptr_t>("alice"), 0);
    QCOMPARE(m_stage.take(), (QStringList{"stream request grade=4 for alice",
                                          "message ZRMSG_PERSON_REMOVED person=0x20 hostValue=bob",
                                          "message ZRMSG_FOCUS_STREAM userId=alice focus=old"}));
}

void TestHostCommands::controlsReportAndAreGivenBack()
{
    run("edit get title");
    run("key escape");
    run("type \"Room 5\"");
    const ZRDateRecord record{0, 5, 18, 24, 12, 2150, {}};
    QVERIFY(fakeDateNotify());
    fakeDateNotify()(ZRDATE_CHOSEN, reinterpret_cast<uintptr_t>(&record), 0);
    fakeDateNotify()(ZRDATE_CLEARED, 0, 0);
    QCOMPARE(m_stage.take(), (QStringList{"edit get title = \"会议\"", "key 2", "type Room 5",
                                          "date chosen 2150-12-24 18:05", "date cleared"}));
    (void)takeCalls();
    run("box remove minutes");
    QVERIFY_EXCEPTION_THROWN(run("box text minutes x"), HostError);
    run("release"); // of the screen; the controls stay
    (void)takeCalls();
    m_session.reset();
    QCOMPARE(takeCalls(), (QStringList{"Ext.Release()", "Edit.Release()", "Date.Release()"}));
}

void TestHostCommands::streamsFollowTheMessages()
{
    const auto calls = [](unsigned long message, long long hostValue) {
        (void)takeCalls();
        fakeNotify()(message, 0x20, hostValue);
        return takeCalls().join(QLatin1Char(' '));
    };
    run("add carol synthetic@64x36/100");
    run("add dave synthetic@64x36/100");
    QCOMPARE(calls(ZRMSG_VIDEO_HIDDEN, 3), QString()); // streams are always open
    (void)takeCalls();
    run("streams follow");
    QCOMPARE(takeCalls(), QStringList{"Preview(carol, 0)"});
    (void)takeFakeFrames();
    QTRY_VERIFY(fakeFrameCount() > 3);
    for (const std::string& frame : takeFakeFrames())
        QVERIFY2(frame.rfind("dave ", 0) == 0, frame.c_str());
    QCOMPARE(calls(ZRMSG_VIDEO_SHOWN, 3), QStringLiteral("Preview(carol, 1)"));
    QCOMPARE(calls(ZRMSG_VIDEO_SHOWN, 3), QString()); // one report for each change
    QCOMPARE(calls(ZRMSG_VIDEO_HIDDEN, 4), QStringLiteral("Preview(dave, 0)"));
    // The message that opens him comes from inside the call that adds him.
    run("add erin synthetic@64x36/100");
    QCOMPARE(takeCalls().last(), QStringLiteral("Preview(erin, 1)"));
    run("preview erin off");
    QCOMPARE(takeCalls(), QStringList{"Preview(erin, 0)"});
    QCOMPARE(calls(ZRMSG_VIDEO_SHOWN, 5), QString()); // his camera is off
}

QTEST_GUILESS_MAIN(TestHostCommands)
#include "tst_hostcommands.moc"
