// The subtitle panel at the right edge of the frame dialog.
#pragma once

#include "subtitlelist.h"

#include <QDialog>
#include <QMap>

#include <memory>

class QGraphicsScene;
class QGraphicsView;
class QLabel;
struct SubtitleRecord;

/// Whether the lists show their newest sentence; one for all panels. While it is false new
/// sentences wait in the store. GUI thread.
extern bool g_bSubtitleFollow;

/// Title and list. Hidden until subtitles are opened; a hidden panel does no work, and loads its
/// list from the store when it is shown. GUI thread.
class QDlgSubtitle2 : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgSubtitle2(QWidget* parent);
    ~QDlgSubtitle2() override;

    /// Shows the panel with what the store has. One that was hidden follows the newest sentence.
    /// Give it its place first.
    void showPanel();
    /// Makes the list what the store has, at its end when it follows, else at its top.
    void reloadSubtitles();
    /// The width of an item, in pixels. Gives a list that has no size yet the view's.
    int getItemWidth();
    ListObject* list() const { return m_pListObject.get(); }

public slots:
    /// A sentence was added or has changed.
    void onAddSubtitle(int iIDIdx);
    /// The store was cleared: so is the list, but for what has come into the store since then.
    void onCleanSubtitle();
    /// Nothing closes the panel but the frame dialog: not the Escape key either.
    void reject() override {}

protected:
    /// Before the list is painted: brings it up to date, once for all resizes that came before.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void addOrUpdateItem(int id, const SubtitleRecord& record);
    void onScreenScaleChanged();
    void placeChildren();
    void insertItem(int id, const SubtitleRecord& record);
    static void updateItem(RectObject& item, const SubtitleRecord& record);
    /// Goes to the end of the content, or leaves the list to its reader: what is read
    /// stays in its place.
    void follow(qreal oldPosition, int oldContentPx);
    void onScrollingEnded();
    void emptyList();
    void dropItemsBut(const QMap<int, SubtitleRecord>& sentences);
    void stopScrolling();
    int listHeight() const;
    ViewObject& view() const { return *m_pListObject->viewObject(); }

    std::unique_ptr<QGraphicsScene> m_pScene;
    std::unique_ptr<QGraphicsView> m_pView;
    std::unique_ptr<ListObject> m_pListObject;
    QMap<int, RectObject*> m_mapItems; ///< in the list, by the sentence's id; not owned
    QLabel* m_pTitle = nullptr;
    bool m_bStale = false;   ///< resized, or the store has changed while the panel was hidden
    bool m_bWaiting = false; ///< sentences of the store are not in the list, as it does not follow
    int m_iContentAtHold = -1; ///< height of the content before the first update that came while
                               ///< the user was scrolling; -1 for none
};
