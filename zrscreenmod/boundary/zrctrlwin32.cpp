// The exports of the embedded text controls. Each checks and converts its arguments, logs, and
// delegates to the GUI thread.
#include "boundary.h"
#include "controlhandle.h"
#include "platform.h"
#include "qmytextedit.h"
#include "qtparent.h"

#include <QByteArray>
#include <QColor>

#include <memory>
#include <utility>

using boundary::guarded;
using boundary::readRect;
using boundary::readUtf8;

namespace {

/// Runs `body(edit)` on the GUI thread for a live line edit.
template<typename Body>
void onLineEdit(const void* h, Body body) noexcept
{
    boundary::onControl(g_lineEdits, h, std::move(body));
}

/// As onLineEdit, with a text of the host's: `body(edit, text)`.
template<typename Body>
void onLineEditWithText(void* h, const char* text, Body body) noexcept
{
    guarded(false, [&] {
        if (const auto string = readUtf8(text))
            onLineEdit(h, [string = *string, body](QMyLineEdit& edit) { body(edit, string); });
        return true;
    });
}

/// Puts the window of a new control into the host's, places and shows it. @return false when the
/// system refuses.
bool embed(QWidget& widget, HWND parent, const QRect& rect)
{
    if (parent && !putInto(parent, widget, rect.topLeft()))
        return false;
    platform::placeWindow(widget.winId(), rect);
    widget.show();
    return true;
}

/// Builds a control on the GUI thread with `make()` and embeds it. @return its handle
template<typename T, typename Make>
void* createControl(HostHandles<T>& handles, HWND parent, const QRect& rect, Make make)
{
    return boundary::buildHandle([&]() -> void* {
        auto control = make();
        if (!embed(*control, parent, rect))
            return nullptr;
        handles.insert(control.get());
        return control.release();
    });
}

/// Qt's own books on a widget, and what needs a paint engine of the widget's own. Written to from
/// outside, they make it use memory that is not there.
bool isBookkeeping(int attribute)
{
    switch (attribute) {
    case Qt::WA_PaintOnScreen:
    case Qt::WA_Mapped:
    case Qt::WA_ForceDisabled:
    case Qt::WA_ForceUpdatesDisabled:
    case Qt::WA_PendingMoveEvent:
    case Qt::WA_PendingResizeEvent:
    case Qt::WA_PendingUpdate:
    case Qt::WA_Moved:
    case Qt::WA_Resized:
    case Qt::WA_SetPalette:
    case Qt::WA_SetFont:
    case Qt::WA_SetCursor:
    case Qt::WA_SetStyle:
    case Qt::WA_SetLayoutDirection:
    case Qt::WA_SetLocale:
    case Qt::WA_SetWindowModality:
    case Qt::WA_SetWindowIcon:
    case Qt::WA_StyleSheet:
    case Qt::WA_StyleSheetTarget:
    case Qt::WA_DeleteOnClose: // the registry destroys
    case Qt::WA_NativeWindow:
    case Qt::WA_DontCreateNativeAncestors:
    case Qt::WA_DropSiteRegistered:
    case Qt::WA_WState_Visible:
    case Qt::WA_WState_Hidden:
    case Qt::WA_WState_Created:
    case Qt::WA_WState_CompressKeys:
    case Qt::WA_WState_InPaintEvent:
    case Qt::WA_WState_Reparented:
    case Qt::WA_WState_ConfigPending:
    case Qt::WA_WState_Polished:
    case Qt::WA_WState_OwnSizePolicy:
    case Qt::WA_WState_ExplicitShowHide:
        return true;
    default:
        return false;
    }
}

} // namespace

// --- Line edit --------------------------------------------------------------------------------

void* ZR_CALL ZRCtrl_QLineEdit_Init(HWND parent, tagRECT* rc, const char* placeholder)
{
    ZR_ENTER(ZRCtrl_QLineEdit_Init, (parent, rc, placeholder));
    ZR_LOG_THREAD("current thread:");
    return guarded<void*>(nullptr, [&]() -> void* {
        const auto rect = readRect(rc);
        const auto text = readUtf8(placeholder);
        if (!rect || !text)
            return nullptr;
        const auto make = [&text] {
            auto edit = std::make_unique<QMyLineEdit>();
            edit->setPlaceholderText(*text);
            return edit;
        };
        return createControl(g_lineEdits, parent, *rect, make);
    });
}

