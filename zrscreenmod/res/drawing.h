// How a drawing becomes a picture: for the program that writes the pictures and for the test that
// compares them.
#pragma once

#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

/// Draws an SVG file at `scale` times the size in pixels that it states, on transparent ground.
/// @return a null image when the file is not a drawing
inline QImage renderDrawing(const QString& svgFile, int scale)
{
    QSvgRenderer renderer(svgFile);
    if (!renderer.isValid() || renderer.defaultSize().isEmpty())
        return {};
    QImage image(renderer.defaultSize() * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}
