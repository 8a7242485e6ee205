// The extended screen's own record, and what the gallery has to do with it.
#include "gallerytest.h"
#include "pixels.h"

#include "dlgextscreen.h"
#include "qdlgplayinfo.h"

using zrtest::Meeting;

class TestExtScreen : public QObject
{
    Q_OBJECT

private slots:
    void recordFollowsTheHost();
    void marksAreAsymmetric();
    void streamBeginsWithAFrame();
};

void TestExtScreen::recordFollowsTheHost()
{
    Meeting m;
    int data = 0;
    QDlgExtScreen ext;
    ext.show();
    const auto update = [&](void* user, const char* id, const char* name) {
        return ext.updatePersonInfo(user, QString::fromUtf8(id), false, 1, QString::fromUtf8(name),
                                    2);
    };
    QVERIFY(!update(nullptr, "u1", "Ann") && !ext.person());
    QVERIFY(update(&data, "u1", "Ann"));
    const tagPersonInfo* first = ext.person();
    QVERIFY(!update(&data, "u1", "Ann"));
    QVERIFY(update(&data, "u1", "Anna") && ext.person() == first);
    QCOMPARE(ext.tile()->playInfo()->state().name, QString("Anna"));
    ext.setMute(false);
    ext.setVolume("u1", 400);
    QCOMPARE(first->iVolume, 100);
    // Nobody on the screen as far as galleries know, and yet the same picture.
    QVERIFY(m.hub().isExtUser("u1"));
    QVERIFY(!update(nullptr, "u1", "Anna"));
    QVERIFY(!m.hub().isExtUser("u1") && ext.isPerson("u1"));
    // Somebody else begins anew.
    ext.UpdateUserNetStatus("u1", 2, true, 1);
    QVERIFY(update(&data, "u2", "Bob"));
    QVERIFY(ext.person()->bMute && ext.person()->iVolume == 0);
    QVERIFY(!ext.tile()->playInfo()->isNetBad() && !ext.isPerson("u1"));
    QVERIFY(!update(nullptr, "u3", "") && !ext.person());
    QCOMPARE(ext.tile()->GetPersonInfo(), nullptr);
    QVERIFY(!ext.hasPerson());
    // The record is none that hosts know of.
    QCOMPARE(m.host.count(ZRMSG_VIDEO_SHOWN), 0);
}

void TestExtScreen::marksAreAsymmetric()
{
    Meeting m;
    QDlgExtScreen ext;
    ext.resize(320, 180);
    ext.show();
    ext.updatePersonInfo(&m, "u1", false, 0, "Ann", 0);
    const auto mark = [&ext] { return ext.tile()->playInfo()->state().look; };
    ext.setLockLook(true);
    QCOMPARE(mark(), zr::LookMark::LockLook);
    ext.setAllLook(true);
    QCOMPARE(mark(), zr::LookMark::AllLook);
    QVERIFY(!ext.person()->bLockLook);
    ext.setLockLook(false);
    QCOMPARE(mark(), zr::LookMark::AllLook);
    ext.setAllLook(false);
    QCOMPARE(mark(), zr::LookMark::None);
}

void TestExtScreen::streamBeginsWithAFrame()
{
    Meeting m;
    tagPersonInfo* person = m.add("u1");
    QDlgExtScreen ext;
    ext.resize(320, 180);
    ext.show();
    QVERIFY(QTest::qWaitForWindowExposed(&ext));
    const zrtest::Picture frame(64, 36, zrtest::kRed);
    QVERIFY(!ext.playFrame(frame.frame()));
    ext.updatePersonInfo(&m, "u1", false, 0, "Ann", 0);
    const auto pictured = [&] {
        QTest::qWait(130); // the change mark's delay
        return ext.tile()->playInfo()->isPictureVisible();
    };
    m.gallery->setPreview(person, true);
    QVERIFY(ext.person()->bPreview && !pictured());
    QVERIFY(ext.playFrame(frame.frame()) && pictured());
    QCOMPARE(ext.person()->iVideoWidth, 64);
    m.gallery->setPreview(person, false);
    m.gallery->setPreview(person, true);
    QVERIFY(!pictured()); // not with the last picture of before
    QVERIFY(ext.playFrame(frame.frame()) && pictured());
    emit m.hub().notifyExtPreview("u2", false);
    QVERIFY(pictured());
}

ZR_WIDGET_TEST_MAIN(TestExtScreen)
#include "tst_dlgextscreen.moc"
