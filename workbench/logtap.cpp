#include "logtap.h"

#include <atomic>

namespace zrworkbench {

namespace {

std::atomic<LogTap*> g_tap{nullptr};
QtMessageHandler g_previous = nullptr;

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (LogTap* const tap = g_tap)
        emit tap->logged(text);
    if (type != QtDebugMsg && type != QtInfoMsg && g_previous)
        g_previous(type, context, text);
}

void setDefault(const char* name, const char* value)
{
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

} // namespace

LogTap::LogTap(QObject* parent)
    : QObject(parent)
{
    setDefault("ZRSCREEN_STATS", "1");
    qputenv("ZRSCREEN_LOG_STDERR", "1");
    g_tap = this;
    g_previous = qInstallMessageHandler(handleMessage);
}

LogTap::~LogTap()
{
    qInstallMessageHandler(g_previous);
    g_tap = nullptr;
}

} // namespace zrworkbench
