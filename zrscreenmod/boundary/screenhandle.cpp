#include "screenhandle.h"

#include "platform.h"
#include "qdlgmain.h"
#include "qzrscreenconfig.h"

#include <QDebug>

#include <utility>

namespace {

void logNoScreen(const void*)
{
    qDebug() << "IsVaildScreenHandle failed";
}

void silence(ST_ZRScreenHdl& screen)
{
    QZRScreenConfig::getInstance()->unregisterUICallback(&screen.m_callback);
}

} // namespace

HostHandles<ST_ZRScreenHdl> g_screens({logNoScreen, silence,
                                       [](ST_ZRScreenHdl& screen) { screen.m_pDlgMain->hide(); }});

ST_ZRScreenHdl::~ST_ZRScreenHdl() = default;

bool IsVaildScreenHandle(const void* hScreen)
{
    return static_cast<bool>(g_screens.pin(hScreen));
}

ST_ZRScreenHdl* createScreen(HWND hParent, ZRNotify notify)
{
    auto screen = std::make_unique<ST_ZRScreenHdl>();
    screen->m_hostNotify = notify;
    screen->m_hParent = hParent;
    screen->m_callback.m_pHandle = screen.get();
    screen->m_pDlgMain = std::make_unique<QDlgMain>(nullptr);
    screen->m_pDlgMain->openIn(hParent);
    QZRScreenConfig::getInstance()->registerUICallback(&screen->m_callback);
    g_screens.insert(screen.get());
    return screen.release();
}

ST_ZRPlayHdl* ST_ZRScreenHdl::issuePlay(const QString& userId, const QString& userName)
{
    auto handle = std::make_unique<ST_ZRPlayHdl>();
    handle->userID = userId;
    handle->userName = userName;
    ST_ZRPlayHdl* issued = handle.get();
    bool reused = false;
    {
        const std::lock_guard<std::mutex> lock(m_playLock);
        reused = mapHadDelPlay.erase(issued) != 0;
        m_mapPlay.emplace(issued, IssuedPlay{std::move(handle), 0});
    }
    if (reused) // no lock is held while something is logged
        qDebug() << "iter != pScreen->mapHadDelPlay.end()";
    return issued;
}

void ST_ZRScreenHdl::bindPlay(ST_ZRPlayHdl* play, tagPersonInfo* person)
{
    const std::lock_guard<std::mutex> lock(m_playLock);
    play->pPlayData = person;
    m_mapPlay.at(play).personSerial = person->serial;
}

bool ST_ZRScreenHdl::deletePlay(void* pPlay)
{
    const std::lock_guard<std::mutex> lock(m_playLock);
    if (m_mapPlay.erase(pPlay) == 0)
        return false;
    mapHadDelPlay.emplace(pPlay, pPlay);
    return true;
}

PlayHandleState ST_ZRScreenHdl::findPlay(const void* pPlay, const tagPersonInfo** person,
                                         quint64* serial) const
{
    {
        const std::lock_guard<std::mutex> lock(m_playLock);
        const auto issued = m_mapPlay.find(pPlay);
        if (issued != m_mapPlay.end()) {
            *person = issued->second.handle->pPlayData;
            *serial = issued->second.personSerial;
            return PlayHandleState::Valid;
        }
        if (mapHadDelPlay.count(pPlay) != 0)
            return PlayHandleState::Deleted;
    }
    return platform::isReadable(pPlay, kPlayHdlProbeSize) ? PlayHandleState::Foreign
                                                          : PlayHandleState::Unreadable;
}

void ST_ZRScreenHdl::setPlayUserName(const void* pPlay, const QString& userName)
{
    const std::lock_guard<std::mutex> lock(m_playLock);
    const auto issued = m_mapPlay.find(pPlay);
    if (issued != m_mapPlay.end())
        issued->second.handle->userName = userName;
}
