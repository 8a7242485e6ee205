// The host's extended screen: one participant in the second window.
#pragma once

#include "stage.h"
#include "zrscreenmod/exports.h"

#include <atomic>
#include <string>

namespace zrhost {

struct Participant;

/// GUI thread, except where a function says otherwise.
class ExtDesk
{
public:
    /// Both references must outlive it.
    ExtDesk(const zr::ExtExports& api, Stage& stage);
    ~ExtDesk();
    ExtDesk(const ExtDesk&) = delete;
    ExtDesk& operator=(const ExtDesk&) = delete;

    /// Shows a participant, in an extended screen that is made where there is none.
    /// @throws HostError when the module makes none
    void show(const Participant& participant);
    /// Takes the participant away.
    void clear();
    /// Destroys the extended screen; nothing without one.
    void close();
    /// @throws HostError without an extended screen
    [[nodiscard]] void* handle() const;
    [[nodiscard]] bool shows(int number) const { return m_number == number; }
    void onWindowResized(Size size);

    /// Delivers a picture, if it is that of the participant shown. Any thread.
    void deliver(int number, VantrelRTCVideoFrameQT& frame) const;

    /// For ZRScreenExt_Init.
    static int notify(unsigned long message, unsigned long long wParam, long long lParam);

private:
    const zr::ExtExports& m_api;
    Stage& m_stage;
    std::atomic<void*> m_handle{nullptr};
    std::atomic<int> m_number{0}; ///< of the participant shown; 0 for nobody
};

} // namespace zrhost
