#include "cplaywidget.h"

#include "contextrenewal.h"
#include "letterbox.h"
#include "packedsize.h"
#include "qdlgplayinfo.h"
#include "qtparent.h"
#include "qzrscreenconfig.h"
#include "repaintpacer.h"
#include "statistics.h"

#include <QCursor>
#include <QDebug>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QPointer>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr int kClickDelayMs = 300;
constexpr int kChangeDelayMs = 100;
// Between two attempts to have a lost GL context again: twice as long as before the last one.
/// The local user's picture counts as confirmed after more pictures than this, over all tiles.
constexpr int kLocalVideoFrames = 68;

// Of m_uRenderRequests: the lower half counts requests, the upper half those for a picture.
constexpr quint64 kOneRequest = 1;
constexpr quint64 kOnePicture = quint64(1) << 32;

using Locker = std::lock_guard<std::recursive_mutex>;

} // namespace

CPlayWidget::CPlayWidget(QWidget* parent, bool bOverlayMode)
    : QOpenGLWidget(parent)
    , m_pPlayInfo(std::make_unique<QDlgPlayInfo>(this))
    , m_pPacer(RepaintPacer::shared())
    , m_pClickTimer(new QTimer(this))
    , m_pChangeTimer(new QTimer(this))
{
    m_pClickTimer->setSingleShot(true);
    m_pClickTimer->setInterval(kClickDelayMs);
    m_pChangeTimer->setSingleShot(true);
    m_pChangeTimer->setInterval(kChangeDelayMs);
    connect(this, &CPlayWidget::notifyRender, this, &CPlayWidget::onRender);
    connect(this, &CPlayWidget::notifyViewCenter, this, &CPlayWidget::onViewCenter);
    connect(m_pClickTimer, &QTimer::timeout, this, &CPlayWidget::mouseClick);
    connect(m_pChangeTimer, &QTimer::timeout, this, &CPlayWidget::delayResetChangeTag);
    connect(m_pPlayInfo.get(), &QDlgPlayInfo::stateChanged, this, &CPlayWidget::followState);
    if (Statistics* const statistics = Statistics::active())
        connect(this, &QOpenGLWidget::frameSwapped, statistics, &Statistics::noteSwap);
    if (bOverlayMode)
        m_pPlayInfo->setPlace(zr::TilePlace::SpeakTool);
    // Every paint draws all pixels; Qt need not clear colour, depth and stencil before it.
    setUpdateBehavior(PartialUpdate);
    setGeometry(0, 0, 1, 1);
    CPlayWidget::StopShow();
}

CPlayWidget::~CPlayWidget()
{
    makeCurrent();
    releaseGL();
    doneCurrent();
}

// --- Pictures ---

zr::I420Layout CPlayWidget::layoutLocked() const
{
    return zr::tileLayout(m_nVideoWidth, m_nVideoHeight);
}

CPlayWidget::SizeChange CPlayWidget::setVideoSizeLocked(unsigned int w, unsigned int h)
{
    SizeChange change;
    change.bChanged = w != m_nVideoWidth || h != m_nVideoHeight;
    if (!change.bChanged && m_pBufYuv420p)
        return change;
    m_nVideoWidth = w;
    m_nVideoHeight = h;
    const int need = static_cast<int>(zr::tileBufferBytes(w, h));
    if (need > m_nBufSize)
        m_pBufYuv420p.reset();
    if (!m_pBufYuv420p) {
        m_nBufSize = need;
        m_pBufYuv420p.reset(new (std::nothrow) uchar[static_cast<std::size_t>(need)]);
        change.bAllocated = m_pBufYuv420p != nullptr;
        change.bFailed = !std::exchange(m_bNoMemory, !m_pBufYuv420p) && !m_pBufYuv420p;
    }
    fillBlackLocked();
    m_rcView = zr::letterboxRect(QSize(static_cast<int>(w), static_cast<int>(h)),
                                 zr::unpackSize(m_uTileSize));
    return change;
}

