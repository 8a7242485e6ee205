#include "qdlgsubtitle2.h"

#include "nametext.h"
#include "overlaypainter.h"
#include "qzrscreenconfig.h"
#include "texts.h"

#include <QDebug>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QLabel>
#include <QPainter>
#include <QResizeEvent>

#include <algorithm>

using zr::FollowStep;

bool g_bSubtitleFollow = true;

namespace {

constexpr QColor kPanelColor(58, 62, 70);
/// The panel's part of the dialog's width.
constexpr int kPanelShare = 5;
// Base sizes in pixels, scaled on a high-resolution screen.
constexpr int kTitleTop = 48;
constexpr int kTitleHeight = 64;
constexpr int kTitleLeft = 10;
constexpr int kTitleFont = 22;
constexpr int kBottom = 104;
constexpr int kLeastListWidth = 50; ///< a narrower list has not been given its size yet
/// Before the list is given its size.
constexpr QSize kInitialList(700, 400);

int px(int base)
{
    return QZRScreenConfig::getInstance()->scaled(base);
}

} // namespace

QDlgSubtitle2::QDlgSubtitle2(QWidget* parent)
    : QDialog(parent)
    , m_pScene(std::make_unique<QGraphicsScene>())
    , m_pListObject(std::make_unique<ListObject>(QSizeF(kInitialList)))
{
    setWindowFlags(Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    setGeometry(-10, -10, 9, 9);
    m_pTitle = new QLabel(zr::Text::tr("字幕"), this);
    m_pListObject->setObjectName(QStringLiteral("SubtitleList"));
    // 64 items at most, all of which move at once: an index would only be rebuilt.
    m_pScene->setItemIndexMethod(QGraphicsScene::NoIndex);
    m_pScene->addItem(m_pListObject.get());
    m_pView = std::make_unique<QGraphicsView>(m_pScene.get(), this);
    m_pView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pView->setFocusPolicy(Qt::NoFocus); // the keyboard stays where it is
    m_pView->viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    m_pView->viewport()->installEventFilter(this);
    m_pView->setStyleSheet(QStringLiteral("QGraphicsView{background-color:rgb(58,62,70);"
                                          "border-style:solid;border-width:0px 0px 0px 0px;}"));
    const QZRScreenConfig* hub = QZRScreenConfig::getInstance();
    connect(hub, &QZRScreenConfig::notifyAddSubtitle, this, &QDlgSubtitle2::onAddSubtitle);
    connect(hub, &QZRScreenConfig::notifyCleanSubtitle, this, &QDlgSubtitle2::onCleanSubtitle);
    connect(hub, &QZRScreenConfig::screenScaleChanged, this, &QDlgSubtitle2::onScreenScaleChanged);
    connect(m_pListObject.get(), &ListObject::scrollingEnded, this,
            &QDlgSubtitle2::onScrollingEnded);
}

QDlgSubtitle2::~QDlgSubtitle2()
{
    qDebug() << "QDlgSubtitle2::~QDlgSubtitle2()";
    m_pListObject->disconnect(this);
    emptyList();
    m_pView.reset();
    m_pScene->removeItem(m_pListObject.get());
    m_pListObject.reset();
}

// --- Geometry ---------------------------------------------------------------------------------

void QDlgSubtitle2::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    qDebug() << "subtitle2 size:" << size();
    placeChildren();
}

void QDlgSubtitle2::onScreenScaleChanged()
{
    emptyList(); // of items in the former fonts
    placeChildren();
}

void QDlgSubtitle2::placeChildren()
{
    const QString titleStyle =
        QStringLiteral("QLabel{background-color:rgb(58,62,70);font-family:Microsoft Yahei;"
                       "font-size:%1px;color:rgb(205,205,205);}")
            .arg(px(kTitleFont));
    if (m_pTitle->styleSheet() != titleStyle)
        m_pTitle->setStyleSheet(titleStyle);
    const int left = px(kTitleLeft);
    const int viewTop = px(kTitleTop) + px(kTitleHeight);
    m_pTitle->setGeometry(left, px(kTitleTop), std::max(0, width() - left), px(kTitleHeight));
    m_pView->setGeometry(0, viewTop, width(), std::max(0, height() - viewTop - px(kBottom)));
    const QSize viewport = m_pView->size();
    m_pScene->setSceneRect(QRect(QPoint(0, 0), viewport));
    m_pListObject->setSize(viewport);
    m_bStale = true; // the lines are broken anew when they are painted
    m_pView->viewport()->update();
}

bool QDlgSubtitle2::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Paint && isVisible()) {
        if (m_bStale)
            reloadSubtitles();
        m_pListObject->settle();
    }
    return QDialog::eventFilter(watched, event);
}

void QDlgSubtitle2::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), kPanelColor);
}

int QDlgSubtitle2::getItemWidth()
{
    auto itemWidth = static_cast<int>(m_pListObject->size().width());
    if (itemWidth < px(kLeastListWidth)) {
        itemWidth = parentWidget() ? parentWidget()->width() / kPanelShare : width();
        m_pListObject->setSize(m_pView->viewport()->size());
    }
    qDebug() << "getItemWidth:" << itemWidth;
    return itemWidth;
}

int QDlgSubtitle2::listHeight() const
{
    return static_cast<int>(m_pListObject->size().height());
}

