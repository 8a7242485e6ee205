// The subtitle panel at the right edge of the frame dialog.
#pragma once

#include <QDialog>

class QLabel;

/// The panel's frame: background and title. Hidden until subtitles are opened. GUI thread.
class QDlgSubtitle2 : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgSubtitle2(QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_pTitle = nullptr;
};