void ZR_CALL ZRCtrl_QLineEdit_Release(void* h)
{
    ZR_ENTER(ZRCtrl_QLineEdit_Release, (h));
    ZR_LOG_THREAD("current thread:");
    boundary::releaseHandle(g_lineEdits, h);
}

void ZR_CALL ZRCtrl_QLineEdit_SetParent(void* h, HWND parent)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetParent, (h, parent));
    ZR_LOG_THREAD("current thread:");
    onLineEdit(h, [parent](QMyLineEdit& edit) {
        putInto(parent, edit, platform::rectInParent(edit).topLeft());
    });
}

void ZR_CALL ZRCtrl_QLineEdit_SetStyleSheet(void* h, const char* styleSheet)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetStyleSheet, (h, styleSheet));
    ZR_LOG_THREAD("current thread:");
    onLineEditWithText(h, styleSheet,
                       [](QMyLineEdit& edit, const QString& text) { edit.setStyleSheet(text); });
}

int ZR_CALL ZRCtrl_QLineEdit_GetText(void* h, char* buf, int& len)
{
    constexpr int kInvalid = -1;
    ZR_ENTER(ZRCtrl_QLineEdit_GetText, (h, buf, &len));
    ZR_LOG_THREAD("current thread:");
    return guarded(kInvalid, [&] {
        if (!h)
            return kInvalid;
        if (!platform::isReadable(&len, sizeof len)) {
            qDebug() << "unreadable length refused";
            return kInvalid;
        }
        struct Answer
        {
            bool bAnswered = false;
            QByteArray text;
        };
        const auto read = [](const QMyLineEdit& edit) {
            return Answer{true, edit.text().toUtf8()};
        };
        const Answer answer = boundary::ask(g_lineEdits, h, Answer(), read);
        if (!answer.bAnswered)
            return kInvalid;
        const int size = answer.text.size();
        const auto needed = static_cast<std::size_t>(size) + 1;
        const bool copied =
            size < len && platform::copyToHost(buf, answer.text.constData(), needed);
        const int written = copied ? size : 0;
        if (!platform::copyToHost(&len, &written, sizeof len)) {
            qDebug() << "read-only length refused";
            return kInvalid;
        }
        return size;
    });
}

void ZR_CALL ZRCtrl_QLineEdit_SetText(void* h, const char* text)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetText, (h, text));
    ZR_LOG_THREAD("current thread:");
    onLineEditWithText(h, text,
                       [](QMyLineEdit& edit, const QString& string) { edit.setText(string); });
}

void ZR_CALL ZRCtrl_QLineEdit_SetPlaceholderText(void* h, const char* text)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetPlaceholderText, (h, text));
    ZR_LOG_THREAD("current thread:");
    onLineEditWithText(
        h, text, [](QMyLineEdit& edit, const QString& string) { edit.setPlaceholderText(string); });
}

void ZR_CALL ZRCtrl_QLineEdit_MoveWindow(void* h, tagRECT* rc)
{
    ZR_ENTER(ZRCtrl_QLineEdit_MoveWindow, (h, rc));
    ZR_LOG_THREAD("current thread:");
    if (const auto rect = readRect(rc))
        onLineEdit(
            h, [rect = *rect](QMyLineEdit& edit) { platform::placeWindow(edit.winId(), rect); });
}

void ZR_CALL ZRCtrl_QLineEdit_Show(void* h, int bShow)
{
    ZR_ENTER(ZRCtrl_QLineEdit_Show, (h, bShow));
    ZR_LOG_THREAD("current thread:");
    onLineEdit(h, [bShow](QMyLineEdit& edit) {
        if (bShow == 0)
            platform::returnKeyboardFocus(edit.winId());
        if (bShow != 0 && platform::isOrphaned(edit.winId()))
            qDebug() << "show refused: the parent window is gone";
        else
            edit.setVisible(bShow != 0);
    });
}

void ZR_CALL ZRCtrl_QLineEdit_SetAttribute(void* h, int attr, bool on)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetAttribute, (h, attr, on));
    ZR_LOG_THREAD("current thread:");
    if (attr < 0 || attr >= Qt::WA_AttributeCount || isBookkeeping(attr)) {
        qDebug() << "attribute refused:" << attr;
        return;
    }
    onLineEdit(h, [attr, on](QMyLineEdit& edit) {
        edit.setAttribute(static_cast<Qt::WidgetAttribute>(attr), on);
    });
}

