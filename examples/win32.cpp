// A meeting in a window of Windows'. The program's message loop drives the library.
#include <zrscreenmod.h>

#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

namespace {

struct Participant
{
    void* play = nullptr;
    std::atomic<bool> isOpen{false}; ///< the stream
};

void* g_screen = nullptr;

/// Called on the thread that loaded the library, from inside its event handling.
int onMessage(unsigned long message, unsigned long long, long long hostValue)
{
    if (message != ZRMSG_VIDEO_SHOWN && message != ZRMSG_VIDEO_HIDDEN)
        return 0;
    auto* const person = reinterpret_cast<Participant*>(hostValue);
    person->isOpen = message == ZRMSG_VIDEO_SHOWN; // a client opens or closes the stream here
    ZRScreen_Preview(g_screen, person->play, person->isOpen);
    return 0;
}

/// What a decoder does: any thread, any size, any rate. The picture is copied at once.
void decode(const Participant& person, const std::atomic<bool>& isRunning)
{
    constexpr uint32_t width = 640;
    constexpr uint32_t height = 360;
    constexpr size_t luma = size_t{width} * height;
    std::vector<uint8_t> i420(luma * 3 / 2);
    for (uint32_t row = 0; isRunning; row = (row + 4) % (height - 40)) {
        std::memset(i420.data(), 188, luma);                                     // cyan
        std::memset(i420.data() + size_t{row} * width, 235, size_t{40} * width); // a brighter bar
        std::memset(i420.data() + luma, 154, luma / 4);
        std::memset(i420.data() + luma * 5 / 4, 16, luma / 4);
        VantrelRTCVideoFrameQT frame = {{}, i420.data(), 0, width, height};
        if (person.isOpen)
            ZRScreen_PlayFrame(g_screen, person.play, &frame);
        std::this_thread::sleep_for(std::chrono::milliseconds(40));
    }
}

LRESULT CALLBACK onEvent(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_SIZE:
        // A minimised window has no size: the arrangement stays for when it comes back.
        if (g_screen && wParam != SIZE_MINIMIZED) {
            tagRECT area = {0, 0, LOWORD(lParam), HIWORD(lParam)};
            ZRScreen_MoveWindow(g_screen, &area, 0);
        }
        return 0;
    case WM_CLOSE:
        PostQuitMessage(0); // the screen is released before its parent goes
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND openWindow(HINSTANCE instance)
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = onEvent;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = L"Meeting";
    windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    RegisterClassW(&windowClass);
    // The library's window is a child: painting the parent must not wipe it.
    return CreateWindowW(L"Meeting", L"Meeting", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                         CW_USEDEFAULT, CW_USEDEFAULT, 656, 399, nullptr, nullptr, instance,
                         nullptr);
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    SetProcessDPIAware(); // or in the manifest: sizes are physical pixels
    const HWND window = openWindow(instance);
    Participant ann;
    char id[] = "ann";
    char name[] = "Ann";
    g_screen = ZRScreen_Init(window, onMessage);
    ShowWindow(window, SW_SHOW); // its WM_SIZE places the screen
    ann.play = ZRScreen_AddPerson(g_screen, id, name, /*joinTime*/ 1, 0, &ann);
    ZRScreen_JoinMeetingFinish(g_screen, true); // everybody who was there is told: arrange them

    std::atomic<bool> isRunning{true};
    std::thread decoder([&] { decode(ann, isRunning); });
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    isRunning = false;
    decoder.join();

    ZRScreen_Release(g_screen);
    DestroyWindow(window);
    return 0;
}
