#include "platform.h"

#include "testsupport.h"

#include <QDialog>
#include <QResizeEvent>
#include <QScreen>

#include <cstdint>
#include <cstring>
#include <windows.h>

namespace {

using platform::NativeWindow;

HWND toHwnd(NativeWindow window)
{
    return reinterpret_cast<HWND>(window);
}

/// A window of the native host's that goes when the test is done.
class HostWindow
{
public:
    explicit HostWindow(const QRect& rect = {0, 0, 640, 480})
    {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &DefWindowProcW;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"ZRPlatformTest";
        RegisterClassW(&windowClass); // a second time fails, and that is fine
        m_window = CreateWindowExW(0, windowClass.lpszClassName, L"", WS_POPUP | WS_VISIBLE,
                                   rect.x(), rect.y(), rect.width(), rect.height(), nullptr,
                                   nullptr, windowClass.hInstance, nullptr);
    }
    ~HostWindow() { DestroyWindow(m_window); }
    Q_DISABLE_COPY(HostWindow)

    [[nodiscard]] HWND hwnd() const { return m_window; }
    [[nodiscard]] NativeWindow id() const { return platform::toNative(m_window); }
    void moveTo(const QPoint& to) const
    {
        SetWindowPos(m_window, nullptr, to.x(), to.y(), 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }

private:
    HWND m_window;
};

class Dialog : public QDialog
{
public:
    Dialog()
        : QDialog(nullptr, Qt::CustomizeWindowHint | Qt::FramelessWindowHint)
    {
        setGeometry(0, 0, 200, 200);
    }
    [[nodiscard]] HWND hwnd() { return toHwnd(winId()); }
    /// @return false when the window does not become the dialog's parent, or the dialog visible
    [[nodiscard]] bool showIn(const HostWindow& host)
    {
        const bool ok = platform::setParentWindow(winId(), host.id());
        show();
        return ok && QTest::qWaitForWindowExposed(this);
    }
    QVector<QSize> resizes;

protected:
    void resizeEvent(QResizeEvent* event) override { resizes.append(event->size()); }
};

QRect inParent(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetAncestor(window, GA_PARENT), reinterpret_cast<POINT*>(&rect), 2);
    return {QPoint(rect.left, rect.top), QPoint(rect.right - 1, rect.bottom - 1)};
}

QPoint onScreen(HWND window)
{
    POINT origin{};
    ClientToScreen(window, &origin);
    return {origin.x, origin.y};
}

/// Pages of which every second one can be read, the first included.
class PatchyMemory
{
public:
    static constexpr std::size_t kPages = 6;
    PatchyMemory()
    {
        SYSTEM_INFO system{};
        GetSystemInfo(&system);
        page = system.dwPageSize;
        begin = static_cast<char*>(
            VirtualAlloc(nullptr, kPages * page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        for (std::size_t i = 1; i < kPages; i += 2)
            protect(i, PAGE_NOACCESS);
    }
    ~PatchyMemory() { VirtualFree(begin, 0, MEM_RELEASE); }
    Q_DISABLE_COPY(PatchyMemory)
    void protect(std::size_t index, DWORD rights) const
    {
        DWORD before = 0;
        VirtualProtect(begin + index * page, page, rights, &before);
    }

    std::size_t page = 0;
    char* begin = nullptr;
};

const void* address(std::uintptr_t value)
{
    return reinterpret_cast<const void*>(value);
}

} // namespace

class TestPlatformWin32 : public QObject
{
    Q_OBJECT

private slots:
    void readabilityOfRanges();
    void stringLengthStopsAtTheEndOfMemory();
    void ticksAndScreenSizeAreThoseOfTheSystem();
    void embedsAndFollowsTheHost();
    void movesBetweenParents();
    void refusesWhatIsNoWindow();
    void givesTheStyleOfAChild();
    void placesOnTop();
    void showsAgainInsideTheHost();
    void outlivesTheHostWindow();
    void priorityIsRaised();
};

void TestPlatformWin32::readabilityOfRanges()
{
    const PatchyMemory memory;
    const std::size_t page = memory.page;
    char* const p = memory.begin;
    using platform::isReadable;

    QVERIFY(isReadable(p, page));
    QVERIFY(isReadable(p + page - 3, 3));
    QVERIFY(!isReadable(p, page + 1));
    QVERIFY(!isReadable(p + page, 1));
    QVERIFY(!isReadable(p + page + 1, page)); // only the end can be read
    QVERIFY(!isReadable(p, 2 * page + 1));    // only the middle can not
    for (const DWORD rights :
         {PAGE_READONLY, PAGE_READWRITE, PAGE_EXECUTE_READ, PAGE_EXECUTE_READWRITE}) {
        memory.protect(1, rights);
        QVERIFY(isReadable(p, 2 * page + 1));
    }
    // Looking at a guard page would take the guard away from its owner.
    memory.protect(1, PAGE_READWRITE | PAGE_GUARD);
    QVERIFY(!isReadable(p + page, 1));
    QVERIFY(!isReadable(p + page, 1));
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(p + page, &region, sizeof region);
    QVERIFY((region.Protect & PAGE_GUARD) != 0);

    QVERIFY(!isReadable(nullptr, 0));
    QVERIFY(!isReadable(nullptr, 8));
    QVERIFY(!isReadable(address(1), 1));
    QVERIFY(!isReadable(address(0xdeadbeefdeadbeef), 24));
    QVERIFY(!isReadable(address(~std::uintptr_t{0}), 1));
    QVERIFY(!isReadable(p, ~std::size_t{0})); // wraps around
    void* const reserved = VirtualAlloc(nullptr, page, MEM_RESERVE, PAGE_READWRITE);
    QVERIFY(!isReadable(reserved, 1));
    VirtualFree(reserved, 0, MEM_RELEASE);
    QVERIFY(isReadable(address(reinterpret_cast<std::uintptr_t>(&DefWindowProcW)), 1)); // code
}

void TestPlatformWin32::stringLengthStopsAtTheEndOfMemory()
{
    const PatchyMemory memory;
    char* const p = memory.begin;
    std::memset(p, 'a', memory.page);
    QCOMPARE(platform::readableStringLength(p), qptrdiff(-1));
    p[memory.page - 1] = '\0';
    QCOMPARE(platform::readableStringLength(p), qptrdiff(memory.page - 1));
    QCOMPARE(platform::readableStringLength(p + memory.page - 1), qptrdiff(0));
    QCOMPARE(platform::readableStringLength(p + memory.page), qptrdiff(-1));
    QCOMPARE(platform::readableStringLength(nullptr), qptrdiff(-1));
    QCOMPARE(platform::readableStringLength("text"), qptrdiff(4));
}

void TestPlatformWin32::ticksAndScreenSizeAreThoseOfTheSystem()
{
    const quint32 before = platform::tickMs();
    QTest::qSleep(60);
    const quint32 passed = platform::tickMs() - before;
    QVERIFY2(passed >= 40 && passed < 5000, qPrintable(QString::number(passed)));
    QCOMPARE(QSize(platform::screenWidthPx(), platform::screenHeightPx()),
             QGuiApplication::primaryScreen()->geometry().size());
}

void TestPlatformWin32::embedsAndFollowsTheHost()
{
    const HostWindow host({100, 80, 640, 480});
    Dialog dialog;
    QVERIFY(dialog.showIn(host));
    QCOMPARE(GetAncestor(dialog.hwnd(), GA_PARENT), host.hwnd());
    QCOMPARE(inParent(dialog.hwnd()), QRect(0, 0, 200, 200));
    platform::placeWindow(dialog.winId(), {30, 20, 300, 200});
    QTRY_COMPARE(dialog.size(), QSize(300, 200));
    // What pops up over a tile finds its place by this, also after the host has moved.
    QTRY_COMPARE(dialog.mapToGlobal(QPoint(5, 5)), QPoint(135, 105));
    host.moveTo({400, 300});
    QCOMPARE(onScreen(dialog.hwnd()), QPoint(430, 320));
    QTRY_COMPARE(dialog.mapToGlobal(QPoint(5, 5)), QPoint(435, 325));
}

void TestPlatformWin32::movesBetweenParents()
{
    const HostWindow first;
    const HostWindow second({700, 0, 640, 480});
    Dialog dialog;
    QVERIFY(dialog.showIn(first));
    platform::placeWindow(dialog.winId(), {30, 20, 300, 200});
    QVERIFY(platform::setParentWindow(dialog.winId(), second.id()));
    QCOMPARE(GetAncestor(dialog.hwnd(), GA_PARENT), second.hwnd());
    QCOMPARE(inParent(dialog.hwnd()).topLeft(), QPoint(0, 0));
    QVERIFY(platform::setParentWindow(dialog.winId(), 0));
    QCOMPARE(GetAncestor(dialog.hwnd(), GA_PARENT), GetDesktopWindow());
    QVERIFY(platform::setParentWindow(dialog.winId(), first.id()));
    QCOMPARE(GetAncestor(dialog.hwnd(), GA_PARENT), first.hwnd());
    QTRY_COMPARE(dialog.mapToGlobal(QPoint(0, 0)), onScreen(dialog.hwnd()));
}

void TestPlatformWin32::refusesWhatIsNoWindow()
{
    const HostWindow host;
    Dialog dialog;
    QVERIFY(dialog.showIn(host));
    constexpr NativeWindow kNoWindow = 0x7ffffff0;
    QVERIFY(!platform::setParentWindow(dialog.winId(), kNoWindow));
    QCOMPARE(GetAncestor(dialog.hwnd(), GA_PARENT), host.hwnd());
    QVERIFY(!platform::setParentWindow(kNoWindow, host.id()));
    platform::placeWindow(kNoWindow, {0, 0, 10, 10});
    platform::setChildStyle(kNoWindow);
}

void TestPlatformWin32::givesTheStyleOfAChild()
{
    const HostWindow host;
    Dialog dialog;
    QVERIFY(platform::setParentWindow(dialog.winId(), host.id()));
    platform::setChildStyle(dialog.winId());
    QCOMPARE(quint32(GetWindowLongW(dialog.hwnd(), GWL_STYLE)), quint32(0x42000000));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    platform::setChildStyle(dialog.winId());
    QCOMPARE(quint32(GetWindowLongW(dialog.hwnd(), GWL_STYLE)),
             quint32(0x42000000) | quint32(WS_VISIBLE));
}

void TestPlatformWin32::placesOnTop()
{
    const HostWindow host;
    Dialog lower;
    Dialog upper;
    QVERIFY(lower.showIn(host));
    QVERIFY(upper.showIn(host));
    lower.resizes.clear();
    platform::placeWindow(lower.winId(), {10, 20, 320, 240});
    QCOMPARE(inParent(lower.hwnd()), QRect(10, 20, 320, 240));
    QCOMPARE(GetWindow(host.hwnd(), GW_CHILD), lower.hwnd());
    QTRY_COMPARE(lower.resizes, QVector<QSize>{QSize(320, 240)});
    platform::placeWindow(lower.winId(), {0, 0, -5, -5}); // harmless
    QVERIFY(inParent(lower.hwnd()).isEmpty());
}

void TestPlatformWin32::showsAgainInsideTheHost()
{
    const HostWindow host;
    Dialog dialog;
    QVERIFY(dialog.showIn(host));
    platform::placeWindow(dialog.winId(), {30, 20, 300, 200});
    QTRY_COMPARE(dialog.size(), QSize(300, 200));
    dialog.hide();
    QVERIFY(!IsWindowVisible(dialog.hwnd()));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(GetAncestor(dialog.hwnd(), GA_PARENT), host.hwnd());
    QCOMPARE(inParent(dialog.hwnd()), QRect(30, 20, 300, 200));
}

void TestPlatformWin32::outlivesTheHostWindow()
{
    // Qt complains, rightly: the host breaks the rule to release the screen first.
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    {
        Dialog dialog;
        bool shown = false;
        {
            const HostWindow host;
            shown = dialog.showIn(host);
        } // takes the dialog's native window along
        QTest::qWait(50);
        dialog.resize(100, 100);
        dialog.hide();
        qInstallMessageHandler(before);
        QVERIFY(shown);
    }
}

void TestPlatformWin32::priorityIsRaised()
{
    const int before = GetThreadPriority(GetCurrentThread());
    const platform::PriorityChange change = platform::setThreadPriorityTimeCritical();
    QVERIFY(change.ok);
    QCOMPARE(change.before, before);
    QCOMPARE(change.after, 15);
    QCOMPARE(GetThreadPriority(GetCurrentThread()), 15);
    SetThreadPriority(GetCurrentThread(), before);
}

QTEST_MAIN(TestPlatformWin32)
#include "tst_platform_win32.moc"
