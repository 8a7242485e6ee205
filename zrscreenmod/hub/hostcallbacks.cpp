#include "hostcallbacks.h"

#include "hostcall.h"

#include <vector>

void HostCallbacks::send(unsigned long dwMsg, unsigned long long wParam, long long lParam,
                         const std::function<bool()>& holds) const
{
    // The host may release or create a screen from inside its function, so the walk is over a copy
    // and asks again before each call. What is released meanwhile outlives the walk.
    const HostCall call;
    const std::vector<CAbsUIMsgCallback*> callbacks(m_callbacks.begin(), m_callbacks.end());
    for (CAbsUIMsgCallback* callback : callbacks) {
        if (holds && !holds())
            return;
        if (m_callbacks.count(callback) != 0)
            callback->UIMsgNotify(dwMsg, wParam, lParam);
    }
}
