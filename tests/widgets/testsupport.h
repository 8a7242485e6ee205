// Shared by the widget tests.
#pragma once

#include "qzrscreenconfig.h"

#include <QApplication>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
/// Keeps the graphics driver mapped until the leak check: once it is unmapped, what its statics
/// refer to counts as leaked.
extern "C" __attribute__((visibility("default"))) int dlclose(void*) noexcept
{
    return 0;
}
#endif

namespace zrtest {

/// Runs a test object in an application set up as the module sets up its own. Every warning is
/// printed: one that no QTest::ignoreMessage expects fails the test (see zr_add_widget_test).
template<typename TestObject>
int runWidgetTest(int argc, char** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling);
    const QApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    arguments << "-maxwarnings"
              << "0"; // debug lines count, and QtTest stops printing after 2000
    TestObject test;
    return QTest::qExec(&test, arguments);
}

inline QZRScreenConfig& hub()
{
    return *QZRScreenConfig::getInstance();
}

/// Records what a host is told, and lets a test act like a host from inside a message.
class HostDouble : public CAbsUIMsgCallback
{
public:
    struct Message
    {
        unsigned long id;
        unsigned long long wParam;
        long long lParam;
        QString streamOf; ///< "+u1" when the focus person's stream is u1's, "-u1" when no more
        tagPersonInfo* person() const { return reinterpret_cast<tagPersonInfo*>(wParam); }
    };

    bool UIMsgNotify(unsigned long id, unsigned long long wParam, long long lParam) override
    {
        messages.push_back({id, wParam, lParam, {}});
        if (id == ZRMSG_FOCUS_STREAM) // the text is valid during the call only
            messages.back().streamOf =
                (lParam != 0 ? '+' : '-') + QString(reinterpret_cast<const char*>(wParam));
        if (onMessage)
            onMessage(Message(messages.back()));
        return true;
    }
    int count(unsigned long id, const tagPersonInfo* person = nullptr) const
    {
        return static_cast<int>(
            std::count_if(messages.begin(), messages.end(), [&](const Message& m) {
                return m.id == id && (!person || m.person() == person);
            }));
    }

    std::vector<Message> messages;
    std::function<void(const Message&)> onMessage;
};

/// Counts the events of some types that reach objects.
class EventWatch : public QObject
{
public:
    EventWatch(const QObjectList& watched, std::set<QEvent::Type> types)
        : m_types(std::move(types))
    {
        for (QObject* object : watched)
            object->installEventFilter(this);
    }
    int count = 0;

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        count += m_types.count(event->type()) != 0 ? 1 : 0;
        return false;
    }

private:
    const std::set<QEvent::Type> m_types;
};

/// What the left button does, or the mouse with that button held, at a point of the widget.
inline void useMouse(QWidget& target, QEvent::Type what, const QPoint& at)
{
    const auto button = what == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const auto held = what == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(what, at, target.mapToGlobal(at), button, held, {});
    QCoreApplication::sendEvent(&target, &event);
}

/// A press, a move in so many steps, and the release. `press` may also be the second one of a
/// double click.
inline void drag(QWidget& target, const QPoint& from, const QPoint& to, int steps = 1,
                 QEvent::Type press = QEvent::MouseButtonPress)
{
    useMouse(target, press, from);
    for (int i = 1; i <= steps; ++i) {
        QTest::qWait(steps > 1 ? 10 : 0);
        useMouse(target, QEvent::MouseMove, from + (to - from) * i / steps);
    }
    useMouse(target, QEvent::MouseButtonRelease, to);
}

/// @param angle in eighths of a degree; 120 is a notch, away from the user
inline void turnWheel(QWidget& target, const QPoint& at, int angle)
{
    QWheelEvent event(at, target.mapToGlobal(at), {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&target, &event);
}

} // namespace zrtest

#define ZR_WIDGET_TEST_MAIN(TestObject)                                                            \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        return zrtest::runWidgetTest<TestObject>(argc, argv);                                      \
    }
