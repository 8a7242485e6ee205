// Where pictures come from: streams, drawings, files, pipes, programs, and the thread that
// delivers them.
#include "hosttest.h"
#include "media_source.h"
#include "media_thread.h"
#include "synthetic_picture.h"
#include "testsystem.h"
#include "y4m_reader.h"

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>

using namespace zrhost;

namespace {

/// Bytes in memory, handed out in small pieces as a pipe does.
class MemoryBytes : public ByteSource
{
public:
    MemoryBytes(std::string bytes, bool canRewind = false)
        : m_bytes(std::move(bytes))
        , m_canRewind(canRewind)
    {
    }
    std::size_t read(std::uint8_t* to, std::size_t size) override
    {
        constexpr std::size_t kPiece = 7;
        const std::size_t count = std::min({size, kPiece, m_bytes.size() - m_at});
        std::memcpy(to, m_bytes.data() + m_at, count);
        m_at += count;
        return count;
    }
    bool rewind() override
    {
        m_at = 0;
        return m_canRewind;
    }
    std::string endProblem() override { return {}; }

private:
    std::string m_bytes;
    std::size_t m_at = 0;
    bool m_canRewind;
};

std::string frame(const std::string& header, std::size_t bytes, char value)
{
    return header + "\n" + std::string(bytes, value);
}

/// Reads everything. @return the frames' first bytes and what ended them, for example "ab."
QString readAll(PictureSource& source, int atMost)
{
    QString seen;
    const QString failure = failureOf([&] {
        Picture picture;
        while (seen.size() < atMost && source.next(picture))
            seen += QLatin1Char(char(picture.data[0]));
        if (seen.size() < atMost)
            seen += QLatin1Char('.');
    });
    return failure.isEmpty() ? seen : seen + QLatin1Char('!') + failure;
}

/// The command line of this program as one that the host starts; see runChild().
std::vector<std::string> child(const char* what)
{
    return {QCoreApplication::applicationFilePath().toStdString(), "--child", what};
}

/// What the started program does.
int runChild(const std::string& what)
{
    if (what == "sleep") {
        std::printf("%lld.", static_cast<long long>(QCoreApplication::applicationPid()));
        std::fflush(stdout);
        std::this_thread::sleep_for(std::chrono::seconds(60));
        return 0;
    }
    std::fputs(what == "fail" ? "bad file\nmore\n" : "", stderr);
    for (int i = 0; what == "fail noisily" && i < 50000; ++i)
        std::fputs("error\n", stderr);
    return 3;
}

/// A thread's work on a source; the caller may change what follows it.
MediaThread::Work workOn(const std::string& source)
{
    MediaThread::Work work;
    work.open = [source](const StopSignal& stop) {
        return openSource(SourceSpec::parse(source), {}, stop);
    };
    work.deliver = [](const Picture&) { return true; };
    work.ended = [](const std::string&) {};
    return work;
}

} // namespace

class TestHostMedia : public QObject
{
    Q_OBJECT

private slots:
    void headers();
    void streams();
    void filesAreLooped();
    void coloursAreThoseOfBt709();
    void drawingsMove();
    void aSilentPipeCanBeStopped();
    void aProgramIsReadAndEnded();
    void aFailedProgramSaysWhy();
    void theThreadKeepsTheRate();
    void theDecoderConverts();
};

void TestHostMedia::headers()
{
    compareRows({{"YUV4MPEG2 W320 H240 F30000:1001 Ip A1:1 C420jpeg XA=\"b", "320x240 29.97"},
                 {"YUV4MPEG2 F10:1 H2 W3", "3x2 10"},
                 {"YUV4MPEG2 W2 H2", "2x2 25"},
                 {"YUV4MPEG2 W2 H2 F0:0", "2x2 25"},
                 {"YUV4MPEG W2 H2", "! not a YUV4MPEG2 stream"},
                 {"YUV4MPEG2 H2", "! without a width"},
                 {"YUV4MPEG2 W0 H2", "! width: '0' is not"},
                 {"YUV4MPEG2 W2 H16385", "! height: '16385' is not"},
                 {"YUV4MPEG2 W2x H2", "! width: '2x' is not"},
                 {"YUV4MPEG2 W2 H2 F25", "! is not a ratio"},
                 {"YUV4MPEG2 W2 H2 C420p10", "! chroma '420p10' is not supported"},
                 {"YUV4MPEG2 W2 H2 C422", "! chroma '422' is not supported"}},
                [](const std::string& line) {
                    const Y4mHeader header = Y4mHeader::parse(line);
                    return QStringLiteral("%1x%2 ").arg(header.width).arg(header.height)
                           + QString::number(header.fps, 'g', 4);
                });
}

