// What the module has in Qt: the program shares its Qt, but only to count.
#pragma once

#include "figures.h"

#include <QObject>

#include <set>

/// Begins after the application object. GUI thread.
class QtFigures : public QObject
{
public:
    QtFigures();
    ~QtFigures() override;

    /// Widgets, windows, and timers that run.
    Figures figures();

protected:
    /// Learns of who has timers: not everybody is a widget or has a parent.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::set<QObject*> m_timed;
};
