// What every arrangement owes, whatever its numbers are. Shared by all layout tests.
#pragma once

#include "layoutgeometry.h"
#include "paging.h"

#include <QString>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>
#include <vector>

/// What one arrangement may do besides the common rules.
struct LayoutRules
{
    int tilesPerPage = 0;
    int overhangBelowPx = 0; ///< how far tiles may reach below the dialog
};

inline QString describe(const zr::TilePlacement& p)
{
    return QStringLiteral("tile %1 at (%2, %3) %4x%5 grade %6")
        .arg(p.index)
        .arg(p.rect.x())
        .arg(p.rect.y())
        .arg(p.rect.width())
        .arg(p.rect.height())
        .arg(p.grade);
}

/// 16:9 up to the pixel that truncation loses, or so close that the fit leaves it alone.
inline bool isFitted16x9(const QSize& size)
{
    const int widthExcess = size.width() * 9 - size.height() * 16;
    return size.width() / 16 == size.height() / 9 || (widthExcess > -9 && widthExcess < 16);
}

/// @return what is wrong with the tiles of one page; empty when nothing is.
inline QString pageFault(const std::vector<zr::TilePlacement>& page, const zr::LayoutInput& input,
                         const LayoutRules& rules)
{
    if (static_cast<int>(page.size()) > rules.tilesPerPage)
        return QStringLiteral("%1 tiles on a page").arg(page.size());
    const QRect allowed(QPoint(0, 0), input.area + QSize(0, rules.overhangBelowPx));
    for (auto tile = page.begin(); tile != page.end(); ++tile) {
        if (tile->index < 0 || tile->index >= input.count)
            return describe(*tile) + QStringLiteral(" is not in the list");
        if (tile->grade < zr::kGradeSmall || tile->grade > zr::kGradeLarge)
            return describe(*tile) + QStringLiteral(" has no such grade");
        if (tile->rect.isEmpty())
            continue;
        if (!allowed.contains(tile->rect))
            return describe(*tile) + QStringLiteral(" leaves the dialog");
        if (!isFitted16x9(tile->rect.size()))
            return describe(*tile) + QStringLiteral(" is not 16:9");
        const auto other = std::find_if(page.begin(), tile, [tile](const auto& before) {
            return before.rect.intersects(tile->rect);
        });
        if (other != tile)
            return describe(*tile) + QStringLiteral(" overlaps ") + describe(*other);
    }
    return {};
}

using Arrangement = std::function<std::vector<zr::TilePlacement>(const zr::LayoutInput&)>;

/// Checks all pages of a list, and that each participant is on exactly one of them.
/// @return what is wrong; empty when nothing is.
inline QString listFault(const Arrangement& arrange, zr::LayoutInput input,
                         const LayoutRules& rules)
{
    std::vector<int> shown(static_cast<std::size_t>(std::max(input.count, 0)), 0);
    const int pages = zr::pageCount(input.count, rules.tilesPerPage);
    for (input.page = -1; input.page <= pages; ++input.page) {
        const auto page = arrange(input);
        QString fault = pageFault(page, input, rules);
        if (fault.isEmpty() && page.empty() != (input.page < 0 || input.page == pages))
            fault = QStringLiteral("%1 tiles").arg(page.size());
        if (!fault.isEmpty())
            return QStringLiteral("%1x%2, %3 participants, page %4: ")
                       .arg(input.area.width())
                       .arg(input.area.height())
                       .arg(input.count)
                       .arg(input.page)
                   + fault;
        for (const auto& tile : page)
            ++shown[static_cast<std::size_t>(tile.index)];
    }
    const auto wrong =
        std::find_if(shown.begin(), shown.end(), [](int times) { return times != 1; });
    if (wrong == shown.end())
        return {};
    return QStringLiteral("participant %1 of %2 is on %3 pages")
        .arg(std::distance(shown.begin(), wrong))
        .arg(input.count)
        .arg(*wrong);
}
