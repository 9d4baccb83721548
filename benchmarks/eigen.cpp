// Least squares by Eigen: Cholesky (LLT) of the normal equations, and Householder QR of the equations.
#include <Eigen/Dense>

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

// A = Q R; the cofactors are R^-1 R^-T.
void solveByHouseholder(const DenseProblem& problem) {
    Maps maps(problem);
    const Eigen::HouseholderQR<MatrixXd> factor(maps.A);
    maps.x = factor.solve(maps.l);
    MatrixXd inverse = MatrixXd::Identity(problem.n, problem.n);
    factor.matrixQR().topRows(problem.n).triangularView<Eigen::Upper>().solveInPlace(inverse);
    maps.Q.noalias() = inverse * inverse.transpose();
}

}  // namespace FIELDSCAN_EIGEN
