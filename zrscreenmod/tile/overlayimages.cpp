#include "overlayimages.h"

#include "qzrscreenconfig.h"

#include <QDebug>

#include <algorithm>

std::shared_ptr<const OverlayImages> OverlayImages::shared()
{
    static std::weak_ptr<const OverlayImages> s_images;
    std::shared_ptr<const OverlayImages> images = s_images.lock();
    if (!images || !images->areCurrent()) {
        const QZRScreenConfig* hub = QZRScreenConfig::getInstance();
        images = std::make_shared<const OverlayImages>(hub->imgPrefix(), hub->is4K());
        s_images = images;
    }
    return images;
}

bool OverlayImages::areCurrent() const
{
    return m_prefix == QZRScreenConfig::getInstance()->imgPrefix();
}

OverlayImages::OverlayImages(const QString& prefix, bool bHighResolution)
    : m_prefix(prefix)
    , m_bHighResolution(bHighResolution)
{
    // A null pixmap comes from a path that does not exist; nothing is logged by Qt.
    const auto load = [&](const QString& name) {
        return QPixmap(prefix + name + QStringLiteral(".png"));
    };
    qDebug() << "xxx preFix:" << prefix;
    for (const bool small : {false, true}) {
        const std::size_t i = small ? 1 : 0;
        const QString size = small ? QStringLiteral("small") : QString();
        m_mute[i] = load(QStringLiteral("videoctrlmute") + size);
        m_more[i] = load(QStringLiteral("more2") + size);
        m_hand[i] = load(QStringLiteral("videoctrlhand") + size);
        qDebug() << (small ? "s_imgMoreSmall Size:" : "imgMore Size:") << m_more[i].size();
    }
    for (std::size_t i = 0; i < m_open.size(); ++i)
        m_open[i] = load(QStringLiteral("videoctrlnomute%1").arg(i + 1));
    m_spinner = load(QStringLiteral("myLoadingsmall"));
}

const QPixmap& OverlayImages::audio(int level, bool bSmall) const
{
    if (level <= 0)
        return m_mute[bSmall ? 1 : 0];
    return m_open[static_cast<std::size_t>(std::min(level, zr::kVolumeLevels) - 1)];
}

zr::OverlayImageSizes OverlayImages::sizes(bool bSmall) const
{
    return {audio(0, bSmall).size(), more(bSmall).size(), hand(bSmall).size(), m_spinner.size()};
}
