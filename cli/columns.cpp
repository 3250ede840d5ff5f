#include "cli/columns.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace cli {

size_t columnsOfOutput()
{
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    const char* const variable = std::getenv("COLUMNS");
    const std::string_view text = variable == nullptr ? "" : variable;
    size_t columns = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), columns);
    return error == std::errc() && end == text.data() + text.size() && columns > 0 ? columns : 80;
}

} // namespace cli
