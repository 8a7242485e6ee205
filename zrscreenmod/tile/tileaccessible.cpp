#include "tileaccessible.h"

#include "overlaytext.h"
#include "qdlgplayinfo.h"
#include "texts.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include <array>

namespace {

struct Action
{
    OverlayControl control;
    const char* name;
    const char* localizedName;
};

constexpr std::array<Action, 3> kActions{
    {{OverlayControl::Microphone, "microphone", QT_TRANSLATE_NOOP("ZRScreenMod", "麦克风")},
     {OverlayControl::More, "more", QT_TRANSLATE_NOOP("ZRScreenMod", "更多")},
     {OverlayControl::LowerHand, "lowerHand", QT_TRANSLATE_NOOP("ZRScreenMod", "放下手")}}};

const Action* findAction(const QString& name)
{
    for (const Action& action : kActions) {
        if (name == QLatin1String(action.name))
            return &action;
    }
    return nullptr;
}

/// Stands for the tile and its overlay together. Qt deletes it with the tile.
class TileAccessible : public QAccessibleWidget
{
public:
    TileAccessible(QWidget* tile, QDlgPlayInfo* overlay)
        : QAccessibleWidget(tile, QAccessible::Graphic)
        , m_pOverlay(overlay)
    {
    }

    // The overlay is no element of its own.
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    QString text(QAccessible::Text kind) const override
    {
        if (m_pOverlay && kind == QAccessible::Name)
            return zr::tileName(m_pOverlay->state());
        if (m_pOverlay && kind == QAccessible::Description)
            return zr::tileDescription(m_pOverlay->state());
        return QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override
    {
        QStringList names;
        for (const Action& action : kActions) {
            if (m_pOverlay && m_pOverlay->hasControl(action.control))
                names += QLatin1String(action.name);
        }
        return names;
    }
    QString localizedActionName(const QString& name) const override
    {
        const Action* action = findAction(name);
        return action ? zr::Text::tr(action->localizedName) : QString();
    }
    QString localizedActionDescription(const QString& name) const override
    {
        return localizedActionName(name);
    }
    void doAction(const QString& name) override
    {
        const Action* action = findAction(name);
        if (action && m_pOverlay)
            m_pOverlay->activate(action->control);
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    const QPointer<QDlgPlayInfo> m_pOverlay;
};

QAccessibleInterface* createTile(const QString& className, QObject* object)
{
    // Asked once for each class that the object derives from. By name, since the tile is a layer
    // above.
    if (className != QLatin1String("CPlayWidget"))
        return nullptr;
    auto* overlay = object->findChild<QDlgPlayInfo*>(QString(), Qt::FindDirectChildrenOnly);
    return overlay ? new TileAccessible(static_cast<QWidget*>(object), overlay) : nullptr;
}

struct FactoryInstallation
{
    FactoryInstallation() { QAccessible::installFactory(createTile); }
    ~FactoryInstallation() { QAccessible::removeFactory(createTile); }
    FactoryInstallation(const FactoryInstallation&) = delete;
    FactoryInstallation& operator=(const FactoryInstallation&) = delete;
};

} // namespace

std::shared_ptr<const void> shareTileAccessibility()
{
    static std::weak_ptr<const FactoryInstallation> s_installation;
    std::shared_ptr<const FactoryInstallation> installation = s_installation.lock();
    if (!installation) {
        installation = std::make_shared<FactoryInstallation>();
        s_installation = installation;
    }
    return installation;
}

std::vector<QAccessible::Event> changedTexts(const zr::OverlayState& before,
                                             const zr::OverlayState& after)
{
    std::vector<QAccessible::Event> changed;
    if (zr::tileName(before) != zr::tileName(after))
        changed.push_back(QAccessible::NameChanged);
    if (zr::tileDescription(before) != zr::tileDescription(after))
        changed.push_back(QAccessible::DescriptionChanged);
    return changed;
}
