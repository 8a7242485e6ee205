// One participant's video tile.
#pragma once

#include "i420frame.h"
#include "locks.h"
#include "personinfo.h"
#include "tilereveal.h"
#include "yuvrenderer.h"

#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QPoint>
#include <QRect>
#include <QTimer>

#include <atomic>
#include <memory>

class QDlgPlayInfo;
class RepaintPacer;

/// Keeps the participant's latest picture as one block and draws it, letterboxed, with a shader.
/// Owns the overlay that lies over it, and turns presses into clicks and double clicks.
///
/// GUI thread, except where a function says otherwise. Signals are never emitted with the tile's
/// lock held.
class CPlayWidget : public QOpenGLWidget, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    /// A hidden tile of 1 x 1 pixel without a participant.
    /// @param bOverlayMode the tile is the speaker tool's
    CPlayWidget(QWidget* parent, bool bOverlayMode);
    ~CPlayWidget() override;

    // --- Pictures; any thread ---
    /// Prepares the tile for pictures of this size and shows black until one comes. Does nothing
    /// for the present size and for a size that is not valid (zr::isFrameSizeValid). The block
    /// only grows; while it cannot be allocated the tile stays black, and each picture that comes
    /// tries again.
    void SetVideoSize(unsigned int w, unsigned int h);
    /// Copies a picture in and has it painted. Does nothing while the tile is hidden, or for a
    /// picture without data or of an invalid size.
    void PlayFrame(const VantrelRTCVideoFrameQT& frame);
    /// Copies a picture of the present size, given by plane; does nothing while the tile is hidden
    /// or before there is a size.
    /// @param planes Y, U and V: rows as long as the picture is wide, and half as long; chroma
    ///               planes with half as many rows, rounded down
    /// @param strides bytes from one row to the next of each plane
    void PlayPlanes(uchar* planes[3], int strides[3]);
    /// Copies bytes that are laid out as zr::tileLayout of the present size; what exceeds the
    /// block is ignored. Does nothing while the tile is hidden or before there is a size.
    void PlayBuffer(const uchar* data, int len);
    /// Makes the picture black.
    void ResetBlackFrame();
    /// No picture has come since the tile was made black. See zr::isBlank.
    bool IsBufferBlank() const;
    /// Between StartShow and StopShow. Frames are taken only then.
    bool isShowing() const { return m_bShow; }

    // --- Participant ---
    /// Binds a participant, not owned; null unbinds, and the record may then be freed. The tile is
    /// black until a picture comes, and paints none during the 100 ms that follow StartShow.
    /// @param bForce expect a slow start also where the record does not tell so
    /// @return whether another participant than before is bound; false for null
    virtual bool SetPersonInfo(tagPersonInfo* pPerson, bool bForce);
    tagPersonInfo* GetPersonInfo() const;

    // --- Show and hide ---
    virtual void StopShow();
    /// Shows the tile and reports that to the hosts.
    virtual void StartShow();
    /// StartShow, unless the tile is showing.
    void ShowPlay();
    /// StopShow, unless the tile is hidden.
    void HidePlay();

    // --- Overlay ---
    /// While the network is bad the picture stays as it is. Reaches all tiles of the participant.
    /// @param iType 1 sending, 2 receiving @param iLevel 0 (none) to 5 (best)
    void UpdateNetStatus(int iType, bool bBad, int iLevel);
    bool IsMouseOnBtnMore() const;
    /// Turns a rectangle that begins at the tile into that of its picture: adds the viewport's
    /// origin to the left top corner; right and bottom become left + width and top + height, that
    /// is exclusive edges, as native rectangles have them.
    void MapVideoRect(QRect& rect) const;
    /// A picture's size is known, and so is where it lies in the tile.
    bool hasVideoRect() const;
    QDlgPlayInfo* playInfo() const { return m_pPlayInfo.get(); }

    /// The driver has taken the context away (a reset, an adapter that goes): Qt would paint
    /// without one.
    [[nodiscard]] bool isContextLost();
    /// Pictures uploaded to the graphics system so far.
    quint64 uploadCount() const { return m_renderer.uploadCount(); }

signals:
    void mouseLClick(CPlayWidget*);
    void mouseLDClick(CPlayWidget*);
    /// Declared for the gallery's slot; the tile itself has no use for it.
    void notifyPlayStatusChange(CPlayWidget*);
    /// A picture waits to be painted. Emitted from any thread, and not again before onRender has
    /// run: a burst of pictures costs one repaint.
    void notifyRender(bool bCheckLocal = true);
    /// The picture or the tile has another size. Emitted from any thread, for a picture not again
    /// before onViewCenter has run.
    void notifyViewCenter(int iWidth, int iHeight);

public slots:
    /// Decides whether the tile is repainted. @param bCheckLocal the call stands for a picture
    void onRender(bool bCheckLocal = false);
    void mouseClick();
    /// Places the picture in the tile. The arguments are ignored; the tile's own size counts.
    void onViewCenter(int iWidth, int iHeight);
    void delayResetChangeTag();

protected:
    /// Hands the participant to the overlay and leaves the picture alone. @return as SetPersonInfo
    bool bindPerson(tagPersonInfo* pPerson);

    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void initializeGL() override;
    void resizeGL(int w, int h) override;
    void paintGL() override;

private:
    void paintPicture();

    /// What is left to do for a new size once the lock is released: logging and signals.
    struct SizeChange
    {
        bool bChanged = false;
        bool bAllocated = false;
        bool bFailed = false; ///< for the first time since there was memory
    };

    // The caller holds m_mutex.
    [[nodiscard]] SizeChange setVideoSizeLocked(unsigned int w, unsigned int h);
    void fillBlackLocked();
    zr::I420Layout layoutLocked() const;

    void announce(const SizeChange& change, unsigned int w, unsigned int h);
    void requestRender(bool bPicture);
    void countLocalPictures(int pictures);
    void beginChangeDelay();
    void followState();
    void releaseGL();

    std::unique_ptr<QDlgPlayInfo> m_pPlayInfo;
    std::shared_ptr<RepaintPacer> m_pPacer;
    QTimer* m_pClickTimer;  ///< child
    QTimer* m_pChangeTimer; ///< child; ends the change mark
    QPoint m_ptPress;       ///< of the last left press, on the screen
    YuvRenderer m_renderer;
    QMetaObject::Connection m_contextConnection;

    // Guarded by m_mutex.
    mutable platform::RecursiveMutex m_mutex;
    unsigned int m_nVideoWidth = 0;
    unsigned int m_nVideoHeight = 0;
    QRect m_rcView; ///< the picture in the tile, in the tile's pixels from its top left corner
    std::unique_ptr<uchar[]> m_pBufYuv420p; ///< laid out as zr::tileLayout
    int m_nBufSize = 0;                     ///< bytes allocated; at least zr::tileLayout's
    bool m_bNoMemory = false;               ///< for the block, which has been logged
    quint64 m_uFrameSerial = 1;             ///< counts changes of the block

    std::atomic<bool> m_bShow{false};
    std::atomic<bool> m_bSizeTold{false}; ///< a notifyViewCenter for a picture is under way
    /// The tile's size, packed, for threads that may not ask the widget.
    std::atomic<quint64> m_uTileSize{0};
    /// Calls of requestRender since the last onRender; pictures in the upper half.
    std::atomic<quint64> m_uRenderRequests{0};

    zr::TileReveal m_reveal;
    bool m_bPaused = false; ///< a shared screen that is paused: no picture is painted
};
