// Calls of any export, typed as words: the table of the exports tells what each word is to become.
#pragma once

#include "zrscreenmod/exports.h"

#include <map>
#include <string>
#include <vector>

namespace zrhost {

class Session;

/// GUI thread. At most one exists at a time: the notification function of a date picker has no
/// argument of the host's own.
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
    /// the export gives is known by the name from then on @throws HostError
    void call(const std::vector<std::string>& words);
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
    };
    [[nodiscard]] void* handle(zr::Kind kind, const std::string& name) const;
    void keep(const std::string& name, zr::Kind kind, void* handle);
    static int onDate(unsigned long message, unsigned long long wParam, long long lParam);

    Session& m_session;
    std::map<std::string, Named> m_named;
};

} // namespace zrhost
