#include "pagecontrols.h"

#include "paging.h"
#include "qdlgpagemark.h"
#include "qmypagectrl.h"
#include "qmypagescroll.h"

#include <QImage>

#include <initializer_list>
#include <utility>

PageControls::PageControls(QWidget& gallery)
    : m_gallery(gallery)
    , m_pBack(new QMyPageCtrl(&gallery))
    , m_pForward(new QMyPageCtrl(&gallery))
    , m_pMarks(new QDlgPageMark(&gallery))
    , m_pBar(new QMyPageScroll(&gallery))
{
    m_pBack->hide();
    m_pForward->hide();
}

bool PageControls::isBack(const QWidget* control) const
{
    return control == m_pBack;
}

bool PageControls::isForward(const QWidget* control) const
{
    return control == m_pForward;
}

void PageControls::rescale(const QString& imagePrefix, int marginPx)
{
    m_iMarginPx = marginPx;
    m_pBack->setImage(QImage(imagePrefix + QStringLiteral("pagePre.png")));
    m_pForward->setImage(QImage(imagePrefix + QStringLiteral("pageNext.png")));
    for (QMyPageCtrl* arrow : {m_pBack, m_pForward})
        arrow->resize(arrow->sizeHint());
    place();
    show(m_iPage, m_iPages); // the column has room for fewer marks, or for more
}

void PageControls::place()
{
    const int width = m_gallery.width();
    const int height = m_gallery.height();
    // Both arrows stand at the left one's height.
    const int y = (height - m_pBack->height()) / 2;
    m_pBack->move(m_iMarginPx, y);
    m_pForward->move(width - m_pForward->width() - m_iMarginPx, y);
    m_pMarks->move(width - m_iMarginPx, (height - m_pMarks->height()) / 2);
    placeBar();
}

void PageControls::placeBar()
{
    // The bar runs where the marks would stand, in the middle of the margin.
    const QRect track = m_pMarks->geometry();
    const zr::PageBar bar = zr::pageBar(m_iPage, m_iPages, track.height());
    m_pBar->setBarHeight(bar.heightPx);
    m_pBar->move((track.left() + m_gallery.width() - m_pBar->width()) / 2, track.top() + bar.topPx);
}

void PageControls::show(int page, int pages)
{
    m_iPage = page;
    m_iPages = pages;
    const bool shown = pages > 1;
    const bool marks = pages <= m_pMarks->capacity();
    const auto setShown = [](QWidget* control, bool visible) {
        if (control->isHidden() == visible)
            control->setVisible(visible);
    };
    if (marks)
        m_pMarks->setPages(page, pages);
    else
        placeBar();
    setShown(m_pBack, shown);
    setShown(m_pForward, shown);
    setShown(m_pMarks, shown && marks);
    setShown(m_pBar, shown && !marks);
    // A tile is created above them. Putting it below at once would repaint the gallery whenever
    // somebody joins; raising them costs nothing while tiles appear.
    if (std::exchange(m_bRaise, false)) {
        for (QWidget* control :
             std::initializer_list<QWidget*>{m_pBack, m_pForward, m_pMarks, m_pBar})
            control->raise();
    }
}
