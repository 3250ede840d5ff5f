#include "plot/canvas.h"

namespace tool {

double textWidth(std::string_view text, double size, bool bold)
{
    double width = 0; // in sizes of the font; those of the letters are of a wide one
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        if (byte >= 0x80 && byte < 0xC0)
            continue; // the rest of a character
        if (byte >= 0xE0)
            width += 1;
        else if (std::string_view(" .,:;'|!()[]-/fijlrtI").find(letter) != std::string_view::npos)
            width += 0.41;
        else if (std::string_view("mwMW%+=<>").find(letter) != std::string_view::npos)
            width += 0.98;
        else
            width += byte >= 'A' && byte <= 'Z' ? 0.76 : 0.64;
    }
    return width * size * (bold ? 1.15 : 1);
}

} // namespace tool
