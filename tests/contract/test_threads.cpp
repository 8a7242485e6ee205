// Host threads against the GUI thread.
#include "check.h"
#include "meeting.h"

#include <array>
#include <atomic>
#include <set>
#include <utility>

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
        CHECK(pumpUntil([&] { return running == 0; }, 60000));
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
    void* exchange(void* next)
    {
        const std::lock_guard<std::mutex> guard(lock);
        return std::exchange(play, next);
    }
    std::mutex lock;
    void* play = nullptr;
    std::atomic<int> taken{0};
};

} // namespace

ZR_CASE(threads, addsFromFourThreadsAtOnce)
{
    const HostWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    void* const screen = meeting.screen;
    CHECK_EQUAL(zr.SetSupport9EqualCut(screen, true), 1);
    const auto add = [&](int number) {
        return zr.AddPerson(screen, text("u" + std::to_string(number)), text("P"), number, 0,
                            hostValue(number));
    };
    std::array<std::vector<void*>, 4> handles;
    Workers workers;
    for (size_t t = 0; t < handles.size(); ++t) {
        workers.add([&, t] {
            for (int i = 0; i < 10; ++i) {
                handles.at(t).push_back(add(100 * (static_cast<int>(t) + 1) + i));
                // The tile is there when the add has returned.
                CHECK_EQUAL(zr.SetVolume(screen, handles.at(t).back(), i), 1);
            }
        });
    }
    // Meanwhile the GUI thread is not only in its loop but also inside exports of its own.
    CHECK(pumpUntil(
        [&] {
            zr.ReOrder(screen, false);
            meeting.moveTo(1280, 720);
            zr.DelPerson(screen, add(1), false);
            return workers.running == 0;
        },
        30000));
    workers.join();
    for (const Message& m : meeting.inbox.all())
        CHECK(m.thread == std::this_thread::get_id());

    // All but the last two of each thread leave: the eight that stay are on one page.
    std::set<void*> distinct;
    for (const auto& group : handles) {
        distinct.insert(group.begin(), group.end());
        for (size_t i = 0; i < 8; ++i)
            CHECK_EQUAL(zr.DelPerson(screen, group.at(i), false), 1);
    }
    CHECK(distinct.size() == 40 && distinct.count(nullptr) == 0);
    for (const char* const id : {"u108", "u109", "u208", "u209", "u308", "u309", "u408", "u409"})
        CHECK_ROW(pumpUntil([&] { return zr.IsPersonVisible(screen, text(id)) == 1; }), id);
    CHECK_EQUAL(zr.IsPersonVisible(screen, text("u407")), 0);
}

ZR_CASE(threads, frameStormAgainstAGuiAtWork)
{
    const HostWindow window(1280, 720);
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
        // Must not wait for long: a frame never waits for the GUI thread.
        if (void* const deleted = source.exchange(nullptr)) {
            CHECK_EQUAL(zr.DelPerson(meeting.screen, deleted, false), 1);
            Picture late(320, 180, kBlue);
            CHECK_EQUAL(zr.PlayFrame(meeting.screen, deleted, &late.frame), 0);
        }
        zr.ChangeLayout(meeting.screen, static_cast<eLayoutType>(modes[turn % std::size(modes)]),
                        {});
        const int shrink = static_cast<int>(turn % 7) * 90;
        meeting.moveTo(1280 - shrink, 720 - shrink);
        pump(15);
        (void)source.exchange(meeting.join(static_cast<int>(turn % sources.size()) + 1));
        pump(15);
    }
    workers.join();
    // Everything still works: the one who stays fills the dialog.
    REQUIRE(meeting.changeMode(eLayoutEqualCut));
    meeting.moveTo(1280, 720);
    for (Source& source : sources) {
        CHECK(source.taken > 0);
        if (&source != sources.data())
            CHECK_EQUAL(zr.DelPerson(meeting.screen, source.play, false), 1);
    }
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
    const HostWindow window(1280, 720);
    for (int round = 0; round < 5; ++round) {
        Meeting meeting(&window);
        Module& zr = meeting.zr;
        void* const screen = meeting.screen;
        const zr::ExtExports& exts = zr.exports.ZRScreenExt;
        void* const ext = exts.Init(nullptr, nullptr);
        void* const ann = meeting.join(1);
        Picture picture(320, 180, kRed);
        std::atomic<int> number{10};
        const std::string words(1000, 'x');
        const std::function<void()> calls[] = {
            [&] { zr.PlayFrame(screen, ann, &picture.frame); },
            [&] {
                exts.PlayFrame(ext, &picture.frame);
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            },
            [&] {
                zr.SetMute(screen, ann, 0);
                zr.AddSentence(screen, number++ % 100, 0, text("a"), text(words));
                zr.exports.ZRScreenWtmark.SetInfo({true, 1, words, "1", "a@b.c"});
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            },
            [&] {
                zr.OpenSubtitle(screen, number % 2 == 0);
                zr.ClearSubtitles(screen);
                zr.exports.ZRScreenWtmark.SetEnabled(number % 3 != 0);
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
        for (const char* const id : {"u1", "u2", "u1"}) { // whose frames come
            CHECK_EQUAL(exts.SetPersonInfo(ext, ext, id, false, 0, "Ann", 0), 1);
            CHECK_EQUAL(exts.Preview(ext, true), 1);
            pump(30);
        }
        const auto start = Clock::now();
        exts.Release(ext);
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
    const HostWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    meeting.join(1);
    const std::vector<int> modes{2, 3, 11, 12, 13, 14};
    std::thread([&] {
        for (const int mode : modes)
            zr.ChangeLayout(meeting.screen, static_cast<eLayoutType>(mode), {});
    }).join(); // returns without the GUI thread
    CHECK(pumpUntil([&] { return zr.GetCurMode(meeting.screen) == modes.back(); }));
    std::vector<int> seen;
    for (const Message& m : meeting.inbox.all()) {
        if (m.id == ZRMSG_SCREEN_MODE)
            seen.push_back(static_cast<int>(m.wParam));
    }
    CHECK(seen == modes);
}
