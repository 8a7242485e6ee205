// A host's media engine: it does with the streams of a meeting what the messages ask for, and
// notices when they do not fit together.
#pragma once

#include "meeting.h"

#include <list>
#include <map>
#include <set>

enum class Kind
{
    Person,
    Nameless,
    Self,
    Share,
};

/// One participant and the stream that the engine has for him.
struct Stream
{
    int number = 0; ///< also the host value and the join time
    std::string id;
    Kind kind = Kind::Person;
    void* play = nullptr;
    unsigned long long person = 0; ///< as messages name him; 0 before the first one
    bool wanted = false;           ///< what the last message asked for
    bool open = false;             ///< as reported with ZRScreen_Preview
    bool told = false;             ///< a message has asked for something
    bool removed = false;          ///< ZRMSG_PERSON_REMOVED has come
    Clock::time_point answerAt;    ///< when `open` follows `wanted`
};

/// The numbers, each with a blank before it.
std::string listOf(const std::set<int>& numbers);

/// Opens a stream on ZRMSG_VIDEO_SHOWN, closes it on ZRMSG_VIDEO_HIDDEN, reports each change once,
/// switches the grade, lets go on ZRMSG_PERSON_REMOVED. While it runs it delivers small pictures
/// for the streams that are open only.
///
/// Messages are judged as they come: a participant who is not there, a record that is another's, a
/// grade for a share are failures. Streams with even numbers answer from inside the message, the
/// others a moment later, as a network does, unless a test says how long it takes.
class MediaEngine
{
public:
    explicit MediaEngine(Meeting& meeting);
    ~MediaEngine();
    MediaEngine(const MediaEngine&) = delete;
    MediaEngine& operator=(const MediaEngine&) = delete;

    /// Adds a participant with a closed stream; the id is "u<number>", of a share
    /// "sharescreen_<number>".
    Stream& join(int number, Kind kind = Kind::Person);
    void leave(int number);
    /// Everybody is gone without a message, as after ZRScreen_ExitMeeting.
    void forgetAll() { m_streams.clear(); }
    [[nodiscard]] const std::map<int, Stream>& streams() const { return m_streams; }

    /// Runs the event loop for a time.
    void run(int timeMs);
    /// Runs the event loop until exactly the visible streams are open, no answer is due and no
    /// message has come for three seconds: the order is looked at every second, and streams close a
    /// second after an arrangement. Fails a check when it does not come to that.
    void rest(const std::string& step);
    /// Delivers one picture of every open stream.
    void deliver();

    /// Numbers of those whom the module calls visible, in the gallery or in the small window.
    [[nodiscard]] std::set<int> visible() const;
    /// Those whose streams are open.
    [[nodiscard]] std::set<int> open() const;

    /// How long a message takes to come true for a participant, unless that is done inside of it.
    std::function<int()> delayMs = [] { return 50; };
    /// Whether it delivers pictures while it runs, or others do.
    bool delivers = true;
    /// Called with every message, after it has been judged.
    std::function<void(const Message&)> onMessage;
    /// Name of what the test does, for failures.
    std::string step;

private:
    void receive(const Message& message);
    void judge(const Message& message, Stream& stream);
    /// Reports a failure about a stream unless it holds.
    void require(bool holds, const std::string& what, const Stream& stream) const;
    /// Does what the last message has asked for.
    void apply(Stream& stream);
    void forEach(const std::function<void(Stream&)>& action);
    bool runUntil(const std::function<bool()>& done, int timeoutMs);

    Meeting& m_meeting;
    using Streams = std::map<int, Stream>;
    Streams m_streams;
    std::list<Streams::node_type> m_left; ///< what is done for them may still be going on
    Picture m_picture{64, 36, kRed};
    Clock::time_point m_changed = Clock::now(); ///< a message or an answer
    Clock::time_point m_nextFrame = m_changed;
};
