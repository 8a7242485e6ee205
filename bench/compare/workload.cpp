#include "workload.h"

#include "synthetic_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/resource.h>
#include <thread>

namespace compare {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;
constexpr Clock::duration kPeriod = std::chrono::milliseconds(1000 / kFramesPerSecond);

double milliseconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// Of sorted values; 0 without any.
double quantile(const std::vector<double>& sorted, double share)
{
    if (sorted.empty())
        return 0;
    const double last = static_cast<double>(sorted.size() - 1);
    return sorted[static_cast<std::size_t>(std::lround(share * last))];
}

} // namespace

Workload workloadOf(int argc, char** argv)
{
    Workload workload;
    if (argc >= 7) {
        const std::string_view phases(argv[4]);
        workload = {std::atoi(argv[1]), std::atoi(argv[2]), std::atoi(argv[3]),
                    phases == "step",   std::atof(argv[5]), std::atoi(argv[6])};
        if (workload.inStep)
            workload.redrawsPerS = kFramesPerSecond;
        bool isUnderstood = workload.columns > 0 && workload.widthPx >= 8 && workload.heightPx >= 2
                            && workload.seconds > 0 && workload.redrawsPerS > 0
                            && (workload.inStep || phases == "own");
        for (int i = 7; i < argc; ++i) {
            const std::string_view word(argv[i]);
            workload.isPatient |= word == "patient";
            workload.isPlain |= word == "plain";
            isUnderstood &= word == "patient" || word == "plain";
        }
        if (isUnderstood)
            return workload;
    }
    std::fprintf(stderr,
                 "usage: %s COLUMNS WIDTH HEIGHT step|own REDRAWS SECONDS [patient] [plain]\n",
                 argv[0]);
    std::exit(2);
}

Schedule::Schedule(const Workload& workload)
    : m_frames(kFirstCounted + workload.seconds * kFramesPerSecond)
{
    if (!workload.inStep)
        m_offset = kPeriod / workload.tiles();
}

Clock::time_point Schedule::due(int tile, int number) const
{
    return m_start + number * kPeriod + tile * m_offset;
}

int Schedule::newest(int tile, Clock::time_point at) const
{
    const Clock::duration since = at - due(tile, 0);
    return since < Clock::duration::zero()
               ? -1
               : std::min(static_cast<int>(since / kPeriod), m_frames - 1);
}

Pictures::Pictures(const Workload& workload)
{
    constexpr int kPool = 8;
    for (int tile = 0; tile < workload.tiles(); ++tile) {
        zrhost::SyntheticSource source(tile + 1, zrhost::participantHue(tile + 1, 0),
                                       {workload.widthPx, workload.heightPx}, kFramesPerSecond);
        std::vector<zrhost::Picture>& pool = m_tiles.emplace_back(kPool);
        for (zrhost::Picture& picture : pool)
            static_cast<void>(source.next(picture));
    }
}

const zrhost::Picture& Pictures::at(int tile, int number)
{
    std::vector<zrhost::Picture>& pool = m_tiles[static_cast<std::size_t>(tile)];
    zrhost::Picture& picture = pool[static_cast<std::size_t>(number) % pool.size()];
    const Stamp stamp{Stamp::kMagic, static_cast<std::uint16_t>(tile), number};
    std::memcpy(picture.data.data(), &stamp, sizeof stamp);
    return picture;
}

Stamp stampOf(const void* luma)
{
    Stamp stamp;
    std::memcpy(&stamp, luma, sizeof stamp);
    return stamp;
}

double processCpuMs()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

FrameLog::FrameLog(const Workload& workload, const Schedule& schedule)
    : m_frames(schedule.frames())
    , m_pictureBytes(zrhost::Picture::byteCount(workload.widthPx, workload.heightPx))
    , m_tiles(static_cast<std::size_t>(workload.tiles()))
{
    for (auto& tile : m_tiles)
        tile = std::vector<Frame>(static_cast<std::size_t>(m_frames));
}

