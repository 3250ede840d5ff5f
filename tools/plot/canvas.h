// What a picture is drawn on: an SVG of our own, or a PNG or PDF by cairo.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace tool {

struct Colour {
    double red, green, blue;
    double alpha = 1;
};

// On a light background; told apart by people who do not see all colours.
inline constexpr Colour kInk{0.13, 0.15, 0.18};
inline constexpr Colour kGrid{0.86, 0.88, 0.90};
inline constexpr Colour kBlue{0.10, 0.38, 0.72};
inline constexpr Colour kOrange{0.84, 0.37, 0.00};
inline constexpr Colour kGreen{0.10, 0.50, 0.36};
inline constexpr Colour kYellow{0.80, 0.58, 0.02};
inline constexpr Colour kViolet{0.42, 0.20, 0.62};
inline constexpr Colour kGrey{0.62, 0.65, 0.69};

constexpr Colour faint(Colour colour, double alpha)
{
    colour.alpha = alpha;
    return colour;
}

// Pixels from the upper left corner; a PNG has two for each of them, both ways.
struct Point {
    double x, y;
};
struct Box {
    double left, top, right, bottom;
};

constexpr bool overlap(const Box& a, const Box& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

struct Pen {
    Colour colour;
    double width = 1;
    bool dashed = false;
};

// Where a text stands against its place.
enum class Anchor { left, middle, right };

struct Lettering {
    Anchor anchor = Anchor::left;
    double size = 12;
    bool bold = false;
    bool upwards = false; // read from below
    Colour colour = kInk;
};

struct Page {
    double width, height;
    std::string title, description; // for who looks for the picture, or cannot see it
};

class Canvas {
public:
    virtual ~Canvas() = default;

    virtual void stroke(std::span<const Point> line, const Pen& pen) = 0;
    virtual void fill(const Box& box, const Colour& colour) = 0;
    virtual void discs(std::span<const Point> centres, double radius, const Colour& colour) = 0;
    virtual void ring(const Point& centre, double radius, const Pen& pen) = 0;
    virtual void text(const Point& place, const std::string& text, const Lettering& lettering) = 0;

    // From here on nothing is drawn outside the box, and back.
    virtual void clip(const Box& box) = 0;
    virtual void unclip() = 0;

    // The bytes of the file; nothing is drawn after. Throws Failure.
    virtual std::string finish() = 0;
};

using CanvasMaker = std::unique_ptr<Canvas> (*)(const Page&);

std::unique_ptr<Canvas> svgCanvas(const Page& page);
std::unique_ptr<Canvas> inlineSvgCanvas(const Page& page); // an element of a page in HTML, not a file
// Throw Failure where cairo is not there.
std::unique_ptr<Canvas> pngCanvas(const Page& page);
std::unique_ptr<Canvas> pdfCanvas(const Page& page);

// What a text takes at most in any usual sans-serif font: an estimate, the same for all files and machines.
double textWidth(std::string_view text, double size, bool bold = false);

} // namespace tool
