// The built program with the module, started as its users start it: exit status, output, time.
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Result
{
    int status = -1; ///< -1: did not end in time, or crashed
    QString output;
    QString errors;
};

Result run(const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(QStringLiteral(ZRHOST_PROGRAM), arguments);
    process.write(input);
    process.closeWriteChannel();
    Result result;
    if (!process.waitForFinished(30000)) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        result.status = process.exitCode();
    }
    const auto text = [](QByteArray bytes) {
        return QString::fromUtf8(bytes.replace("\r\n", "\n")); // the line ends of Windows
    };
    result.output = text(process.readAllStandardOutput());
    result.errors = text(process.readAllStandardError());
    return result;
}

} // namespace

class TestHostProgram : public QObject
{
    Q_OBJECT

private slots:
    // Without one, Qt complains before the module takes its messages.
    void initTestCase() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path())); }

    void failures()
    {
        const QString cut = write("cut.y4m", "YUV4MPEG2 W2 H2 F50:1\nFRAME\nabcdefFRAME\nab");
        const QString absent = write("absent.txt", "0 mute alice on\n");
        // Arguments, input, exit status, part of the one line on the error output.
        const std::tuple<QStringList, QByteArray, int, const char*> rows[] = {
            {{"--colour"}, {}, 2, "unknown option '--colour'"},
            {{"--headless", "--library", "/none.so"}, {}, 1, "cannot load the library '/none.so'"},
            {{"--headless", "--source", "1=y4m:" + cut}, {}, 1, "truncated frame 2: 2 of 6 bytes"},
            {{"--headless", "--scenario", absent}, {}, 1, "there is no participant 'alice'"},
            {{"--headless", "--interactive"}, "dance\n", 1, "unknown command 'dance'"},
        };
        for (const auto& [arguments, input, status, line] : rows) {
            const Result result = run(arguments, input);
            QVERIFY2(result.errors.contains(line), qPrintable(result.errors));
            QCOMPARE(result.errors.count(QLatin1Char('\n')), 1);
            QVERIFY(result.errors.startsWith(QLatin1String("zrhost: ")));
            QCOMPARE(result.status, status);
        }
    }

    /// Each kind of argument that a call can have reaches the module as what it is.
    void aRun()
    {
        const QString video = write("good.y4m", "YUV4MPEG2 W2 H2 F50:1\nFRAME\nabcdef");
        const QString scenario = write("run.txt", "0.1 add carol y4m:" + video.toUtf8() + R"( 李娜
        +1 call ZRScreen_GetCurMode
        mute carol on
        call ZRScreen_IsPersonVisible carol
        call ZRScreen_SetPersonInfo 李娜 off 2 "Carol 李" 5
        call ZRScreen_PlayFrame 3 33x17
        call ZRScreen_MoveWindow 0,0,640x360
        call ZRScreen_ChangeLayout 1 0=carol,1=user1
        call ZRScreen_GetShareWgtPos
        call ZRScreen_AddSentence 7 2 Ann "Good morning"
        call ZRScreenWtmark_SetInfo 1,Ann,13812345678,
        call title=ZRCtrl_QLineEdit_Init none 10,20,200x30 Room
        call ZRCtrl_QLineEdit_SetText title "会议 5"
        call ZRCtrl_QLineEdit_GetText title
        call when=ZRScreenDate_Init none
        call ZRScreenDate_Move when 500,20 2150 12 24 18 30 -1
        meeting 1 none
        self user4 on
        role user4 administrator
        network user4 1
        volume user4 70
        hand user4 on
        speaking user4
        pin user4 all
        polling on 3
        subtitles on
        say user4 "Good morning"
        watermark on Ann 13812345678
        call erin=ZRScreen_AddPerson erin Erin 9 0 77
        call ZRScreen_DelPerson erin
        +1.6 stats
        mode 14
        +0.3 quit)");
        const QString trace = m_folder.filePath(QStringLiteral("trace"));
        QFile file(trace);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("of a crash") > 0);
        file.close();
        qputenv("ZRSCREEN_TRACE", QFile::encodeName(trace));
        qputenv("ZRSCREEN_STATS", "1");
        qputenv("ZRSCREEN_LOG_DIR", QFile::encodeName(m_folder.path()));
        const Result result = run({"--headless", "--follow-streams", "--mode", "12", "--names",
                                   "Ann,Bob", "--scenario", scenario});
        for (const char* const name : {"ZRSCREEN_TRACE", "ZRSCREEN_STATS", "ZRSCREEN_LOG_DIR"})
            qunsetenv(name);
        QCOMPARE(result.errors, QString());
        QCOMPARE(result.status, 0);
        for (const char* const line :
             {"ZRScreen_GetCurMode = 12", "ZRScreen_IsPersonVisible = 1",
              "ZRScreen_SetPersonInfo = 1", "ZRScreen_PlayFrame = 1", "ZRScreen_MoveWindow = 1",
              "ZRScreen_ChangeLayout = 1", "ZRScreen_GetShareWgtPos = 0 0 -1 -1",
              "ZRScreen_AddSentence = 1", "ZRCtrl_QLineEdit_GetText = 8 \"会议 5\"",
              "ZRScreen_DelPerson = 1", "message ZRMSG_SCREEN_MODE mode=14"})
            QVERIFY2(result.output.contains(QString::fromUtf8(line) + '\n'), line);
        constexpr const char* kFigures =
            "carol: [\\d.]+ frames/s, [\\d.]+ coalesced, [\\d.]+ painted, refused 0, "
            "\\d+x\\d+, grade [234], stream open, opened [12], shown 1, hidden 0 times\n";
        for (const char* const line :
             {"message ZRMSG_VIDEO_SHOWN person=0x[0-9a-f]+ hostValue=carol\n",
              "message ZRMSG_PERSON_INFO_UPDATED play=0x[0-9a-f]+ hostValue=77\n",
              "\\d compositions/s, longest paint \\d+\\.\\d ms, longest stall \\d+ ms\n", kFigures,
              "carol: [1-9]\\d* frames delivered, 0 refused\n"})
            QVERIFY2(QRegularExpression(line).match(result.output).hasMatch(),
                     qPrintable(result.output));

        // What the commands come to.
        QFile calls(trace);
        QVERIFY(calls.open(QIODevice::ReadOnly));
        const QByteArray traced = calls.readAll();
        calls.close();
        for (const char* const call :
             {"SetPersonInfo s1 p4 on 2 \"Participant 4\" 0", "UpdateUserNetStatus s1 user4 1 on 1",
              "SetVolume s1 p4 70", "SetPersonHandUp s1 p4 on", "SetActivateUser s1 user4",
              "SetCurrentSpeakingPerson s1 user4", "LockLook s1 p4 off", "AllLook s1 p4 on",
              "SetOpenPollingPage s1 on 3", "OpenSubtitle s1 on",
              "AddSentence s1 1 0 \"Participant 4\" \"Good morning\"",
              "ZRScreenWtmark_SetInfo 1,Ann,13812345678,,on"})
            QVERIFY2(traced.contains(call), call);

        // The trace makes the same calls, and the same messages come; but for grades, which depend
        // on when a thread's frame comes between two arrangements.
        const QStringList replay{"--headless", "--linger", "0", "--check-messages", "--scenario"};
        const Result replayed = run(replay + QStringList(trace));
        const QRegularExpression differs(
            QStringLiteral("\n(missing|not expected) \\d+ x (?!GRADE_)"));
        QVERIFY2(
            replayed.errors.isEmpty() && replayed.output.contains("\nmessage ZRMSG_SCREEN_MODE")
                && !differs.match(replayed.output).hasMatch(),
            qPrintable(replayed.output.mid(replayed.output.indexOf(differs)) + replayed.errors));
        QVERIFY(QFileInfo(trace + ".before").size() > 0);
        QVERIFY(file.open(QIODevice::Append) && file.write("expect s1 ZRMSG_TILE_CLICK 0 0\n") > 0);
        file.close();
        const Result differing =
            run(replay + QStringList{trace, "--until", "3000", "--speed=fast"});
        QVERIFY2(differing.output.contains("missing 1 x ZRMSG_TILE_CLICK 0 0\n"),
                 qPrintable(differing.output));
        QCOMPARE(differing.status, 1);
    }

    /// A trace that cannot be written ends, and nothing else.
    void traceFails()
    {
        const QString folder = m_folder.path();
        for (const QString& file : {folder, QStringLiteral("/dev/full")}) {
            if (file != folder && !QFile::exists(file))
                continue; // on Windows no disk is full
            qputenv("ZRSCREEN_TRACE", QFile::encodeName(file));
            qputenv("ZRSCREEN_LOG_STDERR", "1");
            const Result result = run({"--headless", "--duration", "0.3"});
            qunsetenv("ZRSCREEN_TRACE");
            qunsetenv("ZRSCREEN_LOG_STDERR");
            QCOMPARE(result.errors.count(QStringLiteral("the trace ends")), 1);
            QCOMPARE(result.status, 0);
            QVERIFY(result.output.contains("ZRMSG_VIDEO_SHOWN"));
        }
    }

    void requestsEndTheRun()
    {
        const Result typed = run({"--headless", "--interactive"}, "wait 0.2\nquit");
        QCOMPARE(typed.errors, QString());
        QCOMPARE(typed.status, 0);

        // The system's, with a pipe that nobody writes to.
        const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
        if (QProcess::execute(QStringLiteral("mkfifo"), {pipe}) != 0)
            QSKIP("there are no named files for pipes here");
        QProcess process;
        process.start(QStringLiteral(ZRHOST_PROGRAM), {"--headless", "--source", "1=y4m:" + pipe});
        QByteArray output;
        QTRY_VERIFY((output += process.readAllStandardOutput()).contains("ZRMSG_VIDEO_SHOWN"));
        process.terminate();
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        output += process.readAllStandardOutput();
        QVERIFY2(output.contains("frames delivered"), output.constData());
    }

    /// The X server goes away.
    void theDisplayGoes()
    {
        QProcess server;
        server.start(QStringLiteral("Xvfb"), {"-displayfd", "1", "-nolisten", "tcp"});
        if (!server.waitForStarted())
            QSKIP("there is no X server here");
        QByteArray number;
        QTRY_VERIFY((number += server.readAllStandardOutput()).endsWith('\n'));
        const QString logs = m_folder.filePath(QStringLiteral("logs"));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", ":" + number.trimmed());
        environment.insert("LIBGL_ALWAYS_SOFTWARE", "1");
        environment.insert("ZRSCREEN_LOG_DIR", logs);
        QProcess host;
        host.setProcessEnvironment(environment);
        host.start(QStringLiteral(ZRHOST_PROGRAM), QStringList());
        QByteArray output;
        QTRY_VERIFY_WITH_TIMEOUT(
            (output += host.readAllStandardOutput()).contains("ZRMSG_VIDEO_SHOWN"), 20000);
        server.kill();
        QVERIFY(host.waitForFinished(10000) && server.waitForFinished());
        QCOMPARE(host.exitStatus(), QProcess::NormalExit);
        QCOMPARE(host.exitCode(), 1);
        QFile log(logs + '/' + QDir(logs).entryList(QDir::Files).value(0));
        QVERIFY(log.open(QIODevice::ReadOnly) && log.readAll().contains("dwMsg: 21"));
    }

private:
    QString write(const char* name, const QByteArray& bytes) const
    {
        QFile file(m_folder.filePath(QLatin1String(name)));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
                   ? file.fileName()
                   : QString();
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestHostProgram)
#include "tst_hostprogram.moc"
