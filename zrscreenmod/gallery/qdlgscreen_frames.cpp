// The gallery: frames and what they mean for the interface.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "platform.h"
#include "playableframe.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QDebug>

#include <utility>

namespace {

/// Both sides of a frame in one value that is never 0 for a valid frame.
quint64 packedSize(quint32 width, quint32 height)
{
    return quint64(width) << 32 | height;
}

} // namespace

bool QDlgScreen::playFrame(void* pPerson, const VantrelRTCVideoFrameQT* frame)
{
    if (!pPerson || !frame)
        return false;
    QZRScreenConfig& config = hub();
    const PersonPin person = config.pinPerson(static_cast<tagPersonInfo*>(pPerson));
    if (!person) {
        qDebug() << "xxxx playFrame pPerson had del failed";
        return false;
    }
    if (!isPlayable(*frame)) {
        // A media engine that sends one bad frame tends to send thousands.
        if (!person->badFrameLogged.exchange(true))
            qDebug() << "playFrame refused, userID:" << person->userID
                     << ",pData:" << static_cast<const void*>(frame->pData)
                     << ",width:" << frame->width << ",height:" << frame->height;
        return false;
    }
    person->badFrameLogged.store(false, std::memory_order_relaxed);
    if (config.cacheFrame())
        config.dumpFrame(*person.operator->(), *frame);
    // Counted before it is copied: one that is on its way while the stream is opened again is none
    // of the new ones.
    person->frames.fetch_add(1);
    person->dwLastFrameTick.store(platform::tickMs(), std::memory_order_relaxed);
    person->pWidget->PlayFrame(*frame);
    if (m_pSpeakTool) // set before there are participants, and then left alone
        m_pSpeakTool->playFrame(pPerson, *frame);
    // Told afterwards, since it uncovers the tile. A GUI thread that falls behind finds one signal
    // for each participant in its queue, not one for each frame.
    const quint64 size = packedSize(frame->width, frame->height);
    if (person->pendingFrameSize.exchange(size) != size)
        emit config.playFrameUpdateUI(pPerson, static_cast<int>(frame->width),
                                      static_cast<int>(frame->height));
    return true;
}

void QDlgScreen::onPlayFrameUpdateUI(void* pPerson, int iWidth, int iHeight)
{
    if (!pPerson)
        return;
    tagPersonInfo* person = livePerson(pPerson);
    if (!person) {
        if (isGoneForAll(pPerson))
            qDebug() << "xxxxx QDlgScreen::onPlayFrameUpdateUI testDelPerson, pPerson:" << pPerson;
        return;
    }
    person->pendingFrameSize.store(0);
    bool changed = person->iVideoWidth != iWidth || person->iVideoHeight != iHeight;
    person->iVideoWidth = iWidth;
    person->iVideoHeight = iHeight;
    const bool open = isStreamRunning(*person);
    if (open && std::exchange(person->iStreamStatus, kStreamRunning) != kStreamRunning) {
        // Else the avatar would stay at the same size.
        qDebug() << "userID:" << person->userID << ",userName:" << person->userName
                 << ",bHasStream:true";
        changed = true;
    }
    if (changed)
        updatePersonDisplayInfo(person);
    // Last, since the host may delete the participant from inside the message.
    if (open)
        passStreamType(person);
}

void QDlgScreen::onModVideoSize(void* pPerson, int iWidth, int iHeight)
{
    if (tagPersonInfo* person = checkedPerson(pPerson); person && iWidth > 0 && iHeight > 0)
        person->pWidget->SetVideoSize(static_cast<unsigned>(iWidth),
                                      static_cast<unsigned>(iHeight));
}

void QDlgScreen::onPlayStatusChange(CPlayWidget* tile)
{
    if (tile)
        updatePersonDisplayInfo(tile->GetPersonInfo());
}
