#include "attackedmodule.h"

#include "controlhandle.h"
#include "cplaywidget.h"
#include "exthandle.h"
#include "hostmemory.h"
#include "meetingmode.h"
#include "messagetable.h"
#include "personorder.h"
#include "platform.h"
#include "qdlgscreen.h"
#include "qzrscreenconfig.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QTimerEvent>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

using zr::MessageValue;

void (*g_printMore)() = [] {};

QZRScreenConfig& hub()
{
    return *QZRScreenConfig::getInstance();
}

/// The tiles of those who are there: a tile outlives its participant for a moment.
std::vector<CPlayWidget*> tilesOf(const QDlgScreen& gallery)
{
    std::vector<CPlayWidget*> tiles;
    for (auto* tile : gallery.findChildren<CPlayWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (gallery.livePerson(tile->GetPersonInfo()))
            tiles.push_back(tile);
    }
    return tiles;
}

/// All but those that Qt keeps of the desktop.
QWidgetList widgets()
{
    QWidgetList all = QApplication::allWidgets();
    const auto isDesktop = [](const QWidget* widget) {
        return widget->windowType() == Qt::Desktop;
    };
    all.erase(std::remove_if(all.begin(), all.end(), isDesktop), all.end());
    return all;
}

void checkPerson(const QDlgScreen& gallery, const CPlayWidget& tile,
                 const std::map<quint64, bool>& told)
{
    const tagPersonInfo& person = *tile.GetPersonInfo();
    require(person.pWidget == &tile, "a participant has two tiles");
    require(gallery.findPerson(person.userID) == &person, "an id stands for another participant");
    require(hub().livePersons.contains(&person), "a participant of a gallery is not alive");
    require(!tile.isShowing() || person.iPlayState == kPlayShown, "a tile is shown and not told");
    const auto last = told.find(person.serial);
    require(last == told.end() || person.iPlayState == kPlayUnknown
                || last->second == (person.iPlayState == kPlayShown),
            "the host was told something else of the stream of "
                + std::to_string(reinterpret_cast<long long>(&person)));
}

bool isOfStream(const zr::MessageRow& row)
{
    return row.id == ZRMSG_VIDEO_SHOWN || row.id == ZRMSG_VIDEO_HIDDEN;
}

void checkMessagePerson(const zr::MessageRow& row, const HostMessage& message)
{
    const auto* const person = reinterpret_cast<const tagPersonInfo*>(message.wParam);
    if (hub().livePersons.contains(person)) {
        require(message.lParam == reinterpret_cast<long long>(person->pUserData),
                "a message brings another participant's value");
        return;
    }
    // Who has just been removed, who is on an extended screen, or nobody at a microphone.
    require(isOfStream(row) || row.id == ZRMSG_PERSON_REMOVED
                || (row.id == ZRMSG_CLICK_AUDIO && !person),
            std::string(row.name) + " names nobody who is there");
}

void checkFirstValue(const zr::MessageRow& row, const HostMessage& message)
{
    const auto* const value = reinterpret_cast<const void*>(message.wParam);
    switch (row.wParam) {
    case MessageValue::Person:
        return checkMessagePerson(row, message);
    case MessageValue::Edit:
        return require(g_lineEdits.contains(value), "a message names an edit that has gone");
    case MessageValue::Ext:
        return require(g_extScreens.contains(value), "a message names a screen that has gone");
    case MessageValue::UserId:
        return require(
            value && std::strlen(static_cast<const char*>(value)) <= platform::kMaxTextBytes,
            "a message without an id"); // which may be empty
    case MessageValue::Date: {
        const auto& date = *static_cast<const ZRDateRecord*>(value);
        return require(date.month >= 1 && date.month <= 12 && date.second == 0, "no date");
    }
    case MessageValue::Nothing:
        return require(message.wParam == 0, "a message has a first value");
    default:
        return;
    }
}

/// The place in the order as far as it can be told: among those of the same rank it is the
/// module's own affair.
using Rank = std::pair<int, qint64>;

Rank rankOf(QDlgScreen& gallery, tagPersonInfo& person)
{
    if (gallery.IsPersonInCustomizeSort(&person))
        return {1, 0};
    if (person.bShare)
        return {0, 0};
    if (person.iRoteType == zr::kRoleHost || person.bSelf)
        return {person.iRoteType == zr::kRoleHost ? 2 : 3, 0};
    const bool isSeen = person.camera.isOn(hub().nowMs());
    return {(person.bMute ? 6 : 4) + (isSeen ? 0 : 1), person.joinTime};
}

/// Whether everybody is shown in the order alone, and in the present one.
bool isInOrder(QDlgScreen& gallery)
{
    const int mode = hub().curScreenMode();
    const bool isGrid = mode == eLayoutEqualCut || mode == eLayoutGrid4 || mode == eLayoutGrid9
                        || mode == eLayoutGrid16;
    return isGrid && !hub().settings.openLayoutCtrl && !hub().settings.pollingOpen
           && gallery.width() >= zr::kMinLayoutWidthPx && gallery.height() >= zr::kMinLayoutWidthPx
           && gallery.pageCount() > 0 && !gallery.SortCurrentPersons(true);
}

bool isBefore(const CPlayWidget* a, const CPlayWidget* b)
{
    return std::pair(a->y(), a->x()) < std::pair(b->y(), b->x());
}

std::vector<Rank> ranksOf(QDlgScreen& gallery, const std::vector<CPlayWidget*>& tiles)
{
    std::vector<Rank> ranks;
    for (const CPlayWidget* tile : tiles)
        ranks.push_back(rankOf(gallery, *tile->GetPersonInfo()));
    return ranks;
}

