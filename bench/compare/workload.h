// What the module and its peers have to show: the same pictures at the same instants, counted
// alike.
#pragma once

#include "picture.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <vector>

namespace compare {

using Clock = std::chrono::steady_clock;

constexpr int kWindowWidthPx = 1280;
constexpr int kWindowHeightPx = 720;
constexpr int kFramesPerSecond = 25;

/// One row of the comparison.
struct Workload
{
    int columns = 0; ///< of the grid, which has as many rows
    int widthPx = 0; ///< of the pictures
    int heightPx = 0;
    bool inStep = false;  ///< all pictures of a period come at once, else evenly spread over it
    double redrawsPerS{}; ///< of a peer whose pictures are not in step
    int seconds = 0;      ///< that are measured
    bool isPatient{};     ///< the schedule waits for who is late, so that nothing is skipped
    bool isPlain{};       ///< nothing lies over the module's pictures

    [[nodiscard]] int tiles() const { return columns * columns; }
};

/// Reads `COLUMNS WIDTH HEIGHT step|own REDRAWS SECONDS [patient] [plain]`. Ends the program, with
/// the usage, where that is not what is there.
Workload workloadOf(int argc, char** argv);

/// When which picture comes.
class Schedule
{
public:
    explicit Schedule(const Workload& workload);

    /// Pictures of each tile, with those before the measurement.
    [[nodiscard]] int frames() const { return m_frames; }
    /// The first picture of each tile that counts; by then everything has been compiled and made.
    static constexpr int kFirstCounted = 2 * kFramesPerSecond;
    [[nodiscard]] Clock::time_point due(int tile, int number) const;
    /// The tile's last picture that has come by then; -1 before the first.
    [[nodiscard]] int newest(int tile, Clock::time_point at) const;
    [[nodiscard]] Clock::time_point start() const { return m_start; }
    /// What should have been done at one time is done at a later one: all that follows is later,
    /// too.
    void wait(Clock::time_point planned, Clock::time_point done) { m_start += done - planned; }

private:
    Clock::duration m_offset{}; ///< of a tile behind the one before
    int m_frames;
    Clock::time_point m_start = Clock::now();
};

/// The pictures, drawn beforehand: as a decoder's pool does, each tile has several, which come in
/// turn.
class Pictures
{
public:
    explicit Pictures(const Workload& workload);

    /// The picture with this number, which is also written into its first bytes.
    const zrhost::Picture& at(int tile, int number);

private:
    std::vector<std::vector<zrhost::Picture>> m_tiles;
};

/// Which picture the first bytes of a luma plane tell of.
struct Stamp
{
    std::uint16_t magic = 0;
    std::uint16_t tile = 0;
    std::int32_t number = -1;

    [[nodiscard]] bool isValid() const { return magic == kMagic; }
    static constexpr std::uint16_t kMagic = 0x525a;
};
Stamp stampOf(const void* luma);

/// CPU time of the process so far, user and system, all threads. Milliseconds.
double processCpuMs();

/// What became of the pictures. One thread offers, one uploads and swaps.
class FrameLog
{
public:
    FrameLog(const Workload& workload, const Schedule& schedule);

    /// The measurement begins: what is uploaded and swapped from here on counts.
    void begin();
    void offered(int tile, int number, Clock::time_point at);
    /// @param bytes of the whole picture
    void uploaded(int tile, int number);
    /// What is uploaded beside or in place of whole pictures as it comes, plane by plane.
    void uploadedBytes(std::size_t bytes);
    void swapped();
    /// Any thread.
    [[nodiscard]] bool isShown(int tile, int number) { return frame(tile, number).latencyMs >= 0; }

    /// Prints the figures, one a line, each behind its name. Nobody offers or uploads any more.
    void print() const;

private:
    struct Frame
    {
        Clock::time_point offered;
        std::atomic<double> latencyMs{-1}; ///< to the swap that shows it
    };
    Frame& frame(int tile, int number);

    const int m_frames;
    const std::size_t m_pictureBytes;
    std::atomic<bool> m_counting{false};
    double m_cpuBeganMs = 0;
    std::vector<std::vector<Frame>> m_tiles;
    std::vector<Frame*> m_uploaded; ///< since the last swap
    std::size_t m_uploadedBytes = 0;
    int m_swaps = 0;
};

/// Prints one figure as FrameLog::print does.
void printFigure(const char* name, double value);

/// A program that does no more than to show pictures.
class Painter
{
public:
    virtual ~Painter() = default;
    virtual void upload(int tile, const zrhost::Picture& picture) = 0;
    /// Draws all tiles and swaps.
    virtual void redraw() = 0;
};

/// The left or upper edge, in pixels, of one of `cells` that share `length`.
constexpr int edge(int cell, int cells, int length)
{
    return length * cell / cells;
}

/// Where a tile is in the window, in pixels.
struct Cell
{
    int left;
    int top;
    int width;
    int height;
};
constexpr Cell cellOf(int tile, int cells)
{
    const int column = tile % cells;
    const int row = tile / cells;
    const int left = edge(column, cells, kWindowWidthPx);
    const int top = edge(row, cells, kWindowHeightPx);
    return {left, top, edge(column + 1, cells, kWindowWidthPx) - left,
            edge(row + 1, cells, kWindowHeightPx) - top};
}

/// Shows the workload with a peer, and prints the figures.
void runPeer(const Workload& workload, Painter& painter);

} // namespace compare
