// Least squares by Eigen: Cholesky (LLT) of the normal equations, and Householder QR of the equations in
// double and in wider numbers.
#include <Eigen/Dense>
#include <boost/multiprecision/eigen.hpp>
#include <boost/multiprecision/float128.hpp>

#include "benchmarks/dense_peers.h"

using Eigen::Lower;
using Eigen::Map;
using Eigen::MatrixXd;
using Eigen::VectorXd;

namespace FIELDSCAN_EIGEN {

namespace {

struct Maps {
    explicit Maps(const DenseProblem& p)
        : A(p.coefficients, p.m, p.n), l(p.observations, p.m), x(p.unknowns, p.n), Q(p.cofactors, p.n, p.n) {}
    Map<const MatrixXd> A;
    Map<const VectorXd> l;
    Map<VectorXd> x;
    Map<MatrixXd> Q;
};

void solveNormal(Maps& maps, const MatrixXd& normal) {
    const Eigen::LLT<MatrixXd> factor(normal);
    maps.x.noalias() = maps.A.transpose() * maps.l;
    factor.solveInPlace(maps.x);
    maps.Q.setIdentity();
    factor.solveInPlace(maps.Q);
}

// A = Q R; the cofactors are R^-1 R^-T.
template <class Number>
void solveByQr(const DenseProblem& problem) {
    using Matrix = Eigen::Matrix<Number, Eigen::Dynamic, Eigen::Dynamic>;
    Maps maps(problem);
    const Eigen::HouseholderQR<Matrix> factor(maps.A.cast<Number>());
    maps.x = factor.solve(maps.l.cast<Number>()).template cast<double>();
    Matrix inverse = Matrix::Identity(problem.n, problem.n), cofactors(problem.n, problem.n);
    factor.matrixQR().topRows(problem.n).template triangularView<Eigen::Upper>().solveInPlace(inverse);
    cofactors.noalias() = inverse * inverse.transpose();
    maps.Q = cofactors.template cast<double>();
}

}  // namespace

void solveByProduct(const DenseProblem& problem) {
    Maps maps(problem);
    MatrixXd normal(problem.n, problem.n);
    normal.noalias() = maps.A.transpose() * maps.A;
    solveNormal(maps, normal);
}

void solveByRankUpdate(const DenseProblem& problem) {
    Maps maps(problem);
    MatrixXd normal = MatrixXd::Zero(problem.n, problem.n);
    normal.selfadjointView<Lower>().rankUpdate(maps.A.transpose());
    solveNormal(maps, normal);
}

void solveByHouseholder(const DenseProblem& problem) { solveByQr<double>(problem); }

void solveByHouseholder64(const DenseProblem& problem) { solveByQr<long double>(problem); }

void solveByHouseholder113(const DenseProblem& problem) {
    solveByQr<boost::multiprecision::float128>(problem);
}

}  // namespace FIELDSCAN_EIGEN
