// The overlay of a tile: everything that is painted over the picture.
#pragma once

#include "overlaylayout.h"
#include "personinfo.h"
#include "watermarkcache.h"

#include <QAccessible>
#include <QBasicTimer>
#include <QElapsedTimer>
#include <QPainterPath>
#include <QWidget>

#include <memory>
#include <optional>

class OverlayImages;
class RectPacer;

/// What of the overlay can be clicked.
enum class OverlayControl
{
    Microphone,
    More,
    LowerHand,
};

/// Whether the pointer has moved too far since the press for a click.
[[nodiscard]] bool isDrag(const QPoint& distance);

/// A frameless, transparent child of a tile, exactly as large as the tile; a plain widget, since a
/// dialog would become a window of its own. Mouse events that it has no use for reach the tile.
///
/// A control acts when the button is released where it was pressed: a drag does not click, and the
/// button is up when the host opens a menu from inside the message.
///
/// It paints from its answer of `zr::overlayState`, never from the participant's record. While it
/// is shown it listens to what changes in the meeting, asks the rule again, and repaints only what
/// another answer changes. Nobody has to refresh it. GUI thread.
class QDlgPlayInfo : public QWidget
{
    Q_OBJECT

public:
    /// @param pParent the tile; never null
    explicit QDlgPlayInfo(QWidget* pParent);
    ~QDlgPlayInfo() override;

    /// Binds a participant, not owned; null unbinds, and then nothing is painted.
    /// @return whether another participant than before is bound; false for null.
    bool setPerson(tagPersonInfo* pPerson);
    tagPersonInfo* person() const { return m_pPerson; }
    /// The bound participant is a shared screen.
    bool isShareTile() const { return m_bShareTile; }
    /// Where the tile stands; at first in a gallery. The controls of a tile on an extended screen
    /// do nothing.
    void setPlace(zr::TilePlace place);
    zr::TilePlace place() const { return m_view.place; }

    /// No picture has come yet, so that the avatar covers the tile.
    void setLoading(bool bShow);
    /// The picture's rectangle in the tile; what lies outside is painted over.
    void setVideoRect(const QRect& rect);
    /// Notes the state of the participant's network, for all their tiles.
    /// @param iType 1 sending, 2 receiving @param iLevel 0 (none) to 5 (best)
    void UpdateNetStatus(int iType, bool bBad, int iLevel);

    /// The control can be used: it is there, and the participant is still in the meeting.
    bool hasControl(OverlayControl control) const;
    /// Passes a click on a control to the host. The host may delete the participant meanwhile.
    void activate(OverlayControl control);
    /// The pointer is on the "more" button.
    bool IsMouseOnBtnMore() const;

    /// What the overlay leaves of the tile's picture.
    bool isPictureVisible() const { return m_state.bPicture; }
    /// The spinner runs: its timer is active only then.
    bool isSpinning() const { return m_spinnerTimer.isActive(); }
    /// The parts of the overlay outside the picture.
    const QPainterPath& barsPath() const { return m_barsPath; }
    /// What is shown, and where. For assistive technology and tests.
    const zr::OverlayState& state() const { return m_state; }
    const zr::OverlayLayout& overlayLayout() const { return m_layout; }

public slots:
    /// Takes over what has changed in the participant's record and in the hub. Does nothing while
    /// the overlay is hidden; showing it refreshes it.
    void refresh();
    /// A sentence was added or has grown; it shows for some seconds when the participant said it.
    /// Who did is told by the name: sentences carry no id.
    void onAddSubtitle(int iIDSentence);
    void onTimeUpdateLoading();

signals:
    /// The tile may have to follow: `state` is another one, by more than a volume.
    void stateChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    /// Milliseconds since the spinner started.
    virtual qint64 spinnerElapsedMs() const { return m_spinnerStart.elapsed(); }
    /// How long a sentence stays after it has been added or has grown.
    virtual int bubbleMs() const { return 5000; }
    /// Tells assistive technology that one of the tile's texts has changed.
    virtual void announce(QAccessible::Event what);

private:
    void listen();
    void onParticipantChanged(const void* pPerson);
    zr::TilePerson tilePerson() const;
    zr::OverlayState gatherState() const;
    zr::OverlayLayout computeLayout() const;
    /// Takes over the state; where it differs, repaints what has changed and starts or stops the
    /// timers.
    void applyState();
    void followImages();
    void endOldSpell();
    void updateSpinner();
    void closeBubble();
    void rebuildBars();
    std::optional<OverlayControl> controlAt(const QPoint& point) const;
    const zr::OverlayElement& element(OverlayControl control) const;

    std::shared_ptr<const OverlayImages> m_pImages;
    std::shared_ptr<RectPacer> m_pPacer;          ///< of the microphones
    std::shared_ptr<const void> m_pAccessibility; ///< see shareTileAccessibility
    tagPersonInfo* m_pPerson = nullptr;
    zr::TileView m_view;
    bool m_bShareTile = false;
    bool m_bShown = false;   ///< unlike isVisible, false while the window is minimised
    int m_iSpinnerAngle = 0; ///< degrees
    QBasicTimer m_spinnerTimer;
    QBasicTimer m_bubbleTimer;    ///< runs while the bubble shows
    QElapsedTimer m_spinnerStart; ///< invalid before the spell's first spinner
    static constexpr int kNoSpell = -1;
    int m_iSpell = kNoSpell; ///< of bad network: whose spinner and time-out these are
    std::optional<OverlayControl> m_pressed; ///< acts when the button is released
    QPoint m_ptPress;                        ///< on the screen
    QRect m_rcVideo;
    QPainterPath m_barsPath;
    WatermarkCache m_watermark;
    zr::OverlayState m_state;
    zr::OverlayLayout m_layout;
};
