// What families of results are made with: fixed random numbers, and what is kept of the results.
//
// Random numbers are drawn one an expression, or in a braced list or with <<: those are evaluated in order on
// every target, the arguments of a call are not.
#ifndef FIELDSCAN_TESTS_DIGEST_H
#define FIELDSCAN_TESTS_DIGEST_H

#include <fieldscan/polyline.h>
#include <fieldscan/rotation.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <type_traits>
#include <vector>

// What a family gives, case by case, with <<: hashed, or its doubles summed over the cases.
class Results {
public:
    explicit Results(bool summed) : m_summed(summed) {}
    void beginCase() { m_next = 0; }

    Results& operator<<(double value) {
        std::uint64_t bits = 0x7ff8000000000000;  // of any NaN: their signs differ between processors
        if (!std::isnan(value))
            std::memcpy(&bits, &value, sizeof bits);
        if (!m_summed)
            return add(bits);
        m_sums.resize(std::max(m_sums.size(), m_next + 1));
        m_sums[m_next++] += value;
        return *this;
    }
    Results& operator<<(int value) { return add(static_cast<std::uint64_t>(value)); }
    Results& operator<<(long value) { return add(static_cast<std::uint64_t>(value)); }
    template <class Unit>
    Results& operator<<(const Unit* text) {
        for (; *text; ++text)
            add(static_cast<std::make_unsigned_t<Unit>>(*text));
        return add(0);
    }
    Results& operator<<(const CString& text) { return *this << text.GetLength() << text.GetString(); }
    Results& operator<<(const CWPK& a) { return *this << a.omega << a.phi << a.kappa; }
    Results& operator<<(const CXYZ& point) { return *this << point.name << point.x << point.y << point.z; }
    Results& operator<<(const CVertex& v) { return *this << static_cast<const CXYZ&>(v) << v.flag; }
    Results& operator<<(const CPolyline& line) { return *this << line.vertices << line.splineFlag; }
    template <class T, class Arg>
    Results& operator<<(const CArray<T, Arg>& array) {
        for (int i = 0; i < array.GetSize(); ++i)
            *this << array[i];
        return *this << array.GetSize();
    }
    std::uint64_t hash() const { return m_hash; }
    const std::vector<double>& sums() const { return m_sums; }

private:
    Results& add(std::uint64_t word) {  // FNV-1a, the low byte first whatever the processor's order is
        for (int shift = 0; shift < 64; shift += 8)
            m_hash = (m_hash ^ (word >> shift & 0xFF)) * 0x100000001b3;
        return *this;
    }
    bool m_summed;
    std::size_t m_next = 0;
    std::vector<double> m_sums;
    std::uint64_t m_hash = 0xcbf29ce484222325;
};

// The engine's numbers are fixed by the standard, those of its distributions are not.
class Random {
public:
    int below(int count) { return static_cast<int>(m_engine() % static_cast<unsigned>(count)); }
    int bits() { return static_cast<int>(static_cast<std::int64_t>(m_engine() >> 32) - 0x80000000LL); }
    double around(double size) {  // [-size, size)
        const std::int64_t steps = static_cast<std::int64_t>(m_engine() >> 11) - (1LL << 52);
        return static_cast<double>(steps) * (size * 0x1p-52);
    }
    CXYZ point(double size) {
        const double x[] = {around(size), around(size), around(size)};
        return CXYZ(x[0], x[1], x[2]);
    }
    CWPK angles(double size) {
        const CXYZ p = point(size);
        return CWPK(p.x, p.y, p.z);
    }
    CRot matrix() {  // no rotation: those are made with sines
        CRot matrix;
        for (int k = 0; k < 9; ++k)
            matrix.m[k / 3][k % 3] = around(1.0);
        return matrix;
    }
    CString text(const CString& letters, int most) {
        CString text;
        for (int length = below(most + 1); length > 0; --length)
            text += letters[below(letters.GetLength())];
        return text;
    }

private:
    std::mt19937_64 m_engine;
};

// The tolerance of families that are hashed. They have no operation but those that are exact or rounded once:
// + - * /, sqrt, remainders, integers.
constexpr double kExact = 0.0;

// A family enters itself into the program's list. Its sums are equal within `tolerance` everywhere.
struct Family {
    using Case = void(Results& out, Random& random, int i);
    Family(const char* name_, int cases_, double tolerance_, Case* run_)
        : name(name_), cases(cases_), tolerance(tolerance_), run(run_), next(first) {
        first = this;
    }
    const char* name;
    int cases;
    double tolerance;
    Case* run;
    const Family* next;
    static inline const Family* first = nullptr;

    Results results() const {
        Results all(tolerance != kExact);
        Random random;
        for (int i = 0; i < cases; ++i) {
            all.beginCase();
            run(all, random, i);
        }
        return all;
    }
};

#endif
