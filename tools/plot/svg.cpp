// An SVG whose texts are texts: they can be searched, selected and edited.
#include "common/markup.h"
#include "common/text.h"
#include "plot/canvas.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

std::string number(double value)
{
    std::string text = format("%.2f", value + 0.0);
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

std::string attribute(const char* name, double value)
{
    return std::string(" ") + name + "=\"" + number(value) + "\"";
}

std::string paint(const char* name, const Colour& colour)
{
    const auto part = [](double value) { return static_cast<unsigned>(std::lround(value * 255)); };
    return format(" %s=\"#%02x%02x%02x\"", name, part(colour.red), part(colour.green), part(colour.blue)) +
           (colour.alpha < 1 ? attribute((std::string(name) + "-opacity").c_str(), colour.alpha) : "");
}

std::string strokeOf(const Pen& pen)
{
    return " fill=\"none\"" + paint("stroke", pen.colour) + attribute("stroke-width", pen.width) +
           (pen.dashed ? " stroke-dasharray=\"5 4\"" : "");
}

std::string tenth(double value)
{
    return number(std::round(value * 10) / 10);
}

class Svg : public Canvas {
public:
    explicit Svg(const Page& page, const char* prolog)
    {
        const std::string width = number(page.width);
        const std::string height = number(page.height);
        m_text = std::string(prolog) + "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + width +
                 "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height +
                 "\" role=\"img\" font-family=\"sans-serif\">\n<title>" + escaped(page.title) +
                 "</title>\n<desc>" + escaped(page.description) + "</desc>\n";
        Svg::fill({0, 0, page.width, page.height}, {1, 1, 1});
    }

    void stroke(std::span<const Point> line, const Pen& pen) override
    {
        std::string points;
        for (const Point& point : line)
            points += (points.empty() ? "" : " ") + number(point.x) + "," + number(point.y);
        m_text += "<polyline points=\"" + points + "\"" + strokeOf(pen) + " stroke-linejoin=\"round\"/>\n";
    }

    void fill(const Box& box, const Colour& colour) override
    {
        m_text += "<rect" + rectangle(box) + paint("fill", colour) + "/>\n";
    }

    // A dot is a line without length. Those of one path do not add up where they meet, so there are several.
    void discs(std::span<const Point> centres, double radius, const Colour& colour) override
    {
        const size_t paths = std::min<size_t>(centres.size(), 4);
        for (size_t path = 0; path < paths; ++path) {
            m_text += "<path d=\"";
            for (size_t i = path; i < centres.size(); i += paths)
                m_text += "M" + tenth(centres[i].x) + " " + tenth(centres[i].y) + "h0";
            m_text += "\"" + strokeOf({colour, 2 * radius}) + " stroke-linecap=\"round\"/>\n";
        }
    }

    void ring(const Point& centre, double radius, const Pen& pen) override
    {
        m_text += "<circle" + attribute("cx", centre.x) + attribute("cy", centre.y) + attribute("r", radius) +
                  strokeOf(pen) + "/>\n";
    }

    void text(const Point& place, const std::string& text, const Lettering& lettering) override
    {
        const char* const anchors[] = {"", " text-anchor=\"middle\"", " text-anchor=\"end\""};
        const std::string x = number(place.x);
        const std::string y = number(place.y);
        m_text += "<text x=\"" + x + "\" y=\"" + y + "\"" + anchors[static_cast<size_t>(lettering.anchor)] +
                  attribute("font-size", lettering.size) + (lettering.bold ? " font-weight=\"bold\"" : "") +
                  paint("fill", lettering.colour) +
                  (lettering.upwards ? " transform=\"rotate(-90 " + x + " " + y + ")\"" : "") + ">" +
                  escaped(text) + "</text>\n";
    }

    // What lies outside an SVG in an SVG is not drawn.
    void clip(const Box& box) override
    {
        m_text += "<svg" + rectangle(box) + " viewBox=\"" + number(box.left) + " " + number(box.top) + " " +
                  number(box.right - box.left) + " " + number(box.bottom - box.top) + "\">\n";
    }

    void unclip() override { m_text += "</svg>\n"; }

    std::string finish() override { return std::move(m_text) + "</svg>\n"; }

private:
    static std::string rectangle(const Box& box)
    {
        return attribute("x", box.left) + attribute("y", box.top) + attribute("width", box.right - box.left) +
               attribute("height", box.bottom - box.top);
    }

    std::string m_text;
};

} // namespace

std::unique_ptr<Canvas> svgCanvas(const Page& page)
{
    return std::make_unique<Svg>(page, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

std::unique_ptr<Canvas> inlineSvgCanvas(const Page& page)
{
    return std::make_unique<Svg>(page, "");
}

} // namespace tool
