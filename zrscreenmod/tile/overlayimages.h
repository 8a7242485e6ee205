// The images that all overlays share.
#pragma once

#include "overlaylayout.h"
#include "volumelevel.h"

#include <QPixmap>

#include <array>
#include <memory>

/// Loaded once for all overlays that are alive, with the prefix of the screen's kind; gone with the
/// last of them, before the application object. A missing image stays null. GUI thread.
class OverlayImages
{
public:
    static std::shared_ptr<const OverlayImages> shared();
    /// @param prefix see QZRScreenConfig::getImgPrefix
    OverlayImages(const QString& prefix, bool bHighResolution);

    /// Whether they are still those of the primary screen.
    bool areCurrent() const;
    /// Sizes that go with the images are scaled accordingly.
    bool isHighResolution() const { return m_bHighResolution; }

    /// @param level see zr::volumeLevel; 0 for a muted microphone
    const QPixmap& audio(int level, bool bSmall) const;
    const QPixmap& more(bool bSmall) const { return m_more[bSmall ? 1 : 0]; }
    const QPixmap& hand(bool bSmall) const { return m_hand[bSmall ? 1 : 0]; }
    const QPixmap& spinner() const { return m_spinner; }
    zr::OverlayImageSizes sizes(bool bSmall) const;

private:
    const QString m_prefix;
    const bool m_bHighResolution;
    // Large and small.
    std::array<QPixmap, 2> m_mute;
    std::array<QPixmap, 2> m_more;
    std::array<QPixmap, 2> m_hand;
    /// By level; there is one size. A microphone that is open always shows a level, so the image
    /// without one is not loaded, and neither is the avatar, which is drawn.
    std::array<QPixmap, zr::kVolumeLevels> m_open;
    QPixmap m_spinner;
};
