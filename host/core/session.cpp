#include "session.h"

#include "host_error.h"
#include "host_platform.h"
#include "native_rect.h"
#include "synthetic_picture.h"

#include <algorithm>
#include <cstdio>

namespace zrhost {

namespace {

Session* g_session = nullptr;

/// Joining times of the participants lie this far apart.
constexpr long long kJoinStepMs = 1000;

} // namespace

VantrelRTCVideoFrameQT frameOf(const Picture& picture)
{
    VantrelRTCVideoFrameQT frame{};
    frame.pData = picture.data.empty() ? nullptr : picture.data.data();
    frame.width = static_cast<std::uint32_t>(picture.width);
    frame.height = static_cast<std::uint32_t>(picture.height);
    return frame;
}

Session::Session(const zr::Exports& exports, Stage& stage, const Settings& settings)
    : m_exports(exports)
    , m_api(exports.ZRScreen)
    , m_stage(stage)
    , m_settings(settings)
    , m_calls(*this)
    , m_ext(exports.ZRScreenExt, stage)
    , m_followStreams(settings.followStreams)
    , m_random(settings.seed)
{
    g_session = this;
}

Session::~Session()
{
    closeScreen();
    g_session = nullptr;
}

void Session::openScreen()
{
    if (m_screen)
        throw HostError("there is a screen already");
    m_screen = m_api.Init(m_stage.nativeWindow(parent()), &Session::notify);
    if (!m_screen)
        throw HostError("ZRScreen_Init returned no screen");
    fillWindow(m_stage.windowSize(parent()));
}

void Session::closeScreen()
{
    if (!m_screen)
        return;
    // The media threads first: no frame may be under way for a participant who is removed.
    for (const auto& participant : m_people)
        participant->media.reset();
    while (!m_people.empty())
        remove(*m_people.back());
    m_api.Release(m_screen);
    m_screen = nullptr;
    m_shown.clear();
}

void* Session::screen() const
{
    if (!m_screen)
        throw HostError("there is no screen (use 'init')");
    return m_screen;
}

Participant& Session::add(const std::string& id, const std::string& name, const SourceSpec& source,
                          int delayMs)
{
    const auto taken = [&](const auto& participant) { return participant->id == id; };
    if (std::any_of(m_people.begin(), m_people.end(), taken))
        throw HostError("there is a participant '" + id + "' already");
    source.checkFile();

    auto added = std::make_unique<Participant>();
    m_idsByNumber.push_back(id);
    added->number = static_cast<int>(m_idsByNumber.size());
    added->hostValue = added->number;
    added->id = id;
    added->name = name;
    added->source = source;
    added->camera = source.kind != SourceKind::None;
    std::string idBytes = id;
    std::string nameBytes = name;
    added->play =
        m_api.AddPerson(screen(), idBytes.data(), nameBytes.data(), kJoinStepMs * added->number, 0,
                        reinterpret_cast<void*>(static_cast<uintptr_t>(added->number)));
    if (!added->play)
        throw HostError("ZRScreen_AddPerson returned no participant for '" + id + "'");
    Participant& participant = *m_people.emplace_back(std::move(added));
    if (source.kind != SourceKind::None) {
        setMuted(participant, false);
        startMedia(participant, delayMs);
        updateStream(participant);
    }
    return participant;
}

int Session::nextArrivalMs()
{
    // The division keeps the numbers the same with every standard library.
    constexpr unsigned kArrivalSpreadMs = 700;
    return static_cast<int>(m_random() % kArrivalSpreadMs);
}

void Session::addMany(int count, const SourceSpec& source)
{
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(m_idsByNumber.size() + 1);
        add("user" + number, "Participant " + number, source, nextArrivalMs());
    }
}

void Session::setMuted(Participant& participant, bool muted)
{
    participant.muted = muted;
    m_api.SetMute(m_screen, participant.play, muted ? 1 : 0);
}

void Session::reportInfo(Participant& participant)
{
    m_api.SetPersonInfo(m_screen, participant.play, participant.self, participant.role,
                        participant.name.data(), 0);
}

void Session::setSpeaking(const Participant* speaker)
{
    for (const auto& participant : m_people)
        participant->speaking = participant.get() == speaker;
    const std::string id = speaker ? speaker->id : "";
    m_api.SetActivateUser(screen(), toLocal8Bit(id).data());
    m_api.SetCurrentSpeakingPerson(m_screen, id);
}

void Session::followStreams(bool follow)
{
    m_followStreams = follow;
    for (const auto& participant : m_people)
        updateStream(*participant);
}

void Session::setCamera(Participant& participant, bool on)
{
    participant.camera = on;
    updateStream(participant);
}

void Session::updateStream(Participant& participant)
{
    if (!participant.media)
        return; // without a source, or about to leave
    const bool asked = !m_followStreams || m_shown.count(participant.number) > 0
                       || m_ext.shows(participant.number);
    const bool open = participant.camera && asked;
    if (open == participant.open)
        return;
    participant.open = open;
    participant.media->setPaused(!open);
    m_api.Preview(m_screen, participant.play, open);
}

