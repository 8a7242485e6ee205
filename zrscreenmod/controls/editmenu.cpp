#include "editmenu.h"

#include "texts.h"

#include <QMenu>

namespace {

struct Entry
{
    const char* key; ///< how Qt names it
    const char* name;
};

constexpr Entry kEntries[] = {
    {"&Undo", QT_TRANSLATE_NOOP("ZRScreenMod", "撤销(&U)")},
    {"&Redo", QT_TRANSLATE_NOOP("ZRScreenMod", "重做(&R)")},
    {"Cu&t", QT_TRANSLATE_NOOP("ZRScreenMod", "剪切(&T)")},
    {"&Copy", QT_TRANSLATE_NOOP("ZRScreenMod", "复制(&C)")},
    {"Copy &Link Location", QT_TRANSLATE_NOOP("ZRScreenMod", "复制链接地址(&L)")},
    {"&Paste", QT_TRANSLATE_NOOP("ZRScreenMod", "粘贴(&P)")},
    {"Delete", QT_TRANSLATE_NOOP("ZRScreenMod", "删除")},
    {"Select All", QT_TRANSLATE_NOOP("ZRScreenMod", "全选")}};

} // namespace

void openEditMenu(QMenu* menu, const QPoint& at)
{
    const auto actions = menu->actions();
    for (QAction* action : actions) {
        // The keys of the action follow behind a tabulator.
        const QString keys = action->text().section(QLatin1Char('\t'), 1);
        const QString name = action->text().section(QLatin1Char('\t'), 0, 0);
        for (const Entry& entry : kEntries) {
            if (name != QLatin1String(entry.key))
                continue;
            const QString ours = zr::Text::tr(entry.name);
            action->setText(keys.isEmpty() ? ours : ours + QLatin1Char('\t') + keys);
        }
    }
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(at);
}
