// The single-line input that the host places inside its own windows.
#pragma once

#include "handletable.h"

#include <QLineEdit>

/// A frameless line edit in a native window of its own. It reports the left mouse button and the
/// Tab key to the hosts, with its own address as wParam. GUI thread.
class QMyLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    QMyLineEdit();

    /// Lets only what can become a match of the pattern (of `QRegExp`, case-sensitive) be typed; an
    /// empty one lets everything. @return false for a pattern that is not valid or too costly; the
    /// one before stays.
    bool setInputPattern(const QString& pattern);
    /// As QWidget::setFocus, and has the system send the keys here.
    void takeFocus();
    /// The host has released it: it reports nothing any more.
    void silence() { m_bSilent = true; }

    PinCount pins; ///< the host's calls that work on it

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void notifyHosts(unsigned long dwMsg) const;
    bool pressTab(QEvent* event);
    void press(const QMouseEvent& event);
    void dimPlaceholder();
    void dropHalfCharacters(const QString& text);

    bool m_bSilent = false;
    bool m_bTakenBack = false; ///< the host has asked for the focus during the message of a Tab
};
