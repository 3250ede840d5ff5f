#include "cli/columns.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>

namespace cli {

std::optional<size_t> columnsOf(int fd)
{
    winsize size{};
    if (ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    const char* const variable = std::getenv("COLUMNS");
    const std::string_view text = variable == nullptr ? "" : variable;
    size_t columns = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), columns);
    if (error != std::errc() || end != text.data() + text.size() || columns == 0)
        return std::nullopt;
    return columns;
}

} // namespace cli
