// Races of CLeastSq against Eigen and OpenBLAS: forming, solving and cofactors of the unknowns in one call,
// with weights 1; and refining against Householder QR.
#include <cblas.h>
#include <fieldscan/least_squares.h>

#include <climits>
#include <random>
#include <string>

#include "benchmarks/dense_peers.h"
#include "benchmarks/race.h"

extern "C" {
void dpotrf_(const char* triangle, const int* n, double* a, const int* stride, int* info);
void dpotri_(const char* triangle, const int* n, double* a, const int* stride, int* info);
}

namespace {

using fieldscan::InstructionSet;

std::vector<double> zeros(int rows, int columns) {
    return std::vector<double>(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
}

// The same equations for both sides, and storage for the results of the peers.
class Equations {
public:
    // Four unknowns: a transformation between points, reduced to their middle or, ill-conditioned, at the
    // coordinates of a national grid (m). More: random coefficients; ill-conditioned, those of a row differ
    // by a thousandth. All unknowns have about the same size, because one that is a small difference of large
    // sums would be refined for that reason.
    Equations(int m, int n, bool illConditioned)
        : m_m(m),
          m_n(n),
          m_coefficients(zeros(m, n)),
          m_observations(zeros(m, 1)),
          m_unknowns(zeros(n, 1)),
          m_cofactors(zeros(n, n)),
          m_ours(m, n) {
        std::mt19937_64 engine(7);
        const auto around = [&engine](double size) {
            return std::uniform_real_distribution<double>(-size, size)(engine);
        };
        double x = 0.0, y = 0.0, common = 0.0;
        for (int k = 0; k < m; ++k) {
            double observation = around(0.01);
            if (k % 2 == 0) {
                x = around(500.0) + (illConditioned ? 5320000.0 : 0.0);
                y = around(500.0) + (illConditioned ? 4470000.0 : 0.0);
            }
            common = around(10.0);
            for (int j = 0; j < n; ++j) {
                const double pair[2][4] = {{x, -y, 1.0, 0.0}, {y, x, 0.0, 1.0}};
                const double c = n == 4           ? pair[k % 2][j]
                                 : illConditioned ? common + around(0.01)
                                                  : around(10.0);
                observation += c * (n != 4 ? 1.0 + j % 3 : j < 2 ? 0.8 - 0.2 * j : 300.0);
                m_coefficients.data()[j * m + k] = c;
                m_ours.SetObeq(j, c);
            }
            m_observations.data()[k] = observation;
            m_ours.SetObeq(n, observation);
        }
    }

    CLeastSq& ours() { return m_ours; }
    DenseProblem problem() {
        return {
            m_m, m_n, m_coefficients.data(), m_observations.data(), m_unknowns.data(), m_cofactors.data()};
    }

    void requireAgreement(const Contender& peer, double tolerance) {
        require(m_ours.Solve() == 1, "Solve");
        peer.run();
        std::vector<double> unknowns, cofactors;
        for (int i = 0; i < m_n; ++i) {
            unknowns.push_back(m_ours.GetBcor(i));
            for (int j = 0; j < m_n; ++j)
                cofactors.push_back(m_ours.GetCovar(i, j));
        }
        require(agree(unknowns, m_unknowns, tolerance), "unknowns, " + peer.name);
        require(agree(cofactors, m_cofactors, tolerance), "cofactors, " + peer.name);
    }

private:
    int m_m, m_n;
    std::vector<double> m_coefficients, m_observations, m_unknowns, m_cofactors;
    CLeastSq m_ours;
};

void solveByOpenBlas(const DenseProblem& p) {
    std::vector<double> factor = zeros(p.n, p.n);
    double* normal = factor.data();
    int info = 0;
    cblas_dsyrk(CblasColMajor, CblasLower, CblasTrans, p.n, p.m, 1.0, p.coefficients, p.m, 0.0, normal, p.n);
    dpotrf_("L", &p.n, normal, &p.n, &info);
    cblas_dgemv(CblasColMajor, CblasTrans, p.m, p.n, 1.0, p.coefficients, p.m, p.observations, 1, 0.0,
                p.unknowns, 1);
    cblas_dtrsv(CblasColMajor, CblasLower, CblasNoTrans, CblasNonUnit, p.n, normal, p.n, p.unknowns, 1);
    cblas_dtrsv(CblasColMajor, CblasLower, CblasTrans, CblasNonUnit, p.n, normal, p.n, p.unknowns, 1);
    dpotri_("L", &p.n, normal, &p.n, &info);
    for (int j = 0; j < p.n; ++j)  // dpotri fills only one triangle
        for (int i = j; i < p.n; ++i)
            p.cofactors[i * p.n + j] = p.cofactors[j * p.n + i] = normal[j * p.n + i];
}

struct Size {
    int m, n;
};
const Size kSizes[] = {{8, 4}, {40, 4}, {200, 4}, {2000, 4}, {500, 12}, {5000, 30}, {2000, 100}, {5000, 300}};

struct Solver {
    std::string name;
    void (*run)(const DenseProblem& problem);
    double tolerance;            // within which its results are those of the library
    int mostUnknowns = INT_MAX;  // more take it seconds
};

// A row for each group of solvers.
void raceSolvers(Races& races, const std::string& row, bool illConditioned,
                 const std::vector<std::vector<Solver>>& groups) {
    for (const auto& [m, n] : kSizes) {
        const std::string name = row + ", " + std::to_string(m) + " x " + std::to_string(n);
        if (!races.wanted(name) || (races.quick() && n > 30))
            continue;
        Equations equations(m, n, illConditioned);
        const DenseProblem problem = equations.problem();
        std::vector<Peers> rows;
        for (const std::vector<Solver>& solvers : groups) {
            Peers peers;
            for (const Solver& solver : solvers) {
                if (n > solver.mostUnknowns)
                    continue;
                peers.push_back({solver.name, [&problem, run = solver.run] { run(problem); }});
                equations.requireAgreement(peers.back(), solver.tolerance);
            }
            if (!peers.empty())
                rows.push_back(peers);
        }
        races.race(name, {"CLeastSq", [&] { require(equations.ours().Solve() == 1, name); }}, rows);
    }
}

}  // namespace

void raceAdjustment(Races& races) {
    openblas_set_num_threads(1);
    raceSolvers(races, "solve", false,
                {{{"Eigen LLT", eigen_native::solveByProduct, 1e-9},
                  {"Eigen LLT, rankUpdate", eigen_native::solveByRankUpdate, 1e-9},
                  {std::string("OpenBLAS, ") + openblas_get_corename(), solveByOpenBlas, 1e-9}}});
    onInstructionSet(InstructionSet::baseline, [&races] {
        raceSolvers(races, "solve, SSE2", false,
                    {{{"Eigen LLT", eigen_plain::solveByProduct, 1e-9},
                      {"Eigen LLT, rankUpdate", eigen_plain::solveByRankUpdate, 1e-9}}});
    });
    // A factorization loses its rounding times the condition: in double half of the digits here.
    raceSolvers(races, "refined", true,
                {{{"Eigen QR, double", eigen_native::solveByHouseholder, 1e-7}},
                 {{"Eigen QR, long double", eigen_native::solveByHouseholder64, 1e-10, 100}},
                 {{"Eigen QR, 113 bits", eigen_native::solveByHouseholder113, 1e-15, 30}}});
    onInstructionSet(InstructionSet::baseline, [&races] {
        raceSolvers(races, "refined, SSE2", true,
                    {{{"Eigen QR, double", eigen_plain::solveByHouseholder, 1e-7}},
                     {{"Eigen QR, long double", eigen_plain::solveByHouseholder64, 1e-10, 100}},
                     {{"Eigen QR, 113 bits", eigen_plain::solveByHouseholder113, 1e-15, 30}}});
    });
}
