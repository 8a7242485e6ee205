// What the platform does on Windows alone: kinds of pages, styles, priorities.
#include "hostprocess.h"
#include "nativehost.h"
#include "testsupport.h"

#include <windows.h>

class TestPlatformWin32 : public QObject
{
    Q_OBJECT

private slots:
    void readabilityByProtection()
    {
        const PatchyMemory memory;
        char* const p = memory.begin + memory.page;
        const auto protect = [&](DWORD rights) {
            DWORD before = 0;
            VirtualProtect(p, memory.page, rights, &before);
            return platform::isReadable(p, memory.page);
        };
        for (const DWORD rights :
             {PAGE_READONLY, PAGE_READWRITE, PAGE_EXECUTE_READ, PAGE_EXECUTE_READWRITE})
            QVERIFY2(protect(rights), qPrintable(QString::number(rights)));
        // Looking at a guard page would take the guard away from its owner.
        QVERIFY(!protect(PAGE_READWRITE | PAGE_GUARD));
        MEMORY_BASIC_INFORMATION region{};
        VirtualQuery(p, &region, sizeof region);
        QVERIFY((region.Protect & PAGE_GUARD) != 0);

        void* const reserved = VirtualAlloc(nullptr, memory.page, MEM_RESERVE, PAGE_READWRITE);
        QVERIFY(!platform::isReadable(reserved, 1));
        VirtualFree(reserved, 0, MEM_RELEASE);
        QVERIFY(platform::isReadable(reinterpret_cast<const void*>(&DefWindowProcW), 1)); // code
    }

    void givesTheStyleOfAChild()
    {
        const QuietHostWindow host;
        Dialog dialog;
        const auto style = [&dialog] {
            platform::setChildStyle(dialog.id());
            return DWORD(GetWindowLongW(reinterpret_cast<HWND>(dialog.id()), GWL_STYLE));
        };
        QVERIFY(platform::setParentWindow(dialog.id(), host));
        QCOMPARE(style(), DWORD(WS_CHILD | WS_CLIPCHILDREN));
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(style(), DWORD(WS_CHILD | WS_CLIPCHILDREN | WS_VISIBLE));
    }

    void priorityIsRaised()
    {
        const int before = GetThreadPriority(GetCurrentThread());
        const platform::PriorityChange change = platform::setThreadPriorityTimeCritical();
        QVERIFY(change.ok);
        QCOMPARE(change.before, before);
        QCOMPARE(change.after, 15);
        QCOMPARE(GetThreadPriority(GetCurrentThread()), 15);
        SetThreadPriority(GetCurrentThread(), before);
    }
};

ZR_WIDGET_TEST_MAIN(TestPlatformWin32)
#include "tst_platform_win32.moc"
