// Who is in the meeting.
#pragma once

#include "personinfo.h"

#include <QHash>

#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

/// Owns the records of the participants. GUI thread.
///
/// An address that comes from outside is believed only after `live` found it.
class Roster
{
public:
    /// The participant behind an address, which is not touched; null for nobody who is here.
    [[nodiscard]] tagPersonInfo* live(const void* pPerson) const;
    [[nodiscard]] tagPersonInfo* byUserId(const QString& userId) const;
    /// Everybody, in join order.
    [[nodiscard]] const std::vector<tagPersonInfo*>& all() const { return m_vecPerson; }
    [[nodiscard]] bool isEmpty() const { return m_vecPerson.empty(); }

    [[nodiscard]] int shareCount() const { return m_iShareCount; }
    /// The sponsor's shared screen, else the one that comes first in the join order; null without
    /// one.
    [[nodiscard]] tagPersonInfo* firstShare(const QString& sponsorId) const;

    /// Takes a new participant in. The join time becomes one that nobody else has.
    void enter(std::unique_ptr<tagPersonInfo> record);
    /// Gives a participant, who has another role now, the place of that role.
    void reorder(tagPersonInfo* person);
    /// From here on the participant is not found any more. @return the record, which other threads
    /// and events that are under way may still use
    [[nodiscard]] std::unique_ptr<tagPersonInfo> leave(const tagPersonInfo* person);

private:
    void insertByJoinTime(tagPersonInfo* person);

    std::unordered_map<const void*, std::unique_ptr<tagPersonInfo>> m_mapOwned;
    QHash<QString, tagPersonInfo*> m_mapByUserId;
    std::vector<tagPersonInfo*> m_vecPerson; ///< in join order
    std::set<qint64> m_setJoinTime;
    int m_iShareCount = 0;
};
