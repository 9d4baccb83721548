// A picture as SVG text. Coordinates are pixels of the paper, from its top left corner.
#ifndef TOOLS_PICTURES_SVG_H
#define TOOLS_PICTURES_SVG_H

#include <filesystem>
#include <string>

constexpr double kTextSize = 12.0;

constexpr char kLine[] = "#12263a", kFrame[] = "#7a8794", kGrid[] = "#e6e9ec", kBlue[] = "#1565a8",
               kOrange[] = "#e08a2e", kRed[] = "#b3202c", kGreen[] = "#1e7d32";

// The largest of ... 0.1, 0.2, 0.5, 1, 2, 5, 10 ... that does not exceed the value, for scale bars and ticks.
double roundStepBelow(double value);

// Width of the text in pixels, in a wide typeface; a narrower one leaves room.
double widthOf(const std::string& text, double size = kTextSize);

class Svg {
public:
    Svg(double width, double height);

    void add(const std::string& element) { m_text += element + '\n'; }
    void line(double x1, double y1, double x2, double y2, const char* colour, double width,
              const char* dashes = "none");
    void path(const std::string& data, const char* colour, double width);
    void rectangle(double x, double y, double width, double height, const char* colour);
    void text(double x, double y, const char* anchor, const std::string& words, const char* more = "");
    void cross(double x, double y, const char* colour);
    void dot(double x, double y, double radius, const char* colour);
    // Many dots as one path, of `dotAt` each: lines of no length with round ends. They take less room in the
    // file than circles.
    static std::string dotAt(double x, double y);
    void dots(const std::string& data, const char* colour, double size);
    void ring(double x, double y, const char* colour);

    // Writes the words after a sign of the legend that begins at x; returns where the next sign begins.
    double nameSign(double x, double y, const std::string& words);

    // "-" is standard output. Throws DataError when the file cannot be written.
    void save(const std::filesystem::path& path) const;

private:
    std::string m_text;
};

#endif
