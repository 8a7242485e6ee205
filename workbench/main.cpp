// The workbench: a program of Qt's that drives the module with switches, and shows what comes of
// it.
#include "host_error.h"
#include "host_platform.h"
#include "logtap.h"
#include "mainwindow.h"
#include "screencapture.h"
#include "text.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>

namespace {

int fail(const std::exception& error)
{
    std::fprintf(stderr, "zrworkbench: %s\n", error.what());
    return 1;
}

/// @param file empty for none @return the program's status
int photograph(const QWidget& window, const QString& file)
{
    if (file.isEmpty())
        return 0;
    try {
        zrworkbench::saveScreen(window, file);
        return 0;
    } catch (const zrhost::HostError& error) {
        return fail(error);
    }
}

/// @throws HostError for another number than 0 to `most`
int numberOf(const QCommandLineParser& parser, const QCommandLineOption& option, int most)
{
    const std::string what = "--" + option.names().first().toStdString();
    return static_cast<int>(
        zrhost::parseInteger(parser.value(option).toStdString(), 0, most, what));
}

int runWorkbench(QApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows a meeting with the module ZRScreenMod, and what goes on inside."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("a scenario or a trace"),
                                 QStringLiteral("[FILE]"));
    const QCommandLineOption participants(QStringLiteral("participants"),
                                          QStringLiteral("of the simulated meeting (default: 6)"),
                                          QStringLiteral("N"), QStringLiteral("6"));
    const QCommandLineOption play(QStringLiteral("play"), QStringLiteral("play the file at once"));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("save a picture of the window just before the end"),
        QStringLiteral("FILE.png"));
    const QCommandLineOption duration(QStringLiteral("duration"),
                                      QStringLiteral("end after so many seconds"),
                                      QStringLiteral("S"), QStringLiteral("0"));
    const QCommandLineOption library(
        QStringLiteral("library"),
        QStringLiteral("the module (default: beside the program, or where it is installed)"),
        QStringLiteral("FILE"));
    parser.addOptions({participants, play, screenshot, duration, library});
    parser.process(application);
    const int people = numberOf(parser, participants, 500);
    const int seconds = numberOf(parser, duration, 86400);
    const bool isBatch = parser.isSet(play) || seconds > 0; // perhaps without a user

    zrworkbench::LogTap log;
    zrworkbench::MainWindow window(log, parser.value(library));
    window.show();
    const QStringList files = parser.positionalArguments();
    window.beginMeeting(files.isEmpty() ? people : 0);
    if (!files.isEmpty() && isBatch)
        window.openFile(files.first());
    else if (!files.isEmpty())
        window.tryFile(files.first());
    if (parser.isSet(play))
        window.meeting().play(zrworkbench::Meeting::Speed::Real);
    int status = 0;
    if (seconds > 0)
        QTimer::singleShot(seconds * 1000, &window, [&] {
            status = photograph(window, parser.value(screenshot));
            window.close();
        });
    const int ended = QApplication::exec();
    return status != 0 ? status : ended;
}

} // namespace

int main(int argc, char** argv)
{
    zrhost::useUtf8Text();
    zrhost::rememberStartPriority();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zrworkbench"));
    try {
        return runWorkbench(application);
    } catch (const zrhost::HostError& error) {
        if (argc == 1) // from a desktop, where nobody sees the error output
            QMessageBox::critical(nullptr, QStringLiteral("zrworkbench"),
                                  QString::fromUtf8(error.what()));
        return fail(error);
    }
}
