// A picture with axes, as a PNG or SVG file.
#pragma once

#include "plot/cairo.h"

#include <memory>
#include <string>

namespace tool {

class CommandLine;

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
inline constexpr Colour kGrey{0.62, 0.65, 0.69};

struct Axis {
    std::string label;
    double low;
    double high;
    double step; // between ticks; 0: the caller draws its own
    int decimals = 0;
};

// Where a text stands against its place.
enum class Anchor { left, middle, right };

class Picture {
public:
    // Declares --plot. Throws WrongUsage, when it is read, for a name that ends neither in .png nor in .svg.
    static void addOption(CommandLine& line, std::string& path);

    // width and height of the plot area, in pixels of the SVG; a PNG has twice as many.
    Picture(std::string path, double width, double height, const std::string& title,
            const std::string& subtitle, Axis x, Axis y);

    cairo_t* context() const { return m_context.get(); }
    double x(double value) const;
    double y(double value) const;
    double left() const;
    double right() const;
    double top() const;
    double bottom() const;

    void colour(const Colour& colour) const;
    void text(double atX, double atY, const std::string& text, Anchor anchor = Anchor::left, double size = 12,
              bool bold = false) const;
    double textWidth(const std::string& text, double size = 12) const;

    // From here on nothing is drawn outside the plot area, and back.
    void clip() const;
    void unclip() const;

    // Writes the file. Throws Failure; a file that cannot be written whole is removed.
    void save();

private:
    void drawAxes(const std::string& title, const std::string& subtitle) const;

    std::string m_path;
    double m_width, m_height;
    Axis m_x, m_y;
    std::string m_bytes; // of an SVG, as they come
    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> m_surface;
    std::unique_ptr<cairo_t, decltype(&cairo_destroy)> m_context;
};

} // namespace tool
