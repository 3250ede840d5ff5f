#include "common/markup.h"

#include "common/text.h"

namespace tool {

namespace {

// Bytes of the code point at the start of the text, if it is one of those that are no characters: U+FDD0 to
// U+FDEF, and the last two of every plane.
size_t noncharacterLength(std::string_view text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    if (byte(0) == 0xEF && byte(1) == 0xB7)
        return byte(2) >= 0x90 && byte(2) <= 0xAF ? 3 : 0;
    if (byte(0) == 0xEF && byte(1) == 0xBF)
        return byte(2) >= 0xBE ? 3 : 0;
    if (byte(0) >= 0xF0 && (byte(1) & 0x0F) == 0x0F && byte(2) == 0xBF)
        return byte(3) >= 0xBE ? 4 : 0;
    return 0;
}

} // namespace

std::string characters(std::string_view text)
{
    std::string result;
    const std::string safe = printable(text);
    for (size_t i = 0; i < safe.size();) {
        const size_t length = noncharacterLength(std::string_view(safe).substr(i));
        result += length > 0 ? "\uFFFD" : safe.substr(i, 1);
        i += std::max<size_t>(length, 1);
    }
    return result;
}

std::string escaped(std::string_view text)
{
    std::string result;
    for (const char c : characters(text)) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '"')
            result += "&quot;";
        else
            result += c;
    }
    return result;
}

Markup Markup::raw(std::string markup)
{
    Markup result;
    result.m_text = std::move(markup);
    return result;
}

Markup& Markup::operator+=(const Markup& more)
{
    m_text += more.m_text;
    return *this;
}

Markup element(const char* name, const Markup& content, Attributes attributes)
{
    std::string text = std::string("<") + name;
    for (const auto& [attribute, value] : attributes)
        if (!value.empty())
            text += std::string(" ") + attribute + "=\"" + escaped(value) + "\"";
    return Markup::raw(text + ">" + content.text() + "</" + name + ">");
}

Markup block(const char* name, const Markup& content, Attributes attributes)
{
    return Markup::raw(element(name, content, attributes).text() + "\n");
}

} // namespace tool
