// What the log holds when the library ends, one way or another. Each case runs in a process and in
// a folder of its own; check_log.cmake looks for the lines afterwards.
#include "check.h"
#include "meeting.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

constexpr int kLines = 300;

/// Logs numbered lines, the last of them right before it returns.
void logLines(Meeting& meeting, const std::string& mark)
{
    for (int i = 0; i < kLines; ++i) {
        const std::string name = mark + "-" + std::to_string(i);
        void* const play =
            meeting.zr.AddPerson(meeting.screen, text("u"), text(name), 1, 0, nullptr);
        REQUIRE(play != nullptr);
        CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, play, false), 1);
    }
}

} // namespace

ZR_CASE(log_unload, unloadsWithoutReleaseAndWith)
{
    for (int round = 0; round < 2; ++round) {
        const HostWindow window(640, 360);
        Meeting meeting(&window, 640, 360);
        logLines(meeting, "unload-" + std::to_string(round));
        if (round > 0)
            meeting.zr.Release(meeting.screen);
        meeting.screen = nullptr;
        meeting.zr.unload();
    }
}

ZR_CASE(log_exit, endsWithTheLibraryLoaded)
{
    static const auto* const window = new HostWindow(640, 360);
    static auto* const meeting = new Meeting(window, 640, 360);
    logLines(*meeting, "exit");
    meeting->zr.leaveLoaded();
    std::exit(0);
}

/// A host that only borrows an edit reads in the log what was wrong, while it still runs.
ZR_CASE(log_controls, isWrittenWithoutAScreen)
{
    const Module module;
    const zr::ControlExports& controls = module.exports.ZRCtrl;
    tagRECT rect{0, 0, 100, 30};
    void* const edit = controls.QLineEdit_Init(nullptr, &rect, "");
    controls.QLineEdit_SetMaxLength(edit, -7);
    const auto isWritten = [] {
        std::string log;
        for (const auto& file : std::filesystem::directory_iterator("log")) {
            if (!file.is_regular_file())
                continue;
            std::ifstream stream(file.path(), std::ios::binary);
            log.append(std::istreambuf_iterator<char>(stream), {});
        }
        return log.find("maximal length refused: -7") != std::string::npos;
    };
    CHECK(pumpUntil(isWritten));
    controls.QLineEdit_Release(edit);
}
