// The frame dialog: the module's top-level window, embedded in the host's.
#pragma once

#include "embedding.h"
#include "zrscreenmod.h"

#include <QDialog>

class QDlgScreen;
class QDlgSubtitle2;

/// Holds the gallery and, in the right fifth, the subtitle panel. The host alone moves and closes
/// it. GUI thread.
class QDlgMain : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgMain(QWidget* parent);
    ~QDlgMain() override;

    QDlgScreen* gallery() const { return m_pDlgScreen; }

    /// Shows the dialog in a native window; 0 makes it a window of its own. As long as the system
    /// has no such window, the dialog is hidden.
    void openIn(HWND hParent);
    /// Moves the dialog from its parent into another one. @return false when the system refused;
    /// the dialog then has no parent, and is hidden until it can be moved there.
    bool moveInto(HWND hParent);
    /// Places the dialog in its parent's pixels, on top of its siblings.
    void place(const QRect& rect);
    /// Opens or closes the subtitle panel and gives the gallery the room that is left.
    void showSubtitlePanel(bool bShow);

public slots:
    void onHandleScreenMode(int);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    Embedding m_embedding{*this};
    QDlgScreen* m_pDlgScreen = nullptr;
    QDlgSubtitle2* m_pDlgSubtitle2 = nullptr;
};
