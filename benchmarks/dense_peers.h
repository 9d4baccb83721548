// Least squares by the peers' dense linear algebra. Coefficients are m x n, stored column by column.
#ifndef FIELDSCAN_BENCHMARKS_DENSE_PEERS_H
#define FIELDSCAN_BENCHMARKS_DENSE_PEERS_H

// m equations, and where the results go: n unknowns and the n x n cofactors, in memory of the caller.
struct DenseProblem {
    int m, n;
    const double* coefficients;
    const double* observations;
    double* unknowns;
    double* cofactors;
};

// eigen.cpp is compiled twice, each time into a library of its own that shares no inline function with the
// other, because Eigen's have the same names for every instruction set.
#define FIELDSCAN_EIGEN_FUNCTIONS                                                                  \
    __attribute__((visibility("default"))) void solveByProduct(const DenseProblem& problem);       \
    __attribute__((visibility("default"))) void solveByRankUpdate(const DenseProblem& problem);    \
    __attribute__((visibility("default"))) void solveByHouseholder(const DenseProblem& problem);   \
    __attribute__((visibility("default"))) void solveByHouseholder64(const DenseProblem& problem); \
    __attribute__((visibility("default"))) void solveByHouseholder113(const DenseProblem& problem);

// ...64, ...113: in numbers with a significand of that many bits.
namespace eigen_native {  // -O3 -march=native
FIELDSCAN_EIGEN_FUNCTIONS
}
namespace eigen_plain {  // -O3
FIELDSCAN_EIGEN_FUNCTIONS
}

#endif
