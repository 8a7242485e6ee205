// The way of a participant's frames into the module: which are taken, and what the GUI thread hears
// of them. The copy is the tile's.
#pragma once

#include "zrscreenmod.h"

#include <QSize>
#include <QString>

#include <atomic>

/// Any thread, but where it says otherwise.
class FrameIntake
{
public:
    /// Takes a frame: has `copy()` copy the picture, and `tell(widthPx, heightPx)` tell the GUI
    /// thread, unless a notice waits there already. Afterwards, since it uncovers the tile. The
    /// frame record itself is readable. @return false when the frame was refused
    template<typename Copy, typename Tell>
    bool take(const VantrelRTCVideoFrameQT& frame, const QString& userId, Copy&& copy, Tell&& tell)
    {
        if (!accept(frame, userId))
            return false;
        // Counted before it is copied: one that is on its way while the stream is opened again is
        // none of the new ones.
        m_taken.fetch_add(1);
        copy();
        if (isNoticeDue(frame))
            tell(static_cast<int>(frame.width), static_cast<int>(frame.height));
        return true;
    }
    /// Frames that were taken so far.
    [[nodiscard]] quint64 taken() const { return m_taken; }

    /// Frames that were refused so far.
    [[nodiscard]] quint64 refused() const { return m_refused; }
    /// A picture of the participant was uploaded to be painted.
    void notePainted() { m_painted.fetch_add(1); }
    [[nodiscard]] quint64 painted() const { return m_painted; }

    /// What `tell` has told has arrived. GUI thread.
    /// @return size of the latest frame, which may have come since; empty when the notice was of
    ///         frames that are known already
    [[nodiscard]] QSize noticed();

private:
    /// Whether a frame can be played: a size that the tiles take, and memory that can be read. Of
    /// several in a row that cannot be played the first is logged: a media engine that sends one
    /// bad frame tends to send thousands.
    [[nodiscard]] bool accept(const VantrelRTCVideoFrameQT& frame, const QString& userId);
    /// Whether the GUI thread is to hear of a frame that has been copied. One that falls behind
    /// finds one notice in its queue, however many frames have come and of whatever sizes.
    [[nodiscard]] bool isNoticeDue(const VantrelRTCVideoFrameQT& frame);

    std::atomic<quint64> m_taken{0};
    std::atomic<quint64> m_refused{0};
    std::atomic<quint64> m_painted{0};
    std::atomic<quint64> m_pendingSize{0}; ///< of the latest frame, while a notice waits; else 0
    std::atomic<bool> m_badLogged{false};  ///< a refused frame was logged, no good one since
};
