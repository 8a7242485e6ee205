// Gathers the repaints of all tiles into common beats.
#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

/// Repainting one GL widget composes its whole window anew, whatever the number of widgets that
/// are repainted with it; and the pictures of different participants do not arrive in step. The
/// pacer therefore repaints together the tiles that got pictures close to each other:
/// - after a quiet time a tile is repainted at once, and the first beat begins;
/// - tiles that come during a beat are repainted together at its end, where the next one begins;
/// - a beat in which nothing came is the last one: no timer runs while nothing is shown.
/// GUI thread.
class RepaintPacer : public QObject
{
    Q_OBJECT

public:
    explicit RepaintPacer(int beatMs = kBeatMs);

    /// The pacer of all tiles. It lives as long as somebody keeps it: tiles are gone before the
    /// application object and the module are, and so is their pacer.
    static std::shared_ptr<RepaintPacer> shared();

    /// Repaints the widget now or at the end of the beat. A hidden widget is left alone (showing
    /// it will paint it), also when it is hidden or destroyed during the beat.
    void requestUpdate(QWidget* widget);

    /// No beat is running.
    [[nodiscard]] bool isQuiet() const { return !m_beat.isActive(); }

    static constexpr int kBeatMs = 16;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    const int m_iBeatMs;
    QBasicTimer m_beat;
    std::vector<QPointer<QWidget>> m_vecDirty;
};
