// The tile of the speaker tool.
#pragma once

#include "cplaywidget.h"

/// A tile that shows one participant after another. Where the next one's stream is open already,
/// the last picture stays until theirs comes, instead of a black one in between. For the same
/// reason it never freezes: the picture could be the former participant's. GUI thread, but for the
/// frames.
class CPlayWidgetExtend : public CPlayWidget
{
    Q_OBJECT

public:
    using CPlayWidget::CPlayWidget;

    /// As CPlayWidget::SetPersonInfo, and shows the tile for a participant; that is reported to the
    /// hosts, who may delete the participant from inside. `bForce` is ignored.
    bool SetPersonInfo(tagPersonInfo* pPerson, bool bForce) override;
};
