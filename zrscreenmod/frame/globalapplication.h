// An application object with hooks for wheel and key events, for a host that wants them.
#pragma once

#include <QApplication>

/// The module's own entry creates a plain QApplication. GUI thread.
class GlobalApplication : public QApplication
{
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;
    /// Turns a wheel event into notifyWheel, in whole steps of 15 degrees.
    void onWheel(QEvent* event);
    /// Turns a key event into notifyKey. @return true
    bool onKey(QEvent* event);

signals:
    void notifyWheel(int iStep);
    void notifyKey(int iKey);
};
