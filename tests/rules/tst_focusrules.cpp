#include "focusrules.h"
#include "moderules.h"

#include <QtTest>

namespace {

using zr::ClickEffect;
using zr::LeaveEffect;
using zr::VoiceEffect;

/// Participants by letters: Share, sPonsor, piNned, Activated, Talking, pRevious, Host, seLf.
std::vector<zr::SpeakerKey> keys(const QByteArray& persons)
{
    std::vector<zr::SpeakerKey> list;
    for (const QByteArray& letters : persons.split(' ')) {
        const auto has = [&letters](char letter) { return letters.contains(letter); };
        list.push_back(
            {has('S'), has('P'), has('N'), has('A'), has('T'), has('R'), has('H'), has('L')});
    }
    return list;
}

template<typename Input, typename Effect>
using Rows = std::vector<std::pair<Input, Effect>>;

/// What comes of each input by a rule that answers with an effect.
template<typename Input, typename Effect>
void compare(Effect (*rule)(const Input&), const Rows<Input, Effect>& rows)
{
    for (const auto& [input, effect] : rows)
        QCOMPARE(int(rule(input)), int(effect));
}

} // namespace

class tst_FocusRules : public QObject
{
    Q_OBJECT

private slots:
    void speakers()
    {
        // The speaker, who is beside the speaker, and who is in the floating window.
        const std::tuple<const char*, int, int, int> rows[] = {
            {"L", 0, -1, 0}, // "-" has nothing
            {"L -", 1, 0, 1},
            {"- -", 0, 1, 0},
            {"L - H", 2, 1, 2},
            {"LH -", 1, 0, 1},  // being the host does not put the local user first
            {"- H R", 2, 1, 2}, // who was the speaker stays
            {"- H R T", 3, 2, 3},
            {"- H R T A", 4, 3, 4},
            {"LA - R", 2, 1, 2}, // nor does the own voice
            {"- A S", 2, 1, 1},
            {"S SP -", 1, 2, 2}, // the sponsor's share, and no second share beside it
            {"S SP", 1, 0, 0},
            {"S - P R", 0, 2, 2}, // beside a share its sponsor
            {"S - P A", 0, 3, 3}, // after who speaks
            {"LN A -", 0, 1, 1},
            {"N SP", 1, 0, 0},
        };
        for (const auto& [persons, speaker, next, floating] : rows) {
            const auto list = keys(persons);
            QVERIFY2(zr::defaultSpeaker(list) == speaker, persons);
            QVERIFY2(zr::nextSpeaker(list, speaker) == next, persons);
            QVERIFY2(zr::floatingSpeaker(list) == floating, persons);
        }
        QCOMPARE(zr::defaultSpeaker({}), -1);
        // Beside a person a share stands first; a speaker outside the list excludes nobody.
        QCOMPARE(zr::nextSpeaker(keys("A - S"), 0), 2);
        QCOMPARE(zr::nextSpeaker(keys("- A"), 7), 1);
    }

    void clicks() // mode, dictated, onSpeaker, speakerHasStream, personHasPicture
    {
        compare(&zr::clickEffect,
                {{{eLayoutSingle, false, true, true, true}, ClickEffect::Select},
                 {{eLayoutEqualCut, true, false, true, true}, ClickEffect::None},
                 {{eLayoutSpeakerTop, true, false, true, true}, ClickEffect::None},
                 {{eLayoutSpeakerTop, false, true, true, true}, ClickEffect::None},
                 {{eLayoutSpeakerTop, false, false, false, true}, ClickEffect::Move},
                 {{eLayoutSpeakerTool, false, false, true, true}, ClickEffect::MoveStream},
                 {{eLayoutSpeaker4, false, false, true, false}, ClickEffect::Keep}});
    }

    void voices() // mode, activation, dictated, chosenSpeaker, self
    {
        compare(&zr::voiceEffect,
                {{{eLayoutEqualCut, true, false, false, false}, VoiceEffect::None},
                 {{eLayoutSpeakerRight, true, true, false, false}, VoiceEffect::None},
                 {{eLayoutSpeakerRight, true, false, false, true}, VoiceEffect::None},
                 {{eLayoutSpeakerRight, true, false, false, false}, VoiceEffect::Speaker},
                 {{eLayoutSpeakerRight, true, false, true, false}, VoiceEffect::SmallWindow},
                 {{eLayoutSpeakerRight, false, false, false, false}, VoiceEffect::SmallWindow},
                 {{eLayoutSpeakerTool, true, false, false, false}, VoiceEffect::SmallWindow}});
    }

