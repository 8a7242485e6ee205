#include "focusrules.h"
#include "moderules.h"

#include <QtTest>

namespace {

using zr::ClickEffect;
using zr::LeaveEffect;
using zr::SpeakerKey;
using zr::VoiceEffect;

/// Participants by letters: Share, sPonsor, piNned, Activated, Talking, pRevious, Host, seLf.
std::vector<SpeakerKey> keys(const char* persons)
{
    std::vector<SpeakerKey> list;
    for (const QByteArray& letters : QByteArray(persons).split(' '))
        list.push_back({letters.contains('S'), letters.contains('P'), letters.contains('N'),
                        letters.contains('A'), letters.contains('T'), letters.contains('R'),
                        letters.contains('H'), letters.contains('L')});
    return list;
}

} // namespace

class tst_FocusRules : public QObject
{
    Q_OBJECT

private slots:
    void choosesSpeakers();
    void nobody();
    void clicks();
    void voices();
    void pins();
    void leaving();
    void admitsToTheStrip();
    void takesSeats();
};

void tst_FocusRules::choosesSpeakers()
{
    struct Row
    {
        const char* persons; // "-" has nothing
        int speaker, next, floating;
    };
    const Row rows[] = {
        {"L", 0, -1, 0},
        {"L -", 1, 0, 1},
        {"- -", 0, 1, 0},
        {"L - H", 2, 1, 2},
        {"LH -", 1, 0, 1},  // being the host does not put the local user first
        {"- H R", 2, 1, 2}, // who was the speaker stays
        {"- H R T", 3, 2, 3},
        {"- H R T A", 4, 3, 4},
        {"LA - R", 2, 1, 2}, // nor does the own voice
        {"- A S", 2, 1, 1},
        {"S SP -", 1, 2, 2}, // the sponsor's share, and no second share
                             // beside it
        {"S SP", 1, 0, 0},
        {"S - P R", 0, 2, 2}, // beside a share its sponsor
        {"S - P A", 0, 3, 3}, // after who speaks
        {"S P L", 0, 1, 1},
        {"LN A -", 0, 1, 1},
        {"N SP", 1, 0, 0},
    };
    for (const Row& row : rows) {
        const auto list = keys(row.persons);
        QVERIFY2(zr::defaultSpeaker(list) == row.speaker, row.persons);
        QVERIFY2(zr::nextSpeaker(list, row.speaker) == row.next, row.persons);
        QVERIFY2(zr::floatingSpeaker(list) == row.floating, row.persons);
    }
}

void tst_FocusRules::nobody()
{
    QCOMPARE(zr::defaultSpeaker({}), -1);
    QCOMPARE(zr::nextSpeaker({}, 0), -1);
    QCOMPARE(zr::floatingSpeaker({}), -1);
    // Beside a person a share stands first; a speaker outside the list excludes nobody.
    QCOMPARE(zr::nextSpeaker(keys("A - S"), 0), 2);
    QCOMPARE(zr::nextSpeaker(keys("- A"), 7), 1);
}

void tst_FocusRules::clicks()
{
    struct Row
    {
        int mode;
        bool dictated, onSpeaker, stream, picture;
        ClickEffect effect;
    };
    const Row rows[] = {
        {eLayoutEqualCut, false, false, true, true, ClickEffect::Select},
        {eLayoutSingle, false, true, true, true, ClickEffect::Select},
        {eLayoutEqualCut, true, false, true, true, ClickEffect::None},
        {eLayoutSpeakerTop, true, false, true, true, ClickEffect::None},
        {eLayoutSpeakerTop, false, true, true, true, ClickEffect::None},
        {eLayoutSpeakerTop, false, false, false, true, ClickEffect::Move},
        {eLayoutSpeakerTop, false, false, false, false, ClickEffect::Move},
        {eLayoutSpeakerTool, false, false, true, true, ClickEffect::MoveStream},
        {eLayoutSpeaker4, false, false, true, false, ClickEffect::Keep},
    };
    for (const Row& row : rows) {
        const zr::ClickInput input{row.mode, row.dictated, row.onSpeaker, row.stream, row.picture};
        QCOMPARE(int(zr::clickEffect(input)), int(row.effect));
    }
}

void tst_FocusRules::voices()
{
    struct Row
    {
        zr::VoiceInput input; // mode, activation, dictated, chosenSpeaker, self
        VoiceEffect effect;
    };
    const Row rows[] = {
        {{eLayoutEqualCut, true, false, false, false}, VoiceEffect::None},
        {{eLayoutSpeakerRight, true, true, false, false}, VoiceEffect::None},
        {{eLayoutSpeakerRight, true, false, false, true}, VoiceEffect::None},
        {{eLayoutSpeakerRight, true, false, false, false}, VoiceEffect::Speaker},
        {{eLayoutSpeakerRight, true, false, true, false}, VoiceEffect::SmallWindow},
        {{eLayoutSpeakerRight, false, false, false, false}, VoiceEffect::SmallWindow},
        {{eLayoutSpeakerTool, true, false, false, false}, VoiceEffect::SmallWindow},
    };
    for (const Row& row : rows)
        QCOMPARE(int(zr::voiceEffect(row.input)), int(row.effect));
}

