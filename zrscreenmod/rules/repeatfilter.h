// Which of many equal log lines are written.
#pragma once

#include <QString>

#include <array>

namespace zr {

/// A line that comes for the hundredth time in a second says nothing new, but fills the disk: a
/// host that calls with a wrong handle for each frame makes thousands of them. Of equal lines the
/// first ones in a second are written; the rest of it is one line with a count.
class RepeatFilter
{
public:
    /// So many equal lines a second are written.
    static constexpr int kAdmitted = 10;
    static constexpr qint64 kSpanMs = 1000;

    /// Whether to write a line. @param key tells it from others @param nowMs never goes back
    [[nodiscard]] bool admit(quint64 key, qint64 nowMs);
    /// Keeps the text of a line that was admitted, for the count.
    void written(quint64 key, const QString& line);
    /// What is to be written of the lines that were not, once their second is over, or at once with
    /// `all`; empty when there is nothing. Ask until it is.
    [[nodiscard]] QString takeCount(qint64 nowMs, bool all = false);

private:
    struct Entry
    {
        quint64 key = 0;
        qint64 sinceMs = 0;
        int seen = 0; ///< in the second that began then; 0 for a free entry
        QString line; ///< as it was written last
    };
    Entry* find(quint64 key);

    /// Those that come in turn in a storm: what a call logs first, and why it was refused.
    std::array<Entry, 8> m_entries;
};

} // namespace zr
