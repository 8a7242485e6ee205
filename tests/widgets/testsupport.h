// Shared by the widget tests.
#pragma once

#include <QApplication>
#include <QtTest>

#include <algorithm>
#include <iterator>
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

} // namespace zrtest

#define ZR_WIDGET_TEST_MAIN(TestObject)                                                            \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        return zrtest::runWidgetTest<TestObject>(argc, argv);                                      \
    }
