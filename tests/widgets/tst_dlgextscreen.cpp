// The extended screen's own record.
#include "gallerytest.h"

#include "dlgextscreen.h"
#include "exthandle.h"
#include "qdlgplayinfo.h"

using zrtest::Meeting;

class TestExtScreen : public QObject
{
    Q_OBJECT

private slots:
    void recordFollowsTheHost();
    void aHostThatThrowsKeepsNothingBack();
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
    ext.setMute(false);
    ext.setVolume("u1", 400);
    QCOMPARE(first->iVolume, 100);
    ext.setLockLook(true);
    ext.setAllLook(true);
    QVERIFY(!first->bLockLook);
    ext.setLockLook(false);
    QVERIFY(first->bAllLook); // stays
    // Nobody on the screen as far as galleries know, and yet the same picture.
    QVERIFY(m.hub().isExtUser("u1"));
    QVERIFY(!update(nullptr, "u1", "Anna"));
    QVERIFY(!m.hub().isExtUser("u1") && ext.isPerson("u1"));
    QCOMPARE(m.host.count(ZRMSG_VIDEO_SHOWN), 1);
    QVERIFY(update(&data, "u1", "Anna") && m.hub().isExtUser("u1"));
    ext.resize(300, 200);
    QCOMPARE(m.host.count(ZRMSG_VIDEO_SHOWN), 2);
    QCOMPARE(m.host.messages.back().lParam, reinterpret_cast<qintptr>(&data));
    // Somebody else begins anew.
    ext.UpdateUserNetStatus("u1", 2, true, 1);
    QVERIFY(update(&data, "u2", "Bob"));
    QVERIFY(ext.person()->bMute && ext.person()->iVolume == 0 && !ext.isPerson("u1"));
    QVERIFY(!ext.tile()->playInfo()->state().bFrozen);
    QVERIFY(!update(nullptr, "u3", "") && !ext.person());
    QVERIFY(!ext.tile()->GetPersonInfo() && !ext.hasPerson());
    // Who is to be shown on a screen that is still hidden is reported when it is shown.
    ext.hide();
    QVERIFY(update(&data, "u4", "Dan"));
    QCOMPARE(m.host.count(ZRMSG_VIDEO_SHOWN), 3);
    ext.place({0, 0, 320, 180});
    QCOMPARE(m.host.count(ZRMSG_VIDEO_SHOWN), 4);
}

void TestExtScreen::aHostThatThrowsKeepsNothingBack()
{
    {
        Meeting m;
        m.host.onMessage = [](const zrtest::HostDouble::Message&) { throw 1; };
        m->AddPerson("u1", "Ann", 1, 0, nullptr);
        QVERIFY_EXCEPTION_THROWN(m->isPersonVisible("u1"), int);
        m.host.onMessage = nullptr;
        m->AddPerson("u2", "Bob", 2, 0, nullptr);
        QVERIFY(m->isPersonVisible("u2")); // arranged once more
    }
    int data = 0;
    ST_ZRExtHdl* const ext = createExtScreen(
        nullptr, [](unsigned long, unsigned long long, long long) -> int { throw 1; });
    ext->m_pDlg->updatePersonInfo(&data, "u1", false, 1, "Ann", 0);
    QVERIFY_EXCEPTION_THROWN(ext->m_pDlg->onExtPlayWidgetLBtnClick(ext->m_pDlg->tile()), int);
    g_extScreens.release(ext);
    QVERIFY(!HubUser::isAny()); // nobody is inside
}

ZR_WIDGET_TEST_MAIN(TestExtScreen)
#include "tst_dlgextscreen.moc"
