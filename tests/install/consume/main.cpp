// A program outside the project that uses the installed library.
#include <fieldscan/points.h>

#include <cstdio>

int main() {
    const CXYZ point(2.0, 3.0, 6.0);
    const double length = point.Len();
    std::printf("length %.17g\n", length);
    return length == 7.0 ? 0 : 1;
}
