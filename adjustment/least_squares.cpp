// CLeastSq: storage, entering and reading of equations, forming of the normal equations, times of the stages.
#include <fieldscan/least_squares.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "numerics/gram.h"
#include "platform/framework/out_of_memory.h"
#include "platform/framework/truncation.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

constexpr double kTolerance = 2.2250738585072014e-307;

// Index of the element; below 0 for a column that does not exist or a negative row.
long long elementIndex(int row, int column, int unknowns) {
    return column < 0 || column > unknowns ? -1 : static_cast<long long>(row) * (unknowns + 1LL) + column;
}

bool isInside(const CArray<double, double>& array, long long index) {
    return index >= 0 && index < array.GetSize();
}

double elementAt(const CArray<double, double>& array, long long index) {
    return isInside(array, index) ? array[static_cast<int>(index)] : 0.0;
}

// Number of elements; -1 when an array cannot hold so many.
int sizeOf(int rows, int rowLength) {
    const long long size = static_cast<long long>(rows) * rowLength;
    return size > std::numeric_limits<int>::max() ? -1 : static_cast<int>(size);
}

// To at least `size` elements. Doubles the capacity, since equations may be entered one by one.
void grow(CArray<double, double>& array, int size) {
    if (size <= array.GetSize())
        return;
    if (size > array.GetCapacity())
        array.Reserve(std::max(size, truncated(2.0 * array.GetSize())));
    array.SetSize(size);
}

// CLeastSq::time at a file time.
std::uint32_t millisecondsOf(unsigned long long fileTime) {
    constexpr unsigned long long kTicks = 10000, kDay = 86400000, kNineHours = 32400000;
    return static_cast<std::uint32_t>(fileTime / kTicks % kDay + kNineHours);
}

}  // namespace

CLeastSq::CLeastSq() : sigma(1.0), m_pll(0.0) { clear(); }

CLeastSq::CLeastSq(int m, int n) : sigma(1.0), m_pll(0.0) { Create(m, n); }

CLeastSq::CLeastSq(int n) : sigma(1.0), m_pll(0.0) {
    if (!resize(1, n, 0))
        clear();
}

CLeastSq::~CLeastSq() {}

int CLeastSq::Create(int m, int n) {
    if (resize(m, n, m))
        return 1;
    clear();
    return 0;
}

void CLeastSq::clear() {
    resize(0, 0, 0);
    rowLength = 0;
}

int CLeastSq::resize(int m, int n, int varSize) {
    return zeroIfOutOfMemory([&] {
        if (m < 0 || n < 0 || n == std::numeric_limits<int>::max() || sizeOf(n, n + 1) < 0 ||
            sizeOf(m, n + 1) < 0)
            return 0;
        tolerance = kTolerance;
        InitObeq();
        m_formed = -1;
        ObeqSize = m;
        parameterNumber = n;
        rowLength = n + 1;
        normalSize = sizeOf(n, n + 1);
        Obeq.SetSize(sizeOf(m, n + 1));
        Noeq.SetSize(normalSize);
        Bcor.SetSize(n);
        Weight.SetSize(m);
        inverse.SetSize(normalSize);
        work.SetSize(normalSize);
        Var.SetSize(varSize);
        InitParameter(Obeq, 0.0);
        InitParameter(Noeq, 0.0);
        InitParameter(Bcor, 0.0);
        InitParameter(Weight, 1.0);
        return 1;
    });
}

// ---- Entering equations ----

int CLeastSq::InitParameter(CArray<double, double>& a, double v) {
    std::fill(a.GetData(), a.GetData() + a.GetSize(), v);
    return 1;
}

void CLeastSq::InitObeq() {
    currentObeq = -1;
    computationTime = 0.0;
    formTime = 0.0;
}

int CLeastSq::InitNoeq() {
    if (parameterNumber < 1 || Noeq.GetSize() != sizeOf(parameterNumber, parameterNumber + 1))
        return 0;
    InitParameter(Noeq, 0.0);
    computationTime = 0.0;
    formTime = 0.0;
    return 1;
}

int CLeastSq::InitBcor() {
    if (Bcor.IsEmpty())
        return 0;
    InitParameter(Bcor, 0.0);
    return 1;
}

int CLeastSq::SetObeq(int column, double value) {
    if (column < 0 || column > parameterNumber)
        return 0;
    const int equation = column == 0 ? currentObeq + 1 : currentObeq;
    if (column == 0 && equation >= ObeqSize && !addEquations(equation + 1))
        return 0;
    const long long index = elementIndex(equation, column, parameterNumber);
    if (!isInside(Obeq, index))
        return 0;
    currentObeq = equation;
    Obeq[static_cast<int>(index)] = value;
    return 1;
}

