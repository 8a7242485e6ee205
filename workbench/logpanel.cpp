#include "logpanel.h"

namespace zrworkbench {

LogPanel::LogPanel(QWidget* parent)
    : QPlainTextEdit(parent)
{
    constexpr int kMostLines = 5000;
    setReadOnly(true);
    setLineWrapMode(NoWrap);
    setMaximumBlockCount(kMostLines);
    setObjectName(QStringLiteral("log"));
}

/// The figures have a table of their own.
void LogPanel::take(const QString& line)
{
    if (!line.startsWith(QLatin1String("stats")))
        appendPlainText(line.trimmed());
}

} // namespace zrworkbench
