// The overlay: for how long it shows what, what repaints it, and what becomes of clicks. How it
// looks the goldens know, and what it shows of whom the rule of its state.
#include "testsupport.h"

#include "cplaywidget.h"
#include "qdlgplayinfo.h"

#include <QAccessible>
#include <QPaintEvent>

using zr::OverlayPart;
using zrtest::hub;

namespace {

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
    void init()
    {
        m_person = std::make_unique<tagPersonInfo>();
        m_person->userID = QStringLiteral("alice");
        m_person->userName = QStringLiteral("Alice");
        m_window = std::make_unique<QWidget>();
        m_window->resize(400, 300);
        m_overlay = new CountingOverlay(m_window.get());
        m_overlay->setGeometry(m_window->rect());
        m_overlay->setVideoRect(QRect(0, 30, 400, 240));
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void cleanup()
    {
        m_window.reset();
        m_person.reset();
        QZRScreenConfig::destroyInstance();
    }

    void spinnerRunsWhileTheNetworkIsBadAndItShows()
    {
        // Without a picture there is nothing to wait on.
        m_overlay->setPerson(m_person.get());
        m_overlay->UpdateNetStatus(1, true, 0);
        QVERIFY(m_overlay->state().bFrozen && !m_overlay->isSpinning());
        showPicture();
        QVERIFY(m_overlay->isSpinning());
        QTest::qWait(50);
        m_overlay->paints = 0;
        QTRY_VERIFY_WITH_TIMEOUT(m_overlay->paints >= 2, 1000);
        m_window->hide();
        QVERIFY(!m_overlay->isSpinning());
        m_window->show();
        QVERIFY(m_overlay->isSpinning());
        tick(15000);
        QVERIFY(m_overlay->isSpinning());
        tick(15001);
        QVERIFY(!m_overlay->isSpinning());
        QVERIFY(!m_overlay->isPictureVisible()); // the avatar, for the rest of the spell

        tagPersonInfo other; // whose network is as bad begins a spell of their own
        other.bPreview = true;
        other.iStreamStatus = kStreamRunning;
        other.net = m_person->net;
        m_overlay->setPerson(&other);
        QVERIFY(m_overlay->isSpinning());
        tick(0);
        m_overlay->setPerson(m_person.get());
        tick(15001);
        QVERIFY(!m_overlay->isPictureVisible());
        m_window->hide(); // nor does the participant's next spell depend on who sees it
        m_person->net.report(1, false, 5);
        m_person->net.report(2, true, 1);
        m_window->show();
        QVERIFY(m_overlay->isSpinning());
    }

    void moreRectangleFollowsThePointer()
    {
        showPicture();
        for (const QPoint& at : {QPoint(399, 299), QPoint(200, 150)}) {
            QCursor::setPos(m_overlay->mapToGlobal(at));
            QTRY_COMPARE(m_overlay->IsMouseOnBtnMore(), at.x() == 399);
        }
    }

    void onlyTheChangedRectangleIsRepainted()
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
            return m_overlay->paints == (rect.isEmpty() ? 0 : 1)
                   && (rect.isEmpty() || m_overlay->painted.boundingRect() == rect);
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
                emit hub().sigRefreshPlayDlg();
                QCoreApplication::processEvents();
            }
        };
        QVERIFY(repaints(tellTheSameAgain, {}));
    }

    void clicksOnControlsReachTheHub()
    {
        m_person->bHandUp = m_person->bSelf = true;
        showPicture();
        QSignalSpy audio(&hub(), &QZRScreenConfig::notifyClickAudioCtrl);
        QSignalSpy more(&hub(), &QZRScreenConfig::notifyClickMore);
        QSignalSpy hand(&hub(), &QZRScreenConfig::handleHandup);
        const zrtest::EventWatch window({m_window.get()},
                                        {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick});
        const QPoint microphone(10, 280);
        const auto clicks = [&] { // on each control; @return how many were one
            for (QSignalSpy* spy : {&audio, &more, &hand})
                spy->clear();
            for (const QPoint& at : {microphone, QPoint(399, 299), QPoint(5, 5)})
                QTest::mouseClick(m_overlay, Qt::LeftButton, {}, at);
            return audio.count() + more.count() + hand.count();
        };
        QCOMPARE(clicks(), 0); // the participant has gone
        hub().livePersons.insert(m_person.get());
        m_overlay->setPlace(zr::TilePlace::ExtScreen);
        QCOMPARE(clicks(), 0);
        m_overlay->setPlace(zr::TilePlace::Gallery);
        m_person->bSelf = false;
        m_overlay->refresh();
        QCOMPARE(clicks(), 2); // another's hand stays up
        m_person->bSelf = true;
        m_overlay->refresh();
        const int passedOn = window.count;
        QCOMPARE(clicks(), 3);
        for (const QSignalSpy* spy : {&audio, &more, &hand})
            QCOMPARE(spy->at(0).at(0).value<void*>(), static_cast<void*>(m_person.get()));
        QCOMPARE(more.at(0).at(1).toInt(), m_overlay->mapToGlobal(QPoint(400 - 48, 0)).x());
        // The second press of a double click is neither a click nor one on the tile.
        QTest::mouseDClick(m_overlay, Qt::LeftButton, {}, microphone);
        QCOMPARE(audio.count(), 1);
        // A drag does not click; a shorter move does, also off the edge.
        const QPoint corner = m_overlay->overlayLayout().at(OverlayPart::Audio).rect.topLeft();
        zrtest::drag(*m_overlay, microphone, microphone + QPoint(6, 0));
        QCOMPARE(audio.count(), 1);
        zrtest::drag(*m_overlay, corner, corner - QPoint(0, 5));
        QCOMPARE(audio.count(), 2);
        // The press was on somebody else.
        QTest::mousePress(m_overlay, Qt::LeftButton, {}, microphone);
        m_overlay->setPerson(nullptr);
        m_overlay->setPerson(m_person.get());
        QTest::mouseRelease(m_overlay, Qt::LeftButton, {}, microphone);
        QCOMPARE(window.count, passedOn);
        // What is no control's goes to the tile.
        QTest::mouseClick(m_overlay, Qt::RightButton, {}, microphone);
        QTest::mouseClick(m_overlay, Qt::LeftButton, {}, QPoint(200, 150));
        QCOMPARE(audio.count(), 2);
        QCOMPARE(window.count, passedOn + 2);
    }

    void ownSentenceShowsForAWhile()
    {
        showPicture();
        const auto says = [this](int id, const char* name, const char* text) {
            hub().AddOneSubtitle(id, 0, name, text);
            return m_overlay->overlayLayout().at(OverlayPart::Bubble).text;
        };
        QCOMPARE(says(1, "Alice", "closed"), QString()); // subtitles are not open
        hub().setSubtitleOpen(true);
        QCOMPARE(says(2, "Bob", "not mine"), QString());
        QCOMPARE(says(3, "Alice", "one"), QString("one"));
        QTest::qWait(200);
        (void)says(3, "Alice", "one two"); // grows
        QTest::qWait(200);
        QCOMPARE(says(4, "Bob", "still there"), QString("one two"));
        QTRY_COMPARE(says(4, "Bob", "has gone"), QString());
        m_window->hide();
        (void)says(5, "Alice", "four");
        m_window->show();
        QCOMPARE(says(4, "Bob", "was not seen"), QString());
    }

    void tileIsAccessible()
    {
        m_overlay->setPerson(m_person.get());
        const std::pair<QList<int>, std::function<void()>> changes[] = {
            {{QAccessible::DescriptionChanged}, [this] { m_person->bMute = false; }},
            {{QAccessible::NameChanged}, [this] { m_person->userName = "Bob"; }},
            {{}, [this] { m_person->iVolume = 80; }},
        };
        for (const auto& [announced, change] : changes) {
            m_overlay->announced.clear();
            change();
            m_overlay->refresh();
            QCOMPARE(m_overlay->announced, announced);
        }
        hub().livePersons.insert(m_person.get());
        auto tile = std::make_unique<CPlayWidget>(m_window.get(), false);
        tile->setGeometry(0, 0, 400, 300);
        tile->playInfo()->resize(400, 300);
        tile->SetPersonInfo(m_person.get(), false);
        tile->StartShow();
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(tile.get());
        QVERIFY(accessible && accessible->actionInterface() && accessible->childCount() == 0);
        QVERIFY(accessible->text(QAccessible::Description).contains(QStringLiteral("打开")));
        QAccessibleActionInterface* actions = accessible->actionInterface();
        QCOMPARE(actions->actionNames(), QStringList({"microphone", "more"}));
        const QSignalSpy audio(&hub(), &QZRScreenConfig::notifyClickAudioCtrl);
        for (const char* action : {"microphone", "lowerHand", "unknown"})
            actions->doAction(action);
        QCOMPARE(audio.count(), 1);
        hub().livePersons.remove(m_person.get()); // has left
        QCOMPARE(actions->actionNames(), QStringList());
        actions->doAction("microphone");
        QCOMPARE(audio.count(), 1);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Bob"));
        const QAccessible::Id id = QAccessible::uniqueId(accessible);
        tile.reset();
        QVERIFY(!QAccessible::accessibleInterface(id));
    }

private:
    void showPicture()
    {
        m_person->bPreview = true;
        m_person->iStreamStatus = kStreamRunning;
        m_overlay->setPerson(m_person.get());
        m_overlay->setLoading(false);
        m_overlay->refresh();
        QVERIFY(m_overlay->isPictureVisible());
    }
    void tick(qint64 elapsedMs)
    {
        m_overlay->elapsedMs = elapsedMs;
        m_overlay->onTimeUpdateLoading();
        m_overlay->refresh();
    }

    std::unique_ptr<tagPersonInfo> m_person;
    std::unique_ptr<QWidget> m_window;
    CountingOverlay* m_overlay = nullptr; ///< child of the window
};

ZR_WIDGET_TEST_MAIN(TestOverlay)
#include "tst_qdlgplayinfo.moc"
