// The window in which the module shows its picture.
#pragma once

#include <QWidget>

namespace zrworkbench {

/// A native window inside the workbench, or one of its own. The module's windows are its children,
/// of which Qt knows nothing here.
class ScreenView : public QWidget
{
    Q_OBJECT

public:
    explicit ScreenView(QWidget* parent = nullptr);

    /// The native window, which the window system has when this returns.
    [[nodiscard]] WId nativeWindow();
    /// In pixels of the screen, as the module counts.
    [[nodiscard]] QSize pixelSize() const;
    /// Pixels of the screen, from the picture's top left corner to the screen's.
    [[nodiscard]] QPoint onScreen(QPoint pixel) const;
    /// Scrolls there what is around the picture. @return whether the user can see that pixel
    [[nodiscard]] bool reveal(QPoint pixel);
    /// Gives the picture a size in pixels, by way of the window around it. Where the desktop has no
    /// room for that, only a part is seen.
    void resizePicture(QSize pixels);
    /// Takes the size that the window around leaves.
    void freeSize();

    QSize sizeHint() const override { return {860, 484}; }

signals:
    void resized();

protected:
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace zrworkbench
