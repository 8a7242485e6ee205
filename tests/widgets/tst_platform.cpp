#include "platform.h"

#include "testsupport.h"

#include <QDialog>
#include <QProcess>
#include <QResizeEvent>
#include <QX11Info>

#include <xcb/xcb.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using platform::NativeWindow;

template<typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T* reply)
{
    return {reply, &std::free};
}

void waitForServer(xcb_connection_t* c)
{
    owned(xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
}

/// So that what Qt has asked for until now comes before what others ask for.
void waitForQtsRequests()
{
    waitForServer(QX11Info::connection());
}

xcb_window_t xid(platform::NativeWindow window)
{
    return static_cast<xcb_window_t>(window);
}

/// A program of its own, as far as the X server can tell: the native host.
class Stranger
{
public:
    Stranger()
        : c(xcb_connect(nullptr, nullptr))
        , screen(xcb_setup_roots_iterator(xcb_get_setup(c)).data)
    {
    }
    ~Stranger() { xcb_disconnect(c); }
    Q_DISABLE_COPY(Stranger)

    NativeWindow makeWindow(const QRect& r, NativeWindow parent = 0, quint16 border = 0) const
    {
        const xcb_window_t id = xcb_generate_id(c);
        const xcb_window_t in = parent ? xid(parent) : screen->root;
        xcb_create_window(c, XCB_COPY_FROM_PARENT, id, in, static_cast<qint16>(r.x()),
                          static_cast<qint16>(r.y()), static_cast<quint16>(r.width()),
                          static_cast<quint16>(r.height()), border, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen->root_visual, 0, nullptr);
        xcb_map_window(c, id);
        sync();
        return id;
    }
    void moveWindow(NativeWindow window, const QPoint& to) const
    {
        const quint32 values[] = {static_cast<quint32>(to.x()), static_cast<quint32>(to.y())};
        xcb_configure_window(c, xid(window), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
        sync();
    }
    void destroyWindow(NativeWindow window) const
    {
        xcb_destroy_window(c, xid(window));
        sync();
    }
    auto treeOf(NativeWindow window) const
    {
        return owned(xcb_query_tree_reply(c, xcb_query_tree(c, xid(window)), nullptr));
    }
    NativeWindow parentOf(NativeWindow window) const
    {
        const auto tree = treeOf(window);
        return tree ? tree->parent : 0;
    }
    NativeWindow topChildOf(NativeWindow window) const
    {
        const auto tree = treeOf(window);
        const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
        return count > 0 ? xcb_query_tree_children(tree.get())[count - 1] : 0;
    }
    QRect geometryOf(NativeWindow window, int* border = nullptr) const
    {
        const auto g = owned(xcb_get_geometry_reply(c, xcb_get_geometry(c, xid(window)), nullptr));
        if (!g)
            return {};
        if (border)
            *border = g->border_width;
        return {g->x, g->y, g->width, g->height};
    }
    bool isViewable(NativeWindow window) const
    {
        const auto attributes = owned(
            xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, xid(window)), nullptr));
        return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    }
    NativeWindow root() const { return screen->root; }
    QSize screenSize() const { return {screen->width_in_pixels, screen->height_in_pixels}; }

private:
    void sync() const { waitForServer(c); }
    xcb_connection_t* c;
    xcb_screen_t* screen;
};

/// A window of the host's that goes when the test is done, after what the test has put into it.
class HostWindow
{
public:
    explicit HostWindow(const Stranger& host, const QRect& rect = {0, 0, 640, 480})
        : m_host(host)
        , m_id(host.makeWindow(rect))
    {
    }
    ~HostWindow()
    {
        waitForQtsRequests();
        m_host.destroyWindow(m_id);
    }
    Q_DISABLE_COPY(HostWindow)
    operator NativeWindow() const { return m_id; }

private:
    const Stranger& m_host;
    NativeWindow m_id;
};

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
        waitForQtsRequests();
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
                release(reinterpret_cast<xcb_unmap_notify_event_t*>(event.get())->window);
        }
    }
    void frame(xcb_window_t client)
    {
        const xcb_window_t frame = xcb_generate_id(c);
        xcb_create_window(c, XCB_COPY_FROM_PARENT, frame, root, 10, 10, 300, 300, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_reparent_window(c, client, frame, 5, 20);
        xcb_map_window(c, frame);
        xcb_map_window(c, client);
        setState(client, 1);
    }
    void release(xcb_window_t client)
    {
        xcb_reparent_window(c, client, root, 10, 10);
        setState(client, 0);
    }
    void setState(xcb_window_t client, quint32 value)
    {
        const quint32 state[] = {value, 0};
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, client, wmState, wmState, 32, 2, state);
        xcb_flush(c);
    }

    xcb_connection_t* c;
    xcb_window_t root;
    xcb_atom_t wmState;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

