#include "qtfigures.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

QtFigures::QtFigures()
{
    qApp->installEventFilter(this);
}

QtFigures::~QtFigures()
{
    qApp->removeEventFilter(this);
}

bool QtFigures::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Timer && m_timed.insert(watched).second)
        connect(watched, &QObject::destroyed, this, [this](QObject* gone) { m_timed.erase(gone); });
    return false;
}

Figures QtFigures::figures()
{
    std::set<QObject*> owners = m_timed;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets) {
        owners.insert(widget);
        const QObjectList children = widget->findChildren<QObject*>();
        owners.insert(children.begin(), children.end());
    }
    long long timers = 0;
    for (QObject* const owner : owners)
        timers += QAbstractEventDispatcher::instance()->registeredTimers(owner).size();
    return {{"widgets", widgets.size()},
            {"windows", QGuiApplication::allWindows().size()},
            {"timers", timers}};
}
