// The message handler that feeds the log, and what is logged and tidied when the library starts.
#pragma once

#include "logfolder.h"
#include "qmylogthread.h"

#include <QDate>
#include <QString>
#include <QtGlobal>

/// The installed handler: formats the message and gives it to the log thread; writes nothing
/// itself. Fatal messages also go to the handler before it, and wait a moment to be written, since
/// Qt ends the process afterwards. With the environment variable ZRSCREEN_LOG_STDERR set to 1 when
/// the handler is installed, all messages go to the handler before it too. Without a log thread
/// they go there only. Any thread, and from inside itself.
void logMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);

/// Lets Qt's messages go to `logThread`, until removeLogHandler(). GUI thread.
void installLogHandler(QMyLogThread* logThread);

/// Puts the handler back that was there before, and waits until no thread is inside
/// logMessageHandler() any more. A handler that someone else has installed meanwhile stays.
/// @return false when a thread stayed inside for a second; it may still use the log thread.
[[nodiscard]] bool removeLogHandler();

/// As removeLogHandler(), for the end of the process: the messages are dropped from here on. Qt's
/// own handler works with static objects that are about to go while threads still log.
[[nodiscard]] bool dropLogMessages();

/// As dropLogMessages(), where the system has ended all other threads: nobody is waited for, since
/// one that was inside the handler stays there.
void abandonLogMessages();

/// Logs the times of the application's file, the module's and the media engine's.
void printExefileInfo();

/// Deletes the log files that are too old at `today`.
void globalCleanLog(const QString& folder = logFolder(), QDate today = QDate::currentDate());

/// Makes the folder for frame dumps.
void createTmpFrameDir(const QString& folder = logFolder());
