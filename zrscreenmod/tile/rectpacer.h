// Gathers the small repaints of many widgets.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QWidget>

#include <memory>
#include <utility>
#include <vector>

/// Each repaint of a widget above a GL widget composes the whole window anew, however small it is,
/// and the volumes of different participants do not change in step. The pacer repaints them
/// together, kWaitMs after the first. No timer runs while none waits. GUI thread.
class RectPacer : public QObject
{
public:
    /// The pacer of all overlays; it lives as long as somebody keeps it.
    static std::shared_ptr<RectPacer> shared();

    /// A hidden widget is left alone: showing it will paint it.
    void requestUpdate(QWidget* widget, const QRect& rect);

    /// Short of what looks late on a microphone, and half the time between reports.
    static constexpr int kWaitMs = 50;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    std::vector<std::pair<QPointer<QWidget>, QRect>> m_vecDirty;
    QBasicTimer m_timer;
};
