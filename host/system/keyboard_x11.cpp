#include "host_error.h"
#include "host_keyboard.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace zrhost {

namespace {

class Keyboard
{
public:
    Keyboard()
        : m_display(XOpenDisplay(nullptr))
    {
        if (!m_display)
            throw HostError("cannot open the display for typing");
    }
    ~Keyboard()
    {
        XSync(m_display, False);
        XCloseDisplay(m_display);
    }
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    /// @param modifier held meanwhile; without one the shift key, where the symbol needs it
    /// @return false when no key has this symbol
    bool press(KeySym symbol, KeySym modifier = NoSymbol)
    {
        const KeyCode code = XKeysymToKeycode(m_display, symbol);
        if (code == 0)
            return false;
        if (modifier == NoSymbol && XkbKeycodeToKeysym(m_display, code, 0, 0) != symbol)
            modifier = XK_Shift_L;
        const KeyCode held =
            modifier == NoSymbol ? KeyCode{0} : XKeysymToKeycode(m_display, modifier);
        if (held != 0)
            XTestFakeKeyEvent(m_display, held, True, CurrentTime);
        XTestFakeKeyEvent(m_display, code, True, CurrentTime);
        XTestFakeKeyEvent(m_display, code, False, CurrentTime);
        if (held != 0)
            XTestFakeKeyEvent(m_display, held, False, CurrentTime);
        return true;
    }

private:
    Display* m_display;
};

} // namespace

void typeText(const std::string& utf8)
{
    Keyboard keyboard;
    for (const char character : utf8) {
        // The symbols of ASCII are its codes.
        const auto symbol = static_cast<unsigned char>(character);
        if (symbol < ' ' || symbol > '~' || !keyboard.press(symbol))
            throw HostError("there are no keys for '" + utf8 + "'");
    }
}

void pressKey(Key key)
{
    constexpr KeySym kSymbols[] = {XK_Tab, XK_Return, XK_Escape, XK_BackSpace};
    Keyboard().press(kSymbols[static_cast<int>(key)]);
}

void pressWithControl(char letter)
{
    Keyboard().press(static_cast<unsigned char>(letter), XK_Control_L);
}

} // namespace zrhost
