// The floating tool that shows the next speaker, as the gallery sees it.
#pragma once

#include "personinfo.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

/// Shows one participant in a small window of its own over the gallery. The gallery decides who
/// that is and when the tool is shown; where it stands is the user's business once it has been
/// placed. GUI thread, except where a function says otherwise.
class SpeakTool
{
public:
    virtual ~SpeakTool() = default;

    /// Shows this participant, not owned; null unbinds, and the record may then be freed.
    virtual void bindPerson(tagPersonInfo* person) = 0;
    virtual tagPersonInfo* boundPerson() const = 0;
    virtual void showTool() = 0;
    virtual void hideTool() = 0;
    virtual bool isToolVisible() const = 0;
    /// The bound participant's picture can be seen: the tool is shown, and not in its compact form.
    virtual bool showsPicture() const = 0;
    /// Names who speaks at the moment; an empty text names nobody.
    virtual void setSpeaking(const QString& names) = 0;
    /// The native id of the tool's window; 0 while it has none.
    virtual int toolId() const = 0;
    /// @param topLeft in screen pixels
    virtual void moveTool(QPoint topLeft) = 0;
    virtual QSize toolSize() const = 0;
    /// Takes a frame of this participant, if it is the bound one and its picture can be seen. The
    /// caller has pinned the record and checked the frame. Any thread.
    virtual void playFrame(const void* person, const VantrelRTCVideoFrameQT& frame) = 0;
};

namespace zr {

/// Where the tool is placed at first: in the dialog's top right corner, a margin away from both
/// edges. A tool that is wider than the dialog begins at its left edge.
/// @param dialog in screen pixels
[[nodiscard]] constexpr QPoint speakToolPosition(const QRect& dialog, QSize tool, int marginPx)
{
    const int left = dialog.left() + dialog.width() - tool.width() - marginPx;
    return {left > dialog.left() ? left : dialog.left(), dialog.top() + marginPx};
}

} // namespace zr
