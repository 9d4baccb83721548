// The sweep operator on a symmetric matrix (Beaton 1964; Goodnight, The American Statistician 33, 1979).
#ifndef FIELDSCAN_NUMERICS_SWEEP_H
#define FIELDSCAN_NUMERICS_SWEEP_H

namespace fieldscan {

// Sweeps every pivot of [N | b], rows of n + 1, of which the upper half is read. `inverse` becomes N^-1, rows
// of n + 1 that end with 0, and `solution` N^-1 b. `work` has room for a copy of [N | b]. False when a pivot
// is singular (isSingularPivot); the results are then as they were.
bool sweep(const double* normal, int n, double tolerance, double* work, double* solution, double* inverse);

}  // namespace fieldscan

#endif
