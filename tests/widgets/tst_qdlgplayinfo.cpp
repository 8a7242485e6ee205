// The overlay: what it shows for which state, and that it repaints for nothing else.
#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgplayinfo.h"
#include "qzrscreenconfig.h"

#include <QAccessible>
#include <QPaintEvent>
#include <QtTest>

#include <functional>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

using zr::OverlayPart;

namespace {

const QColor kBackground(28, 32, 39);
const QColor kBehind(200, 0, 200); ///< stands for the picture

class CountingOverlay : public QDlgPlayInfo
{
public:
    using QDlgPlayInfo::QDlgPlayInfo;
    int paints = 0;
    QRegion painted; ///< by the last paint
    qint64 elapsedMs = 0;
    QList<int> announced;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        painted = event->region();
        QDlgPlayInfo::paintEvent(event);
    }
    qint64 spinnerElapsedMs() const override { return elapsedMs; }
    int bubbleMs() const override { return 300; }
    void announce(QAccessible::Event what) override { announced += what; }
};

} // namespace

class TestOverlay : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void avatarCoversTheTileUntilThePictureShows();
    void avatarColorsAndInitialsFollowThePerson();
    void barsAreWhatThePictureLeaves();
    void everySizeAndNameIsPainted();
    void spinnerRunsWhileTheNetworkIsBadAndItShows();
    void moreRectangleFollowsThePointer();
    void onlyTheChangedRectangleIsRepainted();
    void clicksOnControlsReachTheHub();
    void ownSentenceShowsForAWhile();
    void accessibleTile();

private:
    void showPicture();
    QColor pixel(int x, int y) { return m_window->grab().toImage().pixelColor(x, y); }

    std::unique_ptr<tagPersonInfo> m_person;
    std::unique_ptr<QWidget> m_window;
    CountingOverlay* m_overlay = nullptr; ///< child of the window
};

