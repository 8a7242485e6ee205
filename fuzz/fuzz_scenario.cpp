// Scenarios of the demonstration host: any bytes are read or refused, and what was read can be read
// again.
#include "host_error.h"
#include "scenario.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<zrhost::ScenarioStep> steps;
    try {
        steps = zrhost::parseScenario({reinterpret_cast<const char*>(data), size}, "fuzz");
    } catch (const zrhost::HostError&) {
        return 0;
    }
    for (const zrhost::ScenarioStep& step : steps) { // one that throws here is a finding
        if (zrhost::parseScenario(step.command, "again").size() != 1)
            std::abort();
    }
    return 0;
}
