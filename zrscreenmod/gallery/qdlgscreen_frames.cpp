// The gallery: frames and what they mean for the interface.
#include "qdlgscreen.h"

#include "cplaywidget.h"
#include "platform.h"
#include "qzrscreenconfig.h"
#include "speaktool.h"

#include <QDebug>

#include <utility>

bool QDlgScreen::playFrame(void* pPerson, const VantrelRTCVideoFrameQT* frame)
{
    if (!pPerson || !frame)
        return false;
    const PersonPin person = hub().livePersons.pin(pPerson);
    if (!person) {
        qDebug() << "xxxx playFrame pPerson had del failed";
        return false;
    }
    return takeFrame(*person, *frame);
}

bool QDlgScreen::takeFrame(tagPersonInfo& person, const VantrelRTCVideoFrameQT& frame)
{
    QZRScreenConfig& config = hub();
    const auto copy = [&] {
        if (config.cacheFrame())
            config.dumpFrame(person, frame);
        person.dwLastFrameTick.store(platform::tickMs(), std::memory_order_relaxed);
        person.pWidget->PlayFrame(frame);
        if (m_pSpeakTool) // set before there are participants, and then left alone
            m_pSpeakTool->playFrame(&person, frame);
    };
    return person.frames.take(frame, person.userID, copy, [&](int width, int height) {
        emit config.playFrameUpdateUI(&person, width, height);
    });
}

void QDlgScreen::onPlayFrameUpdateUI(void* pPerson, int /*iWidth*/, int /*iHeight*/)
{
    if (!pPerson)
        return;
    tagPersonInfo* person = livePerson(pPerson);
    if (!person) {
        if (isGoneForAll(pPerson))
            qDebug() << "xxxxx QDlgScreen::onPlayFrameUpdateUI testDelPerson, pPerson:" << pPerson;
        return;
    }
    const QSize size = person->frames.noticed();
    if (size.isEmpty())
        return;
    bool changed = QSize(person->iVideoWidth, person->iVideoHeight) != size;
    person->iVideoWidth = size.width();
    person->iVideoHeight = size.height();
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
