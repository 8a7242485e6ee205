// Host threads against the GUI thread.
#include "check.h"
#include "meeting.h"

#include <array>
#include <atomic>
#include <memory>
#include <set>

namespace {

/// Threads that are joined, whatever happens to the case. `stop` is for loops to look at.
class Workers
{
public:
    ~Workers() { join(); }
    void add(std::function<void()> body)
    {
        ++running;
        m_threads.emplace_back([this, body = std::move(body)] {
            body();
            --running;
        });
    }
    void join()
    {
        stop = true;
        // A worker may be waiting for the GUI thread.
        CHECK(pumpUntil([&] { return running == 0; }, 30000));
        for (std::thread& thread : m_threads)
            thread.join();
        m_threads.clear();
    }
    std::atomic<bool> stop{false};
    std::atomic<int> running{0};

private:
    std::vector<std::thread> m_threads;
};

/// A participant whose frames come from a thread of its own. The host's side of the bargain: no
/// frame is under way while the handle is given back.
struct Source
{
    std::mutex lock;
    void* play = nullptr;
    std::atomic<int> taken{0};
};

} // namespace

ZR_CASE(threads, addsFromFourThreadsAtOnce)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    CHECK_EQUAL(zr.SetSupport9EqualCut(meeting.screen, true), 1);
    std::array<std::vector<void*>, 4> handles;
    Workers workers;
    for (int t = 0; t < 4; ++t) {
        workers.add([&, t] {
            for (int i = 0; i < 10; ++i) {
                const int number = 100 * (t + 1) + i;
                void* const play = zr.AddPerson(meeting.screen, text("u" + std::to_string(number)),
                                                text("P"), number, 0, hostValue(number));
                handles.at(static_cast<size_t>(t)).push_back(play);
                // "GUI" exports: the tile is there when the add has returned.
                if (zr.SetVolume(meeting.screen, play, i) != 1)
                    check::fail(__FILE__, __LINE__, "SetVolume of a new participant");
            }
        });
    }
    // Meanwhile the GUI thread is not only in its loop but also inside exports of its own.
    CHECK(pumpUntil(
        [&] {
            zr.ReOrder(meeting.screen, false);
            zr.GetCurMode(meeting.screen);
            meeting.moveTo(1280, 720);
            void* const own =
                zr.AddPerson(meeting.screen, text("gui"), text("P"), 1, 0, hostValue(1));
            zr.DelPerson(meeting.screen, own, false);
            return workers.running == 0;
        },
        30000));
    workers.join();
    std::set<void*> distinct;
    for (const auto& group : handles)
        distinct.insert(group.begin(), group.end());
    CHECK_EQUAL(distinct.size(), size_t{40});
    CHECK_EQUAL(distinct.count(nullptr), size_t{0});
    for (const Message& m : meeting.inbox.all())
        CHECK(m.thread == std::this_thread::get_id());

    // All but the last two of each thread leave: the eight that stay are on one page.
    for (const auto& group : handles) {
        for (size_t i = 0; i < 8; ++i)
            CHECK_EQUAL(zr.DelPerson(meeting.screen, group[i], false), 1);
    }
    CHECK(pumpUntil([&] { return zr.IsPersonVisible(meeting.screen, text("u409")) == 1; }));
    for (int t = 1; t <= 4; ++t) {
        for (int i = 0; i < 10; ++i) {
            const std::string id = "u" + std::to_string(100 * t + i);
            CHECK_ROW(zr.IsPersonVisible(meeting.screen, text(id)) == (i >= 8 ? 1 : 0), id);
        }
    }
}

