// Which objects are alive, and who works on them: how a handle is told from a stale one, and how an
// object is kept while a call works on it.
#pragma once

#include "guithread.h"
#include "locks.h"

#include <QScopedValueRollback>

#include <atomic>
#include <unordered_set>
#include <utility>
#include <vector>

/// The calls that work on an object, which has this as its public member `pins`.
struct PinCount
{
    std::atomic<int> all{0}; ///< of every thread; any thread
    /// Of the GUI thread, and those of other threads for which it works while they wait. A release
    /// must not wait for these. GUI thread.
    int gui = 0;

    [[nodiscard]] bool isGuiThreadAlone() const { return all.load() == gui; }
    /// Blocks until no other thread works on the object, and works for those that need it. What no
    /// table has any more gets no new calls. GUI thread.
    void waitForOthers() const
    {
        GuiThread::drainUntil([this] { return isGuiThreadAlone(); });
    }
};

template<typename T>
class HandleTable;

/// Keeps an object in memory while it lives, for one call. Holding one blocks nobody, so it may be
/// held while signals are emitted. Made by a table; any thread, which also drops it.
template<typename T>
class Pin
{
public:
    Pin() = default;
    Pin(Pin&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
        , m_bGuiThread(other.m_bGuiThread)
    {
    }
    Pin& operator=(Pin&& other) noexcept
    {
        std::swap(m_object, other.m_object);
        std::swap(m_bGuiThread, other.m_bGuiThread);
        return *this;
    }
    ~Pin()
    {
        if (!m_object)
            return;
        if (m_bGuiThread)
            --m_object->pins.gui;
        m_object->pins.all.fetch_sub(1);
        if (!m_bGuiThread)
            GuiThread::wake(); // a release may be waiting for this call
    }
    explicit operator bool() const { return m_object != nullptr; }
    T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }

    /// Has the GUI thread do `work` on the object and waits: a release from inside must treat this
    /// call as one of the GUI thread's own. @return as GuiThread::run
    template<typename Work>
    [[nodiscard]] bool runOnGuiThread(Work work) const
    {
        if (m_bGuiThread)
            return GuiThread::run(work);
        return GuiThread::run([this, &work] {
            const QScopedValueRollback<int> stay(m_object->pins.gui, m_object->pins.gui + 1);
            work();
        });
    }

private:
    friend class HandleTable<T>;
    explicit Pin(T* object)
        : m_object(object)
        , m_bGuiThread(GuiThread::isCurrent())
    {
        m_object->pins.all.fetch_add(1);
        if (m_bGuiThread)
            ++m_object->pins.gui;
    }

    T* m_object = nullptr;
    bool m_bGuiThread = false;
};

/// The live objects of one kind. The memory of a handle is not touched before it has been found
/// here. Owns nothing; any thread.
template<typename T>
class HandleTable
{
public:
    void insert(T* object)
    {
        const std::unique_lock<std::shared_mutex> lock(m_lock);
        m_live.insert(object);
    }
    /// Lets no new call find the object. Whoever destroys it waits until its pins have gone.
    /// @return the object; null when it was not alive
    T* remove(const void* handle)
    {
        const std::unique_lock<std::shared_mutex> lock(m_lock);
        return m_live.erase(handle) == 0 ? nullptr : object(handle);
    }
    [[nodiscard]] bool contains(const void* handle) const
    {
        const std::shared_lock<std::shared_mutex> lock(m_lock);
        return m_live.count(handle) != 0;
    }
    [[nodiscard]] bool isEmpty() const
    {
        const std::shared_lock<std::shared_mutex> lock(m_lock);
        return m_live.empty();
    }
    /// @return an empty pin when the object is not alive
    [[nodiscard]] Pin<T> pin(const void* handle) const
    {
        const std::shared_lock<std::shared_mutex> lock(m_lock);
        return m_live.count(handle) == 0 ? Pin<T>() : Pin<T>(object(handle));
    }
    /// Calls `body(object)` for each under the table's lock: nothing may be emitted or logged.
    template<typename Body>
    void forEach(Body body) const
    {
        const std::shared_lock<std::shared_mutex> lock(m_lock);
        for (const void* handle : m_live)
            body(*object(handle));
    }
    /// Takes every object off the table, which can be asked even after its destructor then: an
    /// empty set has no memory of its own.
    [[nodiscard]] std::vector<T*> takeAll()
    {
        std::vector<T*> objects;
        const std::unique_lock<std::shared_mutex> lock(m_lock);
        for (const void* handle : m_live)
            objects.push_back(object(handle));
        m_live = {};
        return objects;
    }

private:
    static T* object(const void* handle) { return static_cast<T*>(const_cast<void*>(handle)); }

    mutable platform::SharedMutex m_lock;
    std::unordered_set<const void*> m_live;
};
