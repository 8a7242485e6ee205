#include "exthandle.h"

#include "cplaywidget.h"
#include "dlgextscreen.h"
#include "qzrscreenconfig.h"

#include <QDebug>

namespace {

void logNoExtScreen(const void* handle)
{
    if (handle)
        qDebug() << "live extended screen failed, handle:" << handle;
}

/// A click on the picture. The host may release the extended screen from inside the message.
void reportClick(ST_ZRExtHdl& ext, const void* tile)
{
    if (tile != ext.m_pDlg->tile())
        return;
    const HostCall call;
    ext.m_callback.UIMsgNotify(
        ZRMSG_EXT_CLICK, reinterpret_cast<quintptr>(&ext),
        static_cast<qint64>(reinterpret_cast<qintptr>(ext.m_pDlg->person()->pUserData)));
}

} // namespace

HostHandles<ST_ZRExtHdl> g_extScreens({logNoExtScreen,
                                       [](ST_ZRExtHdl& ext) { ext.m_callback.m_pHandle = nullptr; },
                                       [](ST_ZRExtHdl& ext) { ext.m_pDlg->hide(); }});

ST_ZRExtHdl::~ST_ZRExtHdl() = default;

ST_ZRExtHdl* createExtScreen(HWND hParent, ZRNotify notify)
{
    auto ext = std::make_unique<ST_ZRExtHdl>();
    ext->m_hostNotify = notify;
    ext->m_hParent = hParent;
    ext->m_callback.m_pHandle = ext.get();
    ext->m_pDlg = std::make_unique<QDlgExtScreen>();
    ext->m_pDlg->embedInto(hParent);
    QObject::connect(QZRScreenConfig::getInstance(), &QZRScreenConfig::notifyClickExtPlayWidget,
                     ext->m_pDlg.get(),
                     [&record = *ext](void* tile) { reportClick(record, tile); });
    g_extScreens.insert(ext.get());
    return ext.release();
}
