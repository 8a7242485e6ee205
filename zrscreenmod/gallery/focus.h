// Who the speaker is, who was, and who will be when a mode has one again.
#pragma once

#include <QString>

struct tagPersonInfo;

/// The speaker is chosen, by a user or the host, or automatic, by an arrangement or a voice.
/// Holds addresses of participants who are in the roster; `forget` whoever leaves it.
class Focus
{
public:
    /// The speaker; null while nobody is.
    [[nodiscard]] tagPersonInfo* person() const { return m_pPerson; }
    /// The speaker whom a user or the host has chosen; null while the arrangements choose.
    [[nodiscard]] tagPersonInfo* chosen() const { return m_bAutomatic ? nullptr : m_pPerson; }
    [[nodiscard]] tagPersonInfo* automatic() const { return m_bAutomatic ? m_pPerson : nullptr; }
    /// The speaker before; never the present one.
    [[nodiscard]] const tagPersonInfo* previous() const { return m_pPrevious; }
    /// Who was clicked where nobody is the speaker, and is the next one.
    [[nodiscard]] tagPersonInfo* selected() const { return m_pSelected; }

    void choose(tagPersonInfo* person);
    /// Chooses until somebody is chosen by a user or the host.
    void suggest(tagPersonInfo* person);
    void select(tagPersonInfo* person) { m_pSelected = person; }
    /// Nobody is the speaker any more, and nobody is selected.
    void drop();
    /// For an arrangement without a speaker: a choice waits, behind what is clicked meanwhile, for
    /// one that has a speaker. Only a share stays.
    void rest();
    void forget(const tagPersonInfo* person);

private:
    void moveTo(tagPersonInfo* person);

    tagPersonInfo* m_pPerson = nullptr;
    tagPersonInfo* m_pPrevious = nullptr;
    tagPersonInfo* m_pSelected = nullptr;
    bool m_bAutomatic = false;
};

/// Whose voice is heard. Holds addresses as Focus does.
struct Voices
{
    tagPersonInfo* activated = nullptr; ///< by voice activation
    tagPersonInfo* before = nullptr;    ///< activated before that
    QString namedId;                    ///< user id of whom the host names as the one who speaks

    void activate(tagPersonInfo* person);
    void forget(const tagPersonInfo* person);
};
