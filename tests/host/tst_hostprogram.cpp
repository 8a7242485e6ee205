// The built program, started as its users start it: exit status, output, time.
#include "testsystem.h"

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

} // namespace

class TestHostProgram : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void failures();
    void helpListsEverything();
    void aRunInOrder();
    void sameSeedSameRun();
    void typedCommands();
    void requestsEndTheRun();

private:
    void start(QProcess& process, const QStringList& arguments);
    Result run(const QStringList& arguments, const QByteArray& input = {});
    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    void write(const char* name, const QByteArray& bytes)
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    /// A run without a window on the stand-in module.
    QStringList headless(const QStringList& more) const
    {
        return QStringList{"--headless", "--library", ZRHOST_FAKE_LIBRARY} + more;
    }

    QTemporaryDir m_folder;
};

void TestHostProgram::initTestCase()
{
    write("cut.y4m", "YUV4MPEG2 W2 H2 F50:1\nFRAME\nabcdefFRAME\nab");
    write("good.y4m", "YUV4MPEG2 W2 H2 F50:1\nFRAME\nabcdef");
    write("absent.txt", "0 mute alice on\n");
}

void TestHostProgram::start(QProcess& process, const QStringList& arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("FAKESCREEN_PRINT", "1");
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ZRHOST_PROGRAM), arguments);
}

Result TestHostProgram::run(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    start(process, arguments);
    process.write(input);
    process.closeWriteChannel();
    Result result;
    if (!process.waitForFinished(20000)) {
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

void TestHostProgram::failures()
{
    const auto library = [](const QString& file) {
        return QStringList{"--headless", "--library", file};
    };
    const struct
    {
        QStringList arguments;
        int status;
        const char* line; // part of the one line on the error output
    } rows[] = {
        {{"--colour"}, 2, "unknown option '--colour'"},
        {library("/none.so"), 1, "cannot load the library '/none.so'"},
        {library(testsystem::anotherLibrary()), 1,
         "the library does not export ZRScreen_Init, ZRScreen_SetParent, "},
        {headless({"--duration", "10", "--source", "1=y4m:" + path("cut.y4m")}), 1,
         "truncated frame 2: 2 of 6 bytes"},
        {headless({"--scenario", path("absent.txt")}), 1,
         "absent.txt:1: there is no participant 'alice'"},
    };
    for (const auto& row : rows) {
        const Result result = run(row.arguments);
        QVERIFY2(result.errors.contains(row.line), qPrintable(result.errors));
        QCOMPARE(result.errors.count(QLatin1Char('\n')), 1);
        QVERIFY(result.errors.startsWith(QLatin1String("zrhost: ")));
        QCOMPARE(result.status, row.status);
    }
}

void TestHostProgram::helpListsEverything()
{
    const Result result = run({"--help"});
    QCOMPARE(result.status, 0);
    for (const char* text :
         {"--scenario FILE", "--source [N=]SOURCE", "video:FILE", "mute WHO on|off",
          "share pause on|off", "role WHO none|host|admin [IDENTITY]"})
        QVERIFY2(result.output.contains(QLatin1String(text)), text);
}

void TestHostProgram::aRunInOrder()
{
    write("run.txt", "0.1 add alice y4m:" + path("good.y4m").toUtf8()
                         + " 李娜\n+0.3 mute alice on\nwait 0.1\nquit\n");
    const Result result = run(headless({"--mode", "12", "--scenario", path("run.txt")}));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QStringList calls;
    for (const QString& line : result.output.split('\n'))
        if (line.startsWith(QLatin1String("call ")))
            calls << line.mid(5);
    QCOMPARE(calls, (QStringList{"Init()", "MoveWindow(0 0 1280 720)", "ChangeLayout(12, )",
                                 "JoinMeetingFinish(1)", "AddPerson(alice, 李娜, 1000)",
                                 "SetMute(alice, 0)", "Preview(alice, 1)", "SetMute(alice, 1)",
                                 "DelPerson(alice)", "Release(0)"}));
    QVERIFY(result.output.contains("message ZRMSG_VIDEO_SHOWN person=0x10 hostValue=alice"));
    QVERIFY(QRegularExpression("alice: [1-9]\\d* frames delivered, 0 refused")
                .match(result.output)
                .hasMatch());
}

void TestHostProgram::sameSeedSameRun()
{
    // The number of frames differs from run to run; everything else does not.
    const auto calls = [this] {
        return run(headless({"--participants", "3", "--duration", "0.2", "--seed", "5"}))
            .output.split('\n')
            .filter(QStringLiteral("call "));
    };
    const QStringList first = calls();
    QCOMPARE(first.size(), 4 + 3 * 3 + 3 + 1);
    QCOMPARE(calls(), first);
}

void TestHostProgram::typedCommands()
{
    const Result good = run(headless({"--participants", "0", "--interactive"}),
                            "# hello\nadd alice none\nwait 0.2\nmute alice on\nquit");
    QCOMPARE(good.errors, QString());
    QCOMPARE(good.status, 0);
    QVERIFY(good.output.contains("call SetMute(alice, 1)"));

    const Result bad = run(headless({"--participants", "0", "--interactive"}), "dance\n");
    QCOMPARE(bad.errors, QStringLiteral("zrhost: unknown command 'dance'\n"));
    QCOMPARE(bad.status, 1);

    // Input that is no terminal is not read, and its end does not end the run.
    const Result left = run(headless({"--participants", "0", "--duration", "0.3"}), "dance\n");
    QCOMPARE(left.errors, QString());
    QCOMPARE(left.status, 0);
    QVERIFY(left.output.contains("call Release(0)"));
}

void TestHostProgram::requestsEndTheRun()
{
    using testsystem::EndRequest;
    for (const EndRequest request : {EndRequest::Interrupt, EndRequest::Terminate}) {
        QProcess process;
        start(process, headless({"--participants", "2"}));
        QByteArray output;
        QTRY_VERIFY((output += process.readAllStandardOutput()).contains("JoinMeetingFinish"));
        if (!testsystem::askToEnd(process.processId(), request)) {
            process.kill();
            process.waitForFinished();
            QSKIP("a program cannot be asked to end from outside here");
        }
        QVERIFY(process.waitForFinished(10000));
        output += process.readAllStandardOutput();
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QVERIFY2(output.contains("call Release(0)"), output.constData());
    }
}

QTEST_GUILESS_MAIN(TestHostProgram)
#include "tst_hostprogram.moc"
