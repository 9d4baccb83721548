// Orthonormal columns, rank and null space of a matrix of any rank, in double. For the exact root of
// cofactors: orthonormal.h.
#ifndef FIELDSCAN_NUMERICS_GRAM_SCHMIDT_H
#define FIELDSCAN_NUMERICS_GRAM_SCHMIDT_H

#include <cstddef>
#include <vector>

namespace fieldscan {

using Column = std::vector<double>;

// Of the first `m` elements.
double innerProduct(const Column& a, const Column& b, std::ptrdiff_t m);

// [M; I], the columns of M scaled to length 1, becomes [Q; U] with M U = Q. The first `rank` columns of Q are
// orthonormal, in the others M U = 0. So U U^T is the inverse of M^T M when the rank is full; else the other
// columns of U span the null space of M.
//
// Modified Gram-Schmidt with pivoting, each column orthogonalised twice (Bjorck, Numerical Methods for Least
// Squares Problems, 2.4): Q is orthonormal to a few n eps for any condition. The pivot is the column with the
// largest rest, a part d of its length. Its direction errs by eps / d, and later columns have at most d in
// it: they err by eps, and a dependent one has a rest of a few n eps. For an equation that no other one
// controls the redundancy is 0 to 1e-15; with one orthogonalisation instead of two, to 1e-8 where columns
// differ by 1e-3 of themselves and to 1e-4 where they differ by 1e-7.
struct GramSchmidt {
    GramSchmidt(std::vector<Column> matrix, std::ptrdiff_t m);  // the columns of M, each of m elements

    std::vector<Column> columns;  // [Q; U]
    std::size_t rank = 0;
    Column lengths;  // of the columns of M
};

}  // namespace fieldscan

#endif
