// Gathers the repaints of the tiles into common rounds.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

/// Repainting one GL widget composes its whole window anew, whatever the number of widgets that
/// are repainted with it; and the pictures of different participants do not arrive in step. The
/// pacer therefore gathers tiles into rounds. A round ends, and its tiles are repainted together,
/// - when all tiles of the last round have come again: a single tile, or tiles whose pictures
///   arrive together, wait for nobody;
/// - when a tile comes for the second time: no picture is held back for more than a period;
/// - kMaxWaitMs after its first tile.
/// After a quiet time the first tile is repainted at once. No timer runs while no tile waits.
/// GUI thread.
class RepaintPacer : public QObject
{
    Q_OBJECT

public:
    explicit RepaintPacer(int maxWaitMs = kMaxWaitMs);

    /// The pacer of all tiles. It lives as long as somebody keeps it: tiles are gone before the
    /// application object and the module are, and so is their pacer.
    static std::shared_ptr<RepaintPacer> shared();

    /// Repaints the widget in this round. A hidden widget is left alone (showing it will paint
    /// it), also when it is hidden or destroyed during the round.
    void requestUpdate(QWidget* widget);

    /// No tile waits.
    [[nodiscard]] bool isIdle() const { return m_vecDirty.empty(); }

    /// The period of 30 pictures per second. With nine tiles out of step at 25 per second this
    /// makes one round a period; waiting longer saves nothing more.
    static constexpr int kMaxWaitMs = 33;
    /// Without a round for this long nobody is waited for.
    static constexpr int kQuietMs = 100;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    using Widgets = std::vector<QPointer<QWidget>>;

    bool isComplete() const;
    void finishRound();

    const int m_iMaxWaitMs;
    QBasicTimer m_deadline;
    QElapsedTimer m_lastRound; ///< since the end of the last round
    Widgets m_vecDirty;        ///< who came in this round
    Widgets m_vecExpected;     ///< who came in the last one
};