void CPlayWidget::announce(const SizeChange& change, unsigned int w, unsigned int h)
{
    if (change.bAllocated)
        qDebug() << "xxxxx setVideoSize,iWidth,iHeight:" << w << h;
    if (change.bFailed) {
        qDebug().noquote() << QStringLiteral("m_pBufYuv420p alloc failed! Maybe no frames shown in "
                                             "the widget，alloc_size=")
                           << zr::tileBufferBytes(w, h);
    }
    const QSize tile = zr::unpackSize(m_uTileSize);
    if (change.bChanged && !m_bSizeTold.exchange(true))
        emit notifyViewCenter(tile.width(), tile.height());
}

void CPlayWidget::SetVideoSize(unsigned int w, unsigned int h)
{
    if (!zr::isFrameSizeValid(w, h))
        return;
    SizeChange change;
    {
        const Locker lock(m_mutex);
        change = setVideoSizeLocked(w, h);
    }
    if (!change.bChanged)
        return;
    announce(change, w, h);
    requestRender(false);
}

void CPlayWidget::PlayFrame(const VantrelRTCVideoFrameQT& frame)
{
    const uchar* const data = frame.pData;
    const unsigned int w = frame.width;
    const unsigned int h = frame.height;
    if (!m_bShow || !data || !zr::isFrameSizeValid(w, h))
        return;
    SizeChange change;
    bool copied = false;
    {
        const Locker lock(m_mutex);
        // The stored width may be the aligned one or not; the layout is the same for both.
        if ((w & ~7U) != m_nVideoWidth || h != m_nVideoHeight || !m_pBufYuv420p)
            change = setVideoSizeLocked(w, h);
        if (m_pBufYuv420p) {
            zr::copyFrameToTile(data, w, h, m_pBufYuv420p.get());
            ++m_uFrameSerial;
            copied = true;
        }
    }
    announce(change, w, h);
    if (copied)
        requestRender(true);
}

void CPlayWidget::PlayPlanes(uchar* planes[3], int strides[3])
{
    if (!m_bShow || !planes || !strides || !planes[0] || !planes[1] || !planes[2])
        return;
    {
        const Locker lock(m_mutex);
        if (!m_pBufYuv420p)
            return;
        const zr::I420Layout layout = layoutLocked();
        uchar* const target = m_pBufYuv420p.get();
        zr::copyPlane(planes[0], strides[0], target, layout.lumaStride, layout.lumaRows);
        const std::size_t chromaRows = layout.lumaRows / 2;
        for (const int i : {1, 2}) {
            uchar* const plane = target + (i == 1 ? layout.uOffset() : layout.vOffset());
            zr::copyPlane(planes[i], strides[i], plane, layout.chromaStride, chromaRows);
            // The row that an odd height has more than the source repeats the last one.
            if (chromaRows > 0 && chromaRows < layout.chromaRows) {
                uchar* const last = plane + chromaRows * layout.chromaStride;
                std::memcpy(last, last - layout.chromaStride, layout.chromaStride);
            }
        }
        ++m_uFrameSerial;
    }
    requestRender(true);
}

void CPlayWidget::PlayBuffer(const uchar* data, int len)
{
    if (!m_bShow || !data || len <= 0)
        return;
    {
        const Locker lock(m_mutex);
        if (!m_pBufYuv420p)
            return;
        std::memcpy(m_pBufYuv420p.get(), data, static_cast<std::size_t>(std::min(len, m_nBufSize)));
        ++m_uFrameSerial;
    }
    requestRender(true);
}

void CPlayWidget::fillBlackLocked()
{
    if (!m_pBufYuv420p)
        return;
    zr::fillBlack(layoutLocked(), m_pBufYuv420p.get(), static_cast<std::size_t>(m_nBufSize));
    ++m_uFrameSerial;
}

void CPlayWidget::ResetBlackFrame()
{
    {
        const Locker lock(m_mutex);
        fillBlackLocked();
    }
    requestRender(false);
}

bool CPlayWidget::IsBufferBlank() const
{
    const Locker lock(m_mutex);
    return !m_pBufYuv420p || zr::isBlank(layoutLocked(), m_pBufYuv420p.get());
}

// --- Rendering ---

void CPlayWidget::requestRender(bool bPicture)
{
    const quint64 before =
        m_uRenderRequests.fetch_add(bPicture ? kOneRequest + kOnePicture : kOneRequest);
    if (before == 0)
        emit notifyRender(bPicture);
}

