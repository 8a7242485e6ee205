#include "repeatfilter.h"

#include <algorithm>
#include <utility>

namespace zr {

RepeatFilter::Entry* RepeatFilter::find(quint64 key)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [key](const Entry& entry) {
        return entry.seen > 0 && entry.key == key;
    });
    return found == m_entries.end() ? nullptr : &*found;
}

bool RepeatFilter::admit(quint64 key, qint64 nowMs)
{
    Entry* entry = find(key);
    if (!entry) {
        // The place of the one that began first, unless it still has a count to tell.
        const auto before = [](const Entry& a, const Entry& b) {
            const auto rank = [](const Entry& e) {
                return std::pair(e.seen > kAdmitted, e.seen == 0 ? 0 : e.sinceMs);
            };
            return rank(a) < rank(b);
        };
        entry = std::min_element(m_entries.begin(), m_entries.end(), before);
        if (entry->seen > kAdmitted)
            return true; // too many different storms
        *entry = {key, nowMs, 0, {}};
    } else if (nowMs - entry->sinceMs >= kSpanMs && entry->seen <= kAdmitted) {
        entry->sinceMs = nowMs;
        entry->seen = 0;
    }
    return ++entry->seen <= kAdmitted;
}

void RepeatFilter::written(quint64 key, const QString& line)
{
    if (Entry* entry = find(key))
        entry->line = line;
}

QString RepeatFilter::takeCount(qint64 nowMs, bool all)
{
    for (Entry& entry : m_entries) {
        const int more = entry.seen - kAdmitted;
        if (more <= 0 || (!all && nowMs - entry.sinceMs < kSpanMs))
            continue;
        const Entry over = std::exchange(entry, {});
        return QStringLiteral("%1 (%2 times more in %3 ms)")
            .arg(over.line)
            .arg(more)
            .arg(nowMs - over.sinceMs);
    }
    return {};
}

} // namespace zr
