// The small types of the framework that the interface uses.
#ifndef FIELDSCAN_FRAMEWORK_TYPES_H
#define FIELDSCAN_FRAMEWORK_TYPES_H

// A truth value in the interface: 0 is false, anything else true; the library returns 1 for true.
typedef int BOOL;

// Width and height, in the unit of the function that takes it (pixels for images).
class CSize {
public:
    CSize() : cx(0), cy(0) {}
    // Width and height as they are.
    CSize(int width, int height) : cx(width), cy(height) {}

    // Equal in both.
    bool operator==(const CSize& other) const { return cx == other.cx && cy == other.cy; }
    bool operator!=(const CSize& other) const { return !(*this == other); }

    int cx;  // width
    int cy;  // height
};

// A rectangle of the screen in pixels; right and bottom lie just outside it.
class CRect {
public:
    CRect() : left(0), top(0), right(0), bottom(0) {}
    // The four sides as they are.
    CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}

    // Pixels inside, from side to side.
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }

    // Equal in all four sides.
    bool operator==(const CRect& other) const {
        return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
    }
    bool operator!=(const CRect& other) const { return !(*this == other); }

    // Sides, pixels.
    int left;
    int top;
    int right;
    int bottom;
};

#endif
