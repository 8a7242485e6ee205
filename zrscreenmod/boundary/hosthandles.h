// What hosts have handles of: how it leaves the host's sight, when it is destroyed, and how its
// messages reach the host.
#pragma once

#include "handletable.h"
#include "hostcall.h"
#include "reaper.h"
#include "uimsgcallback.h"

#include <atomic>
#include <vector>

/// What the records behind handles with messages begin with.
struct HostHandle
{
    ZRNotify m_hostNotify = nullptr;
    HWND m_hParent = nullptr; ///< the parent given at creation
};

/// Forwards the module's messages to the host of one handle. GUI thread.
class CWin32UICallback : public CAbsUIMsgCallback
{
public:
    bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam) override;
    const HostHandle* m_pHandle = nullptr; ///< whose host hears; null for nobody
};
using CWin32DateCallback = CWin32UICallback;

/// A base of what belongs to a host and lives by the hub's settings. They are all screens',
/// extended ones included, and return to their defaults when the last user has been destroyed. GUI
/// thread.
class HubUser
{
public:
    HubUser(const HubUser&) = delete;
    HubUser& operator=(const HubUser&) = delete;

    [[nodiscard]] static bool isAny();

protected:
    HubUser();
    ~HubUser();
};

/// What differs between the kinds of objects that hosts have handles of.
template<typename T>
struct HandleKind
{
    /// Logs a handle of the host's that is not one of a live object of this kind. Any thread.
    void (*logRefused)(const void* handle);
    /// The object was released: from here on its host hears of nothing. GUI thread.
    void (*silence)(T& object);
    /// Takes an object that is destroyed later off the display. GUI thread.
    void (*hide)(T& object);
};

/// Has what hosts have released from inside; made when it is needed first. GUI thread.
[[nodiscard]] Reaper& hostReaper();
/// Waits until no other thread works on the object, but not for long: one that waits for the GUI
/// thread may not come to its end. Any thread.
void waitBriefly(const PinCount& pins);

/// The live objects of one kind that hosts have handles of. Owns them from insert on. GUI thread,
/// except where a function says otherwise.
template<typename T>
class HostHandles
{
public:
    explicit HostHandles(const HandleKind<T>& kind) noexcept
        : m_kind(kind)
    {
    }

    void insert(T* object) { m_table.insert(object); }
    [[nodiscard]] bool contains(const void* handle) const { return m_table.contains(handle); }
    /// @return an empty pin, and a log line, for a handle that is not one of a live object. Any
    /// thread.
    [[nodiscard]] Pin<T> pin(const void* handle) const
    {
        Pin<T> pin = m_table.pin(handle);
        if (!pin)
            m_kind.logRefused(handle);
        return pin;
    }
    /// Destroys an object once no other thread works on it: at once, or from the event loop when
    /// the GUI thread itself is inside a call that works on it or inside a host's function. Checks
    /// the handle as above.
    void release(const void* handle)
    {
        if (T* const object = m_table.remove(handle))
            end(object);
        else
            m_kind.logRefused(handle);
    }
    void releaseAll()
    {
        for (T* const object : m_table.takeAll())
            end(object);
    }
    /// Lets no call find an object any more and gives those under way a moment to end, but destroys
    /// nothing: for the end of the process. Any thread.
    void abandon()
    {
        auto* const left = new std::vector<T*>(m_table.takeAll());
        m_abandoned = left;
        for (const T* object : *left)
            waitBriefly(object->pins);
    }

private:
    void end(T* object)
    {
        m_kind.silence(*object);
        object->pins.waitForOthers();
        if (!HostCall::isInside() && object->pins.gui == 0) {
            delete object;
            return;
        }
        m_kind.hide(*object);
        hostReaper().add(object->pins, [object] { delete object; });
        hostReaper().watch();
    }

    const HandleKind<T> m_kind;
    HandleTable<T> m_table;
    std::atomic<const void*> m_abandoned{nullptr}; ///< only written: a leak checker reads it
};

/// Destroys whatever hosts have not released, for the end of the module. GUI thread.
void releaseAllHandles();
/// Abandons all of it, for the end of the process. Any thread.
void abandonAllHandles();
