// A host that uses Qt itself: its application object is the module's too, and outlives it. It loads
// the library at run time, or is linked with it where ZR_LINKED says so.
#include "check.h"
#include "meeting.h"

#include <QApplication>
#include <QFile>
#include <QPixmapCache>
#include <QPushButton>
#include <QVBoxLayout>

#include <atomic>
#include <memory>
#include <thread>

namespace {

constexpr int kWidthPx = 640;
constexpr int kHeightPx = 360;

/// A widget of the host's, with texts of its own.
class HostWidget : public QWidget
{
public:
    HostWidget()
    {
        setWindowFlags(Qt::FramelessWindowHint);
        setGeometry(0, 0, kWidthPx, kHeightPx);
        show();
    }
    HWND hwnd() const { return reinterpret_cast<HWND>(winId()); }
};

/// A point of the picture's.
Rgb seen()
{
    return Screenshot{zrhost::desktop::grab({60, 200}, {1, 1})}.at(0, 0);
}

/// Everything that a host can borrow, in one parent.
struct Visit
{
    explicit Visit(HWND parent)
        : screen(zr.Init(parent, nullptr))
        , ext(zr.exports.ZRScreenExt.Init(parent, nullptr))
        , line(zr.exports.ZRCtrl.QLineEdit_Init(parent, &small, "subject"))
        , box(zr.exports.ZRCtrl.QTextEdit_Init(parent, &small, 1, 2, 3))
        , date(zr.exports.ZRScreenDate.Init(parent, nullptr))
    {
        REQUIRE(screen && ext && line && box && date);
        play = zr.AddPerson(screen, text("u1"), text("Ann"), 1, 0, nullptr);
        CHECK_EQUAL(zr.JoinMeetingFinish(screen, true), 1);
        CHECK_EQUAL(zr.Preview(screen, play, true), 1);
        use();
    }
    /// Calls what moves, shows and paints.
    void use()
    {
        const zr::Exports& api = zr.exports;
        tagPOINT at{kWidthPx, 100};
        CHECK_EQUAL(zr.MoveWindow(screen, &area, 0), 1);
        CHECK_EQUAL(zr.OpenSubtitle(screen, true), 1);
        CHECK_EQUAL(zr.AddSentence(screen, 1, 1, text("Ann"), text("会议")), 1);
        (void)zr.GetShareWgtPos(screen);
        api.ZRScreenExt.Move(ext, &small, 0);
        api.ZRCtrl.QLineEdit_SetText(line, "text");
        api.ZRCtrl.QLineEdit_MoveWindow(line, &small);
        api.ZRCtrl.QLineEdit_SetFocus(line);
        api.ZRCtrl.QTextEdit_SetText(box, "text");
        api.ZRScreenDate.Move(date, &at, 2024, 2, 29, 1, 2, 3);
        pump(100);
    }
    void release()
    {
        const zr::Exports& api = zr.exports;
        api.ZRScreenDate.Release(date);
        api.ZRCtrl.QTextEdit_Release(box);
        api.ZRCtrl.QLineEdit_Release(line);
        api.ZRScreenExt.Release(ext);
        zr.Release(screen);
    }
    /// Delivers pictures of a colour until it is seen.
    [[nodiscard]] bool shows(const Rgb& colour)
    {
        Picture picture(kWidthPx, kHeightPx, colour);
        return pumpUntil([&] {
            CHECK_EQUAL(zr.PlayFrame(screen, play, &picture.frame), 1);
            pump(20);
            return isNear(seen(), colour, 8);
        });
    }

    Module zr;
    tagRECT area{0, 0, kWidthPx, kHeightPx};
    tagRECT small{10, 10, 100, 40};
    void *screen, *ext, *line, *box, *date;
    void* play = nullptr;
};

/// Has Qt go through what it keeps: fonts, pictures, style sheets.
void useQt()
{
    QWidget window;
    QVBoxLayout rows(&window);
    for (const char* const family : {"微软雅黑", "Microsoft YaHei", "none"}) {
        auto* const button = new QPushButton(QString::fromUtf8(family));
        button->setFont(QFont(button->text(), 13));
        rows.addWidget(button);
    }
    window.show();
    pump(50);
    QPixmapCache::clear();
    qApp->setStyleSheet(QLatin1String("QPushButton{font: 12pt \"Microsoft YaHei\"}"));
    pump(50);
    qApp->setStyleSheet(QString());
}

} // namespace

/// What the library has left in Qt is also read when the application object ends.
ZR_CASE(qthost, unloadsAndComesBack)
{
    const QString picture = QStringLiteral(":/pic4k/pageNext.png");
    HostWidget widget;
    for (const bool releases : {true, false}) {
        Visit visit(widget.hwnd());
        CHECK(visit.shows(releases ? kRed : kBlue));
        CHECK(QFile::exists(picture));
        const native::Range range = native::rangeOf("ZRScreenMod");
        if (releases)
            visit.release();
        visit.zr.unload();
        CHECK(native::closeOff(range));
        CHECK(!QFile::exists(picture));
        CHECK(pumpUntil([&] { return nativehost::childCountOf(widget.winId()) == 0; }));
        useQt();
    }
}

/// Renderers crash on a window that is gone.
ZR_CASE(qthost, parentGoesFirst)
{
    enum class Parent
    {
        Qt,
        Native,
        NativeUnheard, ///< its end is still to be heard of when the next one comes
    };
    for (const Parent kind : {Parent::Qt, Parent::Native, Parent::NativeUnheard}) {
        const bool isQt = kind == Parent::Qt;
        auto widget = isQt ? std::make_unique<HostWidget>() : nullptr;
        auto window = isQt ? nullptr : std::make_unique<HostWindow>(kWidthPx, kHeightPx);
        Visit visit(isQt ? widget->hwnd() : window->hwnd());
        CHECK(visit.shows(kGreen));
        std::atomic<bool> stop{false};
        std::thread media([&] {
            Picture picture(kWidthPx, kHeightPx, kRed);
            while (!stop)
                visit.zr.PlayFrame(visit.screen, visit.play, &picture.frame);
        });
        pump(100);
        widget.reset();
        window.reset();
        if (kind != Parent::NativeUnheard) {
            pump(100);
            visit.use();
            CHECK(!isNear(seen(), kRed, 8)); // nothing stands on the desktop
        }
        stop = true;
        media.join();
        const HostWidget another;
        CHECK_EQUAL(visit.zr.SetParent(visit.screen, another.hwnd()), 1);
        visit.use();
        CHECK(visit.shows(kBlue));
        visit.release();
    }
}

#ifdef ZR_LINKED
static bool g_refusedAtFirst = false;

/// The program ends with the library, which it has brought along.
ZR_CASE(qtlinked, usesTheApplicationOfTheProgram)
{
    CHECK(g_refusedAtFirst);
    HostWidget widget;
    Visit visit(widget.hwnd());
    CHECK(visit.shows(kRed));
    visit.release();
    visit.zr.leaveLoaded();
}
#endif

int main(int argc, char** argv)
{
#ifdef ZR_LINKED
    g_refusedAtFirst = ZRScreen_Init(nullptr, nullptr) == nullptr;
#endif
    QApplication app(argc, argv);
    return check::run(argc, argv);
}
