#include "qmylineedit.h"

#include "editmenu.h"
#include "hostcall.h"
#include "platform.h"
#include "qzrscreenconfig.h"
#include "textlimits.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDebug>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QRegExp>
#include <QRegExpValidator>

QMyLineEdit::QMyLineEdit()
    : QLineEdit(nullptr)
{
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    connect(this, &QLineEdit::textChanged, this, &QMyLineEdit::dropHalfCharacters);
    // Qt applies the rules of a style sheet for a name only when the sheet is set.
    connect(this, &QObject::objectNameChanged, this, [this] { setStyleSheet(styleSheet()); });
}

bool QMyLineEdit::setInputPattern(const QString& pattern)
{
    if (!zr::isAffordablePattern(pattern)) {
        qDebug() << "zr::isAffordablePattern failed, length:" << pattern.size();
        return false;
    }
    const QRegExp expression(pattern, Qt::CaseSensitive, QRegExp::RegExp);
    if (!expression.isValid()) {
        qDebug() << "QRegExp failed:" << expression.errorString() << ",pattern:" << pattern;
        return false;
    }
    const QValidator* const before = validator();
    setValidator(pattern.isEmpty() ? nullptr : new QRegExpValidator(expression, this));
    delete before;
    return true;
}

void QMyLineEdit::dropHalfCharacters(const QString& text)
{
    const QString whole = zr::withoutHalfCharacters(text);
    if (whole.size() == text.size())
        return;
    const int cursor = zr::withoutHalfCharacters(text.left(cursorPosition())).size();
    setText(whole);
    setCursorPosition(cursor);
}

void QMyLineEdit::takeFocus()
{
    m_bTakenBack = true;
    setFocus();
    platform::takeKeyboardFocus(winId());
}

void QMyLineEdit::notifyHosts(unsigned long dwMsg) const
{
    QZRScreenConfig::getInstance()->broadcast(dwMsg, reinterpret_cast<quintptr>(this), 0,
                                              [this] { return !m_bSilent; });
}

bool QMyLineEdit::event(QEvent* event)
{
    // X11 sends the keys of a window that has the keyboard to the window inside of it that is under
    // the mouse: what the user types for the host would end up here.
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && !hasFocus()) {
        if (!platform::hasKeyboardFocus(winId())) {
            event->ignore();
            return true;
        }
        setFocus(); // Qt has not noticed yet
    }
    // Not in keyPressEvent: Tab does not get there while there is another widget to go to.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab) {
        return pressTab(event);
    }
    return QLineEdit::event(event);
}

bool QMyLineEdit::pressTab(QEvent* event)
{
    const HostCall call;
    qDebug() << "QMyLineEdit Tab Press";
    m_bTakenBack = false;
    notifyHosts(ZRMSG_EDIT_KEY);
    const bool handled = QLineEdit::event(event);
    // There is nothing else in this window. A host that has not chosen who is next gets the keys.
    // Qt would go on for a while as if it had them.
    if (!m_bTakenBack && platform::returnKeyboardFocus(winId()))
        clearFocus();
    return handled;
}

void QMyLineEdit::press(const QMouseEvent& event)
{
    // First of all, so that a host that directs the keyboard elsewhere has the last word.
    platform::takeKeyboardFocus(winId());
    if (event.button() == Qt::LeftButton) {
        qDebug() << "QMyLineEidt LBtnDown";
        notifyHosts(ZRMSG_EDIT_LBUTTON_DOWN);
    }
}

void QMyLineEdit::mousePressEvent(QMouseEvent* event)
{
    const HostCall call;
    press(*event);
    QLineEdit::mousePressEvent(event);
}

void QMyLineEdit::mouseDoubleClickEvent(QMouseEvent* event)
{
    const HostCall call;
    press(*event); // the second press of a double click is one too
    QLineEdit::mouseDoubleClickEvent(event);
}

void QMyLineEdit::mouseReleaseEvent(QMouseEvent* event)
{
    const HostCall call;
    if (event->button() == Qt::LeftButton) {
        qDebug() << "QMyLineEidt LBtnUp";
        notifyHosts(ZRMSG_EDIT_LBUTTON_UP);
    }
    QLineEdit::mouseReleaseEvent(event);
}

void QMyLineEdit::contextMenuEvent(QContextMenuEvent* event)
{
    if (QMenu* menu = createStandardContextMenu())
        openEditMenu(menu, event->globalPos());
}

void QMyLineEdit::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange)
        dimPlaceholder();
}

/// A style sheet gives the placeholder the colour of the text, as if it had been typed.
void QMyLineEdit::dimPlaceholder()
{
    QPalette colors = palette();
    QColor dim = colors.color(QPalette::Text);
    dim.setAlpha(110);
    if (colors.color(QPalette::PlaceholderText) == dim)
        return;
    colors.setColor(QPalette::PlaceholderText, dim);
    setPalette(colors);
}

void QMyLineEdit::closeEvent(QCloseEvent* event)
{
    event->ignore(); // the window belongs to the host
}
