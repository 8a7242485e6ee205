// The speaker tool: a small window that floats over the gallery and shows the next speaker.
#pragma once

#include "framegate.h"
#include "speaktool.h"

#include <QWidget>

class CPlayWidget;
class CPlayWidgetExtend;
class QLabel;
class QPushButton;
class QScreen;

/// From top to bottom: the buttons that choose how much of the tool there is, who speaks, and one
/// participant's picture. The user drags it by anything but its buttons; all of it stays on the
/// screens. Hiding it ends a drag.
///
/// A window of its own that stays on top and never takes the keyboard: it also floats over another
/// program that the local user shares. It has no owner, which would take it along when the client
/// is minimised. GUI thread, but for playFrame.
class CDlgSpeakTool : public QWidget, public SpeakTool
{
    Q_OBJECT

public:
    CDlgSpeakTool();
    ~CDlgSpeakTool() override;

    // --- SpeakTool ---
    void bindPerson(tagPersonInfo* person) override;
    tagPersonInfo* boundPerson() const override { return m_pPerson; }
    void showTool() override { onModShowSpeakTool(); }
    void hideTool() override { onModHideSpeakTool(); }
    bool isToolVisible() const override { return isVisible(); }
    bool showsPicture() const override;
    void setSpeaking(const QString& names) override;
    int toolId() const override;
    void moveTool(QPoint topLeft) override { place(topLeft.x(), topLeft.y()); }
    QSize toolSize() const override;
    void playFrame(const void* person, const VantrelRTCVideoFrameQT& frame) override;

    /// Arranges the tool for the present screen's resolution, with its corner there.
    void place(int x, int y);
    /// 1 without the picture, 2 with it, 3 as 2.
    int mode() const { return m_iMode; }
    CPlayWidgetExtend* video() const { return m_pVideo; }

public slots:
    /// Moves the tool by an offset from where it was at the last onModmousePressSpeakTool.
    void onModMoveSpeakTool(QPoint offset);
    void onModmousePressSpeakTool();
    void onModHideSpeakTool();
    /// Shows the tool with the second button lit. A compact tool stays compact.
    void onModShowSpeakTool();
    void onClickedMode1();
    void onClickedMode2();
    void onClickedMode3();

signals:
    /// Whether the tool shows a picture has changed by the user's hand.
    void pictureShownChanged();
    /// A click on the picture. Unlike the tile's own it waits for the button to be released, and a
    /// press that has moved the tool is none.
    void pictureClicked(CPlayWidget* tile);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void makeModeRow();
    void makeSpeakRow();
    void watchScreen(const QScreen* screen);
    void scheduleIntoView();
    void bringIntoView();
    void moveVisibly(const QPoint& topLeft);
    void setLook(int mode);
    void onVideoClick();
    int rowHeightPx() const;

    QWidget* m_pModeRow = nullptr;
    QWidget* m_pSpeakRow = nullptr;
    QLabel* m_pTitle = nullptr;
    QLabel* m_pSpeakingLabel = nullptr;
    QLabel* m_pSpeakingNames = nullptr;
    QPushButton* m_pModeButtons[3] = {};
    CPlayWidgetExtend* m_pVideo = nullptr; ///< child; set for the tool's whole life
    tagPersonInfo* m_pPerson = nullptr;    ///< bound; the compact tool's video does not know it
    FrameGate m_gate;                      ///< open for m_pPerson
    bool m_bDragging = false;
    bool m_bDragged = false;  ///< too far for a click, since the last press
    bool m_bClickDue = false; ///< the tile has reported one while the button is held
    QPoint m_ptDragStart;     ///< of the pointer, on the screen
    QPoint m_ptStart;         ///< of the tool, when the drag began
    int m_iMode = 2;
};