// --- Content ----------------------------------------------------------------------------------

void QDlgSubtitle2::showPanel()
{
    if (isHidden()) {
        g_bSubtitleFollow = true;
        m_bStale = true;
    }
    show();
    if (m_bStale) // its dialog is not visible yet
        reloadSubtitles();
}

void QDlgSubtitle2::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (m_bStale)
        reloadSubtitles();
}

void QDlgSubtitle2::hideEvent(QHideEvent* event)
{
    QDialog::hideEvent(event);
    stopScrolling();
}

void QDlgSubtitle2::onAddSubtitle(int iIDIdx)
{
    if (!isVisible()) {
        m_bStale = true;
        return;
    }
    if (m_bStale)
        reloadSubtitles();
    const QMap<int, SubtitleRecord> sentences = QZRScreenConfig::getInstance()->subtitles();
    const auto found = sentences.find(iIDIdx);
    if (found != sentences.end())
        addOrUpdateItem(iIDIdx, found.value());
}

void QDlgSubtitle2::onCleanSubtitle()
{
    emptyList();
    m_bStale = true; // another thread may have added a sentence between the clearing and its notice
    if (isVisible())
        reloadSubtitles();
}

void QDlgSubtitle2::reloadSubtitles()
{
    m_bStale = false;
    stopScrolling();
    m_bWaiting = false;
    const QMap<int, SubtitleRecord> sentences = QZRScreenConfig::getInstance()->subtitles();
    dropItemsBut(sentences);
    const int itemWidth = getItemWidth();
    for (auto it = sentences.begin(); it != sentences.end(); ++it) {
        if (RectObject* item = m_mapItems.value(it.key())) {
            item->setItemWidth(itemWidth);
            updateItem(*item, it.value());
        } else {
            insertItem(it.key(), it.value());
        }
    }
    view().relayout();
    view().setPos(0, 0);
    if (g_bSubtitleFollow)
        m_pListObject->moveToEnd();
    else
        m_pListObject->settle();
}

void QDlgSubtitle2::dropItemsBut(const QMap<int, SubtitleRecord>& sentences)
{
    for (auto it = m_mapItems.begin(); it != m_mapItems.end();) {
        if (sentences.contains(it.key())) {
            ++it;
            continue;
        }
        view().removeItem(it.value());
        it = m_mapItems.erase(it);
    }
}

void QDlgSubtitle2::emptyList()
{
    stopScrolling();
    m_bWaiting = false;
    m_mapItems.clear();
    view().clearItems();
    view().setPos(0, 0);
}

void QDlgSubtitle2::stopScrolling()
{
    m_iContentAtHold = -1; // first: nothing is judged when the list comes to rest
    m_pListObject->stopScrolling();
}

void QDlgSubtitle2::insertItem(int id, const SubtitleRecord& record)
{
    auto* item = new RectObject(record.transStr, 0, view().contentHeight(), getItemWidth(),
                                kPanelColor, id, &view());
    item->setName(zr::shortName(record.userName));
    item->setColor(avatarColor(record.iColorType));
    view().sortIn(item);
    m_mapItems.insert(id, item);
    if (m_mapItems.size() > zr::kMaxSubtitles)
        view().removeItem(m_mapItems.take(m_mapItems.firstKey()));
}

void QDlgSubtitle2::updateItem(RectObject& item, const SubtitleRecord& record)
{
    item.setName(zr::shortName(record.userName));
    item.setColor(avatarColor(record.iColorType));
    item.setText(record.transStr);
}

void QDlgSubtitle2::addOrUpdateItem(int id, const SubtitleRecord& record)
{
    const int shownHeight = qRound(view().boundingRect().height());
    const qreal position = view().y();
    const RectObject* top = view().itemAt(-position);
    const int topId = top ? top->id() : id;
    const qreal topY = top ? top->y() : 0;
    if (RectObject* item = m_mapItems.value(id))
        updateItem(*item, record);
    else if (g_bSubtitleFollow && !m_pListObject->isScrolling())
        insertItem(id, record);
    else
        m_bWaiting = true;
    view().relayout();
    // What is read stays in its place when something above it grows, or goes.
    top = m_mapItems.value(topId);
    m_pListObject->shiftContent(top ? topY - top->y() : -position);
    m_pListObject->settle();
    if (!m_pListObject->isScrolling())
        follow(position, shownHeight);
    else if (m_iContentAtHold < 0)
        m_iContentAtHold = shownHeight; // Whoever has a finger on the list is not pulled away.
}

void QDlgSubtitle2::follow(qreal oldPosition, int oldContentPx)
{
    const FollowStep step =
        zr::followStep(listHeight(), view().contentHeight(), oldPosition, oldContentPx);
    // Where all fits there is nothing to read back to, and nothing that would ever end it.
    g_bSubtitleFollow = step != FollowStep::Reading;
    if (!g_bSubtitleFollow)
        return;
    if (m_bWaiting)
        reloadSubtitles(); // with the sentences that wait
    else
        m_pListObject->moveToEnd();
}

void QDlgSubtitle2::onScrollingEnded()
{
    const int oldContent = std::exchange(m_iContentAtHold, -1);
    if (oldContent >= 0)
        follow(view().y(), oldContent);
}
