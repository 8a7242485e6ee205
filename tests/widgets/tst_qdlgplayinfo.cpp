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
#include <set>
#include <utility>
#include <vector>

using zr::OverlayPart;

namespace {

const QColor kBackground(28, 32, 39);
const QColor kBehind(200, 0, 200); ///< stands for the picture
const QColor kSpeaking(0, 255, 0);

class CountingOverlay : public QDlgPlayInfo
{
public:
    using QDlgPlayInfo::QDlgPlayInfo;
    int paints = 0;
    QRegion painted; ///< by the last paint
    qint64 elapsedMs = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        painted = event->region();
        QDlgPlayInfo::paintEvent(event);
    }
    qint64 spinnerElapsedMs() const override { return elapsedMs; }
    int bubbleMs() const override { return 300; }
};

/// Counts the events of some types that reach an object.
class EventCounter : public QObject
{
public:
    EventCounter(QObject* watched, std::set<QEvent::Type> types)
        : m_types(std::move(types))
    {
        watched->installEventFilter(this);
    }
    int count = 0;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        count += m_types.count(event->type()) != 0 ? 1 : 0;
        return false;
    }

private:
    const std::set<QEvent::Type> m_types;
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
    void speakerHasAGreenBorder();
    void pausedShareCoversTheTile();
    void repaintsOnlyWhenSomethingChanged();
    void spinnerRunsWhileTheNetworkIsBadAndItShows();
    void moreRectangleFollowsThePointer();
    void onlyTheChangedRectangleIsRepainted();
    void clicksOnControlsReachTheHub();
    void controlsOfNobodyDoNothing();
    void switchesChangeWhatShows();
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
    m_overlay->setLoading(false, true);
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
    m_overlay->setLoading(false, false);
    QVERIFY(!covered());
    QCOMPARE(pixel(20, 60), kBehind);
    QCOMPARE(pixel(20, 10), kBackground); // a bar
    for (const auto& close : std::initializer_list<std::function<void()>>{
             [this] { m_person->bPreview = false; },
             [this] { m_person->iStreamStatus = kStreamNone; },
             [this] { m_person->iPlayState = kPlayHidden; },
             [this] { m_overlay->setLoading(true, false); },
         }) {
        close();
        QVERIFY(covered());
        m_person->iPlayState = kPlayShown;
        showPicture();
        QVERIFY(!covered());
    }
    m_overlay->setPerson(nullptr);
    QCOMPARE(pixel(20, 10), kBehind);
}

