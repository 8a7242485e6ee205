// The tile of the speaker tool.
#pragma once

#include "cplaywidget.h"

/// A tile that shows one participant after another. Where the next one's stream is open already,
/// the last picture stays until theirs comes, instead of a black one in between. GUI thread, but
/// for the frames.
class CPlayWidgetExtend : public CPlayWidget
{
    Q_OBJECT

public:
    using CPlayWidget::CPlayWidget;

    /// As CPlayWidget::SetPersonInfo, and shows the tile for a participant; that is reported to the
    /// hosts, who may delete the participant from inside. `bForce` is ignored.
    bool SetPersonInfo(tagPersonInfo* pPerson, bool bForce) override;
    /// Shows the state of the network as the participant's own tile does. The picture goes on: one
    /// that stayed as it is could be the former participant's.
    void followNetwork();
};
