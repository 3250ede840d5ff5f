// Markup: HTML, SVG, XML. Whatever text holds, it stays text in it.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace tool {

// As of printable(), without code points that XML or HTML refuse.
std::string characters(std::string_view text);

// The same as the content of an element or the value of an attribute.
std::string escaped(std::string_view text);

// Elements and escaped text.
class Markup {
public:
    Markup() = default;
    Markup(std::string_view text) : m_text(escaped(text)) {}
    Markup(const std::string& text) : Markup(std::string_view(text)) {}
    Markup(const char* text) : Markup(std::string_view(text)) {}
    static Markup raw(std::string markup); // that is markup already

    Markup& operator+=(const Markup& more);
    friend Markup operator+(Markup one, const Markup& other) { return one += other; }
    bool empty() const { return m_text.empty(); }
    const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

// Attributes with their values; one with an empty value is left out.
using Attributes = std::initializer_list<std::pair<const char*, std::string>>;

Markup element(const char* name, const Markup& content, Attributes attributes = {});
// The same on lines of its own.
Markup block(const char* name, const Markup& content, Attributes attributes = {});

} // namespace tool