void CPlayWidget::onRender(bool bCheckLocal)
{
    const auto requested = static_cast<int>(m_uRenderRequests.exchange(0) / kOnePicture);
    const int pictures = std::max(requested, bCheckLocal ? 1 : 0);
    countLocalPictures(pictures);
    const auto step = m_reveal.render(pictures > 0, [this] { return IsBufferBlank(); });
    if (step == zr::TileReveal::Step::Wait)
        return;
    if (step == zr::TileReveal::Step::Repaint)
        m_pPacer->requestUpdate(this);
    const tagPersonInfo* const person = GetPersonInfo();
    const bool unseen = person && person->iPlayState == kPlayHidden
                        && QZRScreenConfig::getInstance()->overlaySwitches().hiddenVideo;
    m_pPlayInfo->setLoading(step == zr::TileReveal::Step::Cover || unseen);
}

void CPlayWidget::followState()
{
    const zr::OverlayState& state = m_pPlayInfo->state();
    // A share that is paused or resumed looks different without a new picture.
    if (std::exchange(m_bPaused, state.bPaused) != state.bPaused)
        m_pPacer->requestUpdate(this);
    if (m_reveal.setFrozen(state.bFrozen))
        onRender(false);
}

void CPlayWidget::countLocalPictures(int pictures)
{
    static int s_iLocalPictures = 0; // over all tiles
    tagPersonInfo* const person = GetPersonInfo();
    if (!person || !person->bLocalVideo || person->bLocalVideoConfirmed)
        return;
    s_iLocalPictures += pictures;
    if (s_iLocalPictures > kLocalVideoFrames) {
        person->bLocalVideoConfirmed = true;
        s_iLocalPictures = 0;
    }
}

void CPlayWidget::onViewCenter(int /*iWidth*/, int /*iHeight*/)
{
    m_bSizeTold = false;
    m_uTileSize = zr::packSize(size());
    QRect view;
    {
        const Locker lock(m_mutex);
        if (m_nVideoWidth == 0 || m_nVideoHeight == 0)
            return;
        const QSize video(static_cast<int>(m_nVideoWidth), static_cast<int>(m_nVideoHeight));
        view = m_rcView = zr::letterboxRect(video, size());
    }
    qDebug() << "iWidth,iHeight:" << width() << height() << "rect():" << rect();
    m_pPlayInfo->setVideoRect(view);
}

void CPlayWidget::initializeGL()
{
    initializeOpenGLFunctions();
    m_renderer.initialize();
    // A tile that moves to another window gets another context, and this one goes.
    m_contextConnection = connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
        makeCurrent();
        releaseGL();
        doneCurrent();
    });
}

void CPlayWidget::releaseGL()
{
    disconnect(m_contextConnection);
    m_renderer.release();
}

void CPlayWidget::resizeGL(int w, int h)
{
    m_pPlayInfo->setGeometry(0, 0, w, h);
    m_uTileSize = zr::packSize(QSize(w, h));
    emit notifyViewCenter(w, h);
}

void CPlayWidget::resizeEvent(QResizeEvent* event)
{
    if (isContextLost())
        resizeGL(width(), height());
    else
        QOpenGLWidget::resizeEvent(event);
}

void CPlayWidget::paintEvent(QPaintEvent* event)
{
    if (isContextLost())
        ContextRenewal::of(*window()).request();
    else
        QOpenGLWidget::paintEvent(event);
}

bool CPlayWidget::isContextLost()
{
    makeCurrent();
    QOpenGLContext* const own = context();
    // Where that fails the context of before is current again, which may be this one.
    return own
           && !(isValid() && QOpenGLContext::currentContext() == own
                && own->makeCurrent(own->surface()));
}

void CPlayWidget::paintGL()
{
    Statistics* const statistics = Statistics::active();
    QElapsedTimer timer;
    if (statistics)
        timer.start();
    const quint64 uploads = m_renderer.uploadCount();
    paintPicture();
    if (tagPersonInfo* const person = GetPersonInfo();
        person && m_renderer.uploadCount() != uploads)
        person->frames.notePainted();
    if (statistics)
        statistics->notePaint(timer.nsecsElapsed());
}