    void leaving() // share, otherShare, maximised, inTool, last
    {
        compare(&zr::leaveEffect,
                {{{false, false, false, false, false}, LeaveEffect::None},
                 {{true, true, true, false, false}, LeaveEffect::NextShare},
                 {{true, false, true, true, true}, LeaveEffect::BeforeShare},
                 {{false, true, true, false, false}, LeaveEffect::BeforeMaximised},
                 {{false, false, false, true, false}, LeaveEffect::AfterPin},
                 {{false, true, false, true, false}, LeaveEffect::None},
                 {{false, false, false, true, true}, LeaveEffect::None}});
    }

    void pins()
    {
        // pins, dictated, onSpeaker, fromMenu, mode, lookMode; who is chosen, the mode entered
        const std::tuple<zr::PinInput, bool, int> rows[] = {
            {{true, false, false, false, eLayoutEqualCut, 1}, true, eLayoutSpeakerRight},
            {{true, false, false, false, eLayoutSpeakerTop, 1}, true, eLayoutSpeakerTop},
            {{true, false, true, false, eLayoutSpeakerTop, 1}, true, eLayoutSpeakerRight},
            {{true, true, false, false, eLayoutSpeakerTop, 1}, false, eLayoutEqualCut},
            {{false, true, true, true, eLayoutSpeakerTop, 7}, false, eLayoutEqualCut},
            {{false, true, true, false, eLayoutSpeakerTop, 7}, false, 0},
            {{false, false, true, true, eLayoutSpeakerTop, eLayout6Cut}, false, eLayout6Cut},
            {{false, false, true, true, eLayoutSpeakerTop, eLayoutShare},
             false,
             eLayoutSpeakerRight},
            {{false, false, true, true, eLayoutSpeakerRight, eLayoutShare}, false, 0},
            {{false, false, true, false, eLayoutSpeakerTop, eLayout6Cut}, false, 0},
        };
        for (const auto& [input, choosesSpeaker, mode] : rows) {
            const zr::PinEffect effect = zr::pinEffect(input);
            QCOMPARE(effect.choosesSpeaker, choosesSpeaker);
            QCOMPARE(effect.mode, mode);
        }
    }

    void admitsToTheStrip()
    {
        // Who is admitted, the large tiles, who has the tiles, and who has them then.
        const std::tuple<int, int, QVector<int>, QVector<int>> rows[] = {
            {9, 1, {0, 1, 2, 3}, {0, 1, 2, 9}},
            {1, 1, {0, 1, 2, 3}, {0, 1, 2, 3}}, // is there already
            {0, 1, {0, 1, 2, 3}, {0, 1, 2, 3}}, // is the speaker
            {-1, 1, {0, 1, 2, 3}, {0, 1, 2, 3}},
            {9, 1, {0, 1}, {0, 1}}, // a lone tile stays
            {9, 2, {0}, {0}},
            {9, 0, {}, {}},
        };
        for (const auto& [person, large, before, after] : rows) {
            std::vector<zr::TilePlacement> tiles;
            for (const int index : before)
                tiles.push_back({index, QRect(index, 0, 1, 1), zr::kGradeSmall});
            zr::admitToStrip(tiles, person, large);
            QVector<int> shown;
            for (const zr::TilePlacement& tile : tiles)
                shown += tile.index;
            QCOMPARE(shown, after);
        }
    }

    void takesSeats()
    {
        int people[5]{};
        int* const a = &people[0];
        int* const c = &people[2];
        const std::pair<std::vector<zr::Seat<int>>, QVector<int>> rows[] = {
            {{{c, 0}}, {2, 0, 1, 3}},
            {{{a, 2}, {c, 0}}, {2, 1, 0, 3}},
            {{{c, 0}, {a, 0}}, {2, 0, 1, 3}}, // the first keeps the seat
            {{{c, 3}, {c, 0}}, {0, 1, 3, 2}}, // one seat each
            {{{a, 99}}, {1, 2, 3, 0}},
            {{{a, -1}, {nullptr, 1}, {&people[4], 0}}, {0, 1, 2, 3}}, // the fifth is not listed
        };
        for (const auto& [seats, expected] : rows) {
            std::vector<int*> list{a, &people[1], c, &people[3]};
            zr::takeSeats<int>(list, seats);
            QVector<int> order;
            for (const int* person : list)
                order += int(person - people);
            QCOMPARE(order, expected);
        }
        std::vector<int*> nobody;
        zr::takeSeats<int>(nobody, {{a, 0}});
        QVERIFY(nobody.empty());
    }
};

QTEST_APPLESS_MAIN(tst_FocusRules)
#include "tst_focusrules.moc"
