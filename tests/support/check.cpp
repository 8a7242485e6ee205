#include "check.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <exception>
#include <vector>

namespace {

struct Case
{
    const char* group;
    const char* name;
    void (*body)();
};

std::vector<Case>& cases()
{
    static std::vector<Case> all;
    return all;
}

std::atomic<int> g_failures{0};

void runCase(const Case& testCase)
{
    const int before = g_failures;
    std::printf("%s.%s\n", testCase.group, testCase.name);
    std::fflush(stdout);
    try {
        testCase.body();
    } catch (const check::Abandoned&) {
    } catch (const std::exception& error) {
        check::fail(testCase.name, 0, std::string("exception: ") + error.what());
    }
    std::printf("%s %s.%s\n", g_failures == before ? "PASS" : "FAIL", testCase.group,
                testCase.name);
    std::fflush(stdout);
}

} // namespace

void check::fail(const char* file, int line, const std::string& what)
{
    ++g_failures;
    // stdout: stderr belongs to the library's log, which some cases redirect.
    std::printf("%s:%d: %s\n", file, line, what.c_str());
    std::fflush(stdout);
}

check::Registration::Registration(const char* group, const char* name, void (*body)())
{
    cases().push_back({group, name, body});
}

int check::run(int argc, char** argv)
{
    int ran = 0;
    for (const Case& testCase : cases()) {
        if (argc > 1 && std::strcmp(argv[1], testCase.group) != 0)
            continue;
        if (argc > 2 && std::strcmp(argv[2], testCase.name) != 0)
            continue;
        runCase(testCase);
        ++ran;
    }
    std::printf("%d cases, %d failures\n", ran, g_failures.load());
    std::fflush(stdout); // what follows, up to the end of the process, may be what is tested
    return ran == 0 || g_failures != 0 ? 1 : 0;
}
