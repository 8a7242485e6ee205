// Loaded where the module already has its application object: see module.cpp.
#include <QApplication>
#include <QWidget>

/// Hides what lies over the pictures. GUI thread.
extern "C" __attribute__((visibility("default"))) void hideOverlays()
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets) {
        if (widget->inherits("QDlgPlayInfo"))
            widget->hide();
    }
}
