// What takes the place of a picture that nobody sends.
#pragma once

#include <QDialog>
#include <QImage>

/// A crossed-out camera in the middle of black. A child of its parent, shown at once. Clicks go
/// through it. GUI thread.
class QDlgNoVideo : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgNoVideo(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void loadImage();

    QImage m_image;
};
