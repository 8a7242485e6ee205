// What the platform does on X11 alone: window managers, errors of the server, the environment.
#include "embedding.h"
#include "hostprocess.h"
#include "nativehost.h"
#include "testsupport.h"

#include <QX11Info>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <thread>

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace {

template<typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T* reply)
{
    return {reply, &std::free};
}

/// A window manager, slow to act: what comes to the top level gets a frame, what is withdrawn goes
/// back to the root window, wherever it is by then.
class WindowManager
{
public:
    WindowManager()
        : c(xcb_connect(nullptr, nullptr))
        , root(xcb_setup_roots_iterator(xcb_get_setup(c)).data->root)
        , wmState(
              owned(xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, 8, "WM_STATE"), nullptr))->atom)
    {
        const quint32 mask =
            XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(c, root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(c);
        m_thread = std::thread([this] { manage(); });
    }
    ~WindowManager()
    {
        QGuiApplication::sync();
        m_stop = true;
        m_thread.join();
        xcb_disconnect(c); // its frames go, and what is in them
    }
    Q_DISABLE_COPY(WindowManager)

private:
    void manage()
    {
        while (!m_stop) {
            const auto event = owned(xcb_poll_for_event(c));
            std::this_thread::sleep_for(std::chrono::milliseconds(event ? 15 : 1));
            if (!event)
                continue;
            if (event->response_type == XCB_MAP_REQUEST)
                frame(reinterpret_cast<xcb_map_request_event_t*>(event.get())->window);
            else if (event->response_type == (XCB_UNMAP_NOTIFY | 0x80)) // as ICCCM wants it sent
                moveTo(root, reinterpret_cast<xcb_unmap_notify_event_t*>(event.get())->window, 0);
        }
    }
    void frame(xcb_window_t client)
    {
        const xcb_window_t frame = xcb_generate_id(c);
        xcb_create_window(c, XCB_COPY_FROM_PARENT, frame, root, 10, 10, 300, 300, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(c, frame);
        moveTo(frame, client, 1);
    }
    void moveTo(xcb_window_t parent, xcb_window_t client, quint32 isNormal)
    {
        xcb_reparent_window(c, client, parent, 5, 20);
        if (isNormal)
            xcb_map_window(c, client);
        const quint32 state[] = {isNormal, 0};
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, client, wmState, wmState, 32, 2, state);
        xcb_flush(c);
    }

    xcb_connection_t* c;
    xcb_window_t root;
    xcb_atom_t wmState;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace

class TestPlatformX11 : public QObject
{
    Q_OBJECT

private slots:
    void probingChangesNothingAndCostsLittle()
    {
        const PatchyMemory memory;
        errno = ENOENT;
        QVERIFY(!platform::isReadable(memory.begin + memory.page, 1));
        QCOMPARE(errno, ENOENT);

        // A long range is probed at its ends only: the cost of a frame does not grow with its size.
        constexpr std::size_t kLong = 1048576;
        constexpr std::size_t kEveryPage = 65536;
        char* const block = static_cast<char*>(
            mmap(nullptr, kLong, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        mprotect(block + kEveryPage - memory.page, memory.page, PROT_NONE);
        QVERIFY(!platform::isReadable(block, kEveryPage));
        QVERIFY(platform::isReadable(block, kEveryPage + 1));
        QVERIFY(platform::isReadable(block, kLong));
        munmap(block, kLong);
    }

    // A screen that was at the top level vanished from its new parent a moment later.
    void leavesTheWindowManagerForGood()
    {
        const QuietHostWindow window; // before there is a manager to frame it
        const WindowManager manager;
        for (const int settleMs : {0, 200}) {
            Dialog dialog;
            dialog.show();
            QTest::qWait(settleMs);
            for (int round = 0; round < 2; ++round) {
                QVERIFY(platform::setParentWindow(dialog.id(), window));
                QTest::qWait(150);
                QCOMPARE(nativehost::parentOf(dialog.id()), NativeWindow(window));
                QVERIFY(nativehost::isViewable(dialog.id()));
                for (int i = 0; i < 2; ++i) // the second time it is there already
                    QVERIFY(platform::setParentWindow(dialog.id(), 0));
                QTest::qWait(settleMs);
            }
            QTRY_VERIFY(nativehost::isViewable(dialog.id()));
            QVERIFY(nativehost::parentOf(dialog.id()) != nativehost::desktop()); // it has a frame
        }
    }

    // A bare window stood on the desktop: the host's own had not been flushed.
    void waitsForWindowsThatTheServerHasNotSeen()
    {
        const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> host(
            xcb_connect(nullptr, nullptr), &xcb_disconnect);
        xcb_connection_t* const c = host.get();
        const xcb_window_t root = static_cast<xcb_window_t>(nativehost::desktop());
        for (const bool placed : {false, true}) {
            Dialog dialog;
            Embedding embedding(dialog);
            const xcb_window_t parent = xcb_generate_id(c);
            xcb_create_window(c, XCB_COPY_FROM_PARENT, parent, root, 0, 0, 300, 300, 0,
                              XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
            xcb_map_window(c, parent);
            QVERIFY(!embedding.into(parent));
            embedding.place({5, 6, 100, 80});
            embedding.show();
            QTest::qWait(50);
            QVERIFY(!dialog.isVisible());
            owned(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr)); // flushes, waits
            if (placed)
                embedding.place({7, 8, 100, 80});
            else
                QTRY_VERIFY(dialog.isVisible());
            QCOMPARE(nativehost::parentOf(dialog.id()), NativeWindow{parent});
            QCOMPARE(placeOf(dialog.id()), placed ? QRect(7, 8, 100, 80) : QRect(5, 6, 100, 80));
            QTRY_VERIFY(nativehost::isViewable(dialog.id()));
        }
        QGuiApplication::sync(); // the dialogs go before the host's windows
    }

    void refusesWhatTheServerRefuses()
    {
        const QuietHostWindow window;
        Dialog dialog;
        QVERIFY(dialog.showIn(window));
        const NativeWindow ownChild = nativehost::makeWindow({0, 0, 10, 10}, dialog.id());
        const NativeWindow tooLarge = NativeWindow{0x700000000} + window;
        for (const NativeWindow bad : {tooLarge, dialog.id(), ownChild}) {
            QVERIFY(!platform::setParentWindow(dialog.id(), bad));
            QCOMPARE(nativehost::parentOf(dialog.id()), NativeWindow(window));
        }
        QVERIFY(!platform::setParentWindow(tooLarge, window));
        platform::setChildStyle(tooLarge);
        platform::placeWindow(tooLarge, QRect(0, 0, 10, 10));
        QCoreApplication::processEvents(); // an error that came late would be reported here
    }

    void aChildHasNoBorder()
    {
        Dialog dialog;
        xcb_connection_t* const c = QX11Info::connection();
        const xcb_window_t id = static_cast<xcb_window_t>(dialog.id());
        const quint32 borderPx = 3;
        xcb_configure_window(c, id, XCB_CONFIG_WINDOW_BORDER_WIDTH, &borderPx);
        platform::setChildStyle(id);
        QCOMPARE(
            int(owned(xcb_get_geometry_reply(c, xcb_get_geometry(c, id), nullptr))->border_width),
            0);
    }

    void priorityIsRaisedAsFarAsAllowed()
    {
        // On a thread of its own: the raise is for good.
        platform::PriorityChange first{};
        platform::PriorityChange second{};
        int actual = 99;
        std::thread([&] {
            first = platform::setThreadPriorityTimeCritical();
            second = platform::setThreadPriorityTimeCritical();
            actual = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
        }).join();
        const int own = getpriority(PRIO_PROCESS, 0);
        QCOMPARE(first.before, own); // nobody else's has changed
        QVERIFY(first.after <= first.before && first.ok == (first.after <= -10));
        QVERIFY(geteuid() != 0 || first.after == std::min(own, -10));
        for (const int later : {actual, second.before, second.after})
            QCOMPARE(later, first.after);
    }
};

ZR_WIDGET_TEST_MAIN(TestPlatformX11)
#include "tst_platform_x11.moc"
