// The lines of the module's log as they are written.
#pragma once

#include <QObject>
#include <QString>

namespace zrworkbench {

/// The module passes its lines on to the message handler that was there before its own, which is
/// this one. Make one at most, before the module is loaded; it goes after the module. Asks the
/// module for statistics too, unless the environment does.
class LogTap : public QObject
{
    Q_OBJECT

public:
    explicit LogTap(QObject* parent = nullptr);
    ~LogTap() override;

signals:
    /// On the thread that logs.
    void logged(const QString& line);
};

} // namespace zrworkbench
