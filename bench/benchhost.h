// A host as small as a host can be: it owns the GUI thread's loop and a native window.
//
// The benchmarks run on a thread of their own, as a host's media thread does. The GUI thread
// belongs to serveGui, which drives the library by iterations of the default GLib context.
#pragma once

#include "hostwindow.h"
#include "pictures.h"
#include "zrscreenmod.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// Handles events until stopServing. Call on the thread that loaded the library.
void serveGui();
void stopServing();

/// Runs a job on the GUI thread, between two iterations of its loop, and waits for it. An exception
/// of the job is thrown here.
void onGui(const std::function<void()>& job);

/// Handles all events at hand. GUI thread.
void drainEvents();

/// CPU time of the GUI thread and of the whole process so far.
std::chrono::nanoseconds guiCpuTime();
std::chrono::nanoseconds processCpuTime();

/// While it lives the GUI thread handles no event.
class GuiHold
{
public:
    GuiHold();
    ~GuiHold();
    GuiHold(const GuiHold&) = delete;
    GuiHold& operator=(const GuiHold&) = delete;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_released = false;
    bool m_left = false;
};

/// A meeting in a native window of the given size, joined, in the adaptive gallery. Throws
/// std::runtime_error when the library refuses something. Not for the GUI thread.
class Meeting
{
public:
    Meeting(unsigned widthPx, unsigned heightPx);
    ~Meeting();
    Meeting(const Meeting&) = delete;
    Meeting& operator=(const Meeting&) = delete;

    void* screen() const { return m_screen; }
    /// Adds a participant. GUI thread. @return the play handle
    void* add(int number);
    void remove(void* play);
    /// Adds participants 1 to `count` and waits until all of them are shown. Not for the GUI
    /// thread. @return their play handles
    std::vector<void*> addShown(int count);
    /// Waits until the participant's tile is shown.
    void waitUntilShown(int number) const;
    void play(void* play, Picture& picture) const;

private:
    HostWindow m_window;
    void* m_screen = nullptr;
};
