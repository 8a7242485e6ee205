// What a program on SDL2 does: a renderer on OpenGL, a texture of planes for each tile.
#include "workload.h"

#include <SDL.h>

#include <cstdlib>

namespace {

using compare::kWindowHeightPx;
using compare::kWindowWidthPx;

template<typename Pointer>
Pointer require(Pointer made)
{
    if (!made) {
        SDL_Log("%s", SDL_GetError());
        std::exit(EXIT_FAILURE);
    }
    return made;
}

class SdlPainter : public compare::Painter
{
public:
    explicit SdlPainter(const compare::Workload& workload)
        : m_workload(workload)
    {
        SDL_SetHint(SDL_HINT_RENDER_DRIVER, "opengl");
        SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "linear");
        SDL_SetYUVConversionMode(SDL_YUV_CONVERSION_BT709);
        SDL_Init(SDL_INIT_VIDEO);
        m_window = require(SDL_CreateWindow("tiles", 0, 0, kWindowWidthPx, kWindowHeightPx,
                                            SDL_WINDOW_BORDERLESS));
        m_renderer = require(SDL_CreateRenderer(m_window, -1, SDL_RENDERER_ACCELERATED));
        for (int tile = 0; tile < workload.tiles(); ++tile)
            m_textures.push_back(require(SDL_CreateTexture(m_renderer, SDL_PIXELFORMAT_IYUV,
                                                           SDL_TEXTUREACCESS_STREAMING,
                                                           workload.widthPx, workload.heightPx)));
    }
    ~SdlPainter() override { SDL_Quit(); }
    SdlPainter(const SdlPainter&) = delete;
    SdlPainter& operator=(const SdlPainter&) = delete;

    void upload(int tile, const zrhost::Picture& picture) override
    {
        const int chromaWidth = (picture.width + 1) / 2;
        const int chromaHeight = (picture.height + 1) / 2;
        const std::uint8_t* const y = picture.data.data();
        const std::uint8_t* const u =
            y + static_cast<std::ptrdiff_t>(picture.width) * picture.height;
        const std::uint8_t* const v = u + static_cast<std::ptrdiff_t>(chromaWidth) * chromaHeight;
        SDL_UpdateYUVTexture(m_textures[static_cast<std::size_t>(tile)], nullptr, y, picture.width,
                             u, chromaWidth, v, chromaWidth);
    }

    void redraw() override
    {
        SDL_PumpEvents();
        for (int tile = 0; tile < m_workload.tiles(); ++tile) {
            const auto [left, top, width, height] = compare::cellOf(tile, m_workload.columns);
            const SDL_Rect place{left, top, width, height};
            SDL_RenderCopy(m_renderer, m_textures[static_cast<std::size_t>(tile)], nullptr, &place);
        }
        SDL_RenderPresent(m_renderer);
    }

private:
    compare::Workload m_workload;
    SDL_Window* m_window = nullptr;
    SDL_Renderer* m_renderer = nullptr;
    std::vector<SDL_Texture*> m_textures;
};

} // namespace

int main(int argc, char** argv)
{
    const compare::Workload workload = compare::workloadOf(argc, argv);
    SdlPainter painter(workload);
    compare::runPeer(workload, painter);
}
