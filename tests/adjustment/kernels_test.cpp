// Each instruction set gives the bits of the plain loops.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "adjustment/double_double.h"
#include "adjustment/normal_kernels.h"
#include "adjustment/refinement.h"
#include "adjustment/refinement_kernels.h"
#include "adjustment/sweep.h"
#include "platform/framework/instruction_set.h"

using namespace fieldscan;

namespace {

using Vector = std::vector<double>;
using Index = std::size_t;

struct System {
    int m, n;
    Vector rows, weights;
    Index length() const { return static_cast<Index>(n) + 1; }
    Equations equations() const { return {rows.data(), weights.data(), m, n}; }
};

// Of any size in magnitude, with zeros; well-conditioned by the diagonal.
System systemOf(int m, int n, bool unit) {
    std::mt19937 random(static_cast<unsigned>(m * 100 + n));
    System system{m, n, {}, {}};
    system.rows.reserve(static_cast<Index>(m) * system.length());  // no more: nothing is read beyond the end
    for (int k = 0; k < m * (n + 1); ++k) {
        const double value = static_cast<double>(random()) * 0x1p-32 - 0.5;
        system.rows.push_back(random() % 5 == 0 ? 0.0 : value * (k % (n + 1) == k / (n + 1) % n ? 9.0 : 1.0));
    }
    for (int k = 0; k < m; ++k)
        system.weights.push_back(unit ? 1.0 : static_cast<double>(random()) * 0x1p-30);
    return system;
}

Vector formed(const System& s, double start) {
    Vector normal(s.length() * static_cast<Index>(s.n), start);
    for (Index i = 0; i + 1 < s.length(); ++i)
        for (Index j = i; j < s.length(); ++j)
            for (Index k = 0; k < s.weights.size(); ++k)
                normal[i * s.length() + j] +=
                    s.rows[k * s.length() + j] * s.rows[k * s.length() + i] * s.weights[k];
    return normal;
}

// U, U^-1 and U^-1 U^-T one behind the other, the other elements as the interface has them.
Vector triangles(const Vector& normal, int unknowns) {
    const Index n = static_cast<Index>(unknowns), length = n + 1;
    Vector u = normal, product(normal.size());
    for (Index i = 0; i < n; ++i)
        for (Index j = i; j < n; ++j) {
            for (Index k = 0; k < i; ++k)
                u[i * length + j] -= u[k * length + i] * u[k * length + j];
            u[i * length + j] = i == j ? std::sqrt(u[i * length + j]) : u[i * length + j] / u[i * length + i];
        }
    Vector w = u;
    for (Index i = n; i-- > 0; w[i * length + i] = 1.0 / u[i * length + i])
        for (Index j = n; --j > i;) {
            double sum = 0.0;
            for (Index k = i + 1; k <= j; ++k)
                sum += u[i * length + k] * w[k * length + j];
            w[i * length + j] = -sum / u[i * length + i];
        }
    for (Index i = 0; i < n; ++i)
        for (Index j = 0; j < n; ++j)
            for (Index k = std::max(i, j); k < n; ++k)
                product[i * length + j] += w[i * length + k] * w[j * length + k];
    u.insert(u.end(), w.begin(), w.end());
    u.insert(u.end(), product.begin(), product.end());
    return u;
}

Vector trianglesOfLibrary(const Vector& normal, int n) {
    Vector u(normal.size()), w, product(normal.size());
    EXPECT_GT(choleskyFactor(normal.data(), n, 0.0, u.data()), 0.0);
    w = u;
    invertTriangle(w.data(), n);
    multiplyByTranspose(w.data(), n, product.data());
    u.insert(u.end(), w.begin(), w.end());
    u.insert(u.end(), product.begin(), product.end());
    return u;
}

// `inverse` has no right-hand side, so x = N^-1 b is its rows times the last column of `normal`.
void expectSwept(const Vector& normal, int n, const Vector& inverse) {
    Vector work(normal.size()), solution(static_cast<Index>(n)), swept(normal.size(), 1.0);
    ASSERT_TRUE(sweep(normal.data(), n, 0.0, work.data(), solution.data(), swept.data()));
    const Index length = solution.size() + 1;
    for (Index i = 0; i < solution.size(); ++i) {
        double x = 0.0, size = 0.0;
        for (Index j = 0; j < length; ++j) {
            const double cofactor = inverse[i * length + j];
            ASSERT_NEAR(
                swept[i * length + j], cofactor,
                1e-10 * std::sqrt(inverse[i * (length + 1)] * inverse[j % solution.size() * (length + 1)]))
                << n;
            if (j + 1 < length) {
                x += cofactor * normal[j * length + length - 1];
                size += std::fabs(cofactor * normal[j * length + length - 1]);
            }
        }
        ASSERT_NEAR(solution[i], x, 1e-10 * size) << n;
    }
}

// U^-1, A U^-1 rounded once, A^T P (l - A x).
Vector exactSums(const System& s, const Vector& u, const Vector& x, const Vector& low) {
    const Index n = x.size(), length = n + 1, m = s.weights.size();
    Vector w(u.size()), b(s.rows.size()), misclosure;
    std::vector<DoubleDouble> sums(n * kPartialSums), column(n);
    for (Index j = 0; j < n; ++j)
        for (Index i = j + 1; i-- > 0;) {
            column[i] = {i == j ? 1.0 : 0.0, 0.0};
            for (Index k = i + 1; k <= j; ++k)
                column[i] = column[i] + column[k] * -u[i * length + k];
            column[i] = column[i] / u[i * length + i];
            w[i * length + j] = column[i].hi;
        }
    for (Index k = 0; k < m; ++k) {
        const double* a = s.rows.data() + k * length;
        DoubleDouble residual{a[n], 0.0};
        for (Index j = 0; j < n; ++j) {
            DoubleDouble sum{0.0, 0.0};
            for (Index i = 0; i <= j; ++i)
                sum = sum + exactProduct(w[i * length + j], a[i]);
            b[k * length + j] = sum.hi;
            residual = residual + DoubleDouble{x[j], low[j]} * -a[j];
        }
        residual = residual * s.weights[k];
        for (Index i = 0; i < n; ++i)
            sums[i * kPartialSums + k % kPartialSums] =
                sums[i * kPartialSums + k % kPartialSums] + residual * a[i];
        b[k * length + n] = a[n];
    }
    for (Index i = 0; i < n; ++i) {
        DoubleDouble sum{0.0, 0.0};
        for (Index k = 0; k < kPartialSums; ++k)
            sum = sum + sums[i * kPartialSums + k];
        misclosure.push_back(sum.hi);
    }
    w.insert(w.end(), b.begin(), b.end());
    w.insert(w.end(), misclosure.begin(), misclosure.end());
    return w;
}

Vector exactSumsOfLibrary(const System& s, const Vector& u, const Vector& x, const Vector& low) {
    const RefinementKernels& kernels = FIELDSCAN_CHOSEN(refinementKernels);
    Vector w(u.size()), b(s.rows.size()), misclosure(x.size()), buffer((x.size() + 8) * kRefinementBuffer);
    kernels.invertExactly(u.data(), s.n, buffer.data(), w.data());
    kernels.multiplyRowsExactly(s.rows.data(), s.m, w.data(), s.n, buffer.data(), b.data());
    kernels.misclosure(s.equations(), x.data(), low.data(), buffer.data(), misclosure.data());
    w.insert(w.end(), b.begin(), b.end());
    w.insert(w.end(), misclosure.begin(), misclosure.end());
    return w;
}

bool sameBits(const Vector& a, const Vector& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

class Kernels : public testing::TestWithParam<InstructionSet> {
protected:
    void SetUp() override {
        if (!limitInstructionSet(GetParam()))
            GTEST_SKIP() << "not on this machine";
    }
    void TearDown() override { limitInstructionSet(m_before); }

private:
    const InstructionSet m_before = instructionSet();
};

TEST_P(Kernels, GiveTheBitsOfThePlainLoops) {
    for (int n = 1; n <= 87; n += n < 41 ? 1 : 23) {  // equations in place, from 64 on packed
        for (const int m : {0, 1, 2, 7, kEquationsPacked - 1, kEquationsPacked, kEquationsPacked + 1, 150}) {
            const System s = systemOf(m, n, (m + n) % 2 == 0);
            const double start = m % 3 - 1.0;
            Vector normal(s.length() * static_cast<Index>(n), start);
            double squares = -1.0;
            addToNormal(s.equations(), normal.data(), &squares);
            ASSERT_TRUE(sameBits(normal, formed(s, start))) << m << " x " << n;
            ASSERT_EQ(squares, squaredLength(s.equations())) << m << " x " << n;
            if (m < 2 * n)
                continue;
            const Vector full = formed(s, 0.0), expected = triangles(full, n);
            ASSERT_TRUE(sameBits(trianglesOfLibrary(full, n), expected)) << n;
            const Vector inverse(expected.end() - static_cast<std::ptrdiff_t>(full.size()), expected.end());
            expectSwept(full, n, inverse);
            const Vector u(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(full.size()));
            const Vector x(static_cast<Index>(n), 1.0 / 3.0), low(x.size(), 0x1p-57);
            ASSERT_TRUE(sameBits(exactSumsOfLibrary(s, u, x, low), exactSums(s, u, x, low)))
                << m << " x " << n;
        }
    }
}

// What is not finite comes out so, in its row and column alone.
TEST_P(Kernels, KeepNotANumberInItsRowAndColumn) {
    for (const int n : {4, 12, 40}) {
        System s = systemOf(70, n, true);
        s.rows[3 * s.length() + 2] = std::numeric_limits<double>::quiet_NaN();
        Vector normal(s.length() * static_cast<Index>(n), 0.0);
        addToNormal(s.equations(), normal.data());
        for (Index i = 0; i < normal.size(); ++i)
            EXPECT_EQ(std::isnan(normal[i]), i / s.length() <= 2 && i % s.length() >= i / s.length() &&
                                                 (i / s.length() == 2 || i % s.length() == 2))
                << n << ": " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, Kernels,
                         testing::Values(InstructionSet::baseline, InstructionSet::avx2,
                                         InstructionSet::avx512));

}  // namespace
