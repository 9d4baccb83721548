// The triangular factor of the weighted equations themselves: it loses half as many digits to their condition
// as one of the normal matrix does.
#ifndef FIELDSCAN_ADJUSTMENT_ORTHOGONAL_FACTOR_H
#define FIELDSCAN_ADJUSTMENT_ORTHOGONAL_FACTOR_H

#include "adjustment/normal_equations.h"

namespace fieldscan {

// `factor` becomes the upper triangle U of sqrt(P) A = Q U (Householder), its diagonal positive; the rest of
// it is left. No weight may be negative. False when the equations do not determine the unknowns: fewer
// equations than unknowns, or a diagonal of U at or below max(1e-13, 16 m eps) times the length of its
// column.
bool orthogonalFactor(const Equations& equations, double* factor);

}  // namespace fieldscan

#endif
