// BOOL, CSize, CRect: small types of the interface.
#ifndef FIELDSCAN_FRAMEWORK_TYPES_H
#define FIELDSCAN_FRAMEWORK_TYPES_H

// A truth value in the interface: 0 is false, anything else true; the library returns 1 for true.
typedef int BOOL;

// Width and height, in the unit of the function that takes it (pixels for images).
class CSize {
public:
    CSize() : cx(0), cy(0) {}
    // Width first, then height.
    CSize(int width, int height) : cx(width), cy(height) {}

    // Equal width and height.
    bool operator==(const CSize& other) const { return cx == other.cx && cy == other.cy; }
    bool operator!=(const CSize& other) const { return !(*this == other); }

    int cx;  // width
    int cy;  // height
};

// A rectangle of the screen in pixels; `right` and `bottom` are just outside it.
class CRect {
public:
    CRect() : left(0), top(0), right(0), bottom(0) {}
    // In this order: left, top, right, bottom.
    CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}

    // In pixels.
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }

    // All four sides equal.
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