// Adds rows of zeros with weight 1 up to `size` equations.
int CLeastSq::addEquations(int size) {
    const int rowSize = parameterNumber + 1;
    if (sizeOf(size, rowSize) < 0)
        return 0;
    return zeroIfOutOfMemory([&] {
        grow(Weight, size);
        grow(Obeq, sizeOf(size, rowSize));
        for (; ObeqSize < size; ++ObeqSize) {
            Weight[ObeqSize] = 1.0;
            std::fill_n(Obeq.GetData() + sizeOf(ObeqSize, rowSize), rowSize, 0.0);
        }
        return 1;
    });
}

void CLeastSq::IncrementColumn() {
    if (currentObeq < std::numeric_limits<int>::max() - 2)  // SetObeq adds 2 to get the number of equations
        ++currentObeq;
}

int CLeastSq::SetWeight(double w) { return currentObeq < 0 ? 0 : SetWeight(currentObeq, w); }

int CLeastSq::SetWeight(int i, double w) {
    if (isInside(Weight, i))
        Weight[i] = w;
    return 1;
}

void CLeastSq::SetNoeq(int i, int j, double v) {
    const long long index = elementIndex(i, j, parameterNumber);
    if (!isInside(Noeq, index))
        return;
    Noeq[static_cast<int>(index)] = v;
    m_formed = -1;
    if (j == parameterNumber && isInside(Bcor, i))
        Bcor[i] = v;
}

void CLeastSq::SetSigma(double s) { sigma = s; }
void CLeastSq::SetFormTime(double t) { formTime = t; }

// ---- Reading ----

int CLeastSq::GetObeqSize() const { return ObeqSize; }
int CLeastSq::GetObeqNumber() const { return ObeqSize; }
int CLeastSq::GetCurrentObeqNumber() const { return currentObeq + 1; }
int CLeastSq::GetDegreesOfFreedom() const { return ObeqSize - parameterNumber; }
double CLeastSq::GetBcor(int i) const { return elementAt(Bcor, i); }
double CLeastSq::GetVar(int i) const { return elementAt(Var, i); }
double CLeastSq::GetComputationTime() const { return computationTime; }
double CLeastSq::GetFormTime() const { return formTime; }

double CLeastSq::GetObeq(int column) const {
    return elementAt(Obeq, elementIndex(currentObeq, column, parameterNumber));
}

double CLeastSq::GetNoeq(int i, int j) const { return elementAt(Noeq, elementIndex(i, j, parameterNumber)); }

double CLeastSq::GetCovar(int i, int j) const {
    return elementAt(inverse, elementIndex(i, j, parameterNumber));
}

int CLeastSq::time(unsigned long* ms) const {
    if (ms)
        *ms = millisecondsOf(system::fileTimeNow());
    return 1;
}

// ---- Times and forming; solving is in solution.cpp ----

// Three readings of the exact clock take as long as solving 8 x 4, some 0.1 us. So brief stages are timed by
// the last tick of the clock, which is read in a tenth of that.
int CLeastSq::timedSolve(int (CLeastSq::*form)(int, int), bool (CLeastSq::*solver)()) {
    constexpr double kBrief = 10000.0;  // products
    const double unknowns = parameterNumber;
    const auto clock = (ObeqSize + unknowns) * unknowns * unknowns <= kBrief ? &system::fileTimeOfLastTick
                                                                             : &system::fileTimeNow;
    std::uint32_t start = millisecondsOf(clock());
    if (form) {
        if (!(this->*form)(ObeqSize, parameterNumber))
            return 0;
        const std::uint32_t formed = millisecondsOf(clock());
        formTime = static_cast<double>(formed - start);
        start = formed;
    }
    const int result = solveBy(solver, form != nullptr);
    computationTime = static_cast<double>(millisecondsOf(clock()) - start);
    return result;
}

bool CLeastSq::hasUnknowns() const {
    if (parameterNumber < 1 || Bcor.GetSize() != parameterNumber)
        return false;
    const int size = sizeOf(parameterNumber, parameterNumber + 1);
    return Noeq.GetSize() == size && work.GetSize() == size && inverse.GetSize() == size;
}

bool CLeastSq::hasEquations(int m) const {
    return m >= 0 && m <= Weight.GetSize() && sizeOf(m, parameterNumber + 1) >= 0 &&
           sizeOf(m, parameterNumber + 1) <= Obeq.GetSize();
}

int CLeastSq::Lessqu(int m, int n) { return LessquFast(m, n); }

int CLeastSq::LessquFast(int m, int n) {
    if (n != parameterNumber || !hasUnknowns() || !hasEquations(m))
        return 0;
    m_formed = -1;
    return zeroIfOutOfMemory([&] {
        InitParameter(Noeq, 0.0);
        m_pll = addGram({Obeq.GetData(), Weight.GetData(), m, n}, Noeq.GetData());
        mirror(Noeq.GetData(), n);
        m_formed = m;
        return 1;
    });
}
