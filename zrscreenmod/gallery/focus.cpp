#include "focus.h"

#include "personinfo.h"

#include <utility>

void Focus::moveTo(tagPersonInfo* person)
{
    tagPersonInfo* before = std::exchange(m_pPerson, person);
    if (before && before != person)
        m_pPrevious = before;
    else if (m_pPrevious == person)
        m_pPrevious = nullptr;
}

void Focus::choose(tagPersonInfo* person)
{
    moveTo(person);
    m_bAutomatic = false;
    m_pSelected = nullptr; // whoever was clicked before has given way to this choice
}

void Focus::suggest(tagPersonInfo* person)
{
    moveTo(person);
    m_bAutomatic = true;
}

void Focus::drop()
{
    moveTo(nullptr);
    m_pSelected = nullptr;
}

void Focus::rest()
{
    if (!m_pPerson || (chosen() && m_pPerson->bShare))
        return;
    tagPersonInfo* next = m_pSelected ? m_pSelected : chosen();
    drop();
    m_pSelected = next;
}

void Focus::forget(const tagPersonInfo* person)
{
    for (tagPersonInfo** slot : {&m_pPerson, &m_pPrevious, &m_pSelected}) {
        if (*slot == person)
            *slot = nullptr;
    }
}

void Voices::activate(tagPersonInfo* person)
{
    if (activated)
        before = activated;
    activated = person;
}

void Voices::forget(const tagPersonInfo* person)
{
    for (tagPersonInfo** slot : {&activated, &before}) {
        if (*slot == person)
            *slot = nullptr;
    }
}
