// The exports: bytes become calls of all of them, from one thread and from four, with arguments
// that are wrong in every way that the module can tell, between turns of the event loop, a user's
// mouse and keyboard, and messages from inside of which the host goes on.
#include "hostilehost.h"

#include <QApplication>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling);
    static auto* const application = new QApplication(*argc, *argv);
    static_cast<void>(application);
    std::atexit(HostileHost::printCalls);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Script script(data, size);
    HostileHost host(script);
    while (!script.isAtEnd())
        host.act();
    return 0;
}
