// Whatever changes of a participant shows wherever they can be seen, and nobody has to refresh it.
#include "gallerytest.h"

#include "cdlgspeaktool.h"
#include "cplaywidgetextend.h"
#include "dlgextscreen.h"
#include "qdlgpagemark.h"
#include "qdlgplayinfo.h"
#include "qdlgsubtitle2.h"
#include "qmypagectrl.h"
#include "qmypagescroll.h"
#include "subtitlelist.h"

using zr::OverlayPart;
using zrtest::hub;
using zrtest::Meeting;

namespace {

const char* const kParts[] = {"cover",   "avatar",  "badge", "bar",    "audio",   "name",
                              "network", "spinner", "more",  "paused", "caption", "watermark",
                              "size",    "look",    "hand",  "bubble", "border"};
static_assert(std::size(kParts) == static_cast<std::size_t>(OverlayPart::Count));

/// What a tile shows, by part: variant and text.
QMap<QString, QString> shown(const CPlayWidget* tile)
{
    QMap<QString, QString> parts;
    const auto& elements = tile->playInfo()->overlayLayout().elements;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (elements[i].isShown())
            parts[kParts[i]] = QString::number(elements[i].variant) + ' ' + elements[i].text;
    }
    return parts;
}

/// What has come, and after a '-' what has gone.
QString difference(const QMap<QString, QString>& before, const QMap<QString, QString>& after)
{
    QStringList parts;
    for (const char* part : kParts) {
        if (!after.contains(part) && before.contains(part))
            parts += QString('-') + part;
        else if (after.value(part) != before.value(part))
            parts += part + (' ' + after.value(part)).trimmed().prepend(' ');
    }
    return parts.join("; ");
}

using G = QDlgScreen;
using E = QDlgExtScreen;

/// Ann in two galleries, in the first one's speaker tool and on an extended screen.
struct Stage
{
    explicit Stage(const QString& userId = QStringLiteral("ann"))
        : id(userId)
    {
        auto ownedTool = std::make_unique<CDlgSpeakTool>();
        tool = ownedTool.get();
        m->setSpeakTool(std::move(ownedTool));
        zrtest::open(second);
        add(id, "Ann");
        m->OnPopSelfShareWnd(true, false);
        second.reLayout();
        ext.resize(480, 270);
        ext.show();
        ext.updatePersonInfo(this, id, false, 0, "Ann", 0);
        everywhere(&G::setPreview, &E::setPreview, true);
        for (CPlayWidget* tile : tiles())
            tile->delayResetChangeTag(); // nobody waits for it
        play(64, 36);
    }
    void inGalleries(const std::function<void(G&, tagPersonInfo*)>& act)
    {
        for (G* gallery : {m.gallery.get(), &second})
            act(*gallery, gallery->findPerson(id));
    }
    template<typename Result, typename Value>
    void inGalleries(Result (G::*call)(void*, Value), Value value)
    {
        inGalleries([=](G& gallery, tagPersonInfo* person) { (gallery.*call)(person, value); });
    }
    /// The same of Ann in both galleries, and on the extended screen.
    template<typename Result, typename Value>
    void everywhere(Result (G::*call)(void*, Value), void (E::*extCall)(Value), Value value)
    {
        inGalleries(call, value);
        (ext.*extCall)(value);
    }
    void add(const QString& userId, const QString& name)
    {
        inGalleries([&](G& gallery, auto*) { gallery.AddPerson(userId, name, 0, 0, nullptr); });
        m.settle();
    }
    void play(quint32 width, quint32 height)
    {
        const VantrelRTCVideoFrameQT frame = m.frame(width, height);
        inGalleries([&](G& gallery, auto* ann) { QVERIFY(gallery.playFrame(ann, &frame)); });
        QVERIFY(ext.playFrame(frame));
    }
    void tell(bool self, int role, const QString& name, int color)
    {
        inGalleries([&](G& g, auto* ann) { g.updatePersonInfo(ann, self, role, name, color); });
        ext.updatePersonInfo(this, id, self, role, name, color);
    }
    void change(void (*apply)(zr::OverlaySwitches&))
    {
        zr::OverlaySwitches switches = hub().overlaySwitches();
        apply(switches);
        hub().setOverlaySwitches(switches);
    }
    std::vector<CPlayWidget*> tiles()
    {
        return {m[id]->pWidget, second.findPerson(id)->pWidget, tool->video(), ext.tile()};
    }

