// Paints the watermark over a shared screen.
#pragma once

#include "watermarktext.h"

#include <QPixmap>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QVector>

class QFont;
class QPainter;

/// Repeats a slanted text over a tile. The text is drawn once, in upright slices that are as high
/// as its slope makes them, and then only copied: painting costs the pixels around the texts, not
/// glyphs. The slices are drawn anew when the text or the scale of the device changes; of a text
/// that is longer than the tile, only what can be seen is drawn, so that a cache takes some hundred
/// kilobytes, whatever the text and the tile are. GUI thread.
class WatermarkCache
{
public:
    /// Paints `text` over a tile of that size at the painter's origin, where the painter's clip is.
    void paint(QPainter& painter, const QSize& tile, const QString& text);
    /// How often the text was drawn. For tests.
    int drawings() const { return m_iDrawings; }
    /// The memory of the slices.
    qint64 bytes() const;

private:
    struct Slice
    {
        QPoint offset; ///< from the beginning of the text's baseline
        QPixmap pixmap;
    };
    void draw(const QFont& font, qreal devicePixelRatio);

    QString m_text;
    int m_iFontPx = 0;
    qreal m_devicePixelRatio = 0;
    zr::WatermarkMetrics m_metrics; ///< of the whole text
    int m_iAscentPx = 0;
    int m_iDrawnPx = -1; ///< length of the text that is drawn
    QVector<Slice> m_slices;
    int m_iDrawings = 0;
};
