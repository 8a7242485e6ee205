#include "controlhandle.h"

#include "platform.h"
#include "qtparent.h"

#include <QDebug>

namespace {

/// The host gets the keys before the control goes.
void returnKeys(QWidget& control)
{
    platform::returnKeyboardFocus(control.winId());
}

} // namespace

HostHandles<QMyLineEdit> g_lineEdits({logNoControl,
                                      [](QMyLineEdit& edit) {
                                          edit.silence();
                                          returnKeys(edit);
                                      },
                                      [](QMyLineEdit& edit) { edit.hide(); }});
HostHandles<QDlgTextEdit> g_textEdits({logNoControl, [](QDlgTextEdit& edit) { returnKeys(edit); },
                                       [](QDlgTextEdit& edit) { edit.hide(); }});

bool putInto(HWND hParent, QWidget& control, const QPoint& at)
{
    if (platform::setParentWindow(platform::livingWindow(control), platform::toNative(hParent), at))
        return true;
    qDebug() << "SetParent failed, hParent:" << hParent;
    return false;
}

void logNoControl(const void* handle)
{
    if (handle)
        qDebug() << "live control of this kind failed, handle:" << handle;
}
