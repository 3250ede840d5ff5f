#include "live/screen.h"

#include "common/failure.h"
#include "common/terminal.h"
#include "live/curses.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr short kGood = 1, kDoubtful = 2, kBad = 3;

struct Style {
    attr_t attributes;
    short pair;
};

Style styleOf(Look look, bool colours)
{
    const auto pair = [colours](short wanted) { return static_cast<short>(colours ? wanted : 0); };
    switch (look) {
    case Look::bold:
        return {WA_BOLD, 0};
    case Look::faint:
        return {WA_DIM, 0};
    case Look::good:
        return {WA_NORMAL, pair(kGood)};
    case Look::doubtful:
        return {WA_NORMAL, pair(kDoubtful)};
    case Look::bad:
        return {WA_BOLD, pair(kBad)};
    case Look::plain:
        break;
    }
    return {WA_NORMAL, 0};
}

} // namespace

bool Screen::isPossible()
{
    if (isatty(STDIN_FILENO) != 1 || isatty(STDOUT_FILENO) != 1)
        return false;
    const char* const name = getenv("TERM");
    if (name == nullptr || std::string_view(name).empty() || std::string_view(name) == "dumb")
        return false;
    std::setlocale(LC_CTYPE, ""); // for the characters alone: numbers keep their point
    int found = 0;
    const Curses& call = curses();
    if (call.setupterm(name, STDOUT_FILENO, &found) != OK)
        return false;
    call.del_curterm(*call.cur_term); // it was only to be seen whether there is one
    return true;
}

Screen::Screen()
{
    const Curses& call = curses();
    m_terminal = call.newterm(nullptr, stdout, stdin);
    if (m_terminal == nullptr)
        throw Failure(kExitInternal, "cannot draw on the terminal", "it does not tell how",
                      "try another TERM");
    m_colours = showsColours(STDOUT_FILENO) && call.has_colors();
    if (m_colours) {
        call.start_color();
        call.use_default_colors();
        call.init_pair(kGood, COLOR_GREEN, -1);
        call.init_pair(kDoubtful, COLOR_YELLOW, -1);
        call.init_pair(kBad, COLOR_RED, -1);
    }
    call.cbreak();
    call.noecho();
    call.set_escdelay(25);
    call.keypad(*call.stdscr, true);
    call.nodelay(*call.stdscr, true);
    call.curs_set(0);
    call.wrefresh(*call.stdscr);
}

Screen::~Screen()
{
    const Curses& call = curses();
    // Where a terminal has no other screen to go back to, the shell goes on in the last line.
    call.wmove(*call.stdscr, call.getmaxy(*call.stdscr) - 1, 0);
    call.wclrtoeol(*call.stdscr);
    call.wrefresh(*call.stdscr);
    call.endwin();
    call.delscreen(m_terminal);
}

// The library follows a resize when it reads keys, and COLUMNS and LINES before that: the terminal knows
// best.
void Screen::fit()
{
    winsize size{};
    const Curses& call = curses();
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 && size.ws_col > 0 &&
        (size.ws_row != call.getmaxy(*call.stdscr) || size.ws_col != call.getmaxx(*call.stdscr)))
        call.resizeterm(size.ws_row, size.ws_col);
}

size_t Screen::columns()
{
    fit();
    return static_cast<size_t>(curses().getmaxx(*curses().stdscr));
}

size_t Screen::rows()
{
    fit();
    return static_cast<size_t>(curses().getmaxy(*curses().stdscr));
}

void Screen::show(const Grid& grid)
{
    const Curses& call = curses();
    WINDOW* const window = *call.stdscr;
    for (size_t row = 0; row < grid.rows(); ++row)
        for (size_t column = 0; column < grid.columns(); ++column) {
            const GridCell& cell = grid.at(column, row);
            const Style style = styleOf(cell.look, m_colours);
            const auto character = static_cast<wchar_t>(cell.character);
            call.wattr_set(window, style.attributes, style.pair, nullptr);
            call.wmove(window, static_cast<int>(row), static_cast<int>(column));
            call.waddnwstr(window, &character, 1);
        }
    call.wrefresh(window);
}

std::optional<int> Screen::key()
{
    const Curses& call = curses();
    const int key = call.wgetch(*call.stdscr);
    switch (key) {
    case ERR:
        return std::nullopt;
    case KEY_RESIZE:
        call.clearok(*call.stdscr, true); // what the terminal made of its lines is not known
        return kKeyOther;
    case KEY_UP:
    case KEY_RIGHT:
        return kKeyUp;
    case KEY_DOWN:
    case KEY_LEFT:
        return kKeyDown;
    case KEY_ENTER:
    case '\n':
    case '\r':
        return kKeyEnter;
    case 27:
        return kKeyEscape;
    case KEY_BACKSPACE:
    case 127:
    case '\b':
        return kKeyBackspace;
    default:
        return key < 256 ? key : kKeyOther;
    }
}

} // namespace tool
