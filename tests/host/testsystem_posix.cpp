#include "testsystem.h"

#include <QFile>

#include <csignal>
#include <sys/stat.h>

namespace testsystem {

SilentPipe::SilentPipe()
    : m_name(m_folder.filePath(QStringLiteral("pipe")).toStdString())
{
    if (mkfifo(m_name.c_str(), 0600) != 0)
        m_name.clear();
}

SilentPipe::~SilentPipe() = default;

bool isRunning(qint64 processId)
{
    return QFile::exists(QStringLiteral("/proc/%1").arg(processId));
}

QString anotherLibrary()
{
    return QStringLiteral("/lib/x86_64-linux-gnu/libc.so.6");
}

bool askToEnd(qint64 processId, EndRequest request)
{
    return kill(static_cast<pid_t>(processId), request == EndRequest::Interrupt ? SIGINT : SIGTERM)
           == 0;
}

} // namespace testsystem
