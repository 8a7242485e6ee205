// When a tile uncovers and repaints its picture.
#pragma once

#include <utility>

namespace zr {

/// Keeps a participant's first pictures back until they are theirs, and a frozen one as it is. What
/// came while none was to be painted is painted afterwards.
class TileReveal
{
public:
    enum class Step
    {
        Wait,    ///< the participant has just changed: leave the tile as it is
        Cover,   ///< no picture has come: show that it is loading
        Hold,    ///< uncover the picture, and leave it as it was last painted
        Repaint, ///< uncover the picture and repaint it
    };

    /// Another participant; endChange follows a moment later.
    /// @param bSlowStart expect that it takes a while until a picture comes
    void bind(bool bSlowStart)
    {
        if (bSlowStart)
            m_iBlankChecks = kBlankChecks;
        m_bChanging = true;
        m_bSkipped = false; // it was the former participant's
    }
    [[nodiscard]] bool isChanging() const { return m_bChanging; }
    /// @return whether a picture that was kept back is to be rendered now
    [[nodiscard]] bool endChange()
    {
        m_bChanging = false;
        return takeSkipped();
    }
    /// @return as endChange
    [[nodiscard]] bool setFrozen(bool bFrozen)
    {
        m_bFrozen = bFrozen;
        return !bFrozen && !m_bChanging && takeSkipped(); // else endChange renders it
    }
    /// @param bPicture the rendering stands for a picture @param isBlank asked only while a picture
    /// may still be missing
    template<typename IsBlank>
    [[nodiscard]] Step render(bool bPicture, IsBlank&& isBlank)
    {
        if (m_bChanging) {
            m_bSkipped = m_bSkipped || bPicture;
            return Step::Wait;
        }
        if (m_iBlankChecks > 0) {
            --m_iBlankChecks;
            if (isBlank())
                return Step::Cover;
        }
        m_bSkipped = m_bSkipped || m_bFrozen;
        return m_bFrozen ? Step::Hold : Step::Repaint;
    }

private:
    /// Renderings that ask whether a picture has come.
    static constexpr int kBlankChecks = 30;

    bool takeSkipped() { return std::exchange(m_bSkipped, false); }

    int m_iBlankChecks = kBlankChecks;
    bool m_bChanging = false;
    bool m_bFrozen = false;
    bool m_bSkipped = false; ///< a picture came while none was to be painted
};

} // namespace zr
