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
// Indices of the getters and setters are not checked for the caller: a wrong one reads 0.0 and
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
    void IncrementColumn();  // skips an equation: its row stays as it was
    // Of the current equation, or of equation i. A negative weight takes out an equation that was entered
    // with the positive one: the solution is that of the others, as long as they determine the unknowns and
    // their coordinates are not millions of times closer together than what is taken out. Returns 1; 0 when
    // no equation has been begun. The second returns 1 also where there is no such row.
    int SetWeight(double w);
    int SetWeight(int i, double w);
    // Element (i, j) of the normal equations, j = n the right-hand side, which is stored as Bcor(i) too. The
    // solvers read only j >= i.
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
    // How exact. Let VIF be the variance inflation factor, the largest N_ii (N^-1)_ii: how many times the
    // correlations enlarge a cofactor.
    // - VIF up to 64, fewer than 45000 equations, no negative weight: N is solved in double. Unknowns and
    //   cofactors err by some 1e-14, and by m eps at most for the order of the sums (eps = 2^-52); an unknown
    //   far below its own standard deviation may lose more of itself.
    // - Else, and where the observations cancel in an unknown (what they would let it be,
    //   sqrt(l^T P l (N^-1)_ii), exceeds 256 times its value and its standard deviation), both are refined
    //   from the equations in double-double arithmetic: exact to the last digit that the equations as stored
    //   determine. An unknown that even so cannot be told from 0 is 0.
    // - Normal equations that were entered are exact as they stand: x is refined with b - N x, and from a
    //   VIF of 64 on the cofactors too.
    //
    // Refining takes the equations that N is the sum of. What has changed since the forming is noticed, in
    // the arrays too: where the equations no longer give Noeq to the last bit, Noeq counts as entered.
    // Observations and weights beyond 1e+-140 are refused or lose digits.
    //
    // What is refused: a diagonal of N at or below `tolerance`. From the equations: fewer than unknowns; a
    // column of sqrt(P) A of which less than 1e-13 of its length is left beside those before it; an unknown
    // whose last correction exceeds 1e-13 of it and of its standard deviation. Entered: a pivot
    // <= max(tolerance, 64 n eps N_kk), a VIF of 1 / (64 n eps) and more, where rounding N could
    // have made it singular. So coincident points are refused at any coordinates, and ten thousand pairs of
    // points a centimetre apart are accepted even at 5000 km.

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

    int NewChores();  // by Cholesky: LUDivid and the four steps after it; up to 16 unknowns as SwpMat
    int PIChores();   // by Cholesky
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

    // How many equations Noeq was formed from; -1 when it was entered.
    int m_formed;
    double m_observations;  // l^T |P| l of those equations, negated when a weight is negative
};

#endif
