// CLeastSq: least-squares adjustment of linear observation equations.
#ifndef FIELDSCAN_LEAST_SQUARES_H
#define FIELDSCAN_LEAST_SQUARES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>

// m observation equations l = A x + v with weights P, n unknowns x:
//
//   N = A^T P A    normal matrix            x = N^-1 A^T P l    unknowns
//   v = l - A x    residuals                N^-1                cofactors of the unknowns
//
//     CLeastSq adjustment(m, n);
//     for each equation:
//         for (int column = 0; column < n; ++column) adjustment.SetObeq(column, coefficient);
//         adjustment.SetObeq(n, observation);
//         adjustment.SetWeight(weight);                      // 1 unless it is set
//     if (adjustment.Solve()) adjustment.GetBcor(0) ...
//
// Operations that can fail return 1 for success and 0 for failure; nothing is thrown (memory exhaustion: 0).
// Indices of the getters and setters are not checked by the interface's own words; a wrong one reads 0.0 and
// writes nothing.
class FIELDSCAN_API CLeastSq {
public:
    CLeastSq();              // no equations, no unknowns: Create must follow
    CLeastSq(int m, int n);  // Create(m, n)
    // Room for one equation, and Var empty; more equations are made as they are entered.
    explicit CLeastSq(int n);
    CLeastSq(const CLeastSq&) = delete;
    CLeastSq& operator=(const CLeastSq&) = delete;
    virtual ~CLeastSq();

    // Sizes all storage; equations, normal equations and unknowns become 0, weights 1, times 0, and no
    // equation is begun. May be called again. Sigma is kept. Returns 1; 0 for a negative number or when there
    // is no memory for it, and the engine is then as the default constructor leaves it.
    int Create(int m, int n);

    // ---- Entering equations ----

    // Every element of `a` becomes `v`. Returns 1.
    int InitParameter(CArray<double, double>& a, double v);
    void InitObeq();  // no equation is begun, times 0; the rows stay as they are
    // N and its right-hand side become 0, times 0. Returns 1; 0 when there are no unknowns, or Noeq has not
    // the size for them, and then nothing changes.
    int InitNoeq();
    int InitBcor();  // all unknowns become 0. Returns 1; 0 when there are none

    // Element `column` of the current equation: 0 .. n-1 the coefficients, n the observation. Column 0 begins
    // the next equation; beyond the last row, rows of zeros with weight 1 are added up to it: one, unless
    // equations were skipped there. Returns 1; 0 when the column is outside 0 .. n, no such row has been
    // begun, or there is no memory, and then nothing is stored.
    int SetObeq(int column, double value);
    void IncrementColumn();          // skips an equation: its row stays as it was
    int SetWeight(double w);         // of the current equation. Returns 1; 0 when none has been begun
    int SetWeight(int i, double w);  // of equation i. Returns 1, also where there is no such row
    // Element (i, j) of the normal equations, j = n the right-hand side, which is stored as Bcor(i) too. The
    // solvers read j >= i alone.
    void SetNoeq(int i, int j, double v);
    void SetSigma(double s);     // the factor of CalVarianceOfEstimate; 1 until it is set
    void SetFormTime(double t);  // milliseconds

    // ---- Reading ----

    int GetObeqSize() const;              // m
    int GetObeqNumber() const;            // m
    int GetCurrentObeqNumber() const;     // equations begun
    int GetDegreesOfFreedom() const;      // m - n
    double GetObeq(int column) const;     // of the current equation
    double GetNoeq(int i, int j) const;   // of the normal equations, j = n the right-hand side
    double GetBcor(int i) const;          // the unknowns
    double GetCovar(int i, int j) const;  // N^-1; after CalVarianceOfEstimate times sigma
    double GetVar(int i) const;           // CalVarianceOfObservation
    double GetComputationTime() const;    // milliseconds of the last solving stage
    double GetFormTime() const;           // milliseconds of the last forming
    // Milliseconds of the day, UTC, plus nine hours; may exceed a day's. Stages are measured by the
    // difference of two readings in 32 bits without sign, so one that spans midnight UTC gets a meaningless
    // time. Those of small systems, (m + n) n n <= 10000, which take microseconds, are read at the ticks of
    // the system's clock: 0, and rarely a tick. Returns 1.
    int time(unsigned long* ms) const;

