// What shows the gallery's pages and turns them.
#pragma once

#include <QString>

class QDlgPageMark;
class QMyPageCtrl;
class QMyPageScroll;
class QWidget;

/// Two arrows, and a mark for each page, or a bar where the marks have no room. They are children
/// of the gallery, above its tiles, and show as long as there are pages, also over a badge: without
/// a mouse nothing would bring them up. GUI thread.
class PageControls
{
public:
    /// The gallery outlives them.
    explicit PageControls(QWidget& gallery);

    [[nodiscard]] bool isBack(const QWidget* control) const;
    [[nodiscard]] bool isForward(const QWidget* control) const;

    /// Takes the images of a size, and the place for them.
    void rescale(const QString& imagePrefix, int marginPx);
    /// Places them in the gallery, which has another size.
    void place();
    /// @param page from 0 @param pages below 2 hide the controls
    void show(int page, int pages);
    /// A tile has appeared, maybe above them: the next show() puts them on top.
    void raiseWithNextShow() { m_bRaise = true; }

private:
    void placeBar();

    QWidget& m_gallery;
    QMyPageCtrl* const m_pBack;
    QMyPageCtrl* const m_pForward;
    QDlgPageMark* const m_pMarks;
    QMyPageScroll* const m_pBar;
    int m_iMarginPx = 0; ///< between an arrow and the gallery's edge
    int m_iPage = 0;
    int m_iPages = 0;
    bool m_bRaise = false;
};
