// What the gallery keeps about shared screens, and about a tile that fills the dialog like one.
#pragma once

#include "personinfo.h"

#include <set>

/// Holds addresses of participants who are in the roster; `forget` whoever leaves it.
struct ShareState
{
    /// Fills the dialog in the mode of a share: the share, or a participant who was maximised.
    tagPersonInfo* shown = nullptr;
    /// Who is shown was maximised in the gallery that the mode of a share is without one.
    bool maximisedInGallery = false;
    bool focusDue = false;                ///< a new order may give the focus to a share
    std::set<const tagPersonInfo*> named; ///< shares that the host gave a name

    [[nodiscard]] bool isMaximised() const { return shown && !shown->bShare; }
    /// The mode of a share has ended.
    void leaveMode()
    {
        shown = nullptr;
        maximisedInGallery = false;
    }
    void forget(const tagPersonInfo* person)
    {
        if (shown == person)
            shown = nullptr;
        named.erase(person);
    }
};
