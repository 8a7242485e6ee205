// The end of what was released while somebody worked on it.
#pragma once

#include "handletable.h"

#include <QBasicTimer>
#include <QObject>

#include <functional>
#include <vector>

/// Destroys retired objects from the event loop, once the GUI thread is inside no host's function
/// and no thread works on them: destroying one under a call or a message would pull the ground from
/// under the frames that are still on the stack. The host may run a loop of its own from inside a
/// message, so the reaper comes back until they are free. GUI thread.
class Reaper : public QObject
{
public:
    /// Takes an object that no table has any more; `pins` are its own, `destroy` ends it.
    void add(const PinCount& pins, std::function<void()> destroy);
    /// Destroys what is free, and comes back for the rest.
    void collect();
    /// Looks at what it has from the event loop.
    void watch();
    /// Destroys everything as soon as other threads are through with it, wherever the GUI thread
    /// is.
    void destroyAll();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Retired
    {
        const PinCount* pins;
        std::function<void()> destroy;
    };
    std::vector<Retired> m_retired;
    QBasicTimer m_timer; ///< runs while there is something that was not free
};
