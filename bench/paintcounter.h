// Shared by the benchmarks that watch a meeting being painted.
#pragma once

#include "benchhost.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <chrono>
#include <memory>

/// Counts, while it lives, the paint events of a class of widgets and of the windows that they are
/// composed into, and measures the time. Not for the GUI thread.
class PaintCounter
{
public:
    explicit PaintCounter(const char* className)
    {
        onGui([&] { // a filter of the application belongs to its thread
            m_filter = std::make_unique<Filter>(className);
            qApp->installEventFilter(m_filter.get());
        });
    }
    ~PaintCounter()
    {
        onGui([this] { m_filter.reset(); });
    }
    PaintCounter(const PaintCounter&) = delete;
    PaintCounter& operator=(const PaintCounter&) = delete;

    using Seconds = std::chrono::duration<double>;
    Seconds wall() const { return std::chrono::steady_clock::now() - m_start; }
    Seconds gui() const { return guiCpuTime() - m_gui; }
    Seconds process() const { return processCpuTime() - m_process; }
    /// Waits for the GUI thread.
    int widgets() const
    {
        int count = 0;
        onGui([&] { count = m_filter->widgets; });
        return count;
    }
    int windows() const
    {
        int count = 0;
        onGui([&] { count = m_filter->windows; });
        return count;
    }

private:
    class Filter : public QObject
    {
    public:
        explicit Filter(const char* className)
            : m_className(className)
        {
        }
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            if (event->type() == QEvent::Paint && watched->inherits(m_className))
                ++widgets;
            else if (event->type() == QEvent::UpdateRequest && watched->isWidgetType()
                     && static_cast<QWidget*>(watched)->isWindow())
                ++windows;
            return false;
        }
        int widgets = 0;
        int windows = 0;

    private:
        const char* const m_className;
    };

    std::unique_ptr<Filter> m_filter;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    const std::chrono::nanoseconds m_gui = guiCpuTime();
    const std::chrono::nanoseconds m_process = processCpuTime();
};
