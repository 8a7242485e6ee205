#include "qdlgplaywnd.h"

#include <QMouseEvent>

QDlgPlayWnd::QDlgPlayWnd(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    setStyleSheet(QStringLiteral("background-color:rgb(105,105,105)"));
}

void QDlgPlayWnd::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit mouseLeftDBClick(this);
}
