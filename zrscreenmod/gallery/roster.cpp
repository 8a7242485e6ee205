#include "roster.h"

#include "personorder.h"

#include <algorithm>
#include <utility>

namespace {

zr::PersonKey personKey(const tagPersonInfo* person)
{
    return {person->bSelf, person->iRoteType, person->joinTime};
}

quint64 nextSerial()
{
    static quint64 last = 0;
    return ++last;
}

} // namespace

tagPersonInfo* Roster::live(const void* pPerson) const
{
    const auto owned = m_mapOwned.find(pPerson);
    return owned == m_mapOwned.end() ? nullptr : owned->second.get();
}

tagPersonInfo* Roster::byUserId(const QString& userId) const
{
    return m_mapByUserId.value(userId, nullptr);
}

tagPersonInfo* Roster::firstShare(const QString& sponsorId) const
{
    if (m_iShareCount == 0)
        return nullptr;
    if (tagPersonInfo* sponsored = byUserId(sponsoredShareId(sponsorId)))
        return sponsored;
    const auto isShare = [](const tagPersonInfo* person) { return person->bShare; };
    const auto share = std::find_if(m_vecPerson.begin(), m_vecPerson.end(), isShare);
    return share == m_vecPerson.end() ? nullptr : *share;
}

void Roster::insertByJoinTime(tagPersonInfo* person)
{
    const int position = zr::insertPosition(m_vecPerson, person->joinTime, personKey);
    m_vecPerson.insert(m_vecPerson.begin() + position, person);
}

void Roster::enter(std::unique_ptr<tagPersonInfo> record)
{
    tagPersonInfo* person = record.get();
    person->serial = nextSerial();
    person->joinTime = zr::uniqueJoinTime(m_setJoinTime, person->joinTime);
    if (person->bShare)
        ++m_iShareCount;
    m_setJoinTime.insert(person->joinTime);
    m_mapByUserId.insert(person->userID, person);
    m_mapOwned.emplace(person, std::move(record));
    insertByJoinTime(person);
}

void Roster::reorder(tagPersonInfo* person)
{
    m_vecPerson.erase(std::find(m_vecPerson.begin(), m_vecPerson.end(), person));
    insertByJoinTime(person);
}

std::unique_ptr<tagPersonInfo> Roster::leave(const tagPersonInfo* person)
{
    if (person->bShare)
        --m_iShareCount;
    m_setJoinTime.erase(person->joinTime);
    m_mapByUserId.remove(person->userID);
    m_vecPerson.erase(std::find(m_vecPerson.begin(), m_vecPerson.end(), person));
    const auto owned = m_mapOwned.find(person);
    std::unique_ptr<tagPersonInfo> record = std::move(owned->second);
    m_mapOwned.erase(owned);
    return record;
}
