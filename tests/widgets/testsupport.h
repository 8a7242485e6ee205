// Shared by the widget tests.
#pragma once

#include <QApplication>
#include <QtTest>

#include <algorithm>
#include <iterator>
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
    QApplication application(argc, argv);
    // Debug lines count as well, and QtTest stops printing after 2000.
    std::vector<char*> arguments;
    // QtTest refuses options that it does not know; this one is for the goldens.
    std::copy_if(argv, argv + argc, std::back_inserter(arguments),
                 [](const char* argument) { return qstrcmp(argument, "--update") != 0; });
    char option[] = "-maxwarnings";
    char unlimited[] = "0";
    arguments.push_back(option);
    arguments.push_back(unlimited);
    TestObject test;
    return QTest::qExec(&test, static_cast<int>(arguments.size()), arguments.data());
}

/// Counts the events of some types that reach an object.
class EventWatch : public QObject
{
public:
    EventWatch(QObject* watched, std::set<QEvent::Type> types)
        : m_types(std::move(types))
    {
        watched->installEventFilter(this);
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

/// A press, a move with the button down, and the release, all at points of the widget.
inline void pressAndMove(QWidget* target, const QPoint& from, const QPoint& to)
{
    QTest::mousePress(target, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, to, target->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(target, &move);
    QTest::mouseRelease(target, Qt::LeftButton, {}, to);
}

} // namespace zrtest

#define ZR_WIDGET_TEST_MAIN(TestObject)                                                            \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        return zrtest::runWidgetTest<TestObject>(argc, argv);                                      \
    }
