// What the pictures share: a frame with axes, a heading, vectors, names where they have room, scale bars.
#ifndef TOOLS_PICTURES_PLOT_H
#define TOOLS_PICTURES_PLOT_H

#include <cmath>
#include <string>
#include <vector>

#include "pictures/svg.h"
#include "pictures/taken_places.h"

struct Tick {
    double value;
    std::string label;
};

// A coordinate along an edge of the frame.
struct Axis {
    std::string title;
    double first, last;  // at the left or top edge, and at the opposite one
    double scale;        // pixels of the paper per unit
    std::vector<Tick> ticks;

    double length() const { return std::fabs(last - first) * scale; }  // pixels
};

// The number with the decimals of a round step.
std::string stepLabel(double value, double step);

// Sets ticks at the multiples of 1, 2 or 5 times a power of ten that leave room for their labels.
void setDecimalTicks(Axis& axis);

// How many times vectors are enlarged so that the longest has `pixels` on the paper, rounded down. `scale`:
// pixels per unit without that. 0: there is nothing to draw, `longest` is only rounding.
double enlargementOf(double longest, double scale, double pixels);

// With more signs than this they are small, and only marked ones have names.
constexpr int kMany = 1000;
constexpr double kDot = 5.0, kSmallDot = 2.0;  // diameters

class Plot : public Svg {
public:
    // `legendRows`: rows of text below the axes.
    Plot(const Axis& across, const Axis& down, int legendRows);

    double x(double value) const { return m_frame.left + place(m_across, value); }
    double y(double value) const { return m_frame.top + place(m_down, value); }
    const Box& frame() const { return m_frame; }
    bool shows(double across, double down) const;

    // Grid, ticks, titles of the axes, frame.
    void axes();
    void heading(const std::string& title, const std::vector<std::string>& lines);
    // The middle of a row of the legend.
    double legendRow(int row) const { return m_frame.bottom + 74.0 + 28.0 * row; }

    // The longest vector that is not marked, in pixels: shorter where so many points would be lost under the
    // vectors of their neighbours.
    double vectorLength(int points) const;
    // A vector from a place on the paper, as path data; it ends at the frame where it is too long.
    std::string vector(double px, double py, double along, double down);
    // Takes the place of a sign; names() then writes its name.
    void sign(double px, double py, double half, const std::string& name, bool isMarked = false);
    // Writes each name at the first free place around its sign, in the order of the signs. Where there is
    // none, that of a marked sign covers what is there. Returns how many have no room; with more than kMany
    // they are all that are not marked.
    int names();

    // A scale bar for lengths that are drawn `scale` pixels a unit. Returns where the next one begins.
    double scaleBar(double px, double py, double scale, const char* unit, double enlargement,
                    const char* what);

private:
    struct Name {
        double x, y;
        std::string words;
        bool isMarked;
    };

    static double place(const Axis& axis, double value) {
        return (value - axis.first) / (axis.last - axis.first) * axis.length();
    }

    Axis m_across, m_down;
    Box m_frame;
    TakenPlaces m_taken;
    std::vector<Name> m_names;
};

#endif
