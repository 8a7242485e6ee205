// Runs the benchmarks on a host thread, prints their table, and checks the figures that the module
// promises.
#include "benchhost.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <thread>

namespace {

/// Prints one line for each run, with its own figures only, and remembers them. The library's
/// times are in --benchmark_out.
class ShortReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const std::string name = run.run_name.function_name + " " + run.run_name.args;
            std::printf("%-38s", name.c_str());
            if (run.error_occurred) {
                m_failed = true;
                std::printf(" %s", run.error_message.c_str());
            }
            for (const auto& [figure, counter] : run.counters) {
                m_figures[name + " " + figure] = counter.value;
                std::printf("  %s %.4g", figure.c_str(), counter.value);
            }
            std::puts("");
            std::fflush(stdout);
        }
    }
    bool failed() const { return m_failed; }
    /// All figures, by the name of the run, its arguments and the figure.
    const std::map<std::string, double>& figures() const { return m_figures; }

private:
    std::map<std::string, double> m_figures;
    bool m_failed = false;
};

/// An arrangement of a thousand or two that changes nothing, milliseconds of the GUI thread.
constexpr double kArrangeMs = 2;
/// Volume reports for 16 participants, percent of a core.
constexpr double kReportPercent = 1;
/// A resize or an update of the subtitles with 10,000 characters each, of the GUI thread.
constexpr double kResizeMs = 16;
constexpr double kFrameMs = 16.7; ///< a frame of the usual display
/// Twice the participants cost hardly more than twice the time.
constexpr double kDoubleRatio = 2.3;

/// Prints the verdict on one figure. @return whether it holds
bool verdict(const std::string& name, double value, const char* relation, double bound, bool holds)
{
    std::printf("%-55s %8.3f  %s %g  %s\n", name.c_str(), value, relation, bound,
                holds ? "ok" : "MISSED");
    return holds;
}

bool startsWith(const std::string& text, const char* start)
{
    return text.rfind(start, 0) == 0;
}

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size()
           && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool checkFigures(const std::map<std::string, double>& figures)
{
    bool allHold = true;
    std::map<std::string, double> addUs;
    for (const auto& [name, value] : figures) {
        if (startsWith(name, "playFrameBesideMemcpy")) {
            // Below 640 x 360 the checks of the arguments weigh more than the copy.
            if (endsWith(name, " ratio") && name.find("w:320") == std::string::npos)
                allHold &= verdict(name, value, ">=", 0.9, value >= 0.9);
            if (endsWith(name, " allocs_per_frame"))
                allHold &= verdict(name, value, "==", 0, value == 0);
        }
        if (startsWith(name, "growSentences") && endsWith(name, " core_percent"))
            allHold &= verdict(name, value, "<", 5, value < 5);
        if (startsWith(name, "growSentences") && endsWith(name, " grown_kb"))
            allHold &= verdict(name, value, "<", 1024, value < 1024);
        if (startsWith(name, "longSentences 10000 ") && endsWith(name, "_ms"))
            allHold &= verdict(name, value, "<", kResizeMs, value < kResizeMs);
        if (startsWith(name, "paintWatermark") && endsWith(name, " more_ms"))
            allHold &= verdict(name, value, "<", 1, value < 1);
        // Reports that change no level.
        if (startsWith(name, "reportVolumes") && name.find("changes:2") == std::string::npos) {
            if (endsWith(name, " percent_of_core"))
                allHold &= verdict(name, value, "<", kReportPercent, value < kReportPercent);
            if (endsWith(name, " overlay_paints"))
                allHold &= verdict(name, value, "==", 0, value == 0);
        }
        if (startsWith(name, "arrangeAgain"))
            allHold &= verdict(name, value, "<", kArrangeMs, value < kArrangeMs);
        if (startsWith(name, "turnPage"))
            allHold &= verdict(name, value, "<", kFrameMs, value < kFrameMs);
        if (startsWith(name, "joinOneByOne") && endsWith(name, " ratio"))
            allHold &= verdict(name, value, "<=", 2, value <= 2);
        if (startsWith(name, "addNthPerson") && endsWith(name, "_us"))
            addUs[name.find("n:1000 ") == std::string::npos ? "100" : "1000"] += value;
    }
    if (addUs.size() == 2) {
        const double ratio = addUs["1000"] / addUs["100"];
        allHold &= verdict("adding the 1,000th beside the 100th", ratio, "<=", 2, ratio <= 2);
    }
    const auto thousand = figures.find("arrangeAgain n:1000 ms");
    const auto twoThousand = figures.find("arrangeAgain n:2000 ms");
    if (thousand != figures.end() && twoThousand != figures.end()) {
        const double ratio = twoThousand->second / thousand->second;
        allHold &= verdict("arranging 2,000 beside 1,000", ratio, "<=", kDoubleRatio,
                           ratio <= kDoubleRatio);
    }
    return allHold;
}

} // namespace

int main(int argc, char** argv)
{
    // Some benchmarks look at Qt's widgets: then the program is one of Qt, and brings its own.
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    ShortReporter reporter;
    bool ran = false;
    std::thread host([&] {
        try {
            ran = benchmark::RunSpecifiedBenchmarks(&reporter) > 0;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        stopServing();
    });
    serveGui();
    host.join();
    std::puts("");
    const bool hold = checkFigures(reporter.figures());
    return ran && !reporter.failed() && hold ? EXIT_SUCCESS : EXIT_FAILURE;
}
