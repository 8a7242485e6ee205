// Where pictures come from: streams, drawings, files, pipes, programs, and the thread that
// delivers them.
#include "host_error.h"
#include "media_source.h"
#include "media_thread.h"
#include "synthetic_picture.h"
#include "y4m_reader.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <cstring>
#include <future>
#include <sys/stat.h>

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

void writeFile(const QString& name, const std::string& bytes)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes.data(), qint64(bytes.size()));
}

/// Reads everything. @return the frames' first bytes and what ended them, for example "ab."
QString readAll(PictureSource& source, int atMost)
{
    QString seen;
    try {
        Picture picture;
        while (seen.size() < atMost) {
            if (!source.next(picture))
                return seen + QLatin1Char('.');
            seen += QLatin1Char(char(picture.data[0]));
        }
    } catch (const HostError& error) {
        return seen + QLatin1String("!") + QString::fromStdString(error.what());
    }
    return seen;
}

} // namespace

class TestHostMedia : public QObject
{
    Q_OBJECT

private slots:
    void headers_data();
    void headers();
    void streams_data();
    void streams();
    void filesAreLooped();
    void colours_data();
    void colours();
    void drawingsMove();
    void aSilentPipeCanBeStopped();
    void aProgramIsReadAndEnded();
    void aFailedProgramSaysWhy();
    void theThreadKeepsTheRate();
    void theThreadReportsTheEnd();
    void theDecoderConverts();
};

void TestHostMedia::headers_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");
    QTest::newRow("whole") << "YUV4MPEG2 W320 H240 F30000:1001 Ip A1:1 C420jpeg XA=\"b"
                           << "320x240 29.97";
    QTest::newRow("order and default chroma") << "YUV4MPEG2 F10:1 H2 W3"
                                              << "3x2 10";
    QTest::newRow("no rate") << "YUV4MPEG2 W2 H2"
                             << "2x2 25";
    QTest::newRow("rate unknown") << "YUV4MPEG2 W2 H2 F0:0"
                                  << "2x2 25";
    QTest::newRow("other magic") << "YUV4MPEG W2 H2"
                                 << "! not a YUV4MPEG2 stream";
    QTest::newRow("no width") << "YUV4MPEG2 H2"
                              << "! without a width";
    QTest::newRow("width zero") << "YUV4MPEG2 W0 H2"
                                << "! width: '0' is not";
    QTest::newRow("too large") << "YUV4MPEG2 W2 H16385"
                               << "! height: '16385' is not";
    QTest::newRow("width with rest") << "YUV4MPEG2 W2x H2"
                                     << "! width: '2x' is not";
    QTest::newRow("rate no ratio") << "YUV4MPEG2 W2 H2 F25"
                                   << "! is not a ratio";
    QTest::newRow("ten bit") << "YUV4MPEG2 W2 H2 C420p10"
                             << "! chroma '420p10' is not supported";
    QTest::newRow("other chroma") << "YUV4MPEG2 W2 H2 C422"
                                  << "! chroma '422' is not supported";
}

void TestHostMedia::headers()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    try {
        const Y4mHeader header = Y4mHeader::parse(line.toStdString());
        QCOMPARE(QStringLiteral("%1x%2 %3")
                     .arg(header.width)
                     .arg(header.height)
                     .arg(header.fps, 0, 'g', 4),
                 expected);
    } catch (const HostError& error) {
        const QString got = QLatin1String("! ") + QString::fromStdString(error.what());
        QVERIFY2(expected.startsWith(QLatin1Char('!')) && got.contains(expected.mid(2)),
                 qPrintable(got));
    }
}

void TestHostMedia::streams_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    // 3 x 3 pixels: 9 bytes of luma, 2 x 2 for each chroma plane.
    constexpr std::size_t kOddBytes = 9 + 4 + 4;
    const std::string head = "YUV4MPEG2 W3 H3 F25:1\n";
    const auto row = [](const char* name, const std::string& bytes, const char* expected) {
        QTest::newRow(name) << QByteArray(bytes.data(), int(bytes.size())) << expected;
    };
    row("two frames", head + frame("FRAME", kOddBytes, 'a') + frame("FRAME Ip XY", kOddBytes, 'b'),
        "ab.");
    row("no frame", head, "!the stream has no frames");
    row("truncated frame", head + frame("FRAME", kOddBytes, 'a') + frame("FRAME", 16, 'b'),
        "a!truncated frame 2: 16 of 17 bytes");
    row("truncated frame header", head + frame("FRAME", kOddBytes, 'a') + "FRA",
        "a!truncated YUV4MPEG2 header");
    row("frames out of step",
        head + frame("FRAME", kOddBytes + 1, 'a') + frame("FRAME", kOddBytes, 'b'),
        "a!no FRAME header before frame 2");
    row("frame header glued", head + frame("FRAMES", kOddBytes, 'a'),
        "!no FRAME header before frame 1");
}

void TestHostMedia::streams()
{
    QFETCH(QByteArray, bytes);
    Y4mSource source(std::make_unique<MemoryBytes>(bytes.toStdString()), 0);
    QTEST(readAll(source, 10), "expected");
}

