// The library that draws the screen, loaded when there is one to draw: every other command starts sooner.
#pragma once

#define NCURSES_WIDECHAR 1
#define NCURSES_NOMACROS 1
#include <ncurses.h>

namespace tool {

class CursesCall {
public:
    explicit CursesCall(const char* name) : m_name(name) {}
    template <class Pointer>
    operator Pointer*() const
    {
        return reinterpret_cast<Pointer*>(address());
    }

private:
    void* address() const;

    const char* m_name;
};

// Its functions. What is not here cannot be called: nothing is linked with the library.
struct Curses {
    decltype(&::cbreak) cbreak = CursesCall("cbreak");
    decltype(&::clearok) clearok = CursesCall("clearok");
    decltype(&::curs_set) curs_set = CursesCall("curs_set");
    decltype(&::delscreen) delscreen = CursesCall("delscreen");
    decltype(&::endwin) endwin = CursesCall("endwin");
    decltype(&::getmaxx) getmaxx = CursesCall("getmaxx");
    decltype(&::getmaxy) getmaxy = CursesCall("getmaxy");
    decltype(&::has_colors) has_colors = CursesCall("has_colors");
    decltype(&::init_pair) init_pair = CursesCall("init_pair");
    decltype(&::keypad) keypad = CursesCall("keypad");
    decltype(&::newterm) newterm = CursesCall("newterm");
    decltype(&::nodelay) nodelay = CursesCall("nodelay");
    decltype(&::noecho) noecho = CursesCall("noecho");
    decltype(&::resizeterm) resizeterm = CursesCall("resizeterm");
    decltype(&::set_escdelay) set_escdelay = CursesCall("set_escdelay");
    int (*setupterm)(const char*, int, int*) = CursesCall("setupterm");
    decltype(&::start_color) start_color = CursesCall("start_color");
    decltype(&::use_default_colors) use_default_colors = CursesCall("use_default_colors");
    decltype(&::waddnwstr) waddnwstr = CursesCall("waddnwstr");
    decltype(&::wattr_set) wattr_set = CursesCall("wattr_set");
    decltype(&::wgetch) wgetch = CursesCall("wgetch");
    decltype(&::wmove) wmove = CursesCall("wmove");
    decltype(&::wrefresh) wrefresh = CursesCall("wrefresh");
    WINDOW** stdscr = CursesCall("stdscr");
};

// Throws Failure when the library is not there.
const Curses& curses();

} // namespace tool