void ZR_CALL ZRCtrl_QLineEdit_SetInputRexp(void* h, const char* pattern)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetInputRexp, (h, pattern));
    ZR_LOG_THREAD("current thread:");
    onLineEditWithText(h, pattern, [](QMyLineEdit& edit, const QString& text) {
        (void)edit.setInputPattern(text); // logs what it refuses
    });
}

void ZR_CALL ZRCtrl_QLineEdit_SetObjectName(void* h, const char* name)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetObjectName, (h, name));
    ZR_LOG_THREAD("current thread:");
    onLineEditWithText(h, name,
                       [](QMyLineEdit& edit, const QString& text) { edit.setObjectName(text); });
}

void ZR_CALL ZRCtrl_QLineEdit_SetEchoMode(void* h, int mode)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetEchoMode, (h, mode));
    ZR_LOG_THREAD("current thread:");
    if (mode < QLineEdit::Normal || mode > QLineEdit::PasswordEchoOnEdit) {
        qDebug() << "echo mode refused:" << mode;
        return;
    }
    onLineEdit(
        h, [mode](QMyLineEdit& edit) { edit.setEchoMode(static_cast<QLineEdit::EchoMode>(mode)); });
}

void ZR_CALL ZRCtrl_QLineEdit_SetMaxLength(void* h, int length)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetMaxLength, (h, length));
    ZR_LOG_THREAD("current thread:");
    if (length < 0) {
        qDebug() << "maximal length refused:" << length;
        return;
    }
    onLineEdit(h, [length](QMyLineEdit& edit) { edit.setMaxLength(length); });
}

void ZR_CALL ZRCtrl_QLineEdit_SetFocus(void* h)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetFocus, (h));
    ZR_LOG_THREAD("current thread:");
    onLineEdit(h, [](QMyLineEdit& edit) { edit.takeFocus(); });
}

void ZR_CALL ZRCtrl_QLineEdit_SetCursorPos(void* h, int pos)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetCursorPos, (h, pos));
    ZR_LOG_THREAD("current thread:");
    onLineEdit(h, [pos](QMyLineEdit& edit) {
        edit.setCursorPosition(qBound(0, pos, edit.text().size()));
    });
}

void ZR_CALL ZRCtrl_QLineEdit_SetSelection(void* h, int start, int length)
{
    ZR_ENTER(ZRCtrl_QLineEdit_SetSelection, (h, start, length));
    ZR_LOG_THREAD("current thread:");
    onLineEdit(h, [start, length](QMyLineEdit& edit) {
        const int size = edit.text().size();
        if (start < 0 || start > size) {
            qDebug() << "selection refused, start:" << start << ",length:" << length;
            return;
        }
        edit.setSelection(start, qBound(-start, length, size - start));
    });
}

// --- Text box ---------------------------------------------------------------------------------

void* ZR_CALL ZRCtrl_QTextEdit_Init(HWND parent, tagRECT* rc, unsigned char r, unsigned char g,
                                    unsigned char b)
{
    ZR_ENTER(ZRCtrl_QTextEdit_Init, (parent, rc, r, g, b));
    ZR_LOG_THREAD("current thread:");
    return guarded<void*>(nullptr, [&]() -> void* {
        const auto rect = readRect(rc);
        if (!rect)
            return nullptr;
        return createControl(g_textEdits, parent, *rect,
                             [=] { return std::make_unique<QDlgTextEdit>(QColor(r, g, b)); });
    });
}

void ZR_CALL ZRCtrl_QTextEdit_Release(void* h)
{
    ZR_ENTER(ZRCtrl_QTextEdit_Release, (h));
    ZR_LOG_THREAD("current thread:");
    boundary::releaseHandle(g_textEdits, h);
}

void ZR_CALL ZRCtrl_QTextEdit_SetText(void* h, const char* text)
{
    ZR_ENTER(ZRCtrl_QTextEdit_SetText, (h, text));
    ZR_LOG_THREAD("current thread:");
    guarded(false, [&] {
        if (const auto string = readUtf8(text)) {
            boundary::onControl(g_textEdits, h, [string = *string](QDlgTextEdit& box) {
                box.textEdit()->setText(string);
            });
        }
        return true;
    });
}
