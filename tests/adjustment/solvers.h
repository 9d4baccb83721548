// The solvers of CLeastSq, which every system is given to.
#ifndef FIELDSCAN_TESTS_ADJUSTMENT_SOLVERS_H
#define FIELDSCAN_TESTS_ADJUSTMENT_SOLVERS_H

#include <fieldscan/least_squares.h>

const struct {
    const char* name;
    int (CLeastSq::*solve)();
} kSolvers[] = {{"Solve", &CLeastSq::Solve},
                {"PISolve", &CLeastSq::PISolve},
                {"SolveWithSwpMat", &CLeastSq::SolveWithSwpMat}};

#endif
