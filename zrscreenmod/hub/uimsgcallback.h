// The channel of numbered messages from the module to its hosts.
#pragma once

#include "zrscreenmod.h"

#include <QDebug>
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

/// Hands a message to the function that a host gave for `handle`; null and a handle without one
/// hear nothing. @return true
template<typename Handle>
bool forwardToHost(const Handle* handle, unsigned long dwMsg, unsigned long long wParam,
                   long long lParam)
{
    qDebug() << "dwMsg:" << dwMsg << ",wParam:" << wParam << ",lParam:" << lParam;
    if (handle && handle->m_hostNotify)
        handle->m_hostNotify(dwMsg, wParam, lParam);
    return true;
}
