/* A host in C, linked against both libraries. */
#include <zrscreenmod_c.h>

#include <stdio.h>

static int g_modes = 0;

static int onMessage(unsigned long message, unsigned long long wParam, long long lParam)
{
    (void)lParam;
    if (message == ZRMSG_SCREEN_MODE && wParam == eLayoutGrid4)
        ++g_modes;
    return 0;
}

static int g_failures = 0;

static void expect(int value, int expected, const char* what)
{
    if (value == expected)
        return;
    printf("%s: %d, not %d\n", what, value, expected);
    ++g_failures;
}

int main(void)
{
    static uint8_t picture[640 * 360 * 2];
    char id[] = "ann";
    char name[] = "Ann";
    const int positions[] = {2, 1};
    const char* const ids[] = {"bob", "ann"};
    const char* const stray[] = {"bob", (const char*)8};
    ZRPlanes nv12 = {picture, picture + 640 * 360, NULL, 640, 640, 0, 600, 360};
    void* const screen = ZRScreen_Init(NULL, onMessage);
    void* const play = ZRScreen_AddPerson(screen, id, name, 1, 0, NULL);

    expect(ZRScreenC_GetVersion(), ZRSCREENMOD_VERSION, "version");
    expect(ZRScreen_JoinMeetingFinish(screen, true), 1, "join");
    expect(ZRScreenC_ChangeLayout(screen, eLayoutGrid4, positions, ids, 2), 1, "layout");
    expect(ZRScreenC_ChangeLayout(screen, eLayoutGrid9, positions, stray, 2), 0, "stray id");
    expect(ZRScreenC_ChangeLayout(screen, eLayoutGrid9, NULL, ids, 2), 0, "no positions");
    expect(ZRScreen_GetCurMode(screen), eLayoutGrid4, "mode");
    expect(g_modes, 1, "messages of the mode");
    expect(ZRScreenC_SetCurrentSpeakingPerson(screen, "ann"), 1, "who speaks");
    expect(ZRScreenC_SetShareSponsor(screen, NULL), 1, "no sponsor");
    expect(ZRScreenC_SetShareSponsor(screen, stray[1]), 0, "stray sponsor");
    expect(ZRScreenC_SetWatermark(true, 1, "Ann", "13812345678", ""), 1, "watermark");
    expect(ZRScreenC_PlayPlanes(screen, play, &nv12), 1, "NV12");
    nv12.u = NULL;
    expect(ZRScreenC_PlayPlanes(screen, play, &nv12), 0, "no plane");
    expect(ZRScreenC_PlayPlanes(screen, play, NULL), 0, "no picture");
    ZRScreen_Release(screen);
    return g_failures;
}
