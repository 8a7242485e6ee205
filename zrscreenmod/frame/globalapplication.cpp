#include "globalapplication.h"

#include <QDebug>
#include <QKeyEvent>
#include <QWheelEvent>

namespace {

/// QWheelEvent counts in eighths of a degree.
constexpr double kUnitsPerDegree = 8.0;
/// A step of a common mouse wheel.
constexpr double kDegreesPerStep = 15.0;

} // namespace

bool GlobalApplication::notify(QObject* receiver, QEvent* event)
{
    return QApplication::notify(receiver, event);
}

void GlobalApplication::onWheel(QEvent* event)
{
    qDebug() << "onWheel";
    const QPoint degrees = static_cast<QWheelEvent*>(event)->angleDelta() / kUnitsPerDegree;
    if (degrees.isNull())
        return;
    const QPoint steps = degrees / kDegreesPerStep;
    emit notifyWheel(steps.y());
}

bool GlobalApplication::onKey(QEvent* event)
{
    qDebug() << "onKey";
    emit notifyKey(static_cast<QKeyEvent*>(event)->key());
    return true;
}