    // ---- Solving ----
    //
    // Success leaves x in Bcor and N^-1 (symmetric, row stride n + 1, the last column 0) in the inverse. Noeq
    // keeps the normal equations. Failure - a singular system, a number that is not finite - leaves NaN in
    // both, so that nothing looks right; without unknowns, or when forming fails, nothing changes.
    //
    // How exact: let g = max N_ii (N^-1)_ii, which tells how many times the correlations enlarge a cofactor.
    // Up to 64 the solver's own cofactors stand, and so do its unknowns unless the observations cancel in
    // one: what they would let it be, sqrt(l^T P l (N^-1)_ii), exceeds 256 times its value and its standard
    // deviation. They have lost two or three digits then, and what forming in order lost (at most m eps).
    // Otherwise the unknowns are refined, and above g = 64 the cofactors too: residuals of the equations in
    // double-double arithmetic, orthonormal equations, a Householder triangle of the weighted equations where
    // a pivot of N is at most 1e-11 of its diagonal. Both are then exact to the last digits that the
    // equations as stored determine.
    //
    // Refining takes the equations behind N. After SetObeq, SetWeight, SetNoeq, InitNoeq, InitParameter or
    // Create these count as unknown until the next forming, and the solver works with N alone; what is
    // written into Obeq, Weight or Noeq directly is not noticed. Observations and weights beyond 1e+-140 are
    // refused or lose digits.
    //
    // What is singular: a diagonal of N at or below `tolerance`. From the equations: fewer than unknowns; a
    // Householder diagonal |r_kk| <= max(1e-13, 16 m eps) times the length of its weighted column; a
    // refinement that does not converge. Without equations: a pivot <= max(tolerance, 64 n eps N_kk).
    // eps = 2^-52. So coincident points are refused at any coordinates, and ten thousand pairs of points a
    // centimetre apart are not at millions. An equation with a negative weight, which takes another one out,
    // has no root: the triangle is then that of N, and cofactors are only as good as N.

    int Solve();            // LessquFast(m, n), NewChores; both timed
    int PISolve();          // Lessqu(m, n), PIChores; both timed
    int SolveWithSwpMat();  // LessquFast(m, n), SwpMat; both timed
    int SolveWithReduc();   // NewChores on what SetNoeq entered; timed

    // Forms the normal equations: Noeq(i, j) is 0.0, then for each equation k in order grows by
    // (Obeq(k, j) Obeq(k, i)) Weight(k). Column n is A^T P l. `m`: the first m equations; n: all unknowns.
    // Both give the same bits. Returns 1; 0 when n is not the number of unknowns, there are fewer than m
    // equations or there is no memory.
    int Lessqu(int m, int n);
    int LessquFast(int m, int n);

    int NewChores();  // by Cholesky: LUDivid and the four steps behind it; up to 16 unknowns as SwpMat
    int PIChores();   // by N = L D L^T, without square roots
    int SwpMat();     // by sweeping the pivots, which turns [N | b] into [N^-1 | x]

    // Single steps of NewChores, all on the work array. No refinement; without the step before, the results
    // mean nothing. Each returns 1; 0 when there are no unknowns or no memory.
    int LUDivid();                // work = U | b with U^T U = N. 0 for a singular N too
    int ForwardSubstiotution();   // b becomes y: U^T y = b; Bcor = y
    int BackwardSubstiotution();  // Bcor = x: U x = y
    int CalLInverse();            // U becomes U^-1, in place
    int CalNoeqInverse();         // inverse = U^-1 U^-T

