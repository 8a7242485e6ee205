// The column of dots that marks the gallery's current page.
#pragma once

#include <QDialog>
#include <QImage>

/// One dot for each page, the current one blue. Half transparent, 32 x 350 pixels on every screen,
/// hidden until it is shown.
///
/// A child of its parent and not a window of its own, which would lie above the windows of other
/// programs and stay behind when the host's window moves. So that it lies above the tiles, raise
/// it after they have been shown. Clicks go to what lies below. GUI thread.
class QDlgPageMark : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgPageMark(QWidget* parent);

    /// @param current the page of the blue dot, from 0; outside the pages no dot is blue
    /// @param count of the dots; 0 paints nothing
    void setPages(int current, int count);
    /// Dots that fit into the column.
    int capacity() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void loadImages();

    QImage m_imgWhite;
    QImage m_imgBlue;
    int m_iCurrent = 0;
    int m_iCount = 3;
};
