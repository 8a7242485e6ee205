#include "zrscreenmod_c.h"

#include "hostmemory.h"
#include "packedpicture.h"

#include <optional>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMaxOrder = 1000000;

/// @return nothing for a text that is too long or cannot be read
std::optional<std::string> readText(const char* text)
{
    if (!text)
        return std::string();
    const std::ptrdiff_t length = platform::readableStringLength(text);
    if (length < 0)
        return std::nullopt;
    return std::string(text, static_cast<std::size_t>(length));
}

std::optional<std::map<int, std::string>> readOrder(const int* positions,
                                                    const char* const* userIds, std::size_t count)
{
    std::map<int, std::string> order;
    if (count == 0)
        return order;
    if (count > kMaxOrder || !platform::isReadable(positions, count * sizeof *positions)
        || !platform::isReadable(userIds, count * sizeof *userIds))
        return std::nullopt;
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<std::string> userId = readText(userIds[i]);
        if (!userId)
            return std::nullopt;
        order.emplace(positions[i], *userId);
    }
    return order;
}

/// No exception leaves the library. @return what `body` does, or 0
template<typename Body>
int guarded(Body body) noexcept
{
    try {
        return body();
    } catch (...) { // of memory: the module has guards of its own
        return 0;
    }
}

/// Calls `play` with the picture in one block.
template<typename Play>
int playPlanes(const ZRPlanes* picture, Play play) noexcept
{
    return guarded([&] {
        if (!platform::isReadable(picture, sizeof *picture))
            return 0;
        const ZRPlanes planes = *picture;
        const zrc::PackedPicture packed(planes);
        if (!packed.data())
            return 0;
        VantrelRTCVideoFrameQT frame{};
        frame.pData = packed.data();
        frame.width = planes.width;
        frame.height = planes.height;
        return play(&frame);
    });
}

} // namespace

int ZR_CALL ZRScreenC_GetVersion()
{
    return ZRSCREENMOD_VERSION;
}

int ZR_CALL ZRScreenC_ChangeLayout(void* hScreen, enum eLayoutType eType, const int* positions,
                                   const char* const* userIds, size_t count)
{
    return guarded([&] {
        const auto order = readOrder(positions, userIds, count);
        return order ? ZRScreen_ChangeLayout(hScreen, eType, *order) : 0;
    });
}

int ZR_CALL ZRScreenC_SetCurrentSpeakingPerson(void* hScreen, const char* userId)
{
    return guarded([&] {
        const auto id = readText(userId);
        return id ? ZRScreen_SetCurrentSpeakingPerson(hScreen, *id) : 0;
    });
}

int ZR_CALL ZRScreenC_SetShareSponsor(void* hScreen, const char* userId)
{
    return guarded([&] {
        const auto id = readText(userId);
        return id ? ZRScreen_SetShareSponsor(hScreen, *id) : 0;
    });
}

int ZR_CALL ZRScreenC_SetWatermark(bool bEnabled, int cloundType, const char* name,
                                   const char* phone, const char* email)
{
    return guarded([&] {
        const auto nameText = readText(name);
        const auto phoneText = readText(phone);
        const auto emailText = readText(email);
        if (!nameText || !phoneText || !emailText)
            return 0;
        ZRScreenWtmark_SetInfo({bEnabled, cloundType, *nameText, *phoneText, *emailText});
        return 1;
    });
}

int ZR_CALL ZRScreenC_PlayPlanes(void* hScreen, void* pPlay, const ZRPlanes* picture)
{
    return playPlanes(picture, [&](VantrelRTCVideoFrameQT* frame) {
        return ZRScreen_PlayFrame(hScreen, pPlay, frame);
    });
}

int ZR_CALL ZRScreenC_PlayExtPlanes(void* hExt, const ZRPlanes* picture)
{
    return playPlanes(
        picture, [&](VantrelRTCVideoFrameQT* frame) { return ZRScreenExt_PlayFrame(hExt, frame); });
}
