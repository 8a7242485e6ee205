#include "keyboard.h"

#include "check.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

class Keys
{
public:
    Keys()
        : m_display(XOpenDisplay(nullptr))
    {
        REQUIRE(m_display != nullptr);
    }
    ~Keys()
    {
        XSync(m_display, False);
        XCloseDisplay(m_display);
    }
    Keys(const Keys&) = delete;
    Keys& operator=(const Keys&) = delete;

    void move(KeySym symbol, bool down)
    {
        const KeyCode code = XKeysymToKeycode(m_display, symbol);
        REQUIRE(code != 0);
        XTestFakeKeyEvent(m_display, code, down ? True : False, CurrentTime);
    }
    void press(KeySym symbol)
    {
        move(symbol, true);
        move(symbol, false);
    }

private:
    Display* m_display;
};

/// The symbols of letters, digits and the blank are their characters.
KeySym symbolOf(char character)
{
    return static_cast<KeySym>(static_cast<unsigned char>(character));
}

} // namespace

void keyboard::type(const std::string& text)
{
    Keys keys;
    for (const char character : text)
        keys.press(symbolOf(character));
}

void keyboard::pressTab()
{
    Keys().press(XK_Tab);
}

void keyboard::pressWithControl(char letter)
{
    Keys keys;
    keys.move(XK_Control_L, true);
    keys.press(symbolOf(letter));
    keys.move(XK_Control_L, false);
}
