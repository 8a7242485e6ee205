#include "overlaytext.h"

#include "personorder.h"
#include "texts.h"

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
        return state.bPaused ? Text::tr("已暂停") : QString();
    QStringList parts;
    if (const QString role = roleName(state.iRole); !role.isEmpty())
        parts += role;
    parts += state.bMute ? Text::tr("麦克风已静音") : Text::tr("麦克风已打开");
    parts += state.bCamera ? Text::tr("摄像头已打开") : Text::tr("摄像头已关闭");
    if (state.bHand)
        parts += Text::tr("已举手");
    if (state.bSpeaking)
        parts += Text::tr("正在发言");
    if (isWeakNetwork(state))
        parts += Text::tr("网络不佳");
    if (const QString look = lookText(state.look); !look.isEmpty())
        parts += look;
    return parts.join(Text::tr("，"));
}

} // namespace zr