    // ---- Precision; after solving ----

    double CalStandard() const;   // sqrt(sum v^2 / m)
    double CalStandard2() const;  // sqrt(sum v^2 / f), f = m - n; f = m when that is below 1
    double CalSigma2() const;     // sum P v^2 / f: the variance of unit weight, not its root; f as above
    // The three give the largest finite double when there is no equation.

    // Multiplies the inverse by sigma, each time it is called; with SetSigma(CalSigma2()) cofactors become
    // covariances. Returns 1.
    int CalVarianceOfEstimate();
    // Var(k) = a_k C a_k^T of every equation, C the inverse as it stands: cofactor or variance of the
    // adjusted observation. Returns 1; 0 when there is no memory for Var.
    int CalVarianceOfObservation();

    // ---- Diagnostics ----

    // 1 when every |Noeq(i, i)| is greater than `tolerance`, or there are no unknowns; else 0.
    int CheckNoeq() const;
    // Writes `rows` by `cols` elements of Noeq to "Noeq.txt" in the current folder: docs/file_formats.md.
    // Returns 1; 0 when the file cannot be opened or written.
    int SaveErrorNoeqStatus(int rows, int cols) const;

    void Trace();  // a hook for debugging, does nothing

    // The same, and they return 1.
    int DisplayObeq();
    int DisplayNoeq();
    int DisplayBcor();
    int DisplayWorkMemory(CArray<double, double>& memory);
    int DisplayUnitMatrix();

    // Run the single steps on the current normal equations: the solution, the inverse. 1, or 0 when LUDivid
    // gives 0.
    int TestChores();
    int TestInvers();
    // A straight line through (1, 2.1), (2, 3.9), (3, 6.2), (4, 7.8) with weights 1, 2, 2, 1, solved and
    // read.
    void TestBook();
    // Normal equations for TestChores and TestInvers: 3 unknowns with the solution 1, 2, 3; 4 unknowns with
    // the solution 1, -1, 2, -2.
    void TestData31();
    void TestData4();

    // ---- Data ----

    double sigma;                    // SetSigma
    int ObeqSize;                    // m: equations that the storage holds
    int parameterNumber;             // n: unknowns
    int rowLength;                   // n + 1: the coefficients, then the observation
    int normalSize;                  // n (n + 1)
    int currentObeq;                 // the equation being entered, -1 before the first
    double computationTime;          // milliseconds, GetComputationTime
    double formTime;                 // milliseconds, GetFormTime
    double tolerance;                // 2.2250738585072014e-307, ten times the smallest normal double
    CArray<double, double> Obeq;     // m x (n + 1), row by row
    CArray<double, double> Noeq;     // n x (n + 1), row by row: N | A^T P l
    CArray<double, double> Weight;   // m
    CArray<double, double> Bcor;     // n
    CArray<double, double> inverse;  // n x (n + 1), row by row: N^-1
    CArray<double, double> work;     // n x (n + 1)
    CArray<double, double> Var;      // m

private:
    int resize(int m, int n, int varSize);
    void clear();
    int addEquations(int size);
    bool hasUnknowns() const;
    bool hasEquations(int m) const;
    bool hasResiduals() const;
    double residual(int k) const;
    double sumOfSquares() const;
    int redundancyOrSize() const;
    int timedSolve(int (CLeastSq::*form)(int, int), bool (CLeastSq::*method)());
    int solveBy(bool (CLeastSq::*method)(), bool justFormed);
    bool solveExactly(bool (CLeastSq::*method)(), bool justFormed);
    bool solveByFaster();
    bool solveByCholesky();
    bool solveBySweeping();

    // How many equations Noeq is the sum of; -1 when it was entered, or an equation changed since.
    int m_formed;
    double m_observations;  // l^T |P| l of those equations, with a minus sign when a weight is negative
};

#endif
