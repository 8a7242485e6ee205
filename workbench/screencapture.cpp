#include "screencapture.h"

#include "desktop.h"
#include "host_error.h"

#include <QImage>
#include <QWidget>

namespace zrworkbench {

void saveScreen(const QWidget& widget, const QString& file)
{
    const qreal scale = widget.devicePixelRatioF();
    const QPoint corner = (QPointF(widget.mapToGlobal(QPoint(0, 0))) * scale).toPoint();
    const QSize size = widget.size() * scale;
    const zrhost::RgbImage seen =
        zrhost::desktop::grab({corner.x(), corner.y()}, {size.width(), size.height()});
    const QImage image(seen.data.data(), seen.width, seen.height, 3 * seen.width,
                       QImage::Format_RGB888);
    if (!image.save(file))
        throw zrhost::HostError("cannot write '" + file.toStdString() + "'");
}

} // namespace zrworkbench