void tst_FocusRules::pins()
{
    const struct
    {
        zr::PinInput input; // pins, dictated, onSpeaker, fromMenu, mode, lookMode
        bool choosesSpeaker;
        int mode;
    } rows[] = {
        {{true, false, false, false, eLayoutEqualCut, 1}, true, eLayoutSpeakerRight},
        {{true, false, false, false, eLayoutSpeakerTop, 1}, true, eLayoutSpeakerTop},
        {{true, false, true, false, eLayoutSpeakerTop, 1}, true, eLayoutSpeakerRight},
        {{true, true, false, false, eLayoutSpeakerTop, 1}, false, eLayoutEqualCut},
        {{false, true, true, true, eLayoutSpeakerTop, 7}, false, eLayoutEqualCut},
        {{false, true, true, false, eLayoutSpeakerTop, 7}, false, 0},
        {{false, false, true, true, eLayoutSpeakerTop, eLayout6Cut}, false, eLayout6Cut},
        {{false, false, true, true, eLayoutSpeakerTop, eLayoutShare}, false, eLayoutSpeakerRight},
        {{false, false, true, true, eLayoutSpeakerRight, eLayoutShare}, false, 0},
        {{false, false, true, false, eLayoutSpeakerTop, eLayout6Cut}, false, 0},
    };
    for (const auto& row : rows) {
        const zr::PinEffect effect = zr::pinEffect(row.input);
        QCOMPARE(effect.choosesSpeaker, row.choosesSpeaker);
        QCOMPARE(effect.mode, row.mode);
    }
}

void tst_FocusRules::leaving()
{
    const std::pair<zr::LeaveInput, LeaveEffect> rows[] = {
        // share, otherShare, maximised, inTool, last
        {{false, false, false, false, false}, LeaveEffect::None},
        {{true, true, true, false, false}, LeaveEffect::NextShare},
        {{true, false, true, true, true}, LeaveEffect::BeforeShare},
        {{false, true, true, false, false}, LeaveEffect::BeforeMaximised},
        {{false, false, false, true, false}, LeaveEffect::AfterPin},
        {{false, true, false, true, false}, LeaveEffect::None},
        {{false, false, false, true, true}, LeaveEffect::None},
    };
    for (const auto& [input, effect] : rows)
        QCOMPARE(int(zr::leaveEffect(input)), int(effect));
}

void tst_FocusRules::admitsToTheStrip()
{
    const auto indices = [](int person, int large, int tiles) {
        std::vector<zr::TilePlacement> placements;
        placements.reserve(static_cast<std::size_t>(tiles));
        for (int i = 0; i < tiles; ++i)
            placements.push_back({10 + i, QRect(i, 0, 1, 1), zr::kGradeSmall});
        zr::admitToStrip(placements, person, large);
        QList<int> result;
        for (const zr::TilePlacement& placement : placements)
            result.push_back(placement.index);
        return result;
    };
    QCOMPARE(indices(99, 1, 4), QList<int>({10, 11, 12, 99}));
    QCOMPARE(indices(11, 1, 4), QList<int>({10, 11, 12, 13})); // is there already
    QCOMPARE(indices(10, 1, 4), QList<int>({10, 11, 12, 13})); // is the speaker
    QCOMPARE(indices(-1, 1, 4), QList<int>({10, 11, 12, 13}));
    QCOMPARE(indices(99, 1, 2), QList<int>({10, 11})); // a lone tile stays
    QCOMPARE(indices(99, 2, 1), QList<int>({10}));
    QCOMPARE(indices(99, 0, 0), QList<int>());
}

void tst_FocusRules::takesSeats()
{
    int people[5]{};
    using Seats = std::vector<zr::Seat<int>>;
    const auto seated = [&people](int count, const Seats& seats) {
        std::vector<int*> list;
        list.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            list.push_back(&people[i]);
        zr::takeSeats<int>(list, seats);
        QList<int> order;
        for (const int* person : list)
            order.push_back(int(person - people));
        return order;
    };
    int* const a = &people[0];
    int* const c = &people[2];
    QCOMPARE(seated(4, {{c, 0}}), QList<int>({2, 0, 1, 3}));
    QCOMPARE(seated(4, {{a, 2}, {c, 0}}), QList<int>({2, 1, 0, 3}));
    QCOMPARE(seated(4, {{c, 0}, {a, 0}}), QList<int>({2, 0, 1, 3})); // the first keeps the seat
    QCOMPARE(seated(4, {{c, 3}, {c, 0}}), QList<int>({0, 1, 3, 2})); // one seat each
    QCOMPARE(seated(4, {{a, 99}}), QList<int>({1, 2, 3, 0}));
    QCOMPARE(seated(4, {{a, -1}, {nullptr, 1}, {&people[4], 0}}), QList<int>({0, 1, 2, 3}));
    QCOMPARE(seated(0, {{a, 0}}), QList<int>());
}

QTEST_APPLESS_MAIN(tst_FocusRules)
#include "tst_focusrules.moc"
