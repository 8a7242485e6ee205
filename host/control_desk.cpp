#include "control_desk.h"

#include "host_error.h"

#include <cstdint>
#include <cstdio>
#include <vector>

namespace zrhost {

namespace {

Stage* g_dateStage = nullptr;

} // namespace

ControlDesk::ControlDesk(const ControlApi& api, Stage& stage)
    : m_api(api)
    , m_stage(stage)
{
    g_dateStage = &stage;
}

ControlDesk::~ControlDesk()
{
    for (const auto& [name, control] : m_controls)
        giveBack(control);
    g_dateStage = nullptr;
}

void ControlDesk::checkFree(const std::string& name) const
{
    if (m_controls.count(name) != 0)
        throw HostError("there is a control '" + name + "' already");
}

void ControlDesk::keep(const std::string& name, Kind kind, void* handle)
{
    if (!handle)
        throw HostError("the module gives no control for '" + name + "'");
    m_controls.emplace(name, Borrowed{kind, handle});
}

void ControlDesk::addEdit(const std::string& name, WindowId window, tagRECT& rect,
                          const std::string& placeholder)
{
    checkFree(name);
    keep(name, Kind::Edit,
         m_api.edit.Init(m_stage.nativeWindow(window), &rect, placeholder.c_str()));
}

void ControlDesk::addBox(const std::string& name, WindowId window, tagRECT& rect, int red,
                         int green, int blue)
{
    checkFree(name);
    keep(name, Kind::Box,
         m_api.box.Init(m_stage.nativeWindow(window), &rect, static_cast<unsigned char>(red),
                        static_cast<unsigned char>(green), static_cast<unsigned char>(blue)));
}

void ControlDesk::addDate(const std::string& name, WindowId window)
{
    checkFree(name);
    keep(name, Kind::Date, m_api.date.Init(m_stage.nativeWindow(window), &ControlDesk::onDate));
}

void ControlDesk::giveBack(const Borrowed& control) const
{
    switch (control.kind) {
    case Kind::Edit:
        m_api.edit.Release(control.handle);
        break;
    case Kind::Box:
        m_api.box.Release(control.handle);
        break;
    case Kind::Date:
        m_api.date.Release(control.handle);
        break;
    }
}

void ControlDesk::remove(Kind kind, const std::string& name)
{
    (void)handle(kind, name);
    giveBack(m_controls.at(name));
    m_controls.erase(name);
}

void* ControlDesk::handle(Kind kind, const std::string& name) const
{
    const auto found = m_controls.find(name);
    if (found == m_controls.end() || found->second.kind != kind)
        throw HostError("there is no such control '" + name + "'");
    return found->second.handle;
}

std::string ControlDesk::textOf(const std::string& name) const
{
    void* const edit = handle(Kind::Edit, name);
    int length = 0;
    char nothing = 0;
    const int needed = m_api.edit.GetText(edit, &nothing, length);
    if (needed < 0)
        throw HostError("the module refuses the edit '" + name + "'");
    std::vector<char> text(static_cast<std::size_t>(needed) + 1);
    length = needed + 1;
    m_api.edit.GetText(edit, text.data(), length);
    return text.data();
}

int ControlDesk::onDate(unsigned long message, unsigned long long wParam, long long)
{
    if (!g_dateStage)
        return 0;
    if (message == ZRDATE_CLEARED) {
        g_dateStage->print("date cleared");
    } else if (const auto* const record =
                   reinterpret_cast<const ZRDateRecord*>(static_cast<uintptr_t>(wParam))) {
        char line[64];
        std::snprintf(line, sizeof line, "date chosen %04d-%02d-%02d %02d:%02d", record->year,
                      record->month, record->day, record->hour, record->minute);
        g_dateStage->print(line);
    }
    return 0;
}

} // namespace zrhost
