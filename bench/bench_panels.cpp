// What the subtitles and the watermark cost.
#include "benchhost.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QEvent>
#include <QImage>
#include <QWidget>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;
using Ms = std::chrono::duration<double, std::milli>;

double residentKb()
{
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

/// Counts what the list of the subtitles paints.
class ListPaints : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && watched->parent()
            && watched->parent()->inherits("QGraphicsView"))
            ++count;
        return false;
    }
    int count = 0;
};

/// 64 sentences are shown, and the last one is sent again with a word more, up to 40 words.
class Captions
{
public:
    explicit Captions(void* screen, const std::string& text =
                                        "a sentence of some words that takes two or three lines")
        : m_screen(screen)
    {
        ZRScreen_OpenSubtitle(screen, true);
        for (m_id = 1; m_id < 64; ++m_id)
            send(text);
    }
    void grow()
    {
        m_text += "word ";
        if (++m_words > 40) {
            m_text = "word ";
            m_words = 1;
            ++m_id;
        }
        send(m_text);
    }
    /// The last sentence again, with another text.
    void send(std::string text)
    {
        std::string name = "Alice";
        ZRScreen_AddSentence(m_screen, m_id, m_id % 4, name.data(), text.data());
    }
    void add(const std::string& text)
    {
        ++m_id;
        send(text);
    }

private:
    void* m_screen;
    int m_id = 1;
    int m_words = 0;
    std::string m_text;
};

/// Twenty updates a second for ten seconds, and then the updates of ten minutes as fast as they are
/// taken.
void growSentences(benchmark::State& state)
{
    constexpr int kUpdates = 200;
    constexpr auto kPeriod = 50ms;
    Meeting meeting(1920, 1080);
    Captions captions(meeting.screen());
    for (int i = 0; i < 100; ++i)
        captions.grow();
    onGui([] { drainEvents(); });
    while (state.KeepRunning()) {
        std::unique_ptr<ListPaints> paints;
        onGui([&paints] {
            paints = std::make_unique<ListPaints>();
            qApp->installEventFilter(paints.get());
        });
        const auto cpu = processCpuTime();
        const auto start = Clock::now();
        for (int i = 1; i <= kUpdates; ++i) {
            captions.grow();
            std::this_thread::sleep_until(start + kPeriod * i);
        }
        const Ms wall = Clock::now() - start;
        state.SetIterationTime(wall.count() / 1000);
        state.counters["core_percent"] = Ms(processCpuTime() - cpu).count() * 100 / wall.count();
        onGui([&] {
            state.counters["painted"] = paints->count;
            paints.reset();
        });
        const auto rush = [&captions](int updates) {
            for (int i = 0; i < updates; ++i) {
                captions.grow();
                if (i % 20 == 0)
                    onGui([] { drainEvents(); });
            }
        };
        rush(12000);
        // The least of some rounds: what is kept grows in each, and log lines that wait for a busy
        // machine do not.
        double grown = 1e9;
        for (int round = 0; round < 3; ++round) {
            const double before = residentKb();
            rush(12000);
            grown = std::min(grown, residentKb() - before);
        }
        state.counters["grown_kb"] = grown;
    }
}
BENCHMARK(growSentences)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

QWidget* subtitlePanel()
{
    const QWidgetList widgets = QApplication::allWidgets();
    const auto found = std::find_if(widgets.begin(), widgets.end(),
                                    [](QWidget* w) { return w->inherits("QDlgSubtitle2"); });
    return found == widgets.end() ? nullptr : *found;
}

/// What a job that another thread begins costs the GUI thread: the least of some rounds.
template<typename Job>
double guiMs(const Job& job)
{
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        onGui([] { drainEvents(); });
        const auto before = guiCpuTime();
        job(round);
        onGui([] { drainEvents(); });
        best = std::min(best, Ms(guiCpuTime() - before).count());
    }
    return best;
}

/// 64 sentences of so many characters: what resizes, a word more in the last one, and one more
/// sentence cost the GUI thread.
void longSentences(benchmark::State& state)
{
    Meeting meeting(1920, 1080);
    std::string text;
    while (text.size() < static_cast<size_t>(state.range(0)))
        text += "some words of it ";
    text.resize(static_cast<size_t>(state.range(0)));
    Captions captions(meeting.screen(), text);
    captions.send(text);
    const auto resize = [](int by) {
        onGui([by] {
            QWidget* panel = subtitlePanel();
            panel->resize(panel->width() + by, panel->height());
        });
    };
    const auto burst = [](int round) {
        onGui([round] {
            QWidget* panel = subtitlePanel();
            for (int i = 0; i < 10; ++i)
                panel->resize(panel->width() + (round % 2 ? 3 : -3), panel->height());
        });
    };
    while (state.KeepRunning()) {
        state.counters["resize_ms"] = guiMs([&](int round) { resize(round % 2 ? 30 : -30); });
        state.counters["burst_ms"] = guiMs(burst);
        state.counters["update_ms"] = guiMs([&](int) { captions.send(text += "word "); });
        state.counters["add_ms"] = guiMs([&](int) { captions.add(text); });
    }
}
BENCHMARK(longSentences)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// A share of 1920 x 1080, painted without and with a watermark.
void paintWatermark(benchmark::State& state)
{
    Meeting meeting(1920, 1080);
    std::string id = "sharescreen_1";
    std::string name;
    Picture frame(1280, 720, Rgb{120, 128, 128});
    onGui([&] {
        void* play = ZRScreen_AddPerson(meeting.screen(), id.data(), name.data(), 1, 0, nullptr);
        ZRScreen_Preview(meeting.screen(), play, true);
        ZRScreen_ChangeLayout(meeting.screen(), eLayoutShare, {});
        drainEvents();
        for (int i = 0; i < 20; ++i) {
            meeting.play(play, frame);
            drainEvents();
            std::this_thread::sleep_for(20ms);
        }
    });
    QImage image(1920, 1080, QImage::Format_ARGB32_Premultiplied);
    const auto paintMs = [&image](bool watermark) {
        __WTMark_Info info{};
        info.bEnabled = watermark;
        info.cloundType = 1;
        info.name = "Zhang San";
        info.phone = "13812345678";
        ZRScreenWtmark_SetInfo(info);
        double best = 1e9;
        onGui([&best, &image] {
            drainEvents();
            const QWidgetList widgets = QApplication::allWidgets();
            const auto found = std::find_if(widgets.begin(), widgets.end(), [](QWidget* widget) {
                return widget->inherits("QDlgPlayInfo") && widget->isVisible()
                       && widget->width() > 900;
            });
            if (found == widgets.end())
                return;
            for (int i = 0; i < 50; ++i) {
                image.fill(Qt::transparent);
                const auto start = Clock::now();
                (*found)->render(&image, {}, {}, QWidget::DrawChildren);
                best = std::min(best, Ms(Clock::now() - start).count());
            }
        });
        return best;
    };
    while (state.KeepRunning()) {
        const double without = paintMs(false);
        const QImage plain = image;
        const double with = paintMs(true);
        if (image == plain)
            state.SkipWithError("there is no watermark");
        state.SetIterationTime(with / 1000);
        state.counters["without_ms"] = without;
        state.counters["with_ms"] = with;
        state.counters["more_ms"] = with - without;
    }
}
BENCHMARK(paintWatermark)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
