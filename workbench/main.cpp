// The workbench: a program of Qt's that drives the module with switches, and shows what comes of
// it.
#include "host_error.h"
#include "host_platform.h"
#include "logtap.h"
#include "mainwindow.h"
#include "screencapture.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>

namespace {

int runWorkbench(QApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows a meeting with the module ZRScreenMod, and what goes on inside."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("a scenario or a trace"),
                                 QStringLiteral("[FILE]"));
    const QCommandLineOption participants(
        QStringLiteral("participants"),
        QStringLiteral("of the simulated meeting (default: 6, none with a file)"),
        QStringLiteral("N"));
    const QCommandLineOption play(QStringLiteral("play"), QStringLiteral("play the file at once"));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("save a picture of the window just before the end"),
        QStringLiteral("FILE.png"));
    const QCommandLineOption duration(QStringLiteral("duration"),
                                      QStringLiteral("end after so many seconds"),
                                      QStringLiteral("S"));
    const QCommandLineOption library(
        QStringLiteral("library"),
        QStringLiteral("the module (default: beside the program, or where it is installed)"),
        QStringLiteral("FILE"));
    parser.addOptions({participants, play, screenshot, duration, library});
    parser.process(application);

    zrworkbench::LogTap log;
    zrworkbench::MainWindow window(log, parser.value(library));
    window.show();
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty() || parser.isSet(participants))
        window.beginMeeting(parser.isSet(participants) ? parser.value(participants).toInt() : 6);
    if (!files.isEmpty())
        window.openFile(files.first());
    if (parser.isSet(play))
        window.meeting().play(zrworkbench::Meeting::Speed::Real);
    if (parser.isSet(duration))
        QTimer::singleShot(static_cast<int>(parser.value(duration).toDouble() * 1000), &window,
                           [&] {
                               if (parser.isSet(screenshot))
                                   zrworkbench::saveScreen(window, parser.value(screenshot));
                               window.close();
                           });
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    zrhost::useUtf8Text();
    zrhost::rememberStartPriority();
    try {
        QApplication application(argc, argv);
        QApplication::setApplicationName(QStringLiteral("zrworkbench"));
        return runWorkbench(application);
    } catch (const zrhost::HostError& error) {
        std::fprintf(stderr, "zrworkbench: %s\n", error.what());
        return 1;
    }
}