class Dialog : public QDialog
{
public:
    Dialog()
        : QDialog(nullptr, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
    {
        setGeometry(0, 0, 200, 200);
    }
    /// @return false when the window does not become the dialog's parent, or the dialog visible
    [[nodiscard]] bool showIn(NativeWindow window)
    {
        const bool ok = platform::setParentWindow(winId(), window);
        show();
        return ok && QTest::qWaitForWindowExposed(this);
    }
    QVector<QSize> resizes;

protected:
    void resizeEvent(QResizeEvent* event) override { resizes.append(event->size()); }
};

/// Pages of which every second one can be read, the first included.
class PatchyMemory
{
public:
    static constexpr std::size_t kPages = 6;
    PatchyMemory()
        : page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
        , begin(static_cast<char*>(mmap(nullptr, kPages * page, PROT_READ | PROT_WRITE,
                                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        for (std::size_t i = 1; i < kPages; i += 2)
            protect(i, PROT_NONE);
    }
    ~PatchyMemory() { munmap(begin, kPages * page); }
    Q_DISABLE_COPY(PatchyMemory)
    void protect(std::size_t index, int rights) { mprotect(begin + index * page, page, rights); }

    const std::size_t page;
    char* const begin;
};

const void* address(std::uintptr_t value)
{
    return reinterpret_cast<const void*>(value);
}

} // namespace

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void readabilityOfRanges();
    void stringLengthStopsAtTheEndOfMemory();
    void ticksAndScreenSizeAreThoseOfTheSystem();
    void embedsIntoAForeignWindow();
    void movesBetweenParents();
    void leavesTheWindowManagerForGood();
    void showsAgainInsideAForeignWindow();
    void refusesWhatTheServerRefuses();
    void embedsAWindowThatIsNotOfQt();
    void placesOnTopAndClamps();
    void outlivesTheHostWindow();
    void leavesNothingBehind();
    void priorityIsRaisedAsFarAsAllowed();
    void createsTheApplication();
};

void TestPlatform::readabilityOfRanges()
{
    PatchyMemory memory;
    const std::size_t page = memory.page;
    char* const p = memory.begin;
    using platform::isReadable;

    QVERIFY(isReadable(p, page));
    QVERIFY(isReadable(p + page - 3, 3)); // an unaligned end
    QVERIFY(isReadable(p + 5, 0));
    QVERIFY(!isReadable(p, page + 1));
    QVERIFY(!isReadable(p + page - 1, 2));
    QVERIFY(!isReadable(p + page, 1));
    QVERIFY(!isReadable(p + page + 1, page)); // only the end can be read
    QVERIFY(!isReadable(p, 2 * page + 1));    // only the middle can not
    memory.protect(1, PROT_READ);
    QVERIFY(isReadable(p, 2 * page + 1));
    memory.protect(1, PROT_NONE);

    QVERIFY(!isReadable(nullptr, 0));
    QVERIFY(!isReadable(nullptr, 8));
    QVERIFY(!isReadable(address(1), 1));
    QVERIFY(!isReadable(address(0xdeadbeefdeadbeef), 24));
    QVERIFY(!isReadable(address(~std::uintptr_t{0}), 1));
    QVERIFY(!isReadable(p, ~std::size_t{0})); // wraps around

    errno = ENOENT;
    QVERIFY(!isReadable(p + page, 1));
    QCOMPARE(errno, ENOENT);

    // A long range is probed at its ends only: the cost of a frame does not grow with its size.
    constexpr std::size_t kLong = 1048576;
    constexpr std::size_t kEveryPage = 65536;
    char* const block = static_cast<char*>(
        mmap(nullptr, kLong, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(block + kEveryPage - page, page, PROT_NONE);
    QVERIFY(!isReadable(block, kEveryPage));
    QVERIFY(isReadable(block, kEveryPage + 1));
    QVERIFY(isReadable(block, kLong));
    munmap(block, kLong);
}

void TestPlatform::stringLengthStopsAtTheEndOfMemory()
{
    PatchyMemory memory;
    const std::size_t page = memory.page;
    char* const p = memory.begin;
    using platform::readableStringLength;

    QCOMPARE(readableStringLength(""), qptrdiff(0));
    QCOMPARE(readableStringLength("tile"), qptrdiff(4));
    QCOMPARE(readableStringLength(nullptr), qptrdiff(-1));
    QCOMPARE(readableStringLength(static_cast<const char*>(address(0x10))), qptrdiff(-1));
    QCOMPARE(readableStringLength(p + page), qptrdiff(-1));

    std::memset(p, 'x', page);
    QCOMPARE(readableStringLength(p), qptrdiff(-1));
    p[page - 1] = '\0';
    QCOMPARE(readableStringLength(p), qptrdiff(page - 1));
    QCOMPARE(readableStringLength(p + page - 1), qptrdiff(0));

    // Over the seam between two pages.
    memory.protect(1, PROT_READ | PROT_WRITE);
    std::memset(p, 'x', 2 * page);
    p[page] = '\0';
    QCOMPARE(readableStringLength(p + 3), qptrdiff(page - 3));
}

void TestPlatform::ticksAndScreenSizeAreThoseOfTheSystem()
{
    const quint32 before = platform::tickMs();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const quint32 elapsed = platform::tickMs() - before;
    QVERIFY2(elapsed >= 49 && elapsed < 2000, qPrintable(QString::number(elapsed)));
    const Stranger host;
    QCOMPARE(QSize(platform::screenWidthPx(), platform::screenHeightPx()), host.screenSize());
}

void TestPlatform::embedsIntoAForeignWindow()
{
    const Stranger host;
    const HostWindow window(host, QRect(100, 50, 640, 480));
    Dialog dialog;
    platform::setChildStyle(dialog.winId());
    QVERIFY(dialog.showIn(window));
    QCOMPARE(host.parentOf(dialog.winId()), NativeWindow(window));
    QCOMPARE(host.geometryOf(dialog.winId()), QRect(0, 0, 200, 200));
    QVERIFY(host.isViewable(dialog.winId()));

    dialog.resizes.clear();
    platform::placeWindow(dialog.winId(), QRect(20, 30, 320, 240));
    QCOMPARE(host.geometryOf(dialog.winId()), QRect(20, 30, 320, 240));
    QTRY_COMPARE(dialog.resizes, QVector<QSize>{QSize(320, 240)});
    QCOMPARE(dialog.size(), QSize(320, 240));
    QCOMPARE(dialog.mapToGlobal(QPoint(1, 2)), QPoint(121, 82));

    // Popups must find the place of a child when only its parent has moved.
    host.moveWindow(window, QPoint(300, 200));
    QCoreApplication::processEvents();
    QCOMPARE(dialog.mapToGlobal(QPoint(1, 2)), QPoint(321, 232));
}

void TestPlatform::movesBetweenParents()
{
    const Stranger host;
    const HostWindow first(host);
    const HostWindow second(host, QRect(700, 0, 400, 300));
    Dialog dialog;
    QVERIFY(dialog.showIn(first));
    platform::placeWindow(dialog.winId(), QRect(20, 30, 320, 240));
    QTRY_COMPARE(dialog.size(), QSize(320, 240));

    QVERIFY(platform::setParentWindow(dialog.winId(), second));
    QCOMPARE(host.parentOf(dialog.winId()), NativeWindow(second));
    QCOMPARE(host.geometryOf(dialog.winId()), QRect(0, 0, 320, 240));
    QVERIFY(host.isViewable(dialog.winId()));
    QTRY_COMPARE(dialog.mapToGlobal(QPoint(0, 0)), QPoint(700, 0));

    for (int i = 0; i < 2; ++i) { // the second time it is there already
        QVERIFY(platform::setParentWindow(dialog.winId(), 0));
        QCOMPARE(host.parentOf(dialog.winId()), host.root());
    }

    QVERIFY(platform::setParentWindow(dialog.winId(), first));
    QCOMPARE(host.parentOf(dialog.winId()), NativeWindow(first));
    QTRY_VERIFY(host.isViewable(dialog.winId()));
}

// A screen that was at the top level vanished from its new parent a moment later.
void TestPlatform::leavesTheWindowManagerForGood()
{
    const Stranger host;
    const HostWindow window(host); // before there is a manager to frame it
    const WindowManager manager;
    for (const int settleMs : {0, 200}) {
        Dialog dialog;
        dialog.show();
        QTest::qWait(settleMs);
        for (int round = 0; round < 2; ++round) {
            QVERIFY(platform::setParentWindow(dialog.winId(), window));
            QTest::qWait(150);
            QCOMPARE(host.parentOf(dialog.winId()), NativeWindow(window));
            QVERIFY(host.isViewable(dialog.winId()));
            QVERIFY(platform::setParentWindow(dialog.winId(), 0));
            QTest::qWait(settleMs);
        }
        QTRY_VERIFY(host.isViewable(dialog.winId()));
        QVERIFY(host.parentOf(dialog.winId()) != host.root()); // it has a frame
    }
}

void TestPlatform::showsAgainInsideAForeignWindow()
{
    const Stranger host;
    const HostWindow window(host);
    Dialog dialog;
    QVERIFY(platform::setParentWindow(dialog.winId(), window));
    platform::placeWindow(dialog.winId(), QRect(5, 6, 100, 90));
    for (int round = 0; round < 2; ++round) {
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QVERIFY(host.isViewable(dialog.winId()));
        QCOMPARE(host.geometryOf(dialog.winId()), QRect(5, 6, 100, 90));
        dialog.hide();
        QTRY_VERIFY(!host.isViewable(dialog.winId()));
    }
    QCOMPARE(host.parentOf(dialog.winId()), NativeWindow(window));
}

void TestPlatform::refusesWhatTheServerRefuses()
{
    const Stranger host;
    const HostWindow window(host);
    Dialog dialog;
    QVERIFY(dialog.showIn(window));

    const NativeWindow destroyed = host.makeWindow(QRect(0, 0, 10, 10));
    host.destroyWindow(destroyed);
    const NativeWindow ownChild = host.makeWindow(QRect(0, 0, 10, 10), dialog.winId());
    const NativeWindow neverIssued = 0x00dead00;
    const NativeWindow tooLarge = NativeWindow{0x700000000} + window;
    for (const NativeWindow bad :
         {neverIssued, destroyed, tooLarge, NativeWindow(dialog.winId()), ownChild}) {
        QVERIFY(!platform::setParentWindow(dialog.winId(), bad));
        QCOMPARE(host.parentOf(dialog.winId()), NativeWindow(window));
        QVERIFY(host.isViewable(dialog.winId()));
    }
    for (const NativeWindow bad : {neverIssued, destroyed, tooLarge, NativeWindow{0}}) {
        QVERIFY(!platform::setParentWindow(bad, window));
        platform::setChildStyle(bad);
        platform::placeWindow(bad, QRect(0, 0, 10, 10));
    }
    QCoreApplication::processEvents(); // an error that came late would be reported here
}

void TestPlatform::embedsAWindowThatIsNotOfQt()
{
    const Stranger host;
    const HostWindow window(host);
    const NativeWindow child = host.makeWindow(QRect(30, 30, 50, 50), 0, 3);
    QVERIFY(platform::setParentWindow(child, window));
    QCOMPARE(host.parentOf(child), NativeWindow(window));
    platform::setChildStyle(child);
    int border = -1;
    QCOMPARE(host.geometryOf(child, &border), QRect(0, 0, 50, 50));
    QCOMPARE(border, 0);
    QVERIFY(platform::setParentWindow(child, 0));
    QCOMPARE(host.parentOf(child), host.root());
    host.destroyWindow(window);
    host.destroyWindow(child);
}

void TestPlatform::placesOnTopAndClamps()
{
    const Stranger host;
    const HostWindow window(host);
    Dialog dialog;
    QVERIFY(dialog.showIn(window));
    const NativeWindow sibling = host.makeWindow(QRect(0, 0, 50, 50), window);
    QCOMPARE(host.topChildOf(window), sibling);
    platform::placeWindow(dialog.winId(), QRect(0, 0, 100, 100));
    QCOMPARE(host.topChildOf(window), NativeWindow(dialog.winId()));

    platform::placeWindow(dialog.winId(), QRect(-40, -50, 0, -7));
    QCOMPARE(host.geometryOf(dialog.winId()), QRect(-40, -50, 1, 1));
    QTRY_COMPARE(dialog.size(), QSize(1, 1));
    platform::placeWindow(dialog.winId(), QRect(100000, -100000, 10, 10));
    QCOMPARE(host.geometryOf(dialog.winId()), QRect(32767, -32768, 10, 10));

    dialog.hide();
    platform::placeWindow(dialog.winId(), QRect(1, 2, 30, 40));
    QVERIFY(host.isViewable(dialog.winId()));
}

// A host may close its window and release the screen afterwards.
void TestPlatform::outlivesTheHostWindow()
{
    const Stranger host;
    const NativeWindow window = host.makeWindow(QRect(0, 0, 640, 480));
    const HostWindow next(host);
    // Qt unmaps and destroys a window that it does not know to be gone.
    for (int i = 0; i < 2; ++i)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("BadWindow")));
    {
        Dialog dialog;
        QVERIFY(dialog.showIn(window));
        host.destroyWindow(window); // and with it the dialog's
        QCoreApplication::processEvents();
        QVERIFY(!platform::setParentWindow(dialog.winId(), next));
        platform::placeWindow(dialog.winId(), QRect(0, 0, 10, 10));
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
    Dialog another;
    another.show();
    QVERIFY(QTest::qWaitForWindowExposed(&another));
}

void TestPlatform::leavesNothingBehind()
{
    const Stranger host;
    const HostWindow first(host);
    const HostWindow second(host);
    const auto before = QGuiApplication::allWindows().size();
    for (int round = 0; round < 3; ++round) {
        Dialog dialog;
        for (const NativeWindow parent :
             {NativeWindow(first), NativeWindow(second), NativeWindow(first), NativeWindow{0},
              NativeWindow(second), NativeWindow(second)})
            QVERIFY(platform::setParentWindow(dialog.winId(), parent));
        dialog.show();
        QCoreApplication::processEvents();
        QCOMPARE(QGuiApplication::allWindows().size(), before + 2); // the dialog and its container
    }
    QCOMPARE(QGuiApplication::allWindows().size(), before);
}

void TestPlatform::priorityIsRaisedAsFarAsAllowed()
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
    QVERIFY(first.after <= first.before);
    QCOMPARE(first.after, actual);
    QCOMPARE(first.ok, first.after <= -10);
    QCOMPARE(second.before, first.after);
    QCOMPARE(second.after, first.after);
    QCOMPARE(second.ok, first.ok);
    if (geteuid() == 0)
        QCOMPARE(first.after, std::min(own, -10));
}

namespace {

constexpr char kCreateOption[] = "--create-application";

/// Runs in a process of its own, with the environment that the test has prepared.
int createAndReport()
{
    const QByteArray variable = qgetenv("QT_QPA_PLATFORM");
    int argc = 0;
    const std::unique_ptr<QApplication> app(platform::createApplication(argc, nullptr));
    std::printf("%s %s %s %s\n", qPrintable(QGuiApplication::platformName()),
                qgetenv("QT_QPA_PLATFORM") == variable ? "kept" : "changed",
                std::setlocale(LC_NUMERIC, nullptr), std::setlocale(LC_CTYPE, nullptr));
    return 0;
}

} // namespace

void TestPlatform::createsTheApplication()
{
    const char* const kClosed = ":9999";
    const QByteArray here = qgetenv("DISPLAY");
    struct Row
    {
        const char *display, *variable, *expected; ///< an empty one is not set
    };
    for (const Row& row : {Row{here, "", "xcb"}, Row{"", "", "offscreen"},
                           Row{kClosed, "", "offscreen"}, Row{here, "minimal", "minimal"},
                           Row{kClosed, "xcb", "offscreen"}, Row{here, "nowhere", "offscreen"}}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const auto setOrRemove = [&environment](const char* name, const char* value) {
            environment.remove(QLatin1String(name));
            if (*value != '\0')
                environment.insert(QLatin1String(name), QLatin1String(value));
        };
        setOrRemove("DISPLAY", row.display);
        setOrRemove("QT_QPA_PLATFORM", row.variable);
        setOrRemove("LC_ALL", "C.UTF-8");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {QLatin1String(kCreateOption)});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.readAllStandardOutput().simplified(),
                 QByteArray(row.expected) + " kept C C.UTF-8");
        QCOMPARE(process.exitCode(), 0);
    }
}

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], kCreateOption) == 0)
        return createAndReport();
    return zrtest::runWidgetTest<TestPlatform>(argc, argv);
}

#include "tst_platform.moc"
