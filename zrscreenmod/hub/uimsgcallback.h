// The channel of numbered messages from the module to its hosts.
#pragma once

#include "zrscreenmod.h"

#include <QtGlobal>

/// Receives the module's messages. GUI thread.
class CAbsUIMsgCallback
{
public:
    virtual ~CAbsUIMsgCallback() = default;
    /// @return true when the message was delivered.
    virtual bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam) = 0;

protected:
    CAbsUIMsgCallback() = default;
    Q_DISABLE_COPY(CAbsUIMsgCallback)
};