void TestHostMedia::filesAreLooped()
{
    const std::string bytes =
        "YUV4MPEG2 W2 H2 F50:1\n" + frame("FRAME", 6, 'a') + frame("FRAME", 6, 'b');
    Y4mSource looped(std::make_unique<MemoryBytes>(bytes, true), 0);
    QCOMPARE(readAll(looped, 5), QStringLiteral("ababa"));
    QCOMPARE(looped.fps(), 50.0);
    QCOMPARE(Y4mSource(std::make_unique<MemoryBytes>(bytes), 12.5).fps(), 12.5);

    // What is not a stream at all is said at once.
    for (const auto& [bad, failure] : std::vector<std::pair<std::string, std::string>>{
             {"", "the stream is empty"},
             {"\x89PNG.....", "not a YUV4MPEG2 stream"},
             {"YUV4MPEG2 W2 H2", "truncated YUV4MPEG2 header"},
             {"YUV4MPEG2 " + std::string(5000, 'X'), "YUV4MPEG2 header line without an end"}}) {
        try {
            Y4mSource source(std::make_unique<MemoryBytes>(bad), 0);
            QFAIL("no failure");
        } catch (const HostError& error) {
            QCOMPARE(error.what(), failure.c_str());
        }
    }
}

void TestHostMedia::colours_data()
{
    QTest::addColumn<QList<int>>("rgb");
    QTest::addColumn<QList<int>>("yuv");
    // 75 % and 100 % colour bars of BT.709, limited range.
    QTest::newRow("black") << QList<int>{0, 0, 0} << QList<int>{16, 128, 128};
    QTest::newRow("white") << QList<int>{255, 255, 255} << QList<int>{235, 128, 128};
    QTest::newRow("red") << QList<int>{255, 0, 0} << QList<int>{63, 102, 240};
    QTest::newRow("green") << QList<int>{0, 255, 0} << QList<int>{173, 42, 26};
    QTest::newRow("blue") << QList<int>{0, 0, 255} << QList<int>{32, 240, 118};
    QTest::newRow("75 % yellow") << QList<int>{191, 191, 0} << QList<int>{168, 44, 136};
}

void TestHostMedia::colours()
{
    QFETCH(QList<int>, rgb);
    const Yuv got = toBt709(rgb[0], rgb[1], rgb[2]);
    QTEST((QList<int>{got.y, got.u, got.v}), "yuv");
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
    QTemporaryDir folder;
    const std::string pipe = folder.filePath("pipe").toStdString();
    QCOMPARE(mkfifo(pipe.c_str(), 0600), 0);
    MediaThread::Work work;
    work.open = [&](const StopSignal& stop) {
        return openSource(SourceSpec::parse("y4m:" + pipe), {}, stop);
    };
    work.deliver = [](const Picture&) { return true; };
    std::atomic<bool> ended{false};
    work.ended = [&](const std::string&) { ended = true; };
    QElapsedTimer timer;
    timer.start();
    {
        MediaThread thread(work);
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
        auto bytes = openProgram({"sh", "-c", "echo $$; exec sleep 60"}, stop);
        std::uint8_t byte = 0;
        while (bytes->read(&byte, 1) == 1 && byte != '\n')
            pid += char(byte);
    }
    QVERIFY(timer.elapsed() < 5000);
    // Ended and collected: nothing is left in the process table.
    QVERIFY(!QFile::exists(QStringLiteral("/proc/%1").arg(QString::fromStdString(pid))));
}

void TestHostMedia::aFailedProgramSaysWhy()
{
    StopSignal stop;
    const auto failureOf = [&](const std::vector<std::string>& arguments) {
        try {
            Y4mSource source(openProgram(arguments, stop), 0);
            return readAll(source, 10);
        } catch (const HostError& error) {
            return QString::fromStdString(error.what());
        }
    };
    QCOMPARE(failureOf({"sh", "-c", "echo bad file >&2; echo more >&2; exit 3"}),
             QStringLiteral("sh failed: bad file"));
    QVERIFY(failureOf({"/nonexistent/decoder"}).startsWith("cannot start /nonexistent/decoder"));
    // More errors than a pipe holds must not block the program, nor its reader.
    QVERIFY(failureOf({"sh", "-c", "yes error | head -c 300000 >&2; exit 1"})
                .startsWith("sh failed: error"));
}

void TestHostMedia::theThreadKeepsTheRate()
{
    std::atomic<int> count{0};
    MediaThread::Work work;
    work.open = [](const StopSignal& stop) {
        return openSource(SourceSpec::parse("synthetic@64x36/50"), {}, stop);
    };
    work.deliver = [&](const Picture& picture) {
        ++count;
        return picture.width == 64;
    };
    work.ended = [](const std::string&) {};
    MediaThread thread(work);
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

void TestHostMedia::theThreadReportsTheEnd()
{
    QTemporaryDir folder;
    const QString file = folder.filePath("cut.y4m");
    writeFile(file, "YUV4MPEG2 W2 H2 F100:1\n" + frame("FRAME", 6, 'a') + frame("FRAME", 3, 'b'));
    std::promise<std::string> ended;
    MediaThread::Work work;
    work.open = [&](const StopSignal& stop) {
        return openSource(SourceSpec::parse("y4m:" + file.toStdString()), {}, stop);
    };
    work.deliver = [](const Picture&) { return true; };
    work.ended = [&](const std::string& problem) { ended.set_value(problem); };
    MediaThread thread(work);
    auto result = ended.get_future();
    QVERIFY(result.wait_for(std::chrono::seconds(10)) == std::future_status::ready);
    QCOMPARE(result.get(), std::string("truncated frame 2: 3 of 6 bytes"));
}

void TestHostMedia::theDecoderConverts()
{
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

QTEST_GUILESS_MAIN(TestHostMedia)
#include "tst_hostmedia.moc"