    QString id;
    Meeting m;
    CDlgSpeakTool* tool;
    QDlgScreen second{nullptr};
    QDlgExtScreen ext;
};

struct Row
{
    const char* what;
    void (*change)(Stage& s);
    const char* expected;
    const char* where = "1234"; ///< two galleries, tool, extended screen; elsewhere nothing changes
};

// One after the other. The extended screen has no calls for hands and for who speaks.
const Row kRows[] = {
    {"name", [](Stage& s) { s.tell(false, 0, "Bob", 0); }, "name 0 Bob"},
    {"role", [](Stage& s) { s.tell(false, 1, "Bob", 0); }, "badge 1 主持人"},
    {"mute", [](Stage& s) { s.everywhere(&G::setMute, &E::setMute, false); }, "audio 1"},
    {"volume",
     [](Stage& s) {
         s.inGalleries(&G::onModVolume, 60);
         s.ext.setVolume(s.id, 60);
     },
     "audio 5"},
    {"hand", [](Stage& s) { s.inGalleries(&G::onModPersonHandup, true); }, "hand 0", "123"},
    {"all hands", [](Stage& s) { s.change([](auto& switches) { switches.allHands = false; }); },
     "-hand", "123"},
    {"hand lowered", [](Stage& s) { s.inGalleries(&G::onModPersonHandup, false); }, ""},
    {"speaking",
     [](Stage& s) {
         s.m->OnSetVoiceActivateUser("ann");
         s.second.OnSetVoiceActivateUser("ann");
     },
     "border 1", "12"},
    {"highlight",
     [](Stage& s) { s.change([](auto& switches) { switches.speakingHighlight = false; }); },
     "-border", "12"},
    {"look for all", [](Stage& s) { s.everywhere(&G::setAllLook, &E::setAllLook, true); },
     "look 1 全员看TA"},
    {"look",
     [](Stage& s) {
         s.inGalleries(&G::setLockLookPerson, true);
         s.everywhere(&G::setAllLook, &E::setAllLook, false);
         s.ext.setLockLook(true);
     },
     "look 2 锁定看TA"},
    {"mode", [](Stage&) { hub().setCurScreenMode(eLayoutSpeaker4); }, "-look", "123"},
    {"network",
     [](Stage& s) {
         s.inGalleries([&](G& g, auto*) { g.UpdateUserNetStatus(s.id, 1, true, 2); });
         s.ext.UpdateUserNetStatus(s.id, 1, true, 2);
     },
     "network 2; spinner 0"},
    {"self", [](Stage& s) { s.tell(true, 1, "Bob", 0); }, "name 0 Bob(我); -network; -spinner"},
    {"own hand", [](Stage& s) { s.inGalleries(&G::onModPersonHandup, true); }, "hand 0", "123"},
    {"size shown",
     [](Stage& s) { s.change([](auto& switches) { switches.showResolution = true; }); },
     "size 0 64*36"},
    {"image size", [](Stage& s) { s.play(640, 360); }, "size 0 640*360"},
    {"words",
     [](Stage&) {
         hub().setSubtitleOpen(true);
         hub().AddOneSubtitle(1, 3, "Bob", "hello");
     },
     "bubble 3 hello"},
    {"words cleared", [](Stage&) { hub().clearSubtitles(); }, "-bubble"},
    {"preview", [](Stage& s) { s.everywhere(&G::setPreview, &E::setPreview, false); },
     "cover 1; avatar 0 BO"},
    {"colour", [](Stage& s) { s.tell(true, 1, "Bob", 2); }, "avatar 2 BO"},
    {"stream",
     [](Stage& s) {
         s.everywhere(&G::setPreview, &E::setPreview, true);
         s.play(640, 360);
     },
     "cover 0; -avatar"},
    {"reported hidden",
     [](Stage& s) { s.inGalleries([](G&, auto* ann) { hub().setPersonShown(ann, false); }); },
     "cover 1; avatar 2 BO", "123"},
};

} // namespace

class TestTileState : public QObject
{
    Q_OBJECT

private slots:
    void everyInputShowsEverywhere()
    {
        Stage s;
        const auto tiles = s.tiles();
        QVERIFY(s.tool->boundPerson() == s.m["ann"] && shown(tiles[2]).contains("border"));
        QStringList faults;
        for (const Row& row : kRows) {
            std::vector<QMap<QString, QString>> before;
            std::transform(tiles.begin(), tiles.end(), std::back_inserter(before), shown);
            row.change(s);
            for (std::size_t i = 0; i < tiles.size(); ++i) {
                const bool here = QByteArray(row.where).contains(char('1' + i));
                const QString seen = difference(before[i], shown(tiles[i]));
                if (seen != (here ? row.expected : ""))
                    faults += QStringLiteral("%1, place %2: %3").arg(row.what).arg(i + 1).arg(seen);
            }
        }
        QCOMPARE(faults.join("\n"), QString());
    }