/// The ranks of those who stand on the page that is shown.
std::vector<Rank> pageOf(const std::vector<Rank>& all, int page, int perPage)
{
    const int count = static_cast<int>(all.size());
    const int first = std::min(page * perPage, count);
    const int behind = std::min(first + perPage, count);
    return {all.begin() + first, all.begin() + behind};
}

std::string wordsOf(const std::vector<Rank>& ranks)
{
    std::string text;
    for (const auto& [group, joinTime] : ranks)
        text += " " + std::to_string(group) + "/" + std::to_string(joinTime);
    return text;
}

/// What is wrong with the tiles of the page that is shown; empty for nothing.
std::string disorderOf(QDlgScreen& gallery, std::vector<CPlayWidget*> tiles)
{
    if (!isInOrder(gallery))
        return {};
    const auto isFilteredOut = [&gallery](const CPlayWidget* tile) {
        const tagPersonInfo& person = *tile->GetPersonInfo();
        return hub().settings.noVideoFilter && !person.camera.isOn(hub().nowMs()) && !person.bSelf
               && !person.bShare && &person != gallery.chosenFocus();
    };
    tiles.erase(std::remove_if(tiles.begin(), tiles.end(), isFilteredOut), tiles.end());
    std::vector<Rank> all = ranksOf(gallery, tiles);
    std::sort(all.begin(), all.end());

    const auto isHidden = [](const CPlayWidget* tile) { return !tile->isShowing(); };
    tiles.erase(std::remove_if(tiles.begin(), tiles.end(), isHidden), tiles.end());
    std::sort(tiles.begin(), tiles.end(), isBefore);
    const std::vector<Rank> shown = ranksOf(gallery, tiles);

    // Nine tiles a page or six: what the host has chosen counts from the next arrangement on.
    const int mode = hub().curScreenMode();
    const bool isPage = shown == pageOf(all, gallery.page(), zr::tilesPerPage(mode, false))
                        || shown == pageOf(all, gallery.page(), zr::tilesPerPage(mode, true));
    if (isPage)
        return {};
    return "mode " + std::to_string(mode) + ", page " + std::to_string(gallery.page()) + " shows"
           + wordsOf(shown) + " of the order" + wordsOf(all);
}

} // namespace

void onFinding(void (*print)())
{
    g_printMore = print;
}

void require(bool holds, const std::string& what)
{
    if (holds)
        return;
    g_printMore();
    std::fprintf(stderr, "==FINDING== %s\n", what.c_str());
    std::abort();
}

void noteMessage(Told& told, const HostMessage& message)
{
    require(QThread::currentThread() == qApp->thread(), "a message on another thread");
    const zr::MessageRow* const row = zr::messageRow(message.id, message.isOfDatePicker);
    require(row != nullptr, "a message without a meaning");
    checkFirstValue(*row, message);
    if (row->lParam == MessageValue::Nothing)
        require(message.lParam == 0, "a message has a second value");
    if (message.id == ZRMSG_SCREEN_MODE)
        told.mode = static_cast<int>(message.wParam);
    const auto* person = reinterpret_cast<const tagPersonInfo*>(message.wParam);
    if (isOfStream(*row) && hub().livePersons.contains(person))
        told.streams[person->serial] = message.id == ZRMSG_VIDEO_SHOWN;
}

void checkGalleries(const Told& told)
{
    require(told.mode < 0 || told.mode == hub().curScreenMode(),
            "the host was told of another mode");
    std::size_t there = 0;
    for (QWidget* widget : widgets()) {
        auto* const gallery = qobject_cast<QDlgScreen*>(widget);
        if (!gallery)
            continue;
        QRegion covered;
        const std::vector<CPlayWidget*> tiles = tilesOf(*gallery);
        for (const CPlayWidget* tile : tiles) {
            ++there;
            checkPerson(*gallery, *tile, told.streams);
            const QRect place = tile->isShowing() ? tile->geometry() : QRect();
            require(!covered.intersects(place), "tiles lie over each other");
            covered += place;
        }
    }
    std::size_t alive = 0;
    hub().livePersons.forEach([&alive](const tagPersonInfo&) { ++alive; });
    require(alive == there, "somebody is alive and on no screen");
}

std::string disorder()
{
    std::string found;
    for (QWidget* widget : widgets()) {
        if (auto* const gallery = qobject_cast<QDlgScreen*>(widget))
            found += disorderOf(*gallery, tilesOf(*gallery));
    }
    return found;
}

std::string remains()
{
    std::string left = hub().livePersons.isEmpty() ? "" : " participants";
    for (const QWidget* widget : widgets())
        left += std::string(" ") + widget->metaObject()->className();
    return left;
}

void turnEventLoop()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(); // what hosts have asked for from inside messages
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void advanceClock(long long ms)
{
    static long long ahead = 0;
    ahead += ms;
    hub().setClock([] { return platform::steadyMs() + ahead; });
}

void fireTimer(int choice)
{
    const QWidgetList all = widgets();
    if (all.isEmpty())
        return;
    QList<QObject*> owners{all[choice % all.size()]};
    for (auto* timer : owners.front()->findChildren<QTimer*>())
        owners.append(timer);
    for (const QPointer<QObject> owner : owners) {
        for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(owner)) {
            QTimerEvent event(timer.timerId);
            if (owner)
                QCoreApplication::sendEvent(owner, &event);
        }
    }
}

std::vector<void*> nativeWindows()
{
    std::vector<void*> windows;
    for (const QWidget* widget : widgets()) {
        if (widget->internalWinId() != 0)
            windows.push_back(reinterpret_cast<void*>(widget->internalWinId()));
    }
    return windows;
}