ZR_CASE(threads, frameStormAgainstAGuiAtWork)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    std::array<Source, 8> sources;
    for (size_t i = 0; i < sources.size(); ++i)
        sources.at(i).play = meeting.join(static_cast<int>(i) + 1);
    Workers workers;
    for (size_t i = 0; i < sources.size(); ++i) {
        workers.add([&, i] {
            Source& source = sources.at(i);
            const auto n = static_cast<uint32_t>(i);
            Picture a(320 + 2 * n, 180 + n, kRed);
            Picture b(640 - 6 * n, 360, kGreen);
            for (int turn = 0; !workers.stop; ++turn) {
                {
                    const std::lock_guard<std::mutex> guard(source.lock);
                    Picture& picture = turn / 16 % 2 ? a : b;
                    if (source.play
                        && zr.PlayFrame(meeting.screen, source.play, &picture.frame) == 1)
                        ++source.taken;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        });
    }
    const auto end = Clock::now() + std::chrono::seconds(4);
    constexpr int modes[] = {1, 2, 3, 11, 12, 13, 14, 6, 7, 8, 9};
    for (size_t turn = 0; Clock::now() < end; ++turn) {
        Source& source = sources.at(turn % sources.size());
        void* deleted = nullptr;
        {
            // Must not wait for long: a frame never waits for the GUI thread.
            const std::lock_guard<std::mutex> guard(source.lock);
            std::swap(deleted, source.play);
        }
        if (deleted) {
            CHECK_EQUAL(zr.DelPerson(meeting.screen, deleted, false), 1);
            Picture late(320, 180, kBlue);
            LogCapture log;
            CHECK_EQUAL(zr.PlayFrame(meeting.screen, deleted, &late.frame), 0);
            CHECK(log.take().find("iter != pScreen->mapHadDelPlay.end() failed")
                  != std::string::npos);
        }
        zr.ChangeLayout(meeting.screen, static_cast<eLayoutType>(modes[turn % std::size(modes)]),
                        {});
        const int shrink = static_cast<int>(turn % 7) * 90;
        meeting.moveTo(1280 - shrink, 720 - shrink);
        pump(15);
        void* const again = meeting.join(static_cast<int>(turn % sources.size()) + 1);
        {
            const std::lock_guard<std::mutex> guard(source.lock);
            source.play = again;
        }
        pump(15);
    }
    workers.join();
    for (Source& source : sources)
        CHECK(source.taken > 0);
    // Everything still works: the one who stays fills the dialog.
    REQUIRE(meeting.changeMode(eLayoutEqualCut));
    meeting.moveTo(1280, 720);
    for (size_t i = 1; i < sources.size(); ++i)
        CHECK_EQUAL(zr.DelPerson(meeting.screen, sources.at(i).play, false), 1);
    Picture last(640, 360, kCyan);
    CHECK(pumpUntil([&] {
        zr.PlayFrame(meeting.screen, sources.at(0).play, &last.frame);
        pump(20);
        const Screenshot shot = window.grab();
        return isNear(shot.at(1, 1), kCyan.rgb()) && isNear(shot.at(1278, 400), kCyan.rgb());
    }));
}

ZR_CASE(threads, releaseWhileOthersCall)
{
    const NativeWindow window(1280, 720);
    for (int round = 0; round < 5; ++round) {
        Meeting meeting(&window);
        Module& zr = meeting.zr;
        void* const screen = meeting.screen;
        void* const ann = meeting.join(1);
        Picture picture(320, 180, kRed);
        std::atomic<int> number{10};
        const std::function<void()> calls[] = {
            [&] { zr.PlayFrame(screen, ann, &picture.frame); },
            [&] {
                zr.SetMute(screen, ann, 0);
                zr.AddSentence(screen, 1, 0, text("a"), text("b"));
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            },
            // These wait for the GUI thread, which is about to be busy releasing.
            [&] { zr.IsPersonVisible(screen, text("u1")); },
            [&] {
                const std::string id = "t" + std::to_string(number++);
                zr.DelPerson(screen, zr.AddPerson(screen, text(id), text("P"), 1, 0, nullptr),
                             false);
            },
        };
        Workers workers;
        std::atomic<size_t> called{0};
        for (const auto& call : calls) {
            workers.add([&] {
                for (int i = 0; !workers.stop; ++i) {
                    call();
                    called += i == 0 ? 1 : 0;
                }
            });
        }
        CHECK(pumpUntil([&] { return called == std::size(calls); }));
        const auto start = Clock::now();
        zr.Release(screen);
        meeting.screen = nullptr;
        CHECK(Clock::now() - start < std::chrono::seconds(5));
        const int messages = meeting.inbox.count();
        pump(30);
        CHECK_EQUAL(meeting.inbox.count(), messages);
        CHECK_EQUAL(zr.PlayFrame(screen, ann, &picture.frame), 0);
        workers.join();
    }
}

ZR_CASE(threads, postedCallsKeepTheirOrder)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    meeting.join(1);
    std::thread caller([&] {
        for (const int mode : {2, 3, 11, 12, 13, 14})
            zr.ChangeLayout(meeting.screen, static_cast<eLayoutType>(mode), {});
    });
    caller.join(); // returns without the GUI thread
    CHECK(pumpUntil([&] { return zr.GetCurMode(meeting.screen) == 14; }));
    std::vector<int> seen;
    for (const Message& m : meeting.inbox.all()) {
        if (m.id == ZRMSG_SCREEN_MODE)
            seen.push_back(static_cast<int>(m.wParam));
    }
    CHECK(seen == (std::vector<int>{2, 3, 11, 12, 13, 14}));
}

/// Before there is a screen, while it lives, and with texts that nobody would write.
ZR_CASE(threads, panelsTakeCallsFromAnyThread)
{
    {
        const Module early;
        const __WTMark_Info info{true, 2, std::string(10000, 'x'), {}, "a@b.c"};
        std::thread([&] { early.exports.ZRScreenWtmark.SetInfo(info); }).join();
        pump(20);
    }
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    const zr::WatermarkExports& watermark = zr.exports.ZRScreenWtmark;
    meeting.join(1);
    CHECK(zr.AddPerson(meeting.screen, text("sharescreen_1"), text(""), 99, 0, nullptr) != nullptr);
    Workers workers;
    for (int t = 0; t < 2; ++t) {
        workers.add([&, t] {
            for (int i = 0; i < 200 && !workers.stop; ++i) {
                const __WTMark_Info info{i % 2 == 0, t + 1, std::string(10000, 'x'), "1234567",
                                         std::string(10000, 'y')};
                watermark.SetInfo(info);
                watermark.SetEnabled(i % 3 == 0);
                const std::string sentence(i % 50 == 0 ? 100000 : size_t(i) % 80, 'z');
                zr.AddSentence(meeting.screen, i * 7 % 100 - 30, i - 100, text("Alice"),
                               text(sentence));
                if (i % 10 == 0)
                    CHECK_EQUAL(zr.OpenSubtitle(meeting.screen, i % 20 == 0), 1);
                if (i % 33 == 0)
                    zr.ClearSubtitles(meeting.screen);
            }
        });
    }
    CHECK(pumpUntil([&] { return workers.running == 0; }, 60000));
    workers.join();
    CHECK_EQUAL(zr.OpenSubtitle(meeting.screen, false), 1);
}
