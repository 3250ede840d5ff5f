#include "cli/suggestion.h"

#include <algorithm>
#include <cctype>

namespace cli {

namespace {

constexpr size_t kFarAway = 1000;

std::string lower(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// Damerau's, without changes inside of what was exchanged.
size_t distance(const std::string& a, const std::string& b)
{
    std::vector<std::vector<size_t>> table(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); ++i)
        for (size_t k = 0; k <= b.size(); ++k) {
            if (i == 0 || k == 0) {
                table[i][k] = i + k;
                continue;
            }
            table[i][k] = std::min({table[i - 1][k] + 1, table[i][k - 1] + 1,
                                    table[i - 1][k - 1] + (a[i - 1] == b[k - 1] ? 0 : 1)});
            if (i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1])
                table[i][k] = std::min(table[i][k], table[i - 2][k - 2] + 1);
        }
    return table[a.size()][b.size()];
}

size_t farness(const std::string& word, const std::string& known)
{
    if (known.starts_with(word))
        return 0;
    const size_t longer = std::max(word.size(), known.size());
    // Text of any length may stand there, words are short.
    if (const size_t wrong = longer < 100 ? distance(word, known) : longer; 3 * wrong <= longer)
        return wrong;
    return word.starts_with(known) && 2 * known.size() >= word.size() ? longer : kFarAway;
}

} // namespace

std::string didYouMean(const std::string& word, const std::vector<std::string>& known)
{
    // It is one of them: something else about it is wrong.
    if (std::ranges::find(known, word) != known.end())
        return "";
    // Of a number every other one would be near, of a letter every word that begins with it.
    if (std::ranges::count_if(word, [](unsigned char c) { return std::isalpha(c); }) < 2)
        return "";
    size_t least = kFarAway;
    std::vector<std::string> near;
    for (const std::string& candidate : known) {
        // A file's folder can be left out.
        const size_t slash = word.find('/') == std::string::npos ? candidate.rfind('/') + 1 : 0;
        const size_t far = farness(lower(word), lower(candidate.substr(slash)));
        if (far < least)
            near.clear();
        least = std::min(least, far);
        if (far == least && far < kFarAway)
            near.push_back(candidate);
    }
    if (near.empty() || near.size() > 3)
        return "";
    std::string text = "did you mean ";
    for (size_t i = 0; i < near.size(); ++i)
        text += (i == 0 ? "'" : " or '") + near[i] + "'";
    return text + "?";
}

} // namespace cli
