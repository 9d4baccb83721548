// Angles as text in the units that the subcommands take.
#ifndef TOOLS_COMMON_ANGLE_UNITS_H
#define TOOLS_COMMON_ANGLE_UNITS_H

#include <optional>
#include <string>
#include <string_view>

// Units: "degrees", "gon", "mil" (6400 to the circle), and texts of whole tenths of a second:
//   "packed"       ddd.mmsst, fewer decimals too
//   "instrument"   dddmmsst or dddmmss, with + or without a sign
//   "display"      ddd°mm'ss"t or ddd°mm'ss"

// The whole text as an angle, in degrees; nothing when it is something else, minutes of 60 and seconds
// beyond 60 too.
std::optional<double> degreesOf(std::string_view text, const std::string& unit);

// What degreesOf takes, for messages: "an angle in gon", "a packed angle ddd.mmsst".
std::string expectedAngle(const std::string& unit);

// The angle as it is, not brought into one circle; six decimals, or tenths of a second. Nothing when the
// layout has no room: from 1000 degrees on, and below 0 for the instrument.
std::optional<std::string> angleText(double degrees, const std::string& unit);

// The same brought into the circle after rounding, so that 359.9999999 is 0.000000, not 360.000000.
std::string circleText(double degrees, const std::string& unit);

#endif