FrameLog::Frame& FrameLog::frame(int tile, int number)
{
    return m_tiles.at(static_cast<std::size_t>(tile)).at(static_cast<std::size_t>(number));
}

void FrameLog::begin()
{
    m_cpuBeganMs = processCpuMs();
    m_counting = true;
}

void FrameLog::offered(int tile, int number, Clock::time_point at)
{
    frame(tile, number).offered = at;
}

void FrameLog::uploaded(int tile, int number)
{
    m_uploaded.push_back(&frame(tile, number));
}

void FrameLog::uploadedBytes(std::size_t bytes)
{
    if (m_counting)
        m_uploadedBytes += bytes;
}

void FrameLog::swapped()
{
    const Clock::time_point now = Clock::now();
    for (Frame* const shown : m_uploaded) {
        if (shown->latencyMs < 0)
            shown->latencyMs = Milliseconds(now - shown->offered).count();
    }
    m_uploaded.clear();
    if (m_counting)
        ++m_swaps;
}

void FrameLog::print() const
{
    const double cpuMs = processCpuMs() - m_cpuBeganMs;
    std::vector<double> latencies;
    for (const auto& tile : m_tiles) {
        for (std::size_t number = Schedule::kFirstCounted; number < tile.size(); ++number) {
            if (tile[number].latencyMs >= 0)
                latencies.push_back(tile[number].latencyMs);
        }
    }
    std::sort(latencies.begin(), latencies.end());
    const auto offered = static_cast<double>(m_tiles.size()) * (m_frames - Schedule::kFirstCounted);
    const auto painted = static_cast<double>(latencies.size());
    printFigure("offered", offered);
    printFigure("painted", painted);
    printFigure("skipped", offered - painted);
    printFigure("cpu_ms_per_frame", cpuMs / offered);
    printFigure("latency_median_ms", quantile(latencies, 0.5));
    printFigure("latency_p99_ms", quantile(latencies, 0.99));
    printFigure("uploaded_ratio", static_cast<double>(m_uploadedBytes)
                                      / (static_cast<double>(m_pictureBytes) * offered));
    printFigure("compositions", m_swaps);
    printFigure("compositions_per_new_frame", painted > 0 ? m_swaps / painted : 0);
}

void printFigure(const char* name, double value)
{
    std::printf("%s %.6g\n", name, value);
}

void runPeer(const Workload& workload, Painter& painter)
{
    Pictures pictures(workload);
    Schedule schedule(workload);
    FrameLog log(workload, schedule);
    const Clock::duration redrawPeriod =
        std::chrono::duration_cast<Clock::duration>(Milliseconds(1000 / workload.redrawsPerS));
    std::vector<int> shown(static_cast<std::size_t>(workload.tiles()), -1);
    Clock::time_point planned = schedule.start(); // the redraw
    bool begun = false;
    while (shown.back() < schedule.frames() - 1) {
        const Clock::time_point now = Clock::now();
        if (!begun && now >= schedule.due(0, Schedule::kFirstCounted)) {
            log.begin();
            begun = true;
        }
        for (int tile = 0; tile < workload.tiles(); ++tile) {
            int& last = shown[static_cast<std::size_t>(tile)];
            const int newest = schedule.newest(tile, now);
            if (newest <= last)
                continue;
            while (last < newest) {
                ++last;
                log.offered(tile, last, schedule.due(tile, last));
            }
            const zrhost::Picture& picture = pictures.at(tile, newest);
            painter.upload(tile, picture);
            log.uploadedBytes(picture.data.size());
            log.uploaded(tile, newest);
        }
        painter.redraw();
        log.swapped();
        planned += redrawPeriod;
        if (const Clock::time_point done = Clock::now(); done > planned && workload.isPatient) {
            schedule.wait(planned, done);
            planned = done;
        } else if (done > planned) {
            planned += (done - planned) / redrawPeriod * redrawPeriod + redrawPeriod;
        }
        std::this_thread::sleep_until(planned);
    }
    log.print();
}

} // namespace compare
