// A host that does whatever the bytes say.
#pragma once

#include "attackedmodule.h"
#include "wrongvalues.h"

#include <memory>
#include <vector>

class HostWindow;

/// Lives through one input; everything is released in the end. GUI thread.
class HostileHost
{
public:
    explicit HostileHost(Script& script);
    ~HostileHost();
    HostileHost(const HostileHost&) = delete;
    HostileHost& operator=(const HostileHost&) = delete;

    void act();
    /// To stderr: the calls that all hosts have made so far, by export, with how many of them were
    /// accepted where the answer tells.
    static void printCalls();

private:
    struct Call
    {
        const zr::Export* row;
        std::vector<zrhost::Value> values;
        zrhost::Answer answer;
    };
    static int notify(unsigned long message, unsigned long long wParam, long long lParam);
    static int notifyDate(unsigned long message, unsigned long long wParam, long long lParam);
    void receive(const HostMessage& message);
    [[nodiscard]] const zr::Export& anyExport();
    [[nodiscard]] Call anyCall();
    [[nodiscard]] bool isEnough(zr::Kind kind);
    void run(Call& call) const;
    void note(const Call& call);
    void callOnce();
    void callFromFourThreads();
    void useMouse();
    void useKeyboard();
    void changeWindow();
    void turn();
    void releaseAll();

    Script& m_script;
    Handles m_handles;
    std::vector<std::unique_ptr<HostWindow>> m_own;
    std::vector<void*> m_windows;
    Told m_told;
    WrongValues m_wrong;
    int m_depth = 0; ///< of messages and threads from inside of which it goes on
    bool m_isQuiet = false;
    bool m_isDeaf = false; ///< not every message comes here
};
