// The meeting as the host sees it: its participants and the screen that shows them.
#pragma once

#include "call_desk.h"
#include "called_people.h"
#include "ext_desk.h"
#include "media_source.h"
#include "media_thread.h"
#include "message_check.h"
#include "stage.h"

#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace zrhost {

/// The record that delivers a picture, which must outlive it.
[[nodiscard]] VantrelRTCVideoFrameQT frameOf(const Picture& picture);

struct Participant
{
    int number = 0; ///< 1, 2, ... in the order of joining, never used again; 0 for recorded ones
    long long hostValue = 0; ///< the number, or what was recorded
    std::string id;
    std::string name;
    SourceSpec source;
    void* play = nullptr;         ///< the module's play handle
    const void* screen = nullptr; ///< the module's; for those of recorded calls
    bool camera = true;           ///< there are pictures to send
    bool open = false;            ///< the stream, as reported to the module
    // As the commands have told it to the module, which begins with the same.
    bool self = false;
    int role = 0; ///< 1 host, 2 administrator
    bool muted = true;
    int volume = 0; ///< 0 to 100
    bool hand = false;
    int network = -1; ///< level, 0 to 5; -1: nothing was told
    bool speaking = false;
    std::unique_ptr<MediaThread> media; ///< null without a source
};

/// Everything but the media threads runs on the GUI thread. At most one session exists at a time:
/// the module's notification function has no argument of the host's own.
class Session
{
public:
    struct Settings
    {
        unsigned seed = 1;
        Size pictureSize{640, 360};       ///< of synthetic pictures
        double fps = 25;                  ///< of synthetic pictures
        bool followStreams = false;       ///< see followStreams()
        WindowId window = WindowId::Main; ///< for the screen
        std::string frames;               ///< the file with the pictures of recorded calls
    };

    /// Both references must outlive the session.
    Session(const zr::Exports& exports, Stage& stage, const Settings& settings);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Creates the screen and lets it fill its window. @throws HostError
    void openScreen();
    /// Removes the participants and releases the screen; nothing without a screen.
    void closeScreen();
    [[nodiscard]] bool hasScreen() const { return m_screen != nullptr; }
    /// @throws HostError without a screen
    [[nodiscard]] void* screen() const;

    /// Adds a participant whose pictures begin after `delayMs`, and reports an open microphone
    /// and, unless the module is to ask for it, an open stream. @throws HostError for an id that is
    /// taken, or an unreadable file
    Participant& add(const std::string& id, const std::string& name, const SourceSpec& source,
                     int delayMs = 0);
    /// How long after joining the next participant's video begins.
    [[nodiscard]] int nextArrivalMs();
    /// Adds so many, whose ids and names have their numbers, and whose videos begin within a
    /// second.
    void addMany(int count, const SourceSpec& source);
    void remove(Participant& participant);
    /// Finds a participant by id, number or name. @throws HostError
    [[nodiscard]] Participant& person(const std::string& name);
    /// Whether streams are opened and closed as the module asks (ZRMSG_VIDEO_SHOWN,
    /// ZRMSG_VIDEO_HIDDEN), as a media engine does, or are open all the time.
    void followStreams(bool follow);
    void setMuted(Participant& participant, bool muted);
    /// Reports name, role, and whether this is the local user.
    void reportInfo(Participant& participant);
    /// Somebody speaks, or for null nobody.
    void setSpeaking(const Participant* speaker);
    /// The participant's camera is switched on or off.
    void setCamera(Participant& participant, bool on);
    /// Shows a participant on the extended screen, with an open stream.
    void showExtended(Participant& participant);

    [[nodiscard]] WindowId parent() const { return m_settings.window; }
    [[nodiscard]] const Settings& settings() const { return m_settings; }
    [[nodiscard]] MessageCheck& messages() { return m_messages; }
    /// The window has another size: the screen fills it again.
    void onWindowResized(WindowId window, Size size);

    [[nodiscard]] const zr::Exports& exports() const { return m_exports; }
    [[nodiscard]] const zr::ScreenExports& api() const { return m_exports.ZRScreen; }
    [[nodiscard]] Stage& stage() { return m_stage; }
    /// What they have made outlives the screen, and goes with the session.
    [[nodiscard]] CallDesk& calls() { return m_calls; }
    [[nodiscard]] const CallDesk& calls() const { return m_calls; }
    [[nodiscard]] ExtDesk& ext() { return m_ext; }
    [[nodiscard]] const People& people() const { return m_people; }
    /// Takes down a call that was made by name. @param replays it was recorded
    void follow(const zr::Export& row, const std::vector<Value>& values, const Answer& answer,
                bool replays)
    {
        followCall(m_people, row, values, answer, replays);
    }
    /// The meeting mode, as the module has told it.
    [[nodiscard]] int mode() const { return m_mode; }
    /// Prints how many pictures each participant delivered.
    void printStatistics();

    /// The number of a new sentence of the subtitles.
    [[nodiscard]] int nextSentence() { return ++m_lastSentence; }

    /// For ZRScreen_Init.
    static int notify(unsigned long message, unsigned long long wParam, long long lParam);
    /// What any of the notification functions hears.
    static void hear(unsigned long message, unsigned long long wParam, long long lParam,
                     bool ofDatePicker);

private:
    void startMedia(Participant& participant, int delayMs);
    void onMessage(unsigned long message, unsigned long long wParam, long long hostValue);
    void updateStream(Participant& participant);
    void onSourceEnded(int number, const std::string& problem);
    void fillWindow(Size size);
    [[nodiscard]] std::string nameOfHostValue(long long value) const;

    const zr::Exports& m_exports;
    const zr::ScreenExports& m_api;
    Stage& m_stage;
    const Settings m_settings;
    MessageCheck m_messages;
    CallDesk m_calls;
    ExtDesk m_ext; ///< outlives the media threads of m_people
    void* m_screen = nullptr;
    People m_people;
    std::vector<std::string> m_idsByNumber; ///< also of those who have left: messages come late
    /// Ends with the session: what is posted to the stage, which may live on, asks for it.
    const std::shared_ptr<void> m_life = std::make_shared<char>();
    bool m_followStreams;
    int m_lastSentence = 0;
    int m_mode = eLayoutEqualCut;
    std::mt19937 m_random;       ///< when videos begin
    std::set<long long> m_shown; ///< numbers of those whose tiles are visible
};

} // namespace zrhost