    void sharesFollowToo()
    {
        Stage s("sharescreen_u1");
        const auto texts = [&s](const char* part) { // of both galleries and the extended screen
            QStringList each;
            for (const CPlayWidget* tile : {s.tiles()[0], s.tiles()[1], s.ext.tile()})
                each += shown(tile).value(part).section(' ', 1);
            each.removeDuplicates();
            return each.join(", ");
        };
        const auto rename = [&s](G& gallery) {
            gallery.updatePersonInfo(gallery.findPerson("u1"), false, 0, "Zoe", 0);
            s.m.settle();
        };
        s.add("u1", "Eve");
        QCOMPARE(texts("caption"), QString("Eve发起的共享")); // also where the host has said "Ann"
        rename(*s.m.gallery);
        QCOMPARE(shown(s.ext.tile())["caption"], QString("0 Zoe发起的共享"));
        rename(s.second);
        zr::WatermarkInfo mark;
        mark.enabled = true;
        mark.name = "me";
        QZRScreenConfig::setWatermarkInfo(mark);
        emit hub().sigRefreshPlayDlg();
        QCOMPARE(texts("watermark"), QString("me"));
        QZRScreenConfig::setWatermarkInfo({});
        // The tile follows its overlay: no picture comes through before the pause is over.
        const auto uploads = [&s](bool paused) {
            s.m.settings().pauseShare = paused;
            emit hub().sigRefreshPlayDlg();
            s.play(64, 36);
            (void)s.ext.tile()->grabFramebuffer();
            return s.ext.tile()->uploadCount();
        };
        const quint64 before = uploads(true);
        QCOMPARE(texts("paused"), QString("Zoe 暂停了屏幕共享"));
        QCOMPARE(uploads(true), before);
        QVERIFY(uploads(false) > before);
        hub().setCurScreenMode(eLayoutEqualCut); // the mode before: nothing else changes with them
        s.inGalleries([](G& gallery, auto* share) { gallery.DelPerson(share); });
        QCOMPARE(shown(s.ext.tile())["caption"], QString("0 Ann发起的共享"));
    }

    void gradeMakesElementsSmall()
    {
        Meeting m;
        tagPersonInfo* ann = m.add("ann");
        const auto isSmall = [ann] { return ann->pWidget->playInfo()->overlayLayout().bSmall; };
        QVERIFY(!isSmall());
        m->setPersonStreamType(ann, zr::kGradeGrid);
        QVERIFY(isSmall());
        m->setPersonDefStreamType(ann);
        QVERIFY(!isSmall());
    }

    void sizesFollowThePrimaryScreen()
    {
        Stage s;
        s.m.addMany(20);
        const auto arrows = s.m->findChildren<QMyPageCtrl*>();
        const auto* marks = s.m->findChild<QDlgPageMark*>();
        const auto* bar = s.m->findChild<QMyPageScroll*>();
        QDlgSubtitle2 panel(nullptr);
        panel.resize(400, 600);
        panel.showPanel();
        hub().AddOneSubtitle(1, 0, "Ann", "hello");
        // Lengths that are to double.
        const auto measure = [&](int scale) {
            QList<int> sizes{bar->width(), s.tool->height(), arrows[0]->height(),
                             arrows[0]->sizeHint().width(), arrows[1]->width()};
            for (const CPlayWidget* tile : s.tiles())
                sizes += tile->playInfo()->overlayLayout().at(OverlayPart::Audio).rect.height();
            for (int& size : sizes)
                size *= scale;
            return sizes;
        };
        const QList<int> doubled = measure(2);
        const int room = marks->capacity();
        const int sentence = panel.list()->viewObject()->contentHeight();
        QVERIFY(doubled.back() > 0);
        hub().setScreenWidth(3840);
        QCOMPARE(measure(1), doubled);
        QVERIFY(room > marks->capacity());
        QTRY_VERIFY(panel.list()->viewObject()->contentHeight() > sentence * 3 / 2);
        hub().setScreenWidth(1920);
        QCOMPARE(measure(2), doubled);
    }
};

ZR_WIDGET_TEST_MAIN(TestTileState)
#include "tst_tilestate.moc"
