// Elements of SVG 1.1, one a line.
#include "pictures/svg.h"

#include <cmath>
#include <cstring>
#include <fstream>
#include <iostream>

#include "common/files.h"
#include "common/text.h"

namespace {

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (static_cast<unsigned char>(c) >= ' ')  // others are not allowed in XML
            result += c;
    }
    return result;
}

}  // namespace

double roundStepBelow(double value) {
    const double unit = std::pow(10.0, std::floor(std::log10(value)));
    return 5.0 * unit <= value ? 5.0 * unit : 2.0 * unit <= value ? 2.0 * unit : unit;
}

// Of DejaVu Sans, the first and widest of the typefaces that the picture asks for, rounded up by kind of
// letter.
double widthOf(const std::string& text, double size) {
    double width = 0.0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0) == 0x80)
            continue;                                                // continues a letter
        width += byte >= 0xE3                                ? 1.0   // ideographs and what follows them
                 : byte >= 0x80                              ? 0.84  // − × µ °
                 : std::strchr("MWmw@%", c)                  ? 0.98
                 : std::strchr(" .,:;'|!/\\()[]-iljftrI", c) ? 0.42
                 : c >= 'A' && c <= 'Z'                      ? 0.74
                                                             : 0.64;
    }
    return size * width;
}

Svg::Svg(double width, double height) {
    add(
        format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%.0f\" height=\"%.0f\" "
               "viewBox=\"0 0 %.0f %.0f\" font-family=\"DejaVu Sans, Verdana, Arial, sans-serif\" "
               "font-size=\"%.0f\" fill=\"%s\">",
               width, height, width, height, kTextSize, kLine));
    add("<rect width=\"100%\" height=\"100%\" fill=\"white\"/>");
}

void Svg::line(double x1, double y1, double x2, double y2, const char* colour, double width,
               const char* dashes) {
    add(
        format("<path d=\"M%.1f %.1fL%.1f %.1f\" stroke=\"%s\" stroke-width=\"%.1f\" "
               "stroke-dasharray=\"%s\"/>",
               x1, y1, x2, y2, colour, width, dashes));
}

void Svg::path(const std::string& data, const char* colour, double width) {
    if (!data.empty())
        add(format("<path d=\"%s\" stroke=\"%s\" stroke-width=\"%.1f\"/>", data.c_str(), colour, width));
}

void Svg::rectangle(double x, double y, double width, double height, const char* colour) {
    add(format("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"none\" stroke=\"%s\"/>", x,
               y, width, height, colour));
}

void Svg::text(double x, double y, const char* anchor, const std::string& words, const char* more) {
    add(format("<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\" %s>%s</text>", x, y, anchor, more,
               escaped(words).c_str()));
}

void Svg::cross(double x, double y, const char* colour) {
    line(x - 6.0, y, x + 6.0, y, colour, 2.0);
    line(x, y - 6.0, x, y + 6.0, colour, 2.0);
}

void Svg::dot(double x, double y, double radius, const char* colour) {
    add(format("<circle cx=\"%.1f\" cy=\"%.1f\" r=\"%g\" fill=\"%s\"/>", x, y, radius, colour));
}

std::string Svg::dotAt(double x, double y) { return format("M%.1f %.1fh0", x, y); }

void Svg::dots(const std::string& data, const char* colour, double size) {
    if (!data.empty())
        add(format("<path d=\"%s\" stroke=\"%s\" stroke-width=\"%.1f\" stroke-linecap=\"round\"/>",
                   data.c_str(), colour, size));
}

void Svg::ring(double x, double y, const char* colour) {
    add(format("<circle cx=\"%.1f\" cy=\"%.1f\" r=\"4.5\" fill=\"none\" stroke=\"%s\" stroke-width=\"1.6\"/>",
               x, y, colour));
}

double Svg::nameSign(double x, double y, const std::string& words) {
    text(x + 26.0, y + 4.0, "start", words);
    return x + 26.0 + widthOf(words) + 18.0;
}

void Svg::save(const std::filesystem::path& path) const {
    if (path == "-") {
        std::cout << m_text << "</svg>\n";
        return;
    }
    std::ofstream file(path, std::ios::binary);
    file << m_text << "</svg>\n";
    file.close();
    if (!file)
        fail(path, "the picture cannot be written");
}
