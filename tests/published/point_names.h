// Points with names and codes that try a code page, and their lines of a scan file in that page.
//   932   mountains from the list of Japan's national survey: trail bytes that are "\" and "|"; "?" for what
//         the page lacks; U+5D53, which the page has twice, as the instrument's system writes it (FA B0)
//   1252  a control point of SWEREF 99 TM
#ifndef FIELDSCAN_TESTS_PUBLISHED_POINT_NAMES_H
#define FIELDSCAN_TESTS_PUBLISHED_POINT_NAMES_H

namespace point_names {

// clang-format off
const struct {
    unsigned int codePage;
    const char16_t* name;
    double x, y, z;
    const char16_t* code;
    const char* bytes;
} kPoints[] = {
    {932, u"十勝岳", 43.41777777777777, 142.6863888888889, 2077, u"",
     "\x8F\\\x8F\x9F\x8Ax,43.417778,142.686389,2077.000000"},
    {932, u"ニペソツ山", 43.45583333333334, 143.03222222222223, 2013, u"",
     "\x83j\x83y\x83\\\x83" "c\x8ER,43.455833,143.032222,2013.000000"},
    {932, u"佩楯山", 32.95305555555556, 131.64583333333331, 754, u"佩立山",
     "\x98\xCE\x8F|\x8ER,32.953056,131.645833,754.000000,\x98\xCE\x97\xA7\x8ER"},
    {932, u"薬萊山", 38.57555555555556, 140.70527777777778, 553, u"薬来山",
     "\x96\xF2?\x8ER,38.575556,140.705278,553.000000,\x96\xF2\x97\x88\x8ER"},
    {932, u"美瑛岳", 43.44, 142.70666666666665, 2052, u"帯経絓",
     "\x94\xFC\x89l\x8Ax,43.440000,142.706667,2052.000000,\x91\xD1\x8Co?"},
    {932, u"燧ヶ岳<柴安嵓>", 36.955000000000005, 139.28527777777776, 2356, u"",
     "\xE0\x9C\x83\x96\x8Ax<\x8E\xC4\x88\xC0\xFA\xB0>,36.955000,139.285278,2356.000000"},
    {1252, u"Punkt 1", 6097259.371, 318985.166, 0, u"Sydv\u00E4st",
     "Punkt 1,6097259.371000,318985.166000,0.000000,Sydv\xE4st"}};
// clang-format on

}  // namespace point_names

#endif