void TestOverlay::init()
{
    m_person = std::make_unique<tagPersonInfo>();
    m_person->userID = QStringLiteral("alice");
    m_person->userName = QStringLiteral("Alice");
    m_window = std::make_unique<QWidget>();
    m_window->setPalette(QPalette(kBehind));
    m_window->resize(400, 300);
    m_overlay = new CountingOverlay(m_window.get());
    m_overlay->setGeometry(m_window->rect());
    m_overlay->setVideoRect(QRect(0, 30, 400, 240));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestOverlay::cleanup()
{
    m_window.reset();
    m_person.reset();
    QZRScreenConfig::destroyInstance();
}

void TestOverlay::showPicture()
{
    m_person->bPreview = true;
    m_person->iStreamStatus = kStreamRunning;
    m_overlay->setPerson(m_person.get());
    m_overlay->setLoading(false);
    m_overlay->refresh();
    QVERIFY(m_overlay->isPictureVisible());
}

void TestOverlay::avatarCoversTheTileUntilThePictureShows()
{
    QCOMPARE(pixel(200, 150), kBehind); // nobody is shown
    m_overlay->setPerson(m_person.get());
    const auto covered = [this] {
        m_overlay->refresh();
        return !m_overlay->isPictureVisible() && pixel(20, 60) == kBackground;
    };
    QVERIFY(covered());
    m_person->bPreview = true;
    QVERIFY(covered());
    m_person->iStreamStatus = kStreamRunning;
    QVERIFY(covered()); // still loading
    m_overlay->setLoading(false);
    QVERIFY(!covered());
    QCOMPARE(pixel(20, 60), kBehind);
    QCOMPARE(pixel(20, 10), kBackground); // a bar
    m_overlay->setPerson(nullptr);
    QCOMPARE(pixel(20, 10), kBehind);
}

void TestOverlay::avatarColorsAndInitialsFollowThePerson()
{
    m_overlay->setPerson(m_person.get());
    const QColor first(112, 98, 248);
    const std::pair<int, QColor> rows[] = {
        {0, first},           {1, {94, 176, 242}},   {2, {95, 203, 146}},
        {3, {195, 109, 241}}, {-1, {195, 109, 241}}, {4, first}};
    for (const auto& [index, color] : rows) {
        m_person->iRoleExtra = index;
        m_overlay->refresh();
        QCOMPARE(pixel(200, 95), color); // above the initials
    }
    m_person->userName.clear();
    m_overlay->refresh();
    QCOMPARE(pixel(200, 95), first);
    QCOMPARE(pixel(200, 140), QColor(Qt::white)); // a head
}

void TestOverlay::barsAreWhatThePictureLeaves()
{
    showPicture();
    for (const QRect& video :
         {QRect(0, 30, 400, 241), QRect(79, 0, 241, 300), QRect(0, 0, 400, 300)}) {
        m_overlay->setVideoRect(video);
        QCOMPARE(m_overlay->barsPath().isEmpty(), video == m_overlay->rect());
        for (int i = 0; i < 300 * 400; ++i) {
            const QPoint at(i % 400, i / 400);
            QCOMPARE(m_overlay->barsPath().contains(at + QPointF(0.5, 0.5)), !video.contains(at));
        }
    }
}

void TestOverlay::everySizeAndNameIsPainted()
{
    m_person->bHandUp = m_person->bLockLook = true;
    m_person->iRoteType = 1;
    zr::OverlaySwitches switches;
    switches.showResolution = true;
    QZRScreenConfig::getInstance()->setOverlaySwitches(switches);
    m_overlay->setPerson(m_person.get());
    m_overlay->UpdateNetStatus(1, true, -7);
    const QString names[] = {
        QString(), QString(10000, QLatin1Char('w')), QString(10000, QChar(0x200B)),
        QStringLiteral("a\r\nb\u2028c\u0000d\u202Ee"),
        QString(QChar(0xD800)) + QChar(0xDC00) + QChar(0xDFFF) + QChar(0xD800)};
    for (const QString& name : names) {
        for (const QSize& size : {QSize(0, 0), QSize(1, 1), QSize(20, 10), QSize(60, 40),
                                  QSize(160, 90), QSize(400, 300)}) {
            m_person->userName = name;
            m_person->iVolume = size.width() - 100;
            m_person->bMute = false;
            m_overlay->resize(size);
            m_overlay->refresh();
            m_window->grab();
        }
    }
}

void TestOverlay::spinnerRunsWhileTheNetworkIsBadAndItShows()
{
    // Without a picture there is nothing to wait on.
    m_overlay->setPerson(m_person.get());
    m_overlay->UpdateNetStatus(1, true, 0);
    QVERIFY(m_overlay->state().bFrozen);
    QVERIFY(!m_overlay->isSpinning());

    showPicture();
    QVERIFY(m_overlay->isSpinning());
    QTest::qWait(50);
    m_overlay->paints = 0;
    QTRY_VERIFY_WITH_TIMEOUT(m_overlay->paints >= 2, 1000);
    m_window->hide();
    QVERIFY(!m_overlay->isSpinning());
    m_window->show();
    QVERIFY(m_overlay->isSpinning());
    // Each direction keeps its own state.
    m_overlay->UpdateNetStatus(2, true, 0);
    m_overlay->UpdateNetStatus(1, false, 5);
    QVERIFY(m_overlay->isSpinning());

    m_overlay->elapsedMs = 15000;
    m_overlay->onTimeUpdateLoading();
    QVERIFY(m_overlay->isSpinning());
    m_overlay->elapsedMs = 15001;
    m_overlay->onTimeUpdateLoading();
    QVERIFY(!m_overlay->isSpinning());
    m_overlay->refresh();
    QVERIFY(!m_overlay->isPictureVisible()); // the avatar, for the rest of the spell

    m_overlay->elapsedMs = 0;
    tagPersonInfo other; // whose network is as bad begins a spell of their own
    other.bPreview = true;
    other.iStreamStatus = kStreamRunning;
    other.net = m_person->net;
    m_overlay->setPerson(&other);
    QVERIFY(m_overlay->isSpinning());
    m_overlay->onTimeUpdateLoading();
    m_overlay->setPerson(m_person.get());
    m_overlay->elapsedMs = 15001;
    m_overlay->onTimeUpdateLoading();
    QVERIFY(!m_overlay->isPictureVisible());
    m_window->hide(); // nor does the participant's next spell depend on who sees it
    m_person->net.report(2, false, 5);
    m_person->net.report(2, true, 1);
    m_window->show();
    QVERIFY(m_overlay->isSpinning());

    m_person->bSelf = true; // one's own picture never waits
    m_overlay->refresh();
    QVERIFY(!m_overlay->isSpinning());
}

void TestOverlay::moreRectangleFollowsThePointer()
{
    showPicture();
    QCursor::setPos(m_overlay->mapToGlobal(QPoint(399, 299)));
    QTRY_VERIFY(m_overlay->IsMouseOnBtnMore());
    QCursor::setPos(m_overlay->mapToGlobal(QPoint(200, 150)));
    QTRY_VERIFY(!m_overlay->IsMouseOnBtnMore());
}

void TestOverlay::onlyTheChangedRectangleIsRepainted()
{
    m_person->bMute = false;
    showPicture();
    QTest::qWait(50);
    const auto repaints = [&](const std::function<void()>& change, const QRect& rect) {
        m_overlay->paints = 0;
        change();
        m_overlay->refresh();
        (void)QTest::qWaitFor([&] { return !rect.isEmpty() && m_overlay->paints > 0; },
                              rect.isEmpty() ? 100 : 2000); // volumes are gathered
        return rect.isEmpty() ? m_overlay->paints == 0
                              : m_overlay->paints == 1 && m_overlay->painted.boundingRect() == rect;
    };
    const QRect audio = m_overlay->overlayLayout().at(OverlayPart::Audio).rect;
    QVERIFY(!audio.isEmpty());
    QVERIFY(repaints([this] { m_person->iVolume = 9; }, {})); // the same level
    QVERIFY(repaints([this] { m_person->iVolume = 10; }, audio));
    QVERIFY(repaints([this] { m_person->bMute = true; }, audio));
    QVERIFY(repaints([this] { m_person->iVolume = 90; }, {})); // muted
    QVERIFY(repaints([this] { m_person->bHandUp = true; }, QRect(5, 5, 48, 48)));
    const auto tellTheSameAgain = [this] {
        for (int i = 0; i < 20; ++i) {
            m_overlay->setLoading(false);
            m_overlay->setVideoRect(QRect(0, 30, 400, 240));
            m_overlay->UpdateNetStatus(1, false, 5);
            m_overlay->setPerson(m_person.get());
            m_overlay->setGeometry(m_overlay->geometry());
            emit QZRScreenConfig::getInstance()->sigRefreshPlayDlg();
            QCoreApplication::processEvents();
        }
    };
    QVERIFY(repaints(tellTheSameAgain, {}));
}

void TestOverlay::clicksOnControlsReachTheHub()
{
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    m_person->bHandUp = m_person->bSelf = true;
    showPicture();
    QSignalSpy audio(hub, &QZRScreenConfig::notifyClickAudioCtrl);
    QSignalSpy more(hub, &QZRScreenConfig::notifyClickMore);
    QSignalSpy hand(hub, &QZRScreenConfig::handleHandup);
    zrtest::EventWatch window(m_window.get(),
                              {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick});
    const QPoint microphone(10, 280);
    const auto clicks = [&] { // on each control; @return how many were one
        audio.clear();
        more.clear();
        hand.clear();
        for (const QPoint& at : {microphone, QPoint(399, 299), QPoint(5, 5)})
            QTest::mouseClick(m_overlay, Qt::LeftButton, {}, at);
        return audio.count() + more.count() + hand.count();
    };
    QCOMPARE(clicks(), 0); // the participant has gone
    hub->livePersons.insert(m_person.get());
    m_overlay->setPlace(zr::TilePlace::ExtScreen);
    QCOMPARE(clicks(), 0);
    m_overlay->setPlace(zr::TilePlace::Gallery);
    m_person->bSelf = false;
    m_overlay->refresh();
    QCOMPARE(clicks(), 2); // another's hand stays up
    m_person->bSelf = true;
    m_overlay->refresh();
    window.count = 0;
    QCOMPARE(clicks(), 3);
    for (const QSignalSpy* spy : {&audio, &more, &hand}) {
        QCOMPARE(spy->count(), 1);
        QCOMPARE(spy->at(0).at(0).value<void*>(), static_cast<void*>(m_person.get()));
    }
    QCOMPARE(more.at(0).at(1).toInt(), m_overlay->mapToGlobal(QPoint(400 - 48, 0)).x());
    // The second press of a double click is neither a click nor one on the tile.
    QTest::mouseDClick(m_overlay, Qt::LeftButton, {}, microphone);
    QCOMPARE(audio.count(), 1);
    // A drag does not click; a shorter move does, also off the edge.
    const QRect rect = m_overlay->overlayLayout().at(OverlayPart::Audio).rect;
    zrtest::pressAndMove(m_overlay, microphone, microphone + QPoint(6, 0));
    QCOMPARE(audio.count(), 1);
    zrtest::pressAndMove(m_overlay, rect.topLeft(), rect.topLeft() - QPoint(0, 5));
    QCOMPARE(audio.count(), 2);
    // The press was on somebody else.
    QTest::mousePress(m_overlay, Qt::LeftButton, {}, microphone);
    m_overlay->setPerson(nullptr);
    m_overlay->setPerson(m_person.get());
    QTest::mouseRelease(m_overlay, Qt::LeftButton, {}, microphone);
    QCOMPARE(audio.count(), 2);
    QCOMPARE(window.count, 0);
    // What is no control's goes to the tile.
    QTest::mouseClick(m_overlay, Qt::RightButton, {}, microphone);
    QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(200, 150));
    QCOMPARE(audio.count(), 2);
    QCOMPARE(window.count, 2);
}

