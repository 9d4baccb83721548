// Which part of the sphere the picture of a scan job shows, and where on the paper.
#ifndef TOOLS_PICTURES_SCAN_VIEW_H
#define TOOLS_PICTURES_SCAN_VIEW_H

#include <algorithm>

#include "scan/scan_job.h"

// Turns degrees from the middle of the area to the right, and elevations, into pixels from the top left.
class View {
public:
    static constexpr double kLeft = 76.0, kRight = 34.0, kTop = 104.0, kBottom = 100.0;  // around the plot

    // The area and a margin at equal scale; a flat strip is drawn higher, so that it can be read.
    explicit View(const ScanJob& job) {
        m_width = std::min(360.0, job.width() * (1.0 + 2.0 * kMargin));
        m_bottom = job.bottom() - kMargin * job.height();
        m_top = job.top() + kMargin * job.height();
        m_scaleX = std::min(kMostWidth / m_width, kMostHeight / (m_top - m_bottom));
        m_width = std::min(360.0, std::max(m_width, kLeastWidth / m_scaleX));
        m_scaleY = std::max(m_scaleX, kLeastHeight / (m_top - m_bottom));
    }

    double left() const { return -m_width / 2.0; }
    double right() const { return m_width / 2.0; }
    double bottom() const { return m_bottom; }
    double top() const { return m_top; }
    double scaleX() const { return m_scaleX; }  // pixels per degree
    double scaleY() const { return m_scaleY; }

    double x(double fromMiddle) const { return kLeft + (fromMiddle - left()) * m_scaleX; }
    double y(double elevation) const { return kTop + (m_top - elevation) * m_scaleY; }
    double plotWidth() const { return m_width * m_scaleX; }
    double plotHeight() const { return (m_top - m_bottom) * m_scaleY; }
    double paperWidth() const { return kLeft + plotWidth() + kRight; }
    double paperHeight() const { return kTop + plotHeight() + kBottom; }

    bool shows(double fromMiddle, double elevation) const {
        return fromMiddle >= left() && fromMiddle <= right() && elevation >= m_bottom && elevation <= m_top;
    }

private:
    static constexpr double kMostWidth = 960.0, kLeastWidth = 700.0;  // of the plot
    static constexpr double kMostHeight = 640.0, kLeastHeight = 300.0;
    static constexpr double kMargin = 0.15;  // beyond the area, of its size on either side

    double m_width, m_bottom, m_top, m_scaleX, m_scaleY;
};

// The smallest step of round numbers that keeps the ticks so many pixels apart.
inline double tickStep(double scale, double pixels) {
    for (double unit = 0.00001; unit < 10.0; unit *= 10.0)
        for (const double step : {unit, 2.0 * unit, 5.0 * unit})
            if (step < 15.0 && step * scale >= pixels)
                return step;
    for (const double step : {10.0, 15.0, 30.0, 45.0})
        if (step * scale >= pixels)
            return step;
    return 90.0;
}

#endif
