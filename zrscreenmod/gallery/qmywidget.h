// The base of the module's small painted controls.
#pragma once

#include <QWidget>

/// A plain widget: it paints no background of its own, takes no focus, and what it has no use for
/// reaches its parent.
class QMyWidget : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
};