void TestHostMedia::streams()
{
    // 3 x 3 pixels: 9 bytes of luma, 2 x 2 for each chroma plane.
    constexpr std::size_t kOddBytes = 9 + 4 + 4;
    const std::string head = "YUV4MPEG2 W3 H3 F25:1\n";
    const std::string first = head + frame("FRAME", kOddBytes, 'a');
    compareRows({{first + frame("FRAME Ip XY", kOddBytes, 'b'), "ab."},
                 {head, "!the stream has no frames"},
                 {first + frame("FRAME", 16, 'b'), "a!truncated frame 2: 16 of 17 bytes"},
                 {first + "FRA", "a!truncated YUV4MPEG2 header"},
                 {first + "a" + frame("FRAME", kOddBytes, 'b'), "a!no FRAME header before frame 2"},
                 {head + frame("FRAMES", kOddBytes, 'a'), "!no FRAME header before frame 1"},
                 // What is not a stream at all is said before the first picture is asked for.
                 {"", "! the stream is empty"},
                 {"\x89PNG.....", "! not a YUV4MPEG2 stream"},
                 {"YUV4MPEG2 W2 H2", "! truncated YUV4MPEG2 header"},
                 {"YUV4MPEG2 " + std::string(5000, 'X'), "! YUV4MPEG2 header line without an end"}},
                [](const std::string& bytes) {
                    Y4mSource source(std::make_unique<MemoryBytes>(bytes), 0);
                    return readAll(source, 10);
                });
}

void TestHostMedia::filesAreLooped()
{
    const std::string bytes =
        "YUV4MPEG2 W2 H2 F50:1\n" + frame("FRAME", 6, 'a') + frame("FRAME", 6, 'b');
    Y4mSource looped(std::make_unique<MemoryBytes>(bytes, true), 0);
    QCOMPARE(readAll(looped, 5), QStringLiteral("ababa"));
    QCOMPARE(looped.fps(), 50.0);
    QCOMPARE(Y4mSource(std::make_unique<MemoryBytes>(bytes), 12.5).fps(), 12.5);
}

void TestHostMedia::coloursAreThoseOfBt709()
{
    struct Row
    {
        int red, green, blue, y, u, v;
    };
    constexpr Row kBars[] = {{0, 0, 0, 16, 128, 128},   {255, 255, 255, 235, 128, 128},
                             {255, 0, 0, 63, 102, 240}, {0, 255, 0, 173, 42, 26},
                             {0, 0, 255, 32, 240, 118}, {191, 191, 0, 168, 44, 136}};
    for (const Row& bar : kBars) {
        const Yuv got = toBt709(bar.red, bar.green, bar.blue);
        QCOMPARE((QList<int>{got.y, got.u, got.v}), (QList<int>{bar.y, bar.u, bar.v}));
    }
}

void TestHostMedia::drawingsMove()
{
    for (const Size size : {Size{640, 360}, Size{33, 17}, Size{1, 1}, Size{5, 4000}}) {
        SyntheticSource source(42, participantHue(42, 1), size, 25);
        Picture first;
        Picture second;
        QVERIFY(source.next(first));
        for (int i = 0; i < 25; ++i)
            QVERIFY(source.next(second));
        QCOMPARE(first.width, size.width);
        QCOMPARE(first.data.size(), Picture::byteCount(size.width, size.height));
        QCOMPARE(second.data.size(), first.data.size());
        if (size.width == 1)
            continue; // nothing but the ball fits
        QVERIFY(first.data != second.data);
        // The frame line at the edge, white, is there from the first pixel.
        QCOMPARE(int(first.data[0]), 235);
    }
    QCOMPARE(Picture::byteCount(3, 5), std::size_t(15 + 2 * 6));
    QCOMPARE(participantHue(3, 7), participantHue(3, 7));
    QVERIFY(qAbs(participantHue(3, 7) - participantHue(4, 7)) > 0.1);
}

