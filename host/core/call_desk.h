// Calls of any export, typed as words: the table of the exports tells what each word is to become.
#pragma once

#include "replayed_pictures.h"
#include "stage.h"
#include "zrscreenmod/exports.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zrhost {

class Session;

/// GUI thread.
class CallDesk
{
public:
    /// The session must outlive it.
    explicit CallDesk(Session& session);
    /// Gives back every control that is still there.
    ~CallDesk();
    CallDesk(const CallDesk&) = delete;
    CallDesk& operator=(const CallDesk&) = delete;

    /// Runs a call and prints its answer. @param words `[NAME=]EXPORT ARGUMENT...`; a handle that
    /// the export gives is known by the name from then on. The arguments are those that a person
    /// types, or all that the export has. @throws HostError
    void call(const std::vector<std::string>& words);
    /// Whether a call has made a handle of this name, which has not ended.
    [[nodiscard]] bool has(const std::string& name) const;
    /// The calls from here on are recorded ones: no answer is printed, a null handle and one that
    /// has ended have names, and windows other ones than those of this host.
    void beginReplay() { m_replays = true; }
    /// The host's window for one of recorded calls. @throws HostError for one that none has named
    [[nodiscard]] WindowId recordedWindow(const std::string& name) const;
    /// A window of recorded calls has this size from now on.
    void resizeWindow(const std::string& name, Size size);
    /// @throws HostError for an unknown export and a wrong number of arguments
    static void check(const std::vector<std::string>& words);
    /// A line for each export, with what its arguments are.
    [[nodiscard]] static std::string help();

private:
    class Reader;
    struct Named
    {
        zr::Kind kind;
        void* handle;
        bool hasEnded = false; ///< another one may have the address
    };
    /// A window that recorded calls name.
    struct RecordedWindow
    {
        std::optional<WindowId> id; ///< the host's, once a call has named it
        Size size;
    };
    [[nodiscard]] void* handle(zr::Kind kind, const std::string& name) const;
    void keep(const std::string& name, zr::Kind kind, void* handle);
    void end(zr::Kind kind, const void* handle);
    [[nodiscard]] HWND window(const zr::Export& row, const std::string& name);
    [[nodiscard]] WindowId chooseWindow(const zr::Export& row) const;
    static int onDate(unsigned long message, unsigned long long wParam, long long lParam);

    Session& m_session;
    std::map<std::string, Named> m_named;
    std::map<std::string, RecordedWindow> m_windows;
    ReplayedPictures m_pictures;
    bool m_replays = false;
};

} // namespace zrhost
