// The smallest harness that the contract tests need: they must stay free of Qt, and every group of
// cases runs in a process of its own.
#pragma once

#include <sstream>
#include <string>

namespace check {

/// Ends the running case; thrown by REQUIRE after the failure has been reported.
struct Abandoned
{
};

/// Counts and prints a failure. Any thread.
void fail(const char* file, int line, const std::string& what);

inline bool verify(bool holds, const char* file, int line, const std::string& what)
{
    if (!holds)
        fail(file, line, what);
    return holds;
}

template<typename A, typename B>
bool equal(const char* file, int line, const char* text, const A& actual, const B& expected)
{
    std::ostringstream what;
    if (!(actual == expected))
        what << text << ": is " << actual << ", expected " << expected;
    return verify(actual == expected, file, line, what.str());
}

/// Adds a case to a group. Called before main().
struct Registration
{
    Registration(const char* group, const char* name, void (*body)());
};

/// Runs the cases of a group, or one of them: GROUP [CASE]. @return the status of the process
int run(int argc, char** argv);

} // namespace check

/// Declares a case: ZR_CASE(group, name) { ... }
#define ZR_CASE(group, name)                                                                       \
    static void name();                                                                            \
    static const check::Registration registration_##name{#group, #name, name};                     \
    static void name()

#define CHECK(condition) check::verify((condition), __FILE__, __LINE__, #condition)

/// As CHECK, with a text that tells the rows of a table apart.
#define CHECK_ROW(condition, row)                                                                  \
    check::verify((condition), __FILE__, __LINE__, std::string(#condition " [") + (row) + "]")

#define CHECK_EQUAL(actual, expected)                                                              \
    check::equal(__FILE__, __LINE__, #actual, (actual), (expected))

/// As CHECK; the case ends here when it fails.
#define REQUIRE(condition)                                                                         \
    do {                                                                                           \
        if (!CHECK(condition))                                                                     \
            throw check::Abandoned{};                                                              \
    } while (false)
