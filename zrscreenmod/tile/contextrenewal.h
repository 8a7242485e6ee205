// GL contexts that come back after the driver has taken them away.
#pragma once

#include <QBasicTimer>
#include <QObject>

class QWidget;

/// Of a window at the top level of Qt's widgets: its tiles lose their contexts together, and the
/// window's backing store is painted in one as well. A child of the window. GUI thread.
class ContextRenewal : public QObject
{
    Q_OBJECT

public:
    /// The one of this window, made when it is needed first.
    static ContextRenewal& of(QWidget& window);

    /// A tile cannot paint. The window is made anew in the next turn of the event loop, and while
    /// that does not help, again after a second, and then after twice the time before, up to a
    /// minute. Nothing runs once no tile needs it that is shown.
    void request();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    explicit ContextRenewal(QWidget& window);
    [[nodiscard]] bool isNeeded() const;

    QWidget& m_window; ///< the parent
    QBasicTimer m_timer;
    int m_iWaitMs = 0; ///< between the last attempt and the next one
};
