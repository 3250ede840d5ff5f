// A picture with axes, on a canvas.
#pragma once

#include "plot/canvas.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tool {

class CommandLine;

struct Axis {
    std::string label;
    double low;
    double high;
    double step; // between ticks; 0: the caller draws its own
};

enum class Mark { square, dot, cross };

struct LegendEntry {
    std::string name;
    Colour colour;
    Mark mark = Mark::square;
};

// What a picture is of, but for what is drawn into it.
struct Caption {
    std::string title;
    std::string subtitle;      // what came out; at a comma it can go on in another line
    std::string circumstances; // where and when, in a line of its own
    std::vector<LegendEntry> legend = {};
};

// "terrestrial, input 0, 2026-11-22 14:03", in local time.
//   timeMs  Unix time, milliseconds
std::string circumstances(const std::vector<uint16_t>& systems, std::optional<unsigned> input,
                          int64_t timeMs);

// By what the name of the file ends in: .png, .svg or .pdf.
CanvasMaker canvasOf(const std::string& path);

// Throws Failure; a file that cannot be written whole is removed.
void savePicture(const std::string& path, const std::string& bytes);

class Picture {
public:
    // Declares --plot. Throws WrongUsage, when it is read, for a name that ends in none of .png, .svg, .pdf.
    static void addOption(CommandLine& line, std::string& path);

    // width and height of the plot area, in pixels.
    //   xLabels  the height of the labels below the plot area
    Picture(CanvasMaker maker, double width, double height, const Caption& caption, Axis x, Axis y,
            double xLabels = 12);

    Canvas& canvas() const { return *m_canvas; }
    const Box& area() const { return m_area; } // the plot area
    double x(double value) const;
    double y(double value) const;

    static void drawMark(Canvas& canvas, Mark mark, const Point& place, const Colour& colour, double arm);

    // The bytes of the picture; nothing is drawn after. Throws Failure.
    std::string finish() { return m_canvas->finish(); }

private:
    void drawCaption(const Caption& caption, const std::vector<std::string>& subtitle) const;
    void drawAxes(double xLabels) const;

    Box m_area;
    Axis m_x, m_y;
    std::unique_ptr<Canvas> m_canvas;
};

} // namespace tool
