// Precision of the adjustment, and the self-tests.
#include <fieldscan/least_squares.h>

#include <cmath>
#include <cstddef>
#include <limits>

#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr double kCannotBeComputed = std::numeric_limits<double>::max();

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
    const int redundancy = GetDegreesOfFreedom();
    return redundancy < 1 ? ObeqSize : redundancy;
}

double CLeastSq::CalStandard() const {
    return hasResiduals() ? std::sqrt(sumOfSquares() / ObeqSize) : kCannotBeComputed;
}

double CLeastSq::CalStandard2() const {
    return hasResiduals() ? std::sqrt(sumOfSquares() / redundancyOrSize()) : kCannotBeComputed;
}

double CLeastSq::CalSigma2() const {
    if (!hasResiduals())
        return kCannotBeComputed;
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
        Var.SetSize(computable ? ObeqSize : 0);
        if (!computable)
            return 1;
        const int n = parameterNumber;
        const std::ptrdiff_t length = n + 1;
        for (int k = 0; k < ObeqSize; ++k) {
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

// ---- Self-tests ----

int CLeastSq::TestChores() {
    if (!LUDivid() || !ForwardSubstiotution() || !BackwardSubstiotution())
        return 0;
    return DisplayNoeq() && DisplayWorkMemory(work) && DisplayBcor() ? 1 : 0;
}

int CLeastSq::TestInvers() {
    if (!LUDivid() || !CalLInverse() || !CalNoeqInverse())
        return 0;
    return DisplayNoeq() && DisplayWorkMemory(inverse) && DisplayUnitMatrix() ? 1 : 0;
}

void CLeastSq::TestBook() {
    const double observed[] = {2.1, 3.9, 6.2, 7.8}, weights[] = {1.0, 2.0, 2.0, 1.0};
    CLeastSq line(2);
    for (int k = 0; k < 4; ++k) {
        line.SetObeq(0, 1.0);
        line.SetObeq(1, k + 1.0);
        line.SetObeq(2, observed[k]);
        line.SetWeight(weights[k]);
    }
    if (!line.Solve())
        return;
    line.CalVarianceOfObservation();
    for (int i = 0; i < 2; ++i) {
        line.GetBcor(i);
        line.GetCovar(i, i);
    }
    for (int k = 0; k < 4; ++k)
        line.GetVar(k);
    line.DisplayObeq();
    line.DisplayNoeq();
    line.DisplayBcor();
}

void CLeastSq::TestData31() {
    const double normal[] = {4, 1, 0, 6, 1, 5, 2, 17, 0, 2, 6, 22};
    Create(0, 3);
    for (int k = 0; k < 12; ++k)
        SetNoeq(k / 4, k % 4, normal[k]);
}

void CLeastSq::TestData4() {
    const double normal[] = {5, 1, 0, 1, 2, 1, 6, 2, 0, -1, 0, 2, 7, 1, 10, 1, 0, 1, 8, -13};
    Create(0, 4);
    for (int k = 0; k < 20; ++k)
        SetNoeq(k / 5, k % 5, normal[k]);
}
