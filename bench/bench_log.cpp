// What a log line costs: how long it holds its caller, and how fast the lines reach the file. The
// GUI thread runs its event loop meanwhile.
//
// usage: zr_bench_log [threads [lines of each thread [pause between two lines, in microseconds]]]
#include "diagnostics.h"
#include "qmylogthread.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

struct Load
{
    int threads;
    int linesPerThread;
    int pauseUs;
};

/// Logs from one thread. @return the time that each call took, in nanoseconds
std::vector<qint64> logLines(const Load& load, int thread)
{
    std::vector<qint64> callNs;
    callNs.reserve(static_cast<size_t>(load.linesPerThread));
    QElapsedTimer timer;
    for (int i = 0; i < load.linesPerThread; ++i) {
        timer.start();
        qDebug() << "thread:" << thread << ",userName:"
                 << "Ann"
                 << ",line:" << i;
        callNs.push_back(timer.nsecsElapsed());
        if (load.pauseUs > 0)
            std::this_thread::sleep_for(std::chrono::microseconds(load.pauseUs));
    }
    return callNs;
}

/// @return the lines in the files of a folder, and their bytes
std::pair<qint64, qint64> countLines(const QString& folder)
{
    qint64 lines = 0;
    qint64 bytes = 0;
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Files)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = file.readAll();
        lines += text.count('\n');
        bytes += text.size();
    }
    return {lines, bytes};
}

bool measure(const Load& load)
{
    const QTemporaryDir folder;
    LogSettings settings = LogSettings::forApplication();
    settings.folder = folder.path();
    QMyLogThread log(settings);
    log.start();
    log.waitUntilBegun(1000);
    installLogHandler(&log);

    std::vector<std::vector<qint64>> callNs(static_cast<size_t>(load.threads));
    std::vector<std::thread> threads;
    threads.reserve(static_cast<size_t>(load.threads));
    std::atomic<int> running{load.threads};
    QElapsedTimer total;
    total.start();
    for (int t = 0; t < load.threads; ++t) {
        threads.emplace_back([&load, &running, t, result = &callNs[static_cast<size_t>(t)]] {
            *result = logLines(load, t);
            --running;
        });
    }
    while (running > 0)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    for (std::thread& thread : threads)
        thread.join();
    const double loggedS = static_cast<double>(total.nsecsElapsed()) * 1e-9;
    const bool removed = removeLogHandler();
    const bool ended = log.finish();
    const double writtenS = static_cast<double>(total.nsecsElapsed()) * 1e-9;

    std::vector<qint64> all;
    for (const auto& ofThread : callNs)
        all.insert(all.end(), ofThread.begin(), ofThread.end());
    std::sort(all.begin(), all.end());
    const auto quantileUs = [&all](double q) {
        const auto at = static_cast<size_t>(q * static_cast<double>(all.size() - 1));
        return static_cast<double>(all[at]) * 1e-3;
    };
    const auto [lines, bytes] = countLines(folder.path());
    const auto expected = static_cast<qint64>(all.size());
    std::printf("%d threads, %lld lines, pause %d us: in the file %lld lines, %.1f MB\n",
                load.threads, static_cast<long long>(expected), load.pauseUs,
                static_cast<long long>(lines), static_cast<double>(bytes) * 1e-6);
    std::printf("  logged in %.3f s, written in %.3f s: %.0f lines/s\n", loggedS, writtenS,
                static_cast<double>(expected) / writtenS);
    std::printf("  a call held its caller: median %.1f us, p99 %.1f us, longest %.1f us\n",
                quantileUs(0.5), quantileUs(0.99), quantileUs(1));
    return removed && ended && lines == expected;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    qSetMessagePattern(QStringLiteral("[%{time hh:mm:ss.zzz}][%{function}:%{line}]  %{message}"));
    const auto argument = [argc, argv](int index, int otherwise) {
        return argc > index ? std::atoi(argv[index]) : otherwise;
    };
    if (argc > 1)
        return measure({argument(1, 8), argument(2, 12500), argument(3, 0)}) ? EXIT_SUCCESS
                                                                             : EXIT_FAILURE;
    // One caller on an idle machine, a busy meeting, and all at once.
    const bool one = measure({1, 5000, 200});
    const bool busy = measure({8, 2500, 1000});
    const bool flood = measure({8, 12500, 0});
    return one && busy && flood ? EXIT_SUCCESS : EXIT_FAILURE;
}
