#include "controlhandle.h"

#include "controlstay.h"
#include "datehandle.h"
#include "platform.h"
#include "qdlgtextedit.h"
#include "qmylineedit.h"
#include "qzrscreenconfig.h"

#include <QBasicTimer>
#include <QDebug>
#include <QObject>
#include <QWidget>

#include <unordered_map>
#include <utility>
#include <vector>

namespace {

enum class Family
{
    LineEdit,
    TextEdit,
    DatePicker
};

struct Control
{
    Family family;
    QWidget* widget;
    std::function<void()> destroy;
};

bool isInside()
{
    return ControlStay::isAny() || QZRScreenConfig::getInstance()->broadcastDepth() > 0;
}

/// The live controls, and those that wait for the GUI thread to come out of their events: the host
/// may run a loop of its own inside of one.
class Registry : public QObject
{
public:
    void add(const void* handle, Control control) { m_mapControl[handle] = std::move(control); }
    [[nodiscard]] bool contains(const void* handle, Family family) const
    {
        const auto found = m_mapControl.find(handle);
        return found != m_mapControl.end() && found->second.family == family;
    }
    void release(const void* handle)
    {
        const auto found = m_mapControl.find(handle);
        const Control control = std::move(found->second);
        m_mapControl.erase(found);
        platform::returnKeyboardFocus(control.widget->winId());
        if (!isInside()) {
            control.destroy();
            return;
        }
        control.widget->hide();
        m_vecRetired.push_back(control.destroy);
        m_timer.start(kRetryMs, this);
    }
    void releaseAll()
    {
        while (!m_mapControl.empty())
            release(m_mapControl.begin()->first);
        destroyRetired();
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        if (isInside())
            return;
        m_timer.stop();
        destroyRetired();
    }

private:
    void destroyRetired()
    {
        for (const auto& destroy : std::exchange(m_vecRetired, {}))
            destroy();
    }

    static constexpr int kRetryMs = 10;
    std::unordered_map<const void*, Control> m_mapControl;
    std::vector<std::function<void()>> m_vecRetired;
    QBasicTimer m_timer;
};

/// Made with the first control, destroyed with the module's interface.
Registry* s_registry = nullptr;

Registry& registry()
{
    if (!s_registry)
        s_registry = new Registry;
    return *s_registry;
}

bool isLive(const void* handle, Family family)
{
    if (s_registry && s_registry->contains(handle, family))
        return true;
    qDebug() << "live control of this kind failed, handle:" << handle;
    return false;
}

void release(const void* handle, Family family)
{
    if (isLive(handle, family))
        s_registry->release(handle);
}

} // namespace

void adoptLineEdit(QMyLineEdit* edit)
{
    registry().add(edit, {Family::LineEdit, edit, [edit] { delete edit; }});
}

void adoptTextEdit(QDlgTextEdit* edit)
{
    registry().add(edit, {Family::TextEdit, edit, [edit] { delete edit; }});
}

void adoptDatePicker(ST_ZRDateHdl* picker, QWidget* widget, std::function<void()> destroy)
{
    registry().add(picker, {Family::DatePicker, widget, std::move(destroy)});
}

QMyLineEdit* liveLineEdit(const void* handle)
{
    return isLive(handle, Family::LineEdit) ? static_cast<QMyLineEdit*>(const_cast<void*>(handle))
                                            : nullptr;
}

QDlgTextEdit* liveTextEdit(const void* handle)
{
    return isLive(handle, Family::TextEdit) ? static_cast<QDlgTextEdit*>(const_cast<void*>(handle))
                                            : nullptr;
}

ST_ZRDateHdl* liveDatePicker(const void* handle)
{
    return isLive(handle, Family::DatePicker)
               ? static_cast<ST_ZRDateHdl*>(const_cast<void*>(handle))
               : nullptr;
}

void releaseLineEdit(void* handle)
{
    release(handle, Family::LineEdit);
}

void releaseTextEdit(void* handle)
{
    release(handle, Family::TextEdit);
}

void releaseDatePicker(void* handle)
{
    if (const ST_ZRDateHdl* const picker = liveDatePicker(handle)) {
        // From here on its host hears of nothing, also when the picker goes later.
        QZRScreenConfig::getInstance()->unregisterDateCallback(picker->m_pCallback);
        s_registry->release(handle);
    }
}

void releaseAllControls()
{
    if (!s_registry)
        return;
    s_registry->releaseAll();
    delete std::exchange(s_registry, nullptr);
}
