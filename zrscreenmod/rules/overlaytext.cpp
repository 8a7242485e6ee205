#include "overlaytext.h"

#include "personorder.h"

#include <QStringList>

namespace zr {

QString tileName(const OverlayState& state)
{
    const QString name = displayName(state.name);
    if (state.bShare)
        return name + shareSuffix();
    return state.bSelf ? name + selfSuffix() : name;
}

QString tileDescription(const OverlayState& state)
{
    if (!state.bPerson)
        return {};
    if (state.bShare)
        return state.bPaused ? QStringLiteral("已暂停") : QString();
    QStringList parts;
    if (const QString role = roleName(state.iRole); !role.isEmpty())
        parts += role;
    parts += state.bMute ? QStringLiteral("麦克风已静音") : QStringLiteral("麦克风已打开");
    parts += state.bCamera ? QStringLiteral("摄像头已打开") : QStringLiteral("摄像头已关闭");
    if (state.bHand)
        parts += QStringLiteral("已举手");
    if (state.bSpeaking)
        parts += QStringLiteral("正在发言");
    if (isWeakNetwork(state))
        parts += QStringLiteral("网络不佳");
    if (const QString look = lookText(state.look); !look.isEmpty())
        parts += look;
    return parts.join(QStringLiteral("，"));
}

} // namespace zr
