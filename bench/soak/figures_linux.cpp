#include "figures.h"
#include "glwatch.h"
#include "hostprocess.h"

#include <X11/Xlib.h>
#include <X11/extensions/XRes.h>

#include <fstream>
#include <iterator>
#include <malloc.h>

namespace {

long long residentKb()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long long kb = 0;
        if (word == "VmRSS:" && status >> kb)
            return kb;
    }
    return -1;
}

long long heapKb()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long long>((info.uordblks + info.hblkhd) / 1024);
}

long long descriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

/// What all clients have in the X server, which is this program's alone.
void addServerFigures(Figures& figures)
{
    static Display* const display = XOpenDisplay(nullptr);
    REQUIRE(display != nullptr);
    long long resources = 0;
    unsigned long long pixmapBytes = 0;
    int clientCount = 0;
    XResClient* clients = nullptr;
    XResQueryClients(display, &clientCount, &clients);
    for (int i = 0; i < clientCount; ++i) {
        int typeCount = 0;
        XResType* types = nullptr;
        XResQueryClientResources(display, clients[i].resource_base, &typeCount, &types);
        for (int type = 0; type < typeCount; ++type)
            resources += types[type].count;
        XFree(types);
        unsigned long bytes = 0;
        XResQueryClientPixmapBytes(display, clients[i].resource_base, &bytes);
        pixmapBytes += bytes;
    }
    XFree(clients);
    figures.push_back({"x_clients", clientCount});
    figures.push_back({"x_resources", resources});
    figures.push_back({"x_pixmaps_kb", static_cast<long long>(pixmapBytes / 1024)});
}

} // namespace

Figures systemFigures()
{
    const long long untrimmedKb = residentKb();
    malloc_trim(0); // what is free the C library may keep: how much varies with everything
    Figures figures{{"resident_kb", residentKb()},
                    {"untrimmed_kb", untrimmedKb, false},
                    {"heap_kb", heapKb()},
                    {"threads", native::threadCount()},
                    {"descriptors", descriptors()}};
    addServerFigures(figures);
    for (const glwatch::Objects& objects : glwatch::objects())
        figures.push_back({objects.kind, objects.count});
    return figures;
}
