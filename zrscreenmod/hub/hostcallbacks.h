// The hosts that hear messages.
#pragma once

#include "uimsgcallback.h"

#include <functional>
#include <set>

/// GUI thread.
class HostCallbacks
{
public:
    void add(CAbsUIMsgCallback* callback) { m_callbacks.insert(callback); }
    /// @return whether the callback was there
    bool remove(CAbsUIMsgCallback* callback) { return m_callbacks.erase(callback) != 0; }
    /// Sends a message to every host, in the order of the callbacks' addresses. A host may add and
    /// remove callbacks from inside; who is removed meanwhile is not called any more.
    /// @param holds asked before each host: whether it is still so what the message tells. Where it
    /// is not, the others have heard from inside of one host's call what is.
    void send(unsigned long dwMsg, unsigned long long wParam, long long lParam,
              const std::function<bool()>& holds = {}) const;

private:
    std::set<CAbsUIMsgCallback*> m_callbacks;
};
