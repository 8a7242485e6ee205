#include "attackedmodule.h"

#include "cplaywidget.h"
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

namespace {

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

void checkPerson(const QDlgScreen& gallery, const CPlayWidget& tile, const ToldStreams& told)
{
    const tagPersonInfo& person = *tile.GetPersonInfo();
    require(person.pWidget == &tile, "a participant has two tiles");
    require(gallery.findPerson(person.userID) == &person, "an id stands for another participant");
    require(hub().livePersons.contains(&person), "a participant of a gallery is not alive");
    require(!tile.isShowing() || person.iPlayState == kPlayShown, "a tile is shown and not told");
    const auto last = told.find(person.serial);
    require(last == told.end() || person.iPlayState == kPlayUnknown
                || last->second == (person.iPlayState == kPlayShown),
            "the host was told something else of a stream");
}

} // namespace

void require(bool holds, const std::string& what)
{
    if (holds)
        return;
    std::fprintf(stderr, "==FINDING== %s\n", what.c_str());
    std::abort();
}

void noteMessage(ToldStreams& told, unsigned long message, unsigned long long wParam)
{
    require(QThread::currentThread() == qApp->thread(), "a message on another thread");
    const bool isGrade = message >= 2 && message <= 4;
    const bool isStream = message == ZRMSG_VIDEO_SHOWN || message == ZRMSG_VIDEO_HIDDEN;
    if (!isGrade && !isStream && message != ZRMSG_FOCUS_PERSON)
        return;
    const auto* person = reinterpret_cast<const tagPersonInfo*>(wParam);
    const bool isAlive = hub().livePersons.contains(person);
    // An extended screen's has no record.
    require(isAlive || isStream, "a message names nobody who is there");
    if (isAlive && isStream)
        told[person->serial] = message == ZRMSG_VIDEO_SHOWN;
}

void checkGalleries(const ToldStreams& told)
{
    std::size_t there = 0;
    for (const QWidget* widget : widgets()) {
        const auto* gallery = qobject_cast<const QDlgScreen*>(widget);
        if (!gallery)
            continue;
        QRegion covered;
        for (const CPlayWidget* tile : tilesOf(*gallery)) {
            ++there;
            checkPerson(*gallery, *tile, told);
            const QRect place = tile->isShowing() ? tile->geometry() : QRect();
            require(!covered.intersects(place), "tiles lie over each other");
            covered += place;
        }
    }
    std::size_t alive = 0;
    hub().livePersons.forEach([&alive](const tagPersonInfo&) { ++alive; });
    require(alive == there, "somebody is alive and on no screen");
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