void TestOverlay::avatarColorsAndInitialsFollowThePerson()
{
    m_overlay->setPerson(m_person.get());
    const QColor first(112, 98, 248);
    const std::pair<int, QColor> rows[] = {{0, first},          {1, {94, 176, 242}},
                                           {2, {95, 203, 146}}, {3, {195, 109, 241}},
                                           {4, first},          {-1, first}};
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
    QZRScreenConfig::getInstance()->overlay.showResolution = true;
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

void TestOverlay::speakerHasAGreenBorder()
{
    showPicture();
    QCOMPARE(pixel(0, 150), kBehind);
    m_overlay->setOverlayMode(true);
    QCOMPARE(pixel(1, 150), QColor(10, 10, 10));
    QCOMPARE(pixel(2, 150), kBehind);
    m_person->bSpeaking = true;
    m_overlay->refresh();
    for (const QPoint& edge : {QPoint(4, 150), QPoint(395, 150), QPoint(200, 4), QPoint(200, 295)})
        QCOMPARE(pixel(edge.x(), edge.y()), kSpeaking);
    QCOMPARE(pixel(5, 150), kBehind);
}

void TestOverlay::pausedShareCoversTheTile()
{
    m_person->userID = QStringLiteral("sharescreen_1");
    m_overlay->setPerson(m_person.get());
    QVERIFY(m_overlay->isShareTile());
    QVERIFY(!m_overlay->isPictureVisible());
    m_overlay->setLoading(false, false); // a shared screen needs no preview report
    QVERIFY(m_overlay->isPictureVisible());
    QCOMPARE(pixel(20, 60), kBehind);
    QZRScreenConfig::getInstance()->settings.pauseShare = true;
    emit QZRScreenConfig::getInstance()->sigRefreshPlayDlg();
    QCOMPARE(pixel(20, 60), kBackground);
    const QImage text = m_window->grab(QRect(100, 130, 200, 40)).toImage();
    int white = 0;
    for (int i = 0; i < text.width() * text.height(); ++i)
        white += text.pixelColor(i % text.width(), i / text.width()) == QColor(Qt::white) ? 1 : 0;
    QVERIFY(white > 50);
}

void TestOverlay::repaintsOnlyWhenSomethingChanged()
{
    showPicture();
    QTest::qWait(50);
    m_overlay->paints = 0;
    for (int i = 0; i < 20; ++i) {
        m_overlay->setLoading(false, true);
        m_overlay->refresh();
        m_overlay->setVideoRect(QRect(0, 30, 400, 240));
        m_overlay->UpdateNetStatus(1, false, 5);
        m_overlay->setPerson(m_person.get());
        QCoreApplication::processEvents();
    }
    QTest::qWait(50);
    QCOMPARE(m_overlay->paints, 0);
    m_person->userName = QStringLiteral("Bob");
    m_overlay->refresh();
    QTRY_COMPARE(m_overlay->paints, 1);
}

void TestOverlay::spinnerRunsWhileTheNetworkIsBadAndItShows()
{
    // Without a picture there is nothing to wait on.
    m_overlay->setPerson(m_person.get());
    m_overlay->UpdateNetStatus(1, true, 0);
    QVERIFY(m_overlay->isNetBad());
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
    m_overlay->UpdateNetStatus(2, false, 5);
    QVERIFY(m_overlay->isPictureVisible());
    m_overlay->UpdateNetStatus(2, true, 1);
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
    const auto rectOf = [this](OverlayPart part) {
        return m_overlay->overlayLayout().at(part).rect;
    };
    const auto repaints = [&](const std::function<void()>& change, const QRect& rect) {
        QTest::qWait(20);
        m_overlay->paints = 0;
        change();
        m_overlay->refresh();
        QTest::qWait(80); // volumes are gathered
        return rect.isEmpty() ? m_overlay->paints == 0
                              : m_overlay->paints == 1 && m_overlay->painted.boundingRect() == rect;
    };
    const QRect audio = rectOf(OverlayPart::Audio);
    QVERIFY(!audio.isEmpty());
    QVERIFY(repaints([this] { m_person->iVolume = 9; }, {})); // the same level
    QVERIFY(repaints([this] { m_person->iVolume = 10; }, audio));
    QVERIFY(repaints([this] { m_person->bMute = true; }, audio));
    QVERIFY(repaints([this] { m_person->iVolume = 90; }, {})); // muted
    QVERIFY(repaints([this] { m_person->bHandUp = true; }, QRect(5, 5, 48, 48)));
    // A tile that stays where it is.
    QVERIFY(repaints([this] { m_overlay->setGeometry(m_overlay->geometry()); }, {}));
}

void TestOverlay::clicksOnControlsReachTheHub()
{
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    hub->addLivePerson(m_person.get());
    m_person->bHandUp = m_person->bSelf = true;
    showPicture();
    QSignalSpy audio(hub, &QZRScreenConfig::notifyClickAudioCtrl);
    QSignalSpy more(hub, &QZRScreenConfig::notifyClickMore);
    QSignalSpy hand(hub, &QZRScreenConfig::handleHandup);
    EventCounter window(m_window.get(), {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick});
    const QPoint microphone(10, 280);
    QTest::mouseClick(m_overlay, Qt::LeftButton, {}, microphone);
    QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(399, 299));
    QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(5, 5));
    for (const QSignalSpy* spy : {&audio, &more, &hand}) {
        QCOMPARE(spy->count(), 1);
        QCOMPARE(spy->at(0).at(0).value<void*>(), static_cast<void*>(m_person.get()));
    }
    QCOMPARE(more.at(0).at(1).toInt(), m_overlay->mapToGlobal(QPoint(400 - 48, 0)).x());
    // The second press of a double click is neither a click nor one on the tile.
    QTest::mouseDClick(m_overlay, Qt::LeftButton, {}, microphone);
    QCOMPARE(audio.count(), 1);
    QCOMPARE(window.count, 0);
    // What is no control's goes to the tile.
    QTest::mouseClick(m_overlay, Qt::RightButton, {}, microphone);
    QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(200, 150));
    QCOMPARE(audio.count(), 1);
    QCOMPARE(window.count, 2);
}

