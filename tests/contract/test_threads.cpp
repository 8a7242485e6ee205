// Host threads against the GUI thread.
#include "check.h"
#include "meeting.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <set>
#include <utility>

namespace {

/// Threads that are waited for, whatever happens to the case. `stop` is for loops to look at.
class Workers
{
public:
    ~Workers() { finish(); }
    void add(std::function<void()> body)
    {
        m_works.push_back(std::async(std::launch::async, std::move(body)));
    }
    [[nodiscard]] bool haveEnded() const
    {
        return std::all_of(m_works.begin(), m_works.end(), hasEnded);
    }
    void finish()
    {
        stop = true;
        CHECK(pumpUntil([this] { return haveEnded(); }, 60000)); // they may wait for this thread
        m_works.clear();
    }
    std::atomic<bool> stop{false};

private:
    std::vector<std::future<void>> m_works;
};

} // namespace

ZR_CASE(threads, addsFromFourThreadsAtOnce)
{
    const HostWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    void* const screen = meeting.screen;
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
            return workers.haveEnded();
        },
        30000));
    workers.finish();
    for (const Message& m : meeting.inbox.all())
        CHECK(m.thread == std::this_thread::get_id());

    std::set<void*> distinct;
    for (const auto& group : handles) {
        distinct.insert(group.begin(), group.end());
        for (void* const play : group)
            CHECK_EQUAL(zr.DelPerson(screen, play, false), 1);
    }
    CHECK(distinct.size() == 40 && distinct.count(nullptr) == 0);
}

ZR_CASE(threads, othersCallWhileTheGuiWorksAndReleases)
{
    const HostWindow window(1280, 720);
    for (long long round = setting("ZR_ROUNDS", 5); round > 0; --round) {
        Meeting meeting(&window);
        Module& zr = meeting.zr;
        void* const screen = meeting.screen;
        const zr::ExtExports& exts = zr.exports.ZRScreenExt;
        void* const ext = exts.Init(nullptr, nullptr);
        void* const ann = meeting.join(1);
        Picture small(322, 181, kRed);
        Picture large(640, 360, kGreen);
        std::atomic<int> number{10};
        const std::string words(1000, 'x');
        const auto storm = [&](void* play) {
            for (Picture* const picture : {&small, &large}) {
                for (int i = 0; i < 4; ++i)
                    zr.PlayFrame(screen, play, &picture->frame);
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        };
        std::vector<std::function<void()>> calls{
            [&] {
                exts.PlayFrame(ext, &small.frame);
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
                void* const play = zr.AddPerson(screen, text(id), text("P"), 1, 0, nullptr);
                zr.Preview(screen, play, true);
                storm(play);
                zr.DelPerson(screen, play, false);
                CHECK_EQUAL(zr.PlayFrame(screen, play, &small.frame), 0);
            },
            [&] { storm(ann); },
        };
        for (int i = 2; i <= 8; ++i) // frames come from eight threads
            calls.emplace_back([&, play = meeting.join(i)] { storm(play); });
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
        for (const int mode : {1, 2, 3, 11, 12, 13, 14, 6, 7, 8, 9}) {
            zr.ChangeLayout(screen, static_cast<eLayoutType>(mode), {});
            meeting.moveTo(1280 - mode * 40, 720 - mode * 40);
            const char* const id = mode % 2 == 0 ? "u1" : "u2"; // whose frames come
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
        CHECK_EQUAL(zr.PlayFrame(screen, ann, &small.frame), 0);
        workers.finish();
    }
}
