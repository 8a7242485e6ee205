// A meeting in a widget of a Qt program, which has an application object of its own and loads the
// library at run time, after that object was made.
#include <zrscreenmod.h>

#include <QApplication>
#include <QDebug>
#include <QLibrary>
#include <QTimer>
#include <QWidget>

namespace {

constexpr uint32_t kWidth = 640;
constexpr uint32_t kHeight = 360;

/// The functions that this program uses.
struct Module
{
    decltype(&ZRScreen_Init) init = nullptr;
    decltype(&ZRScreen_MoveWindow) moveWindow = nullptr;
    decltype(&ZRScreen_AddPerson) addPerson = nullptr;
    decltype(&ZRScreen_JoinMeetingFinish) joinMeetingFinish = nullptr;
    decltype(&ZRScreen_Preview) preview = nullptr;
    decltype(&ZRScreen_PlayFrame) playFrame = nullptr;
    decltype(&ZRScreen_Release) release = nullptr;

    bool load(QLibrary& library)
    {
        return library.load() && find(library, init, "ZRScreen_Init")
               && find(library, moveWindow, "ZRScreen_MoveWindow")
               && find(library, addPerson, "ZRScreen_AddPerson")
               && find(library, joinMeetingFinish, "ZRScreen_JoinMeetingFinish")
               && find(library, preview, "ZRScreen_Preview")
               && find(library, playFrame, "ZRScreen_PlayFrame")
               && find(library, release, "ZRScreen_Release");
    }

private:
    template<typename Function>
    static bool find(QLibrary& library, Function& function, const char* name)
    {
        function = reinterpret_cast<Function>(library.resolve(name));
        return function != nullptr;
    }
};

struct Participant
{
    void* play = nullptr;
    bool isOpen = false; ///< the stream
};

Module g_module;
void* g_screen = nullptr;

/// Called from inside the library's event handling, on this program's thread.
int onMessage(unsigned long message, unsigned long long, long long hostValue)
{
    if (message != ZRMSG_VIDEO_SHOWN && message != ZRMSG_VIDEO_HIDDEN)
        return 0;
    auto* const person = reinterpret_cast<Participant*>(hostValue);
    person->isOpen = message == ZRMSG_VIDEO_SHOWN; // a client opens or closes the stream here
    g_module.preview(g_screen, person->play, person->isOpen);
    return 0;
}

void playNextPicture(const Participant& person)
{
    static uint32_t row = 0;
    row = (row + 4) % (kHeight - 40);
    constexpr int luma = static_cast<int>(kWidth * kHeight);
    constexpr int bar = static_cast<int>(kWidth * 40);
    QByteArray i420(luma, 32); // blue, with a brighter bar
    i420.replace(static_cast<int>(row * kWidth), bar, QByteArray(bar, static_cast<char>(235)));
    i420 += QByteArray(luma / 4, static_cast<char>(240)) + QByteArray(luma / 4, 118);
    VantrelRTCVideoFrameQT frame = {
        {}, reinterpret_cast<const uint8_t*>(i420.constData()), 0, kWidth, kHeight};
    if (person.isOpen)
        g_module.playFrame(g_screen, person.play, &frame);
}

/// The parent of the screen: a native window, whose size is told in physical pixels.
class MeetingWidget : public QWidget
{
public:
    MeetingWidget()
    {
        setAttribute(Qt::WA_NativeWindow);
        resize(static_cast<int>(kWidth), static_cast<int>(kHeight));
    }
    void place() const
    {
        tagRECT area = {0, 0, qRound(width() * devicePixelRatioF()),
                        qRound(height() * devicePixelRatioF())};
        if (g_screen)
            g_module.moveWindow(g_screen, &area, 0);
    }

protected:
    void resizeEvent(QResizeEvent*) override { place(); }
    void closeEvent(QCloseEvent*) override
    {
        QApplication::quit(); // the library's windows would count as open ones
    }
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QLibrary library(QStringLiteral("ZRScreenMod"), QStringLiteral("0.1"));
    if (!g_module.load(library)) {
        qCritical() << library.errorString();
        return 1;
    }
    MeetingWidget widget;
    widget.show();
    QApplication::sync(); // the library's own connection can see the window now

    Participant ann;
    char id[] = "ann";
    char name[] = "Ann";
    g_screen = g_module.init(reinterpret_cast<HWND>(widget.winId()), onMessage);
    widget.place();
    ann.play = g_module.addPerson(g_screen, id, name, /*joinTime*/ 1, 0, &ann);
    g_module.joinMeetingFinish(g_screen, true); // everybody who was there is told: arrange them

    QTimer pictures;
    QObject::connect(&pictures, &QTimer::timeout, [&ann] { playNextPicture(ann); });
    pictures.start(40);
    const int result = QApplication::exec();
    g_module.release(g_screen); // before its parent goes
    return result;
}