void CPlayWidget::paintPicture()
{
    QRect view;
    if (m_bShow && !m_bPaused) {
        const Locker lock(m_mutex);
        if (m_pBufYuv420p) {
            m_renderer.upload(layoutLocked(), m_pBufYuv420p.get(), m_uFrameSerial);
            if (m_renderer.hasPicture())
                view = m_rcView;
        }
    }
    const qreal ratio = devicePixelRatioF();
    view = platform::toPixels(view, ratio);
    const QRect tile = platform::toPixels(rect(), ratio);
    // A picture that covers the tile needs no black beneath it. Neither needs a depth buffer, and
    // a software renderer would pay for both as for another picture.
    if (!view.contains(tile)) {
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    if (view.isEmpty())
        return;
    // GL counts rows from the bottom.
    glViewport(view.x(), tile.height() - view.y() - view.height(), view.width(), view.height());
    m_renderer.draw();
}

// --- Participant, show and hide ---

bool CPlayWidget::SetPersonInfo(tagPersonInfo* pPerson, bool bForce)
{
    const bool hiddenBefore = pPerson && pPerson->iPlayState == kPlayHidden;
    m_reveal.bind(bForce || (hiddenBefore && pPerson != m_pPlayInfo->person()));
    const bool changed = bindPerson(pPerson);
    ResetBlackFrame();
    if (m_bShow)
        beginChangeDelay();
    return changed;
}

bool CPlayWidget::bindPerson(tagPersonInfo* pPerson)
{
    if (pPerson != GetPersonInfo())
        m_pClickTimer->stop(); // the click was on somebody else
    return m_pPlayInfo->setPerson(pPerson);
}

tagPersonInfo* CPlayWidget::GetPersonInfo() const
{
    return m_pPlayInfo->person();
}

void CPlayWidget::beginChangeDelay()
{
    m_pChangeTimer->start();
    m_pPlayInfo->setLoading(true);
}

void CPlayWidget::delayResetChangeTag()
{
    if (m_reveal.endChange())
        onRender(false);
}

void CPlayWidget::StopShow()
{
    m_bShow = false;
    m_pClickTimer->stop();
    m_pChangeTimer->stop(); // StartShow begins the delay anew
    hide();
}

void CPlayWidget::StartShow()
{
    m_bShow = true;
    show();
    tagPersonInfo* const person = GetPersonInfo();
    // An extended screen tells of its participant itself.
    if (person && m_pPlayInfo->place() != zr::TilePlace::ExtScreen) {
        // The hosts are called from here, and what they do may remove the tile.
        const QPointer<CPlayWidget> alive(this);
        QZRScreenConfig::getInstance()->setPersonShown(person, true);
        if (!alive)
            return;
    }
    if (m_reveal.isChanging())
        beginChangeDelay();
}

void CPlayWidget::ShowPlay()
{
    if (!m_bShow)
        StartShow();
}

void CPlayWidget::HidePlay()
{
    if (m_bShow)
        StopShow();
}

// --- Overlay ---

void CPlayWidget::UpdateNetStatus(int iType, bool bBad, int iLevel)
{
    m_pPlayInfo->UpdateNetStatus(iType, bBad, iLevel);
}

bool CPlayWidget::IsMouseOnBtnMore() const
{
    return isVisible() && m_pPlayInfo->IsMouseOnBtnMore();
}

bool CPlayWidget::hasVideoRect() const
{
    const Locker lock(m_mutex);
    return !m_rcView.isEmpty();
}

void CPlayWidget::MapVideoRect(QRect& rect) const
{
    QRect view;
    {
        const Locker lock(m_mutex);
        view = platform::toPixels(m_rcView, devicePixelRatioF());
    }
    rect.setLeft(rect.left() + view.x());
    rect.setTop(rect.top() + view.y());
    rect.setRight(rect.left() + view.width());
    rect.setBottom(rect.top() + view.height());
}

// --- Mouse ---

void CPlayWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_pClickTimer->start();
        m_ptPress = event->globalPos();
    }
    QOpenGLWidget::mousePressEvent(event);
}

void CPlayWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (isDrag(event->globalPos() - m_ptPress))
        m_pClickTimer->stop();
    QOpenGLWidget::mouseMoveEvent(event);
}

void CPlayWidget::mouseClick()
{
    m_pClickTimer->stop();
    emit mouseLClick(this);
}

void CPlayWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QOpenGLWidget::mouseDoubleClickEvent(event);
        return;
    }
    m_pClickTimer->stop();
    emit mouseLDClick(this);
}
