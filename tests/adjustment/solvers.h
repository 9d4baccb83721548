// Equations, and the solvers of CLeastSq, which every system is given to.
#ifndef FIELDSCAN_TESTS_ADJUSTMENT_SOLVERS_H
#define FIELDSCAN_TESTS_ADJUSTMENT_SOLVERS_H

#include <fieldscan/least_squares.h>

#include <vector>

const struct {
    const char* name;
    int (CLeastSq::*solve)();
} kSolvers[] = {{"Solve", &CLeastSq::Solve},
                {"PISolve", &CLeastSq::PISolve},
                {"SolveWithSwpMat", &CLeastSq::SolveWithSwpMat}};

using Rows = std::vector<std::vector<double>>;  // the coefficients, then the observation

inline void enter(CLeastSq& adjustment, const Rows& rows, double weight = 1.0) {
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            adjustment.SetObeq(static_cast<int>(column), row[column]);
        if (weight != 1.0)
            adjustment.SetWeight(weight);
    }
}

// Normal equations with their right-hand side, row by row.
inline void enterNormal(CLeastSq& adjustment, const std::vector<double>& normal) {
    const int length = adjustment.rowLength;
    for (int k = 0; k < static_cast<int>(normal.size()); ++k)
        adjustment.SetNoeq(k / length, k % length, normal[static_cast<std::size_t>(k)]);
}

#endif
