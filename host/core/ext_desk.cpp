#include "ext_desk.h"

#include "host_error.h"
#include "host_platform.h"
#include "native_rect.h"
#include "session.h"
#include "text.h"

#include <cstdint>

namespace zrhost {

ExtDesk::ExtDesk(const zr::ExtExports& api, Stage& stage)
    : m_api(api)
    , m_stage(stage)
{
}

ExtDesk::~ExtDesk()
{
    close();
}

void ExtDesk::show(const Participant& participant)
{
    if (!m_handle) {
        m_handle = m_api.Init(m_stage.nativeWindow(WindowId::Second), &ExtDesk::notify);
        if (!m_handle)
            throw HostError("the module gives no extended screen");
        onWindowResized(m_stage.windowSize(WindowId::Second));
    }
    // In between no picture of either may be taken for one of the other.
    m_number = 0;
    m_api.SetPersonInfo(m_handle,
                        reinterpret_cast<void*>(static_cast<uintptr_t>(participant.number)),
                        toLocal8Bit(participant.id).c_str(), false, 0, participant.name.c_str(), 0);
    m_number = participant.number;
    m_api.Preview(m_handle, participant.open);
}

void ExtDesk::clear()
{
    m_number = 0;
    m_api.SetPersonInfo(handle(), nullptr, "", false, 0, "", 0);
}

void ExtDesk::close()
{
    m_number = 0;
    if (void* const handle = m_handle.exchange(nullptr))
        m_api.Release(handle);
}

void* ExtDesk::handle() const
{
    if (!m_handle)
        throw HostError("there is no extended screen (use 'ext show')");
    return m_handle;
}

void ExtDesk::onWindowResized(Size size)
{
    tagRECT all{};
    all.right = size.width;
    all.bottom = size.height;
    if (m_handle)
        m_api.Move(m_handle, &all, 0);
}

void ExtDesk::deliver(int number, VantrelRTCVideoFrameQT& frame) const
{
    // A handle that was given back meanwhile is refused by the module.
    if (m_number == number)
        m_api.PlayFrame(m_handle, &frame);
}

int ExtDesk::notify(unsigned long message, unsigned long long wParam, long long hostValue)
{
    Session::hear(message, wParam, hostValue, false);
    return 0;
}

} // namespace zrhost
