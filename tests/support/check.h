// The smallest harness that the contract tests need: they must stay free of Qt, and every group of
// cases runs in a process of its own.
#pragma once

#include <functional>
#include <sstream>
#include <string>

namespace check {

/// Ends the running case; thrown by REQUIRE after the failure has been reported.
struct Abandoned
{
};

/// Counts and prints a failure. Any thread.
void fail(const char* file, int line, const std::string& what);

/// Adds a case to a group. Called before main().
struct Registration
{
    Registration(const char* group, const char* name, void (*body)());
};

template<typename T>
std::string show(const T& value)
{
    std::ostringstream out;
    out << value;
    return out.str();
}

template<typename A, typename B>
bool equal(const char* file, int line, const char* text, const A& actual, const B& expected)
{
    if (actual == expected)
        return true;
    fail(file, line, std::string(text) + ": is " + show(actual) + ", expected " + show(expected));
    return false;
}

} // namespace check

/// Declares a case: ZR_CASE(group, name) { ... }
#define ZR_CASE(group, name)                                                                       \
    static void name();                                                                            \
    static const check::Registration registration_##name{#group, #name, name};                     \
    static void name()

#define CHECK(condition)                                                                           \
    do {                                                                                           \
        if (!(condition))                                                                          \
            check::fail(__FILE__, __LINE__, #condition);                                           \
    } while (false)

/// As CHECK, with a text that tells the rows of a table apart.
#define CHECK_ROW(condition, row)                                                                  \
    do {                                                                                           \
        if (!(condition))                                                                          \
            check::fail(__FILE__, __LINE__, std::string(#condition) + " [" + (row) + "]");         \
    } while (false)

#define CHECK_EQUAL(actual, expected)                                                              \
    check::equal(__FILE__, __LINE__, #actual, (actual), (expected))

#define REQUIRE(condition)                                                                         \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            check::fail(__FILE__, __LINE__, #condition);                                           \
            throw check::Abandoned{};                                                              \
        }                                                                                          \
    } while (false)