void TestOverlay::ownSentenceShowsForAWhile()
{
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    showPicture();
    const auto bubble = [this] { return m_overlay->overlayLayout().at(OverlayPart::Bubble).text; };
    hub->AddOneSubtitle(1, 0, QStringLiteral("Alice"), QStringLiteral("closed"));
    QCOMPARE(bubble(), QString()); // subtitles are not open
    hub->setSubtitleOpen(true);
    hub->AddOneSubtitle(2, 0, QStringLiteral("Bob"), QStringLiteral("not mine"));
    QCOMPARE(bubble(), QString());
    hub->AddOneSubtitle(3, 9, QStringLiteral("Alice"), QStringLiteral("one"));
    QCOMPARE(bubble(), QStringLiteral("one"));
    QTest::qWait(200);
    hub->AddOneSubtitle(3, 9, QStringLiteral("Alice"), QStringLiteral("one two")); // grows
    QTest::qWait(200);
    QCOMPARE(bubble(), QStringLiteral("one two"));
    QTRY_COMPARE(bubble(), QString());
    hub->AddOneSubtitle(4, 0, QStringLiteral("Alice"), QStringLiteral("three"));
    hub->clearSubtitles();
    QCOMPARE(bubble(), QString());
    m_window->hide();
    hub->AddOneSubtitle(5, 0, QStringLiteral("Alice"), QStringLiteral("four"));
    m_window->show();
    QCOMPARE(bubble(), QString());
}

