#include "application.h"
#include "command_table.h"
#include "host_error.h"
#include "host_platform.h"

#include <csignal>
#include <cstdio>
#include <exception>

namespace {

constexpr int kFailed = 1;
constexpr int kUsage = 2;

int runHost(const std::vector<std::string>& arguments)
{
    using namespace zrhost;
    Options options = parseOptions(arguments);
    if (options.help) {
        std::printf("%s\nCommands, in scenarios and at the terminal:\n%s", optionHelp().c_str(),
                    commandHelp().c_str());
        return 0;
    }
    for (const auto& [number, source] : options.sources)
        source.checkFile();
    std::vector<ScenarioStep> scenario;
    if (!options.scenario.empty())
        scenario = readScenario(options.scenario);
    Application application(std::move(options), std::move(scenario));
    return application.run();
}

} // namespace

int main(int argc, char** argv)
{
    zrhost::useUtf8Text();
    zrhost::rememberStartPriority();
    try {
        return runHost(zrhost::programArguments(argc, argv));
    } catch (const zrhost::UsageError& error) {
        std::fprintf(stderr, "zrhost: %s (see --help)\n", error.what());
        return kUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zrhost: %s\n", error.what());
        return kFailed;
    }
}
