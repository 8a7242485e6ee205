// Linked against the import library. Passes the standard library's types through the interface.
#include <zrscreenmod.h>

#include <cstdio>

namespace {

int g_modeMessages = 0;

int onMessage(unsigned long id, unsigned long long, long long)
{
    g_modeMessages += id == ZRMSG_SCREEN_MODE ? 1 : 0;
    return 0;
}

} // namespace

int main()
{
    void* const screen = ZRScreen_Init(nullptr, &onMessage);
    char id[] = "user1";
    char name[] = "User";
    void* const play = ZRScreen_AddPerson(screen, id, name, 1, 0, nullptr);
    const int changed = ZRScreen_ChangeLayout(screen, eLayoutGrid4, {{0, "user1"}});
    const int speaking = ZRScreen_SetCurrentSpeakingPerson(screen, "user1");
    const int mode = ZRScreen_GetCurMode(screen);
    std::printf("play %d, changed %d, speaking %d, mode %d, messages %d\n", play != nullptr,
                changed, speaking, mode, g_modeMessages);
    ZRScreen_Release(screen);
    return play && changed == 1 && speaking == 1 && mode == eLayoutGrid4 && g_modeMessages == 1 ? 0
                                                                                                : 1;
}