void Session::showExtended(Participant& participant)
{
    m_ext.show(participant);
    for (const auto& other : m_people)
        updateStream(*other); // that of the former one may close
}

void Session::onMessage(unsigned long message, unsigned long long wParam, long long hostValue)
{
    if (message == ZRMSG_SCREEN_MODE)
        m_mode = static_cast<int>(wParam);
    if (message == ZRMSG_VIDEO_SHOWN)
        m_shown.insert(hostValue);
    else if (message == ZRMSG_VIDEO_HIDDEN || message == ZRMSG_PERSON_REMOVED)
        m_shown.erase(hostValue);
    if (message != ZRMSG_VIDEO_SHOWN && message != ZRMSG_VIDEO_HIDDEN)
        return;
    // Nobody yet: the message came from inside ZRScreen_AddPerson, and add() goes on with him.
    for (const auto& participant : m_people) {
        if (participant->hostValue == hostValue) {
            updateStream(*participant);
            break;
        }
    }
}

void Session::startMedia(Participant& participant, int delayMs)
{
    SyntheticSettings synthetic;
    synthetic.number = participant.number;
    synthetic.hue = participantHue(participant.number, m_settings.seed);
    synthetic.size = m_settings.pictureSize;
    synthetic.fps = m_settings.fps;

    MediaThread::Work work;
    work.delayMs = delayMs;
    work.open = [source = participant.source, synthetic](const StopSignal& stop) {
        return openSource(source, synthetic, stop);
    };
    work.deliver = [playFrame = m_api.PlayFrame, screen = m_screen, play = participant.play,
                    &ext = m_ext, number = participant.number](const Picture& picture) {
        VantrelRTCVideoFrameQT frame = frameOf(picture);
        ext.deliver(number, frame);
        return playFrame(screen, play, &frame) != 0;
    };
    work.ended = [this, number = participant.number](const std::string& problem) {
        m_stage.post([this, session = std::weak_ptr<void>(m_life), number, problem] {
            if (!session.expired())
                onSourceEnded(number, problem);
        });
    };
    participant.media = std::make_unique<MediaThread>(std::move(work), true);
}

void Session::onSourceEnded(int number, const std::string& problem)
{
    const auto found = std::find_if(m_people.begin(), m_people.end(), [&](const auto& participant) {
        return participant->number == number;
    });
    if (found == m_people.end())
        return; // has left in the meantime
    const std::string what = "source of " + (*found)->id + " (" + (*found)->source.toText() + ")";
    if (problem.empty())
        m_stage.print(what + " has ended");
    else
        m_stage.fail(what + ": " + problem);
}

void Session::remove(Participant& participant)
{
    participant.media.reset();
    if (m_ext.shows(participant.number))
        m_ext.clear();
    m_api.DelPerson(m_screen, participant.play, false);
    const auto same = [&](const auto& other) { return other.get() == &participant; };
    m_people.erase(std::find_if(m_people.begin(), m_people.end(), same));
}

Participant& Session::person(const std::string& name)
{
    for (const auto& participant : m_people) {
        if (participant->id == name)
            return *participant;
    }
    for (const auto& participant : m_people) {
        if (std::to_string(participant->number) == name || participant->name == name)
            return *participant;
    }
    throw HostError("there is no participant '" + name + "'");
}

void Session::onWindowResized(WindowId window, Size size)
{
    if (m_screen && window == parent())
        fillWindow(size);
    if (window == WindowId::Second)
        m_ext.onWindowResized(size);
}

void Session::fillWindow(Size size)
{
    tagRECT all{};
    all.right = size.width;
    all.bottom = size.height;
    m_api.MoveWindow(m_screen, &all, 0);
}

void Session::printStatistics()
{
    for (const auto& participant : m_people) {
        if (participant->media)
            m_stage.print(participant->id + ": " + std::to_string(participant->media->delivered())
                          + " frames delivered, " + std::to_string(participant->media->refused())
                          + " refused");
    }
}

std::string Session::nameOfHostValue(long long value) const
{
    for (const auto& participant : m_people) {
        if (participant->hostValue == value)
            return participant->id;
    }
    if (value < 1 || value > static_cast<long long>(m_idsByNumber.size()))
        return {};
    return m_idsByNumber[static_cast<std::size_t>(value) - 1];
}

void Session::hear(unsigned long message, unsigned long long wParam, long long lParam,
                   bool ofDatePicker)
{
    if (!g_session)
        return;
    g_session->m_messages.seen(lastingWords(message, wParam, lParam, ofDatePicker));
    g_session->m_stage.hear(
        describeMessage(message, wParam, lParam, ofDatePicker,
                        [](long long value) { return g_session->nameOfHostValue(value); }));
}

int Session::notify(unsigned long message, unsigned long long wParam, long long lParam)
{
    hear(message, wParam, lParam, false);
    if (g_session)
        g_session->onMessage(message, wParam, lParam);
    return 0;
}

} // namespace zrhost
