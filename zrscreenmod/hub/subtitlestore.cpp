#include "subtitlestore.h"

#include "subtitlerules.h"

int SubtitleStore::add(int iIDSentence, const SubtitleRecord& sentence)
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_sentences.insert(iIDSentence, sentence);
    return m_sentences.size();
}

void SubtitleStore::trim()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    while (m_sentences.size() > zr::kMaxSubtitles)
        m_sentences.erase(m_sentences.begin());
}

void SubtitleStore::clear()
{
    const std::lock_guard<std::mutex> lock(m_lock);
    m_sentences.clear();
}

QMap<int, SubtitleRecord> SubtitleStore::all() const
{
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_sentences;
}

SubtitleRecord SubtitleStore::one(int iIDSentence) const
{
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_sentences.value(iIDSentence);
}
