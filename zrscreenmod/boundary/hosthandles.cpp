#include "hosthandles.h"

#include "boundary.h"
#include "calltrace.h"
#include "controlhandle.h"
#include "datehandle.h"
#include "exthandle.h"
#include "qzrscreenconfig.h"
#include "screenhandle.h"

#include <QDebug>
#include <QThread>

namespace {

// GUI thread.
Reaper* s_reaper = nullptr;
int s_hubUsers = 0;

} // namespace

bool CWin32UICallback::UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam)
{
    qDebug() << "dwMsg:" << dwMsg << ",wParam:" << wParam << ",lParam:" << lParam;
    if (!m_pHandle || !m_pHandle->m_hostNotify)
        return true;
    const calltrace::MessageScope traced(m_pHandle, {dwMsg, wParam, lParam});
    // What is on the stack below, Qt and the event loop, lets no exception through.
    return boundary::guarded(false, [&, notify = m_pHandle->m_hostNotify] {
        notify(dwMsg, wParam, lParam);
        return true;
    });
}

bool HubUser::isAny()
{
    return s_hubUsers > 0;
}

HubUser::HubUser()
{
    ++s_hubUsers;
}

HubUser::~HubUser()
{
    if (--s_hubUsers > 0)
        return;
    QZRScreenConfig::destroyInstance();
    QZRScreenConfig::getInstance();
}

Reaper& hostReaper()
{
    if (!s_reaper)
        s_reaper = new Reaper;
    return *s_reaper;
}

void waitBriefly(const PinCount& pins)
{
    constexpr int kAttempts = 100;
    const int own = GuiThread::isCurrent() ? pins.gui : 0;
    for (int i = 0; pins.all.load() > own && i < kAttempts; ++i)
        QThread::msleep(1);
}

void releaseAllHandles()
{
    g_lineEdits.releaseAll();
    g_textEdits.releaseAll();
    g_datePickers.releaseAll();
    g_extScreens.releaseAll();
    g_screens.releaseAll();
    if (!s_reaper)
        return;
    s_reaper->destroyAll();
    delete s_reaper;
    s_reaper = nullptr;
}

void abandonAllHandles()
{
    g_lineEdits.abandon();
    g_textEdits.abandon();
    g_datePickers.abandon();
    g_extScreens.abandon();
    g_screens.abandon();
}
