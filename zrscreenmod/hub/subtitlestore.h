// The sentences of the subtitles.
#pragma once

#include "locks.h"

#include <QMap>
#include <QString>

/// A sentence of the subtitles.
struct SubtitleRecord
{
    int iColorType = 0; ///< index of the avatar colour, as the host gave it
    QString userName;
    QString transStr;
};

/// By the ids of the host, of which the highest are the newest. Any thread.
class SubtitleStore
{
public:
    /// Adds a sentence, or replaces the one with the same id. @return how many there are then
    int add(int iIDSentence, const SubtitleRecord& sentence);
    /// Drops the oldest ones beyond what is kept.
    void trim();
    void clear();
    [[nodiscard]] QMap<int, SubtitleRecord> all() const;
    /// @return an empty record for a sentence that is not stored (any more)
    [[nodiscard]] SubtitleRecord one(int iIDSentence) const;

private:
    mutable platform::Mutex m_lock;
    QMap<int, SubtitleRecord> m_sentences;
};
