// The controls that the host has borrowed from the module, by the names it gave them.
#pragma once

#include "control_api.h"
#include "stage.h"

#include <map>
#include <string>

namespace zrhost {

/// GUI thread. At most one exists at a time: the notification function of a date picker has no
/// argument of the host's own.
class ControlDesk
{
public:
    enum class Kind
    {
        Edit,
        Box,
        Date
    };

    /// Both references must outlive it.
    ControlDesk(const ControlApi& api, Stage& stage);
    /// Gives all controls back.
    ~ControlDesk();
    ControlDesk(const ControlDesk&) = delete;
    ControlDesk& operator=(const ControlDesk&) = delete;

    /// Each makes a control in a window. @throws HostError for a name that is taken, and when the
    /// module gives no control
    void addEdit(const std::string& name, WindowId window, tagRECT& rect,
                 const std::string& placeholder);
    void addBox(const std::string& name, WindowId window, tagRECT& rect, int red, int green,
                int blue);
    void addDate(const std::string& name, WindowId window);
    void remove(Kind kind, const std::string& name);

    /// The handle of a control. @throws HostError when there is none of this kind and name
    [[nodiscard]] void* handle(Kind kind, const std::string& name) const;
    /// The text of a line edit.
    [[nodiscard]] std::string textOf(const std::string& name) const;

    [[nodiscard]] const ControlApi& api() const { return m_api; }

private:
    struct Borrowed
    {
        Kind kind;
        void* handle;
    };
    void checkFree(const std::string& name) const;
    void keep(const std::string& name, Kind kind, void* handle);
    void giveBack(const Borrowed& control) const;
    static int onDate(unsigned long message, unsigned long long wParam, long long lParam);

    const ControlApi& m_api;
    Stage& m_stage;
    std::map<std::string, Borrowed> m_controls;
};

} // namespace zrhost
