// The library that draws the screen, loaded when there is one to draw: every other command starts sooner.
#pragma once

#include "common/loaded.h"

#define NCURSES_WIDECHAR 1
#define NCURSES_NOMACROS 1
#include <ncurses.h>

namespace tool {

inline constexpr LoadedLibrary kCurses{"libncursesw.so.6", "cannot draw on the terminal",
                                       "install libncursesw6, or have lines by 'vx63 live ... | cat'"};

// Its functions. What is not here cannot be called: nothing is linked with the library.
struct Curses {
    decltype(&::cbreak) cbreak = Loaded(kCurses, "cbreak");
    decltype(&::clearok) clearok = Loaded(kCurses, "clearok");
    decltype(&::curs_set) curs_set = Loaded(kCurses, "curs_set");
    void** cur_term = Loaded(kCurses, "cur_term");
    int (*del_curterm)(void*) = Loaded(kCurses, "del_curterm");
    decltype(&::delscreen) delscreen = Loaded(kCurses, "delscreen");
    decltype(&::endwin) endwin = Loaded(kCurses, "endwin");
    decltype(&::getmaxx) getmaxx = Loaded(kCurses, "getmaxx");
    decltype(&::getmaxy) getmaxy = Loaded(kCurses, "getmaxy");
    decltype(&::has_colors) has_colors = Loaded(kCurses, "has_colors");
    decltype(&::init_pair) init_pair = Loaded(kCurses, "init_pair");
    decltype(&::keypad) keypad = Loaded(kCurses, "keypad");
    decltype(&::newterm) newterm = Loaded(kCurses, "newterm");
    decltype(&::nodelay) nodelay = Loaded(kCurses, "nodelay");
    decltype(&::noecho) noecho = Loaded(kCurses, "noecho");
    decltype(&::resizeterm) resizeterm = Loaded(kCurses, "resizeterm");
    decltype(&::set_escdelay) set_escdelay = Loaded(kCurses, "set_escdelay");
    int (*setupterm)(const char*, int, int*) = Loaded(kCurses, "setupterm");
    decltype(&::start_color) start_color = Loaded(kCurses, "start_color");
    decltype(&::use_default_colors) use_default_colors = Loaded(kCurses, "use_default_colors");
    decltype(&::waddnwstr) waddnwstr = Loaded(kCurses, "waddnwstr");
    decltype(&::wattr_set) wattr_set = Loaded(kCurses, "wattr_set");
    decltype(&::wclrtoeol) wclrtoeol = Loaded(kCurses, "wclrtoeol");
    decltype(&::wgetch) wgetch = Loaded(kCurses, "wgetch");
    decltype(&::wmove) wmove = Loaded(kCurses, "wmove");
    decltype(&::wrefresh) wrefresh = Loaded(kCurses, "wrefresh");
    WINDOW** stdscr = Loaded(kCurses, "stdscr");
};

// Throws Failure when the library is not there.
const Curses& curses();

} // namespace tool
