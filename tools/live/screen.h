// The terminal as a whole: shows grids, delivers keys. While it lives the terminal is in its hands.
#pragma once

#include "live/grid.h"

#include <optional>

struct screen; // of curses

namespace tool {

// Keys that are no character.
enum Key : int { kKeyUp = 0x1000, kKeyDown, kKeyEnter, kKeyEscape, kKeyBackspace, kKeyOther };

class Screen {
public:
    // Whether there is a terminal, for keys too, and it is known how to draw on it. To be called before there
    // are threads, since it sets the locale. Throws Failure when the library that draws is missing.
    static bool isPossible();

    Screen();
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // As large as the terminal is now.
    size_t columns();
    size_t rows();

    // Sends what differs from what is shown.
    void show(const Grid& grid);

    // The next byte that was typed, or a Key; nothing when there is none.
    std::optional<int> key();

private:
    void fit();

    screen* m_terminal;
    bool m_colours;
};

} // namespace tool