void TestOverlay::controlsOfNobodyDoNothing()
{
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    m_person->bHandUp = m_person->bSelf = true;
    showPicture();
    QSignalSpy audio(hub, &QZRScreenConfig::notifyClickAudioCtrl);
    QSignalSpy hand(hub, &QZRScreenConfig::handleHandup);
    const auto clickAll = [this] {
        QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(10, 280));
        QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(8, 8));
    };
    clickAll(); // the participant has gone
    hub->addLivePerson(m_person.get());
    m_overlay->setNoMenu(true); // not the gallery's
    clickAll();
    QCOMPARE(audio.count() + hand.count(), 0);
    m_overlay->setNoMenu(false);
    m_person->bSelf = false; // another's hand
    m_overlay->refresh();
    clickAll();
    QCOMPARE(audio.count(), 1);
    QCOMPARE(hand.count(), 0);
}

void TestOverlay::switchesChangeWhatShows()
{
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    hub->setCurScreenMode(eLayoutSpeakerRight);
    m_person->bHandUp = m_person->bSpeaking = m_person->bLockLook = true;
    m_person->iVideoWidth = 640;
    m_person->iVideoHeight = 360;
    showPicture();
    const auto element = [this](OverlayPart part) {
        emit QZRScreenConfig::getInstance()->sigRefreshPlayDlg();
        return m_overlay->overlayLayout().at(part);
    };
    QVERIFY(element(OverlayPart::Hand).isShown());
    hub->overlay.allHands = false;
    QVERIFY(!element(OverlayPart::Hand).isShown());
    QVERIFY(element(OverlayPart::Border).isShown());
    hub->overlay.speakingHighlight = false;
    QVERIFY(!element(OverlayPart::Border).isShown());
    QCOMPARE(element(OverlayPart::Look).fontPx, 22);
    hub->overlay.largerText = true;
    QCOMPARE(element(OverlayPart::Look).fontPx, 28);
    hub->overlay.lookOwner = 1;
    QVERIFY(element(OverlayPart::Look).text.isEmpty());
    hub->setCurScreenMode(eLayoutSpeaker4); // nobody is larger there
    QVERIFY(!element(OverlayPart::Look).isShown());
    QVERIFY(!element(OverlayPart::Resolution).isShown());
    hub->overlay.showResolution = true;
    QCOMPARE(element(OverlayPart::Resolution).text, QStringLiteral("640*360"));
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
    QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    hub->addLivePerson(m_person.get());
    CPlayWidget tile(nullptr, false);
    tile.resize(400, 300);
    tile.playInfo()->resize(400, 300);
    tile.SetPersonInfo(m_person.get(), false);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&tile);
    QVERIFY(accessible && accessible->actionInterface());
    QCOMPARE(accessible->childCount(), 0);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Alice"));
    QVERIFY(accessible->text(QAccessible::Description).contains(QStringLiteral("静音")));
    m_person->bMute = false;
    tile.playInfo()->setOverlayMode(true); // takes over what has changed
    QVERIFY(!accessible->text(QAccessible::Description).contains(QStringLiteral("静音")));
    QAccessibleActionInterface* actions = accessible->actionInterface();
    QCOMPARE(actions->actionNames(),
             QStringList({QStringLiteral("microphone"), QStringLiteral("more")}));
    QSignalSpy audio(hub, &QZRScreenConfig::notifyClickAudioCtrl);
    actions->doAction(QStringLiteral("microphone"));
    actions->doAction(QStringLiteral("lowerHand"));
    actions->doAction(QStringLiteral("unknown"));
    QCOMPARE(audio.count(), 1);
}

ZR_WIDGET_TEST_MAIN(TestOverlay)
#include "tst_qdlgplayinfo.moc"
