// The extended screen's own record.
#include "gallerytest.h"

#include "dlgextscreen.h"
#include "exthandle.h"
#include "qdlgplayinfo.h"

using zrtest::hub;
using zrtest::Meeting;

class TestExtScreen : public QObject
{
    Q_OBJECT

private slots:
    void recordFollowsTheHost()
    {
        Meeting m;
        int data = 0;
        QDlgExtScreen ext;
        ext.show();
        const auto update = [&](void* user, const char* id, const char* name) {
            return ext.updatePersonInfo(user, id, false, 1, name, 2);
        };
        const auto reports = [&m] { return m.host.count(ZRMSG_VIDEO_SHOWN); };
        QVERIFY(!update(nullptr, "u1", "Ann") && !ext.person());
        QVERIFY(update(&data, "u1", "Ann") && !update(&data, "u1", "Ann"));
        ext.setLockLook(true);
        ext.setAllLook(true);
        QVERIFY(!ext.person()->bLockLook);
        // Nobody on the screen as far as galleries know, and yet the same picture.
        QVERIFY(!update(nullptr, "u1", "Anna") && !hub().isExtUser("u1") && ext.isPerson("u1"));
        QVERIFY(update(&data, "u1", "Anna") && hub().isExtUser("u1"));
        QCOMPARE(reports(), 2);
        // Somebody else begins anew.
        ext.setMute(false);
        ext.UpdateUserNetStatus("u1", 2, true, 1);
        QVERIFY(update(&data, "u2", "Bob") && ext.person()->bMute && !ext.isPerson("u1"));
        QVERIFY(!ext.tile()->playInfo()->state().bFrozen);
        QVERIFY(!update(nullptr, "u3", "") && !ext.person() && !ext.tile()->GetPersonInfo());
        // Who is to be shown on a screen that is still hidden is reported when it is shown.
        ext.hide();
        QVERIFY(update(&data, "u4", "Dan"));
        QCOMPARE(reports(), 3);
        ext.place({0, 0, 320, 180});
        QCOMPARE(reports(), 4);
    }

    void aHostThatThrowsKeepsNothingBack()
    {
        {
            Meeting m;
            m.host.onMessage = [](const auto&) { throw 1; };
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
};

ZR_WIDGET_TEST_MAIN(TestExtScreen)
#include "tst_dlgextscreen.moc"
