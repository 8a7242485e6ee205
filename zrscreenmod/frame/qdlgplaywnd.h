// A frameless window for one picture.
#pragma once

#include <QDialog>

/// Reports double clicks with the left button. GUI thread.
class QDlgPlayWnd : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgPlayWnd(QWidget* parent = nullptr);

signals:
    void mouseLeftDBClick(QDlgPlayWnd*);

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
};
