// The overlay of a tile: everything that is painted over the picture.
#pragma once

#include "personinfo.h"

#include <QElapsedTimer>
#include <QPainterPath>
#include <QWidget>

class QPainter;

/// A frameless, transparent child of a tile, exactly as large as the tile. Mouse events that it
/// has no use for reach the tile.
///
/// It paints from a copy of the state that its setters and `refresh` gather, never from the
/// participant's record, and repaints only when that copy has changed. GUI thread.
class QDlgPlayInfo : public QWidget
{
    Q_OBJECT

public:
    explicit QDlgPlayInfo(QWidget* pParent);

    /// Binds a participant, not owned; null unbinds, and then nothing is painted.
    /// @return whether another participant than before is bound; false for null.
    bool setPerson(tagPersonInfo* pPerson);
    tagPersonInfo* person() const { return m_pPerson; }
    /// The bound participant is a shared screen.
    bool isShareTile() const { return m_bShareTile; }
    /// Dark border around tiles whose participant does not speak.
    void setOverlayMode(bool bOverlayMode);

    /// Takes over what has changed in the participant's record and in the hub. Does nothing while
    /// the overlay is hidden; showing it refreshes it.
    void refresh();
    /// No picture has come yet, so that the avatar covers the tile. @param bForce refresh even
    /// when the state is the same
    void setLoading(bool bShow, bool bForce);
    /// The picture's rectangle in the tile; what lies outside is painted over.
    void setVideoRect(const QRect& rect);
    /// @param iType 1 sending, 2 receiving @param iLevel 0 (none) to 5 (best)
    void UpdateNetStatus(int iType, bool bBad, int iLevel);
    /// The network is bad in a direction: the picture is to stay as it is.
    bool isNetBad() const { return m_bSendBad || m_bReceiveBad; }
    /// The pointer is on the "more" button.
    bool IsMouseOnBtnMore() const;

    /// What the overlay leaves of the tile's picture.
    bool isPictureVisible() const { return m_state.bPicture; }
    /// The spinner runs: the timer is active only then.
    bool isSpinning() const { return m_iTimerId != 0; }
    /// The parts of the overlay outside the picture.
    const QPainterPath& barsPath() const { return m_barsPath; }
    /// The name as it is painted, shortened where it does not fit.
    const QString& paintedName() const { return m_layout.nameText; }

public slots:
    void onTimeUpdateLoading();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    /// Milliseconds since the spinner started.
    virtual qint64 spinnerElapsedMs() const { return m_spinnerStart.elapsed(); }

private:
    /// All that the painting depends on.
    struct State
    {
        bool bPerson = false;
        bool bShare = false;
        bool bPaused = false;  ///< a shared screen that is paused
        bool bPicture = false; ///< the picture shows, else the avatar covers it
        bool bSelf = false;
        bool bSpeaking = false;
        bool bBorder = false;
        bool bSpinner = false;
        int iRole = 0;
        int iColor = 0; ///< index into the avatar colours
        QString name;
        QString initials;

        bool operator==(const State& other) const;
    };
    /// Where the elements lie; follows from the state and the overlay's size.
    struct Layout
    {
        QRect badge; ///< empty without a role badge
        QString badgeText;
        QRect nameBar;
        QRect nameRect;
        QString nameText;
        QRect head;
        QRect more;
        QRect spinner;
    };

    State gatherState() const;
    Layout computeLayout() const;
    void
    applyState(); ///< takes over the state; repaints and starts or stops the timer if it differs
    void updateSpinner();
    void rebuildBars();

    void paintPerson(QPainter& painter) const;
    void paintShare(QPainter& painter) const;
    void paintAvatar(QPainter& painter) const;
    void paintBadge(QPainter& painter) const;
    void paintNameBar(QPainter& painter) const;
    void paintSpinner(QPainter& painter) const;
    void paintBorder(QPainter& painter) const;

    tagPersonInfo* m_pPerson = nullptr;
    bool m_bShareTile = false;
    bool m_bOverlayMode = false;
    bool m_bLoading = true;
    bool m_bSendBad = false;
    bool m_bReceiveBad = false;
    bool m_bShown = false;        ///< unlike isVisible, false while the window is minimised
    bool m_bLoadTimedOut = false; ///< the spinner had its time in this spell of bad network
    int m_iNetLevel = 5;
    int m_iNetDirection = 0;
    int m_iSpinnerAngle = 0; ///< degrees
    int m_iTimerId = 0;
    QElapsedTimer m_spinnerStart; ///< invalid before the spell's first spinner
    QRect m_rcVideo;
    QPainterPath m_barsPath;
    State m_state;
    Layout m_layout;
};
