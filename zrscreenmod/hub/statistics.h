// Figures for whoever looks into a meeting: rates of frames and paints, and how long things took.
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>

struct tagPersonInfo;

/// Exists while the environment asks for it: `ZRSCREEN_STATS=SECONDS` has the figures logged at
/// that interval, `ZRSCREEN_DEBUG_OVERLAY=1` has every tile show its own. Off, it costs a look at a
/// pointer. GUI thread.
class Statistics : public QObject
{
    Q_OBJECT

public:
    /// @return null when the environment does not ask
    static Statistics* makeIfAsked(QObject* parent);
    /// The one that exists; else null.
    static Statistics* active() { return s_active; }
    ~Statistics() override;

    [[nodiscard]] bool isOverlayWanted() const { return m_bOverlay; }
    void notePaint(qint64 durationNs);
    /// A window was composed and swapped. Every tile of it says so.
    void noteSwap();

signals:
    /// The participants' rates are new ones.
    void sampled();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    Statistics(QObject* parent, int periodS, bool bOverlay);
    void sample();
    void log();

    struct Rates
    {
        quint64 taken = 0;
        quint64 refused = 0;
        quint64 painted = 0;
    };
    static Rates countsOf(const tagPersonInfo& person);

    static inline Statistics* s_active = nullptr;

    const int m_iPeriodS; ///< 0: nothing is logged
    const bool m_bOverlay;
    QBasicTimer m_second;
    QBasicTimer m_pulse; ///< comes late when the GUI thread stands still
    QElapsedTimer m_sincePulse;
    int m_iSeconds = 0; ///< since the last log
    int m_iSwaps = 0;
    bool m_bSwapNoted = false; ///< by another tile of the window
    qint64 m_longestPaintNs = 0;
    qint64 m_longestStallMs = 0;
    QHash<quint64, Rates> m_logged; ///< by the participants' serial numbers, at the last log
};