void TestHostMedia::aSilentPipeCanBeStopped()
{
    const testsystem::SilentPipe pipe;
    QVERIFY(!pipe.name().empty());
    MediaThread::Work work = workOn("y4m:" + pipe.name());
    std::atomic<bool> ended{false};
    work.ended = [&](const std::string&) { ended = true; };
    QElapsedTimer timer;
    timer.start();
    {
        MediaThread thread(work, false);
        QTest::qWait(100);
    }
    QVERIFY(timer.elapsed() < 3000);
    QVERIFY(!ended); // stopped, which is no end of the source
}

void TestHostMedia::aProgramIsReadAndEnded()
{
    StopSignal stop;
    QElapsedTimer timer;
    timer.start();
    std::string pid;
    {
        auto bytes = openProgram(child("sleep"), stop);
        std::uint8_t byte = 0;
        while (bytes->read(&byte, 1) == 1 && byte != '.')
            pid += char(byte);
    }
    QVERIFY(timer.elapsed() < 5000);
    // Ended and collected: nothing is left in the process table.
    QVERIFY(!testsystem::isRunning(std::stoll(pid)));
}

void TestHostMedia::aFailedProgramSaysWhy()
{
    StopSignal stop;
    const auto said = [&](const std::vector<std::string>& arguments) {
        return failureOf([&] { Y4mSource source(openProgram(arguments, stop), 0); });
    };
    const QString program = QString::fromStdString(child("fail").front());
    QCOMPARE(said(child("fail")), program + QStringLiteral(" failed: bad file"));
    QVERIFY(said({"/nonexistent/decoder"}).startsWith("cannot start /nonexistent/decoder"));
    // More errors than a pipe holds must not block the program, nor its reader.
    QVERIFY(said(child("fail noisily")).startsWith(program + QStringLiteral(" failed: error")));
}

void TestHostMedia::theThreadKeepsTheRate()
{
    std::atomic<int> count{0};
    MediaThread::Work work = workOn("synthetic@64x36/50");
    work.deliver = [&](const Picture& picture) {
        ++count;
        return picture.width == 64;
    };
    MediaThread thread(work, false);
    QTest::qWait(1000);
    // Never more than the rate allows; a loaded machine may deliver fewer.
    QVERIFY2(count >= 15 && count <= 60, qPrintable(QString::number(count)));
    QVERIFY(thread.delivered() > 0);
    QCOMPARE(thread.refused(), 0LL);
    thread.setPaused(true);
    QTest::qWait(100);
    const int before = count;
    QTest::qWait(200);
    QCOMPARE(count.load(), before);
}

void TestHostMedia::theDecoderConverts()
{
    if (QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty())
        QSKIP("ffmpeg is not here");
    // A red BT.601 full-range picture must arrive as red of BT.709 in limited range.
    QTemporaryDir folder;
    const std::string file = folder.filePath("-red.mkv").toStdString();
    StopSignal stop;
    auto made = openProgram({"ffmpeg", "-v", "error", "-f", "lavfi", "-i",
                             "color=red:size=64x48:rate=10:duration=1", "-pix_fmt", "yuvj444p",
                             "-c:v", "ffv1", "file:" + file},
                            stop);
    std::uint8_t byte = 0;
    QCOMPARE(made->read(&byte, 1), std::size_t(0));
    QCOMPARE(made->endProblem(), std::string());

    Y4mSource source(openProgram(decoderArguments(SourceSpec::parse("video@33x17:" + file)), stop),
                     0);
    Picture picture;
    for (int i = 0; i < 15; ++i) // past the file's end: it is looped
        QVERIFY(source.next(picture));
    QCOMPARE(picture.width, 33);
    QCOMPARE(picture.height, 17);
    QCOMPARE(source.fps(), 10.0);
    const Yuv red = toBt709(255, 0, 0);
    QVERIFY(qAbs(int(picture.data[0]) - red.y) <= 2);
    constexpr std::size_t kLumaBytes = 33UL * 17;
    constexpr std::size_t kChromaBytes = 17UL * 9;
    QVERIFY(qAbs(int(picture.data[kLumaBytes]) - red.u) <= 2);
    QVERIFY(qAbs(int(picture.data[kLumaBytes + kChromaBytes]) - red.v) <= 2);
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc > 2 && std::strcmp(argv[1], "--child") == 0)
        return runChild(argv[2]);
    TestHostMedia test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_hostmedia.moc"
