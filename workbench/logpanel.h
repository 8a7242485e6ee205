// The newest lines of the module's log.
#pragma once

#include <QPlainTextEdit>

namespace zrworkbench {

class LogPanel : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit LogPanel(QWidget* parent = nullptr);

    void take(const QString& line);
};

} // namespace zrworkbench
