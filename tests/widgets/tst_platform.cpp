// What the platform promises on every system. The keyboard, and windows that hosts destroy, are
// tested with the library as a whole.
#include "hostprocess.h"
#include "nativehost.h"
#include "platformplugin.h"
#include "qtparent.h"
#include "testsupport.h"

#include <QTemporaryDir>
#include <QtMath>

#include <cstdint>
#include <cstring>

namespace {

const char* address(std::uintptr_t value)
{
    return reinterpret_cast<const char*>(value);
}

} // namespace

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void readability()
    {
        const PatchyMemory memory;
        const std::size_t page = memory.page;
        char* const p = memory.begin;
        const struct
        {
            const void* begin;
            std::size_t size;
            bool readable;
        } rows[] = {
            {p, page, true},
            {p + page - 3, 3, true}, // an unaligned end
            {p + 5, 0, true},
            {p, page + 1, false},
            {p + page, 1, false},
            {p + page + 1, page, false}, // only the end can be read
            {p, 2 * page + 1, false},    // only the middle can not
            {nullptr, 0, false},
            {address(1), 1, false},
            {address(0xdeadbeefdeadbeef), 24, false},
            {p, ~std::size_t{0}, false}, // wraps around
        };
        for (const auto& row : rows)
            QVERIFY2(platform::isReadable(row.begin, row.size) == row.readable,
                     qPrintable(QString::number(&row - rows)));
        using platform::readableStringLength;
        for (const char* bad : {static_cast<const char*>(nullptr), address(0x10), address(1)})
            QCOMPARE(readableStringLength(bad), qptrdiff(-1));
        std::memset(p, 'x', page);
        QCOMPARE(readableStringLength(p), qptrdiff(-1));
        p[page - 1] = '\0';
        QCOMPARE(readableStringLength(p), qptrdiff(page - 1));
        QCOMPARE(readableStringLength(p + page - 1), qptrdiff(0));
        memory.open(1);
        QVERIFY(platform::isReadable(p, 2 * page + 1));
        std::memset(p, 'x', 2 * page);
        p[page] = '\0'; // over the seam between two pages
        QCOMPARE(readableStringLength(p + 3), qptrdiff(page - 3));
    }

    void findsPluginsByWhatTheySay()
    {
        const QTemporaryDir folder;
        const QDir here(folder.path());
        QVERIFY(here.mkpath("some/platforms"));
        for (const QString& path : QCoreApplication::libraryPaths()) {
            for (const QFileInfo& file : QDir(path + "/platforms").entryInfoList({"*qminimal*"})) {
                const QString name = file.fileName().replace("minimal", "other");
                QVERIFY(QFile::copy(file.filePath(), here.filePath("some/platforms/" + name)));
            }
        }
        using platform::hasPlatformPlugin;
        QVERIFY(hasPlatformPlugin(QCoreApplication::libraryPaths(), "nowhere;Minimal:x=1"));
        QVERIFY(hasPlatformPlugin({here.path(), here.filePath("some")}, "minimal"));
        QVERIFY(!hasPlatformPlugin({here.path(), here.filePath("some")}, "nowhere;other"));
        QVERIFY(!hasPlatformPlugin({here.path()}, "minimal"));
    }

    // A host moves windows and goes on without returning to its loop. What the system reports of it
    // later is no news, not even for a moment.
    void qtKnowsEveryPlaceAtOnce()
    {
        const QuietHostWindow first(640, 480, 300, 100);
        const QuietHostWindow second(640, 480, 100, 50);
        const struct
        {
            bool intoOther; ///< into the other window, with the size that it has
            QRect place, expected;
        } steps[] = {
            {true, {}, {0, 0, 200, 200}},
            {false, {20, 30, 320, 240}, {20, 30, 320, 240}},
            {true, {40, 50, 0, 0}, {40, 50, 320, 240}},
            {false, {40, 50, 320, 240}, {40, 50, 320, 240}}, // where it should be already
            {true, {}, {0, 0, 320, 240}},
            {false, {-40, -50, 0, -7}, {-40, -50, 1, 1}},
            {false, {-40000, 50, 20000, 240}, {-32767, 50, 16384, 240}},
            {false, {40, 50, 320, 240}, {40, 50, 320, 240}},
        };
        for (const bool shown : {true, false}) {
            Dialog dialog;
            dialog.setVisible(shown);
            QVERIFY(!shown || QTest::qWaitForWindowExposed(&dialog));
            dialog.resizes.clear();
            NativeWindow parent = second;
            const auto check = [&](const QRect& expected) {
                QCOMPARE(nativehost::parentOf(dialog.id()), parent);
                QCOMPARE(placeOf(dialog.id()), expected);
                QCOMPARE(dialog.geometry(), expected);
                QCOMPARE(platform::rectOnScreen(dialog),
                         expected.translated(placeOf(parent).topLeft()));
            };
            for (const auto& step : steps) {
                if (step.intoOther) {
                    parent = parent == second ? first : second;
                    QVERIFY(platform::setParentWindow(dialog.id(), parent, step.place.topLeft()));
                } else {
                    platform::placeWindow(dialog.id(), step.place);
                }
                check(step.expected);
                if (QTest::currentTestFailed())
                    QFAIL(qPrintable(QString::number(&step - steps)));
            }
            QTest::qWait(100);
            QCOMPARE(nativehost::isViewable(dialog.id()), shown);
            dialog.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dialog));
            check(std::end(steps)[-1].expected);
            QCOMPARE(dialog.resizes.size(), shown ? 4 : 1);
            // Popups must find the place of a child when only its parent has moved.
            nativehost::moveWindow(parent, 330, 220);
            QTRY_COMPARE(dialog.mapToGlobal(QPoint(1, 2)), QPoint(371, 272));
            const auto former = dialog.id();
            platform::renewWindow(dialog);
            QVERIFY(dialog.id() != former);
            QTRY_VERIFY(nativehost::isViewable(dialog.id()));
            check(std::end(steps)[-1].expected);
            QVERIFY(platform::setParentWindow(dialog.id(), 0));
            QCOMPARE(nativehost::parentOf(dialog.id()), nativehost::desktop());
        }
        QCOMPARE(QSize(platform::screenWidthPx(), platform::screenHeightPx()),
                 QSize(desktop::size().width, desktop::size().height));
    }

    void refusesWhatIsNoWindow()
    {
        const QuietHostWindow window;
        Dialog dialog;
        QVERIFY(dialog.showIn(window));
        const NativeWindow destroyed = nativehost::makeWindow({0, 0, 10, 10});
        nativehost::destroyWindow(destroyed);
        for (const NativeWindow bad : {NativeWindow{0x7ffffff0}, destroyed}) {
            QVERIFY(!platform::setParentWindow(dialog.id(), bad));
            QCOMPARE(nativehost::parentOf(dialog.id()), NativeWindow(window));
            QVERIFY(nativehost::isViewable(dialog.id()));
            QVERIFY(!platform::setParentWindow(bad, window));
            platform::setChildStyle(bad);
            platform::placeWindow(bad, QRect(0, 0, 10, 10));
            platform::showOnTop(bad);
            QVERIFY(!platform::takeKeyboardFocus(bad) && !platform::returnKeyboardFocus(bad));
        }
        QCoreApplication::processEvents(); // an error that came late would be reported here
    }

    // A window may be placed again and again, and leaves no edge bare.
    void unitsOfAScaledHostCoverThePixels()
    {
        for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
            for (int from = -40; from < 40; ++from) {
                const QRect pixels(from, 7 - from, 41 + from, 60);
                const QRect covered = platform::toPixels(platform::toUnits(pixels, ratio), ratio);
                QVERIFY(covered.contains(pixels));
                const QPoint most(qCeil(ratio), qCeil(ratio));
                QVERIFY(
                    QRect(pixels.topLeft() - most, pixels.bottomRight() + most).contains(covered));
                QVERIFY(ratio > 1 || covered == pixels);
                const QRect units(from, -from, 1 + qAbs(from), 9);
                QCOMPARE(platform::toUnits(platform::toPixels(units, ratio), ratio), units);
            }
        }
    }

    void showsOnTop()
    {
        const QuietHostWindow window;
        Dialog dialog;
        Dialog other;
        QVERIFY(dialog.showIn(window) && other.showIn(window));
        for (Dialog* const upper : {&other, &dialog}) {
            upper->hide();
            platform::showOnTop(upper->id());
            QCOMPARE(nativehost::topChildOf(window), upper->id());
            QVERIFY(nativehost::isViewable(upper->id()));
        }
    }

    void leavesNothingBehind()
    {
        const QuietHostWindow first;
        const QuietHostWindow second;
        const auto before = QGuiApplication::allWindows().size();
        for (int round = 0; round < 3; ++round) {
            Dialog dialog;
            for (const NativeWindow parent :
                 {NativeWindow(first), NativeWindow(second), NativeWindow{0}, NativeWindow(second)})
                QVERIFY(platform::setParentWindow(dialog.id(), parent));
            dialog.show();
            QCoreApplication::processEvents();
            QCOMPARE(QGuiApplication::allWindows().size(), before + 2); // itself and its container
        }
        QCOMPARE(QGuiApplication::allWindows().size(), before);
    }
};

ZR_WIDGET_TEST_MAIN(TestPlatform)
#include "tst_platform.moc"
