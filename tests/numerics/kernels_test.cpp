// Each instruction set gives the bits of the plain loops.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

#include "numerics/double_double.h"
#include "numerics/exact_sums.h"
#include "numerics/gram.h"
#include "numerics/triangle.h"

using namespace fieldscan;

namespace {

using Vector = std::vector<double>;
using Index = std::size_t;

struct System {
    int m, n;
    Vector rows, weights;
    Index length() const { return static_cast<Index>(n) + 1; }
    WeightedRows rowsOfA() const { return {rows.data(), weights.data(), m, n}; }
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

// Below zero where a weight is.
double sizeOfObservations(const System& s) {
    double squares = 0.0, sign = 1.0;
    for (Index k = 0; k < s.weights.size(); ++k) {
        const double l = s.rows[(k + 1) * s.length() - 1];
        squares += l * l * std::fabs(s.weights[k]);
        sign = s.weights[k] < 0.0 ? -1.0 : sign;
    }
    return sign * squares;
}

// U, U^-1 and U^-1 U^-T one after the other, the other elements as the interface has them.
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
    EXPECT_TRUE(choleskyFactor(normal.data(), n, 0.0, u.data()));
    w = u;
    invertTriangle(w.data(), n);
    multiplyByTranspose(w.data(), n, product.data());
    u.insert(u.end(), w.begin(), w.end());
    u.insert(u.end(), product.begin(), product.end());
    return u;
}

// A U rounded once, A^T P v, v^T P v.
Vector exactSums(const System& s, const Vector& u, const Vector& x, const Vector& low) {
    using Number = DoubleDouble<double>;
    const Index n = x.size(), length = n + 1, m = s.weights.size();
    Vector results = s.rows, squares(kPartialSums);
    std::vector<Number> sums(n * kPartialSums);
    for (Index k = 0; k < m; ++k) {
        const double* a = s.rows.data() + k * length;
        Number residual{a[n], 0.0};
        for (Index j = 0; j < n; ++j) {
            Number sum{0.0, 0.0};
            for (Index i = 0; i <= j; ++i)
                sum = sum + twoProduct(u[i * length + j], a[i]);
            results[k * length + j] = sum.hi;
            residual = residual + Number{x[j], low[j]} * -a[j];
        }
        squares[k % kPartialSums] += residual.hi * residual.hi * s.weights[k];
        residual = residual * s.weights[k];
        for (Index i = 0; i < n; ++i)
            sums[i * kPartialSums + k % kPartialSums] =
                sums[i * kPartialSums + k % kPartialSums] + residual * a[i];
    }
    for (Index i = 0; i < n; ++i) {
        Number sum{0.0, 0.0};
        for (Index k = 0; k < kPartialSums; ++k)
            sum = sum + sums[i * kPartialSums + k];
        results.push_back(sum.hi);
    }
    results.push_back(std::accumulate(squares.begin(), squares.end(), 0.0));
    return results;
}

Vector exactSumsOfLibrary(const System& s, const Vector& u, const Vector& x, const Vector& low) {
    const Workspace room(exactProductsRoom(s.n));
    Vector results(s.rows.size()), sums(x.size()), w = u;
    for (Index i = 0; i < x.size(); ++i)
        std::fill_n(w.begin() + static_cast<std::ptrdiff_t>(i * (x.size() + 1)), i, 0.0);
    FIELDSCAN_CHOSEN(multiplyRows)(s.rowsOfA(), w.data(), room.data(), results.data());
    const double squares =
        FIELDSCAN_CHOSEN(sumResiduals)(s.rowsOfA(), x.data(), low.data(), room.data(), sums.data());
    results.insert(results.end(), sums.begin(), sums.end());
    results.push_back(squares);
    return results;
}

// b - N x of whole numbers: up to 60 bits, which double-double holds exactly and double does not.
void expectExactGram(int m, int n) {
    std::mt19937 random(static_cast<unsigned>(m * 100 + n));
    System s{m, n, {}, {}};
    Vector x, low(static_cast<Index>(n)), squares(s.length()), sums(static_cast<Index>(n) + 8);
    for (Index k = 0; k < static_cast<Index>(m) * s.length(); ++k)
        s.rows.push_back(static_cast<double>(random() >> 12) - 0x1p19);
    for (int k = 0; k < m; ++k)
        s.weights.push_back(m % 2 ? 1.0 : static_cast<double>(random() % 9) - 3.0);
    for (int i = 0; i < n; ++i)
        x.push_back(static_cast<double>(random() % 16));
    for (Index k = 0; k < s.rows.size(); ++k)
        squares[k % s.length()] += s.rows[k] * s.rows[k] * std::fabs(s.weights[k / s.length()]);
    ExactGram gram(n);
    ASSERT_TRUE(gram.form(s.rowsOfA(), squares.data()));
    gram.residual(x.data(), low.data(), sums.data());
    for (Index i = 0; i < x.size(); ++i) {
        long long rest = 0;
        for (Index k = 0; k < s.weights.size(); ++k) {
            const double* const a = s.rows.data() + k * s.length();
            long long v = static_cast<long long>(a[n]);
            for (Index j = 0; j < x.size(); ++j)
                v -= static_cast<long long>(a[j] * x[j]);
            rest += v * static_cast<long long>(a[i] * s.weights[k]);
        }
        ASSERT_EQ(sums[i], static_cast<double>(rest)) << m << " x " << n;
    }
}

TEST(InstructionSets, AreOnlyLoweredByName) {
    const InstructionSet baseline = InstructionSet::baseline, avx2 = InstructionSet::avx2,
                         avx512 = InstructionSet::avx512;
    EXPECT_EQ(instructionSetNamed("baseline", avx512), baseline);
    EXPECT_EQ(instructionSetNamed("avx2", avx512), avx2);
    EXPECT_EQ(instructionSetNamed("avx512", avx512), avx512);
    EXPECT_EQ(instructionSetNamed("avx512", baseline), baseline);
    EXPECT_EQ(instructionSetNamed("avx512", avx2), avx2);
}

TEST(InstructionSets, StayWhereNoSetHasTheName) {
    for (const char* name : {"", "sse", "AVX2", "avx", "avx2 ", "1"})
        EXPECT_EQ(instructionSetNamed(name, InstructionSet::avx512), InstructionSet::avx512) << name;
    EXPECT_EQ(instructionSetNamed(nullptr, InstructionSet::avx512), InstructionSet::avx512);
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
    for (int n = 1; n <= 87; n += n < 41 ? 1 : 23) {  // rows in place, from 64 on packed by 64 or 192
        for (const int m : {0, 1, 2, 7, 63, 64, 65, 193}) {
            System s = systemOf(m, n, (m + n) % 2 == 0);
            if (m > 0 && m < 2 * n && n % 3 == 0)
                s.weights.front() *= -1.0;
            const double start = m % 3 - 1.0;
            Vector gram(s.length() * static_cast<Index>(n), start);
            const double size = addGram(s.rowsOfA(), gram.data());
            ASSERT_EQ(size, sizeOfObservations(s)) << m << " x " << n;
            ASSERT_TRUE(sameBits(gram, formed(s, start))) << m << " x " << n;
            if (m < 2 * n)
                continue;
            const Vector full = formed(s, 0.0), expected = triangles(full, n);
            ASSERT_TRUE(sameBits(trianglesOfLibrary(full, n), expected)) << n;
            const Vector x(static_cast<Index>(n), 1.0 / 3.0), low(x.size(), 0x1p-57);
            ASSERT_TRUE(sameBits(exactSumsOfLibrary(s, expected, x, low), exactSums(s, expected, x, low)))
                << m << " x " << n;
            expectExactGram(m, n);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, Kernels,
                         testing::Values(InstructionSet::baseline, InstructionSet::avx2,
                                         InstructionSet::avx512));

}  // namespace
