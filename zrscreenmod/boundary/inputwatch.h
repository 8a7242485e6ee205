// What the user does with the mouse in the library's windows, for a trace.
#pragma once

#include <QObject>
#include <QPoint>

#include <functional>

/// Hears the clicks and the turns of the wheel in windows that are inside one of a host's, before
/// anybody else does. What floats (the speaker tool, menus) and keys it does not hear. GUI thread.
class InputWatch : public QObject
{
public:
    /// A point of a host's window, in its pixels.
    struct Place
    {
        const void* window;
        QPoint at;
    };
    struct Listener
    {
        std::function<void(const Place&)> clicked; ///< with the left button
        /// In steps of a wheel, away from the user when positive.
        std::function<void(const Place&, int steps)> turned;
    };
    /// Watches as long as it lives.
    explicit InputWatch(Listener listener);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const Listener m_listener;
    int m_iWheelRest = 0; ///< turned by less than a step, in eighths of a degree
};
