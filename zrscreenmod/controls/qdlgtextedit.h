// The text box that the host places inside its own windows.
#pragma once

#include "handletable.h"

#include <QColor>
#include <QDialog>

class QMyTextEdit;

/// A frameless window that a QMyTextEdit fills. GUI thread.
class QDlgTextEdit : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgTextEdit(const QColor& background);

    QMyTextEdit* textEdit() const { return m_pTextEdit; }

    void reject() override {} // Escape would close it; the window belongs to the host

    PinCount pins; ///< the host's calls that work on it

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QMyTextEdit* m_pTextEdit = nullptr; ///< a child
};
