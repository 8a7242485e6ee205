// The module in a host's window, beside which the peers are put.
#include "benchhost.h"
#include "copywatch.h"
#include "glwatch.h"
#include "workload.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <exception>
#include <map>
#include <stdexcept>
#include <thread>

namespace {

using compare::Clock;
using compare::Schedule;

/// The mode whose tiles fill the window in such a grid.
eLayoutType modeOf(int columns)
{
    switch (columns) {
    case 1:
        return eLayoutSingle;
    case 2:
        return eLayoutGrid4;
    case 3:
        return eLayoutGrid9;
    case 4:
        return eLayoutGrid16;
    default:
        throw std::runtime_error("no mode has such a grid");
    }
}

/// Counts on the GUI thread until the end.
class Watch
{
public:
    explicit Watch(compare::FrameLog& log)
    {
        onGui([&log] {
            glwatch::onUpload = [&log](const glwatch::Upload& upload) {
                log.uploadedBytes(upload.bytes);
                if (!upload.isPlane || upload.bytes < sizeof(compare::Stamp))
                    return;
                if (const auto stamp = compare::stampOf(upload.pixels); stamp.isValid())
                    log.uploaded(stamp.tile, stamp.number);
            };
            glwatch::onSwap = [&log] { log.swapped(); };
        });
    }
    ~Watch()
    {
        onGui([] {
            glwatch::onUpload = {};
            glwatch::onSwap = {};
        });
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
};

/// Waits until the tile shows the picture, for a second at most.
void waitUntilShown(compare::FrameLog& log, int tile, int number)
{
    for (int ms = 0; ms < 1000 && !log.isShown(tile, number); ++ms)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

/// Hides what lies over the pictures. GUI thread. It takes Qt, and a program that is linked with Qt
/// has to bring an application object of its own, which other hosts have not.
void hideOverlays()
{
    void* const library = dlopen(ZR_HIDEOVERLAYS, RTLD_NOW);
    void* const hide = library ? dlsym(library, "hideOverlays") : nullptr;
    if (!hide)
        throw std::runtime_error(dlerror());
    reinterpret_cast<void (*)()>(hide)();
}

void measure(const compare::Workload& workload)
{
    compare::Pictures pictures(workload);
    Meeting meeting(compare::kWindowWidthPx, compare::kWindowHeightPx);
    onGui([&] { ZRScreen_ChangeLayout(meeting.screen(), modeOf(workload.columns), {}); });
    const std::vector<void*> plays = meeting.addShown(workload.tiles());
    for (void* const play : plays)
        ZRScreen_Preview(meeting.screen(), play, true);

    Schedule schedule(workload);
    compare::FrameLog log(workload, schedule);
    std::chrono::nanoseconds gui{};
    std::uint64_t copied = 0;
    {
        const Watch watch(log);
        for (int number = 0; number < schedule.frames(); ++number) {
            if (workload.isPlain && number == 1)
                onGui(hideOverlays);
            if (number == Schedule::kFirstCounted) {
                std::this_thread::sleep_until(schedule.due(0, number));
                log.begin();
                gui = guiCpuTime();
                copied = bytesCopied();
            }
            for (int tile = 0; tile < workload.tiles(); ++tile) {
                const zrhost::Picture& picture = pictures.at(tile, number);
                if (workload.isPatient && number > 0) {
                    waitUntilShown(log, tile, number - 1);
                    const Clock::time_point due = schedule.due(tile, number);
                    if (const Clock::time_point now = Clock::now(); now > due)
                        schedule.wait(due, now);
                }
                std::this_thread::sleep_until(schedule.due(tile, number));
                log.offered(tile, number, Clock::now());
                VantrelRTCVideoFrameQT frame{};
                frame.pData = picture.data.data();
                frame.width = static_cast<std::uint32_t>(picture.width);
                frame.height = static_cast<std::uint32_t>(picture.height);
                ZRScreen_PlayFrame(meeting.screen(), plays[static_cast<std::size_t>(tile)], &frame);
            }
        }
        // The last ones are painted.
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    log.print();
    const double offered = workload.tiles() * (schedule.frames() - Schedule::kFirstCounted);
    const std::chrono::duration<double, std::milli> guiMs = guiCpuTime() - gui;
    const double pictureBytes =
        static_cast<double>(zrhost::Picture::byteCount(workload.widthPx, workload.heightPx));
    compare::printFigure("gui_ms_per_frame", guiMs.count() / offered);
    compare::printFigure("copied_ratio",
                         static_cast<double>(bytesCopied() - copied) / (pictureBytes * offered));
}

} // namespace

int main(int argc, char** argv)
{
    const compare::Workload workload = compare::workloadOf(argc, argv);
    int status = EXIT_FAILURE;
    std::thread host([&] {
        try {
            watchCopies();
            measure(workload);
            status = EXIT_SUCCESS;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        stopServing();
    });
    serveGui();
    host.join();
    return status;
}
