// The host's extended screen: one participant in the second window.
#pragma once

#include "ext_api.h"
#include "stage.h"

#include <atomic>
#include <string>

namespace zrhost {

struct Participant;

/// GUI thread, except where a function says otherwise. At most one exists at a time: the
/// notification function has no argument of the host's own.
class ExtDesk
{
public:
    /// Both references must outlive it.
    ExtDesk(const ExtApi& api, Stage& stage);
    ~ExtDesk();
    ExtDesk(const ExtDesk&) = delete;
    ExtDesk& operator=(const ExtDesk&) = delete;

    /// Shows a participant, in an extended screen that is made where there is none.
    /// @return what the module returned @throws HostError when the module makes none
    int show(const Participant& participant);
    /// Takes the participant away. @return as above
    int clear();
    /// Destroys the extended screen; nothing without one.
    void close();
    /// @throws HostError without an extended screen
    [[nodiscard]] void* handle() const;
    [[nodiscard]] bool shows(int number) const { return m_number == number; }
    void onWindowResized(Size size);
    [[nodiscard]] const ExtApi& api() const { return m_api; }

    /// Delivers a picture, if it is that of the participant shown. Any thread.
    void deliver(int number, VantrelRTCVideoFrameQT& frame) const;

private:
    static int notify(unsigned long message, unsigned long long wParam, long long lParam);

    const ExtApi& m_api;
    Stage& m_stage;
    std::atomic<void*> m_handle{nullptr};
    std::atomic<int> m_number{0}; ///< of the participant shown; 0 for nobody
};

} // namespace zrhost
