// The stage as the tests of the platform use it: with Qt's types, and a dialog to put into it.
#pragma once

#include "hostwindow.h"
#include "platform.h"

#include <QDialog>
#include <QGuiApplication>
#include <QResizeEvent>
#include <QtTest>

using platform::NativeWindow;

/// The place of a window in its parent.
inline QRect placeOf(NativeWindow window)
{
    const Box box = nativehost::geometryOf(window);
    return {box.x, box.y, box.w, box.h};
}

/// A window of the host's that goes when the test is done, after what the test has put into it.
class QuietHostWindow : public HostWindow
{
public:
    using HostWindow::HostWindow;
    // What Qt has asked of the system until now comes before what others ask.
    ~QuietHostWindow() { QGuiApplication::sync(); }
};

class Dialog : public QDialog
{
public:
    Dialog()
        : QDialog(nullptr, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
    {
        setGeometry(0, 0, 200, 200);
    }
    [[nodiscard]] NativeWindow id() { return winId(); }
    /// @return false when the window does not become the dialog's parent, or the dialog visible
    [[nodiscard]] bool showIn(NativeWindow window)
    {
        const bool ok = platform::setParentWindow(winId(), window);
        show();
        return ok && QTest::qWaitForWindowExposed(this);
    }
    QVector<QSize> resizes;

protected:
    void resizeEvent(QResizeEvent* event) override { resizes.append(event->size()); }
};
