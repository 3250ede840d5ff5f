// What standard output and standard error can show: characters and colours; their width is that of
// cli/columns.h.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// Whether the character set of the locale is UTF-8.
bool isUnicode();

// Characters of UTF-8 in the text: every byte but the continuations.
size_t widthOf(std::string_view text);

// The beginning of the text that is no wider than that.
std::string_view cut(std::string_view text, size_t columns);

// The text in lines no wider than that, broken at blanks; a word that is wider is broken as well.
std::vector<std::string> wrapped(std::string_view text, size_t columns);

// ---- colours ----

enum class Tint { none, good, doubtful, bad };

// Takes "--color WHEN" out of the words of a command line, wherever it stands before "--". WHEN is auto (on a
// terminal, unless NO_COLOR is set, or TERM is not or is dumb), always or never. Throws WrongUsage.
void takeColourOption(std::vector<std::string>& words);

bool showsColours(int fd);

// The text in the colour, where the descriptor shows colours.
std::string tinted(Tint tint, const std::string& text, int fd);

} // namespace tool