void TestOverlay::accessibleTile()
{
    m_overlay->setPerson(m_person.get());
    const auto announced = [this](const std::function<void()>& change) {
        m_overlay->announced.clear();
        change();
        m_overlay->refresh();
        return m_overlay->announced;
    };
    QCOMPARE(announced([this] { m_person->bMute = false; }),
             QList<int>({QAccessible::DescriptionChanged}));
    QCOMPARE(announced([this] { m_person->userName = "Bob"; }),
             QList<int>({QAccessible::NameChanged}));
    QCOMPARE(announced([this] { m_person->iVolume = 80; }), QList<int>());

    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    hub->livePersons.insert(m_person.get());
    auto tile = std::make_unique<CPlayWidget>(m_window.get(), false);
    tile->setGeometry(0, 0, 400, 300);
    tile->playInfo()->resize(400, 300);
    tile->SetPersonInfo(m_person.get(), false);
    tile->StartShow();
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(tile.get());
    QVERIFY(accessible && accessible->actionInterface());
    QCOMPARE(accessible->childCount(), 0);
    QVERIFY(accessible->text(QAccessible::Description).contains(QStringLiteral("打开")));
    QAccessibleActionInterface* actions = accessible->actionInterface();
    const QStringList names{QStringLiteral("microphone"), QStringLiteral("more")};
    QCOMPARE(actions->actionNames(), names);
    QSignalSpy audio(hub, &QZRScreenConfig::notifyClickAudioCtrl);
    actions->doAction(QStringLiteral("microphone"));
    actions->doAction(QStringLiteral("lowerHand"));
    actions->doAction(QStringLiteral("unknown"));
    QCOMPARE(audio.count(), 1);
    hub->livePersons.remove(m_person.get()); // has left
    QCOMPARE(actions->actionNames(), QStringList());
    actions->doAction(QStringLiteral("microphone"));
    QCOMPARE(audio.count(), 1);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Bob"));
    const QAccessible::Id id = QAccessible::uniqueId(accessible);
    tile.reset();
    QVERIFY(!QAccessible::accessibleInterface(id));
}

ZR_WIDGET_TEST_MAIN(TestOverlay)
#include "tst_qdlgplayinfo.moc"
