// What the plane transformations share; Transformation is CHelmert or CPlaneAffine.
#ifndef FIELDSCAN_ADJUSTMENT_PLANE_FIT_H
#define FIELDSCAN_ADJUSTMENT_PLANE_FIT_H

#include <fieldscan/helmert.h>
#include <fieldscan/least_squares.h>

#include <cmath>

#include "adjustment/name_pairs.h"
#include "platform/framework/out_of_memory.h"

namespace fieldscan {

template <class Transformation>
void clearFit(Transformation& fit) {
    fit.parameters.RemoveAll();
    fit.targetPoints.RemoveAll();
    fit.sourcePoints.RemoveAll();
    fit.residuals.RemoveAll();
    fit.RMS.Init();
    fit.RMS.SetXYZ(-1.0, -1.0, 0.0);
    fit.maximum.Init();
}

template <class Transformation>
void copyFit(const Transformation& from, Transformation& to) {
    to.targetPoints.Copy(from.targetPoints);
    to.sourcePoints.Copy(from.sourcePoints);
    to.parameters.Copy(from.parameters);
    to.residuals.Copy(from.residuals);
    to.RMS = from.RMS;
    to.maximum = from.maximum;
}

template <class Transformation>
int pairPoints(const PointArray& first, const PointArray& second, Transformation& fit) {
    int pairs = 0;
    const int done = zeroIfOutOfMemory([&] {
        pairs = pairByName(first, second, fit.targetPoints, fit.sourcePoints);
        return 1;
    });
    if (!done) {
        fit.targetPoints.RemoveAll();
        fit.sourcePoints.RemoveAll();
    }
    return pairs;
}

// Enters two equations a pair, each n coefficients and the observation as `equationsOf(source, target, x, y)`
// gives them, and takes the solution for the parameters. 0 leaves them as they were.
template <int n, class Transformation, class EquationsOf>
int adjustParameters(Transformation& fit, int fewestPairs, EquationsOf equationsOf) {
    const int pairs = fit.targetPoints.GetSize();
    if (fit.sourcePoints.GetSize() != pairs || pairs < fewestPairs)
        return 0;
    return zeroIfOutOfMemory([&] {
        CLeastSq adjustment(2 * pairs, n);
        for (int i = 0; i < pairs; ++i) {
            double x[n + 1], y[n + 1];
            equationsOf(fit.sourcePoints[i], fit.targetPoints[i], x, y);
            for (const double* equation : {x, y})
                for (int column = 0; column <= n; ++column)
                    adjustment.SetObeq(column, equation[column]);
        }
        if (!adjustment.Solve())
            return 0;
        fit.parameters.SetSize(n);
        for (int i = 0; i < n; ++i)
            fit.parameters[i] = adjustment.GetBcor(i);
        return 1;
    });
}

// Residuals, their root mean square over the number of pairs, and the largest of each coordinate.
template <class Transformation>
int computeResiduals(Transformation& fit) {
    const int pairs = fit.targetPoints.GetSize();
    if (pairs == 0 || fit.sourcePoints.GetSize() != pairs)
        return 0;
    return zeroIfOutOfMemory([&] {
        fit.residuals.SetSize(pairs);
        fit.RMS.SetXYZ(0.0, 0.0, 0.0);
        fit.maximum.Init();
        for (int i = 0; i < pairs; ++i) {
            const CXYZ& target = fit.targetPoints[i];
            CXYZ transformed(0.0, 0.0, target.z);
            if (!fit.Transform(fit.sourcePoints[i], transformed, 1))
                return 0;
            CXYZ& residual = fit.residuals[i];
            residual = transformed - target;
            residual.name = target.name;
            fit.RMS.x += residual.x * residual.x;
            fit.RMS.y += residual.y * residual.y;
            if (std::fabs(residual.x) > std::fabs(fit.maximum.x))
                fit.maximum.x = residual.x;
            if (std::fabs(residual.y) > std::fabs(fit.maximum.y))
                fit.maximum.y = residual.y;
        }
        fit.RMS.x = std::sqrt(fit.RMS.x * (1.0 / pairs));
        fit.RMS.y = std::sqrt(fit.RMS.y * (1.0 / pairs));
        return 1;
    });
}

}  // namespace fieldscan

#endif
