// Standard deviation, variance of unit weight and variances of CLeastSq (Koch, Parameter Estimation and
// Hypothesis Testing in Linear Models, chapter 3). Legend: fieldscan/least_squares.h.
#include <fieldscan/least_squares.h>

#include <cmath>
#include <cstddef>
#include <limits>

#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr double kNoResiduals = std::numeric_limits<double>::max();

}  // namespace

double CLeastSq::residual(int k) const {
    const double* row = Obeq.GetData() + static_cast<std::ptrdiff_t>(k) * (parameterNumber + 1);
    double computed = 0.0;
    for (int i = 0; i < parameterNumber; ++i)
        computed += row[i] * Bcor[i];
    return row[parameterNumber] - computed;
}

bool CLeastSq::hasResiduals() const {
    return ObeqSize > 0 && hasEquations(ObeqSize) && Bcor.GetSize() == parameterNumber;
}

double CLeastSq::sumOfSquares() const {
    double sum = 0.0;
    for (int k = 0; k < ObeqSize; ++k) {
        const double v = residual(k);
        sum += v * v;
    }
    return sum;
}

int CLeastSq::redundancyOrSize() const {
    return ObeqSize > parameterNumber ? ObeqSize - parameterNumber : ObeqSize;
}

double CLeastSq::CalStandard() const {
    return hasResiduals() ? std::sqrt(sumOfSquares() / ObeqSize) : kNoResiduals;
}

double CLeastSq::CalStandard2() const {
    return hasResiduals() ? std::sqrt(sumOfSquares() / redundancyOrSize()) : kNoResiduals;
}

double CLeastSq::CalSigma2() const {
    if (!hasResiduals())
        return kNoResiduals;
    double sum = 0.0;
    for (int k = 0; k < ObeqSize; ++k) {
        const double v = residual(k);
        sum += Weight[k] * v * v;
    }
    return sum / redundancyOrSize();
}

int CLeastSq::CalVarianceOfEstimate() {
    for (int i = 0; i < inverse.GetSize(); ++i)
        inverse[i] *= sigma;
    return 1;
}

int CLeastSq::CalVarianceOfObservation() {
    return zeroIfOutOfMemory([&] {
        const bool computable = hasEquations(ObeqSize) && (parameterNumber == 0 || hasUnknowns());
        const int m = computable ? ObeqSize : 0, n = parameterNumber;
        const std::ptrdiff_t length = n + 1;
        Var.SetSize(m);
        for (int k = 0; k < m; ++k) {
            const double* row = Obeq.GetData() + k * length;
            double variance = 0.0;
            for (int j = 0; j < n; ++j) {
                double product = 0.0;  // element j of a_k C
                for (int i = 0; i < n; ++i)
                    product += row[i] * inverse[static_cast<int>(i * length) + j];
                variance += row[j] * product;
            }
            Var[k] = variance;
        }
        return 1;
    });
}
