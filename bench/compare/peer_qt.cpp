// What Qt's composition takes by itself: a GL widget a tile, each with a transparent widget over
// it, as little as possible in both. A window of widgets cannot show tiles for less.
#include "workload.h"
#include "yuvpicture.h"

#include <QApplication>
#include <QOpenGLWidget>

#include <utility>

namespace {

using compare::kWindowHeightPx;
using compare::kWindowWidthPx;

class Tile : public QOpenGLWidget
{
public:
    Tile(QWidget* window, const QRect& place, const compare::Workload& workload)
        : QOpenGLWidget(window)
        , m_workload(workload)
    {
        setUpdateBehavior(PartialUpdate); // every paint draws all pixels
        setGeometry(place);
        auto* const overlay = new QWidget(this);
        overlay->setAttribute(Qt::WA_NoSystemBackground);
        overlay->resize(place.size());
    }
    void setPicture(const zrhost::Picture& picture) { m_picture = &picture; }

protected:
    void initializeGL() override
    {
        compare::useYuvProgram();
        m_textures.create(m_workload.widthPx, m_workload.heightPx);
    }
    void paintGL() override
    {
        if (const zrhost::Picture* const picture = std::exchange(m_picture, nullptr))
            m_textures.upload(*picture);
        m_textures.draw();
    }

private:
    const compare::Workload& m_workload;
    compare::YuvTextures m_textures;
    const zrhost::Picture* m_picture = nullptr; ///< that is not uploaded yet
};

class QtPainter : public compare::Painter
{
public:
    explicit QtPainter(const compare::Workload& workload)
    {
        m_window.resize(kWindowWidthPx, kWindowHeightPx);
        for (int tile = 0; tile < workload.tiles(); ++tile) {
            const auto [left, top, width, height] = compare::cellOf(tile, workload.columns);
            const QRect place(left, top, width, height);
            m_tiles.push_back(new Tile(&m_window, place, workload));
        }
        QObject::connect(m_tiles.back(), &QOpenGLWidget::frameSwapped, [this] { ++m_swaps; });
        m_window.show();
        waitForSwap(0);
    }

    void upload(int tile, const zrhost::Picture& picture) override
    {
        m_tiles[static_cast<std::size_t>(tile)]->setPicture(picture);
    }

    void redraw() override
    {
        const int before = m_swaps;
        for (Tile* const tile : m_tiles)
            tile->update();
        waitForSwap(before);
    }

private:
    void waitForSwap(int before) const
    {
        while (m_swaps == before)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QWidget m_window;
    std::vector<Tile*> m_tiles; // children of the window
    int m_swaps = 0;
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const compare::Workload workload = compare::workloadOf(argc, argv);
    QtPainter painter(workload);
    compare::runPeer(workload, painter);
}
