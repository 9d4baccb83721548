// CLeastSq: least-squares adjustment of linear observation equations.
#ifndef FIELDSCAN_LEAST_SQUARES_H
#define FIELDSCAN_LEAST_SQUARES_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>

// m observation equations l = A x + v with weights P, n unknowns x (Gauss-Markov model; Koch, Parameter
// Estimation and Hypothesis Testing in Linear Models, chapter 3):
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
// Operations that can fail return 1 for success and 0 for failure, also when memory runs out; nothing is
// thrown. A wrong index reads 0.0 and writes nothing.
class FIELDSCAN_API CLeastSq {
public:
    CLeastSq();              // no equations, no unknowns: Create must follow
    CLeastSq(int m, int n);  // Create(m, n)
    // Room for one equation, Var empty; SetObeq adds more equations as they are entered.
    explicit CLeastSq(int n);
    CLeastSq(const CLeastSq&) = delete;
    CLeastSq& operator=(const CLeastSq&) = delete;
    virtual ~CLeastSq();

    // Sizes all storage; equations, normal equations and unknowns become 0, weights 1, times 0, and no
    // equation is begun. May be called again. Sigma is kept. Returns 1; 0 for a negative number, more
    // elements than an array holds, or when memory runs out, and the object is then as the default
    // constructor makes it.
    int Create(int m, int n);

    // ---- Entering equations ----

    // Every element of `a` becomes `v`. Returns 1.
    int InitParameter(CArray<double, double>& a, double v);
    void InitObeq();  // no equation is begun, times 0; the rows stay as they are
    // N and its right-hand side become 0, times 0. Returns 1; 0, and nothing changes, when there are no
    // unknowns or Noeq does not have the size for them.
    int InitNoeq();
    int InitBcor();  // all unknowns become 0. Returns 1; 0 when there are none

    // Element `column` of the current equation: 0 .. n-1 the coefficients, n the observation. Column 0 begins
    // the next equation. Beyond the last row it adds rows of zeros with weight 1, up to this equation: also
    // for equations that were skipped there. Returns 1; 0, and nothing is stored, when the column is outside
    // 0 .. n, no equation has been begun, the current one was skipped beyond the last row, or memory runs
    // out.
    int SetObeq(int column, double value);
    void IncrementColumn();  // skips an equation: its row stays as it was
    // Weight of the current equation, or of equation i. An equation that is entered again with the negative
    // weight is taken out: the solution is that of the others, as long as they determine the unknowns and
    // their coordinates are not millions of times closer together than what is taken out. Returns 1; 0 when
    // no equation has been begun. The second form returns 1 also when there is no such row.
    int SetWeight(double w);
    int SetWeight(int i, double w);
    // Element (i, j) of the normal equations; j = n is the right-hand side, which becomes Bcor(i), too. The
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
    double GetVar(int i) const;           // of equation i: CalVarianceOfObservation
    double GetComputationTime() const;    // milliseconds of the last solving stage
    double GetFormTime() const;           // milliseconds of the last forming
    // Milliseconds of the day, UTC, plus nine hours; may exceed those of a day. The time of a stage is the
    // difference of two readings, in 32 bits without sign; it is meaningless when the stage spans midnight
    // UTC. Small systems, (m + n) n n <= 10000, take microseconds and are timed by the ticks of the system's
    // clock: the result is 0, rarely one tick. Returns 1.
    int time(unsigned long* ms) const;

    // ---- Solving ----
    //
    // Success (1): x is in Bcor and N^-1 in the inverse, symmetric, row stride n + 1, the last column 0. Noeq
    // keeps the normal equations. Failure (0) for a singular system or a number that is not finite: both
    // become NaN. 0 without unknowns, or when forming fails, and nothing changes.
    //
    // Methods: Cholesky (Golub and Van Loan, Matrix Computations, 4.2) or the sweep operator (Goodnight, The
    // American Statistician 33, 1979), then iterative refinement in double-double arithmetic (Bjorck, Linear
    // Algebra Appl. 88/89, 1987); N^-1 by Schulz's iteration (1933), or shifted Cholesky QR of the equations
    // (Fukaya et al., SIAM J. Sci. Comput. 42, 2020).
    //
    // Accuracy. VIF is the variance inflation factor, the largest N_ii (N^-1)_ii: how many times correlations
    // enlarge a cofactor; eps = 2^-52.
    // - VIF up to 64, up to 45000 equations, no negative weight: N is solved in double. Unknowns and
    //   cofactors err by some 1e-14, and by up to m eps from the order of the sums. An unknown far below its
    //   own standard deviation may lose more digits.
    // - Else, and where the observations cancel in an unknown, both are refined from the equations: exact to
    //   the last digit that the equations as stored determine. An unknown that double-double arithmetic
    //   cannot distinguish from 0 is 0. (|x_i| is at most sqrt(l^T P l (N^-1)_ii). Observations cancel in x_i
    //   when it and its standard deviation are less than 1/256 of that.)
    // - Normal equations that were entered are taken as exact: x is refined with b - N x, for VIFs above 64
    //   the cofactors, too.
    //
    // Refining needs the equations that N was formed from. When equations, weights or Noeq have changed
    // since, in the arrays too, so that the equations no longer give Noeq to the last bit, Noeq counts as
    // entered. Observations and weights beyond 1e+-140 are refused or lose digits.
    //
    // Refused in any case: a diagonal element of N <= `tolerance`.
    // Refused from the equations: fewer equations than unknowns; a column of sqrt(P) A that has less than
    // 1e-13 of its length when it is made orthogonal to those before it; an unknown whose last correction
    // exceeds 1e-13 of it and of its standard deviation.
    // Refused as entered: a pivot <= max(tolerance, 64 n eps N_kk), or a VIF above 1 / (64 n eps), since
    // rounding N could have made it singular.
    // So coincident points are refused at any coordinates, and 10 000 pairs of points 1 cm apart are accepted
    // even 5000 km from the origin.

    [[nodiscard]] int Solve();            // LessquFast(m, n), NewChores; both timed
    [[nodiscard]] int PISolve();          // Lessqu(m, n), PIChores; both timed
    [[nodiscard]] int SolveWithSwpMat();  // LessquFast(m, n), SwpMat; both timed
    [[nodiscard]] int SolveWithReduc();   // NewChores on what SetNoeq entered; timed

    // Form the normal equations of the first m equations; n must be the number of unknowns. Noeq(i, j) is the
    // sum of (Obeq(k, j) Obeq(k, i)) Weight(k), beginning at 0.0, in the order of the equations k. Column n
    // is A^T P l. Both give the same bits. Return 1; 0 when n is not the number of unknowns, there are fewer
    // than m equations or memory runs out.
    [[nodiscard]] int Lessqu(int m, int n);
    [[nodiscard]] int LessquFast(int m, int n);

    // By Cholesky: LUDivid and the four steps after it; up to 16 unknowns as SwpMat.
    [[nodiscard]] int NewChores();
    [[nodiscard]] int PIChores();  // by Cholesky
    [[nodiscard]] int SwpMat();    // by sweeping all pivots, which turns [N | b] into [N^-1 | x]

    // Single steps of NewChores, all on the work array, without refinement. Each needs the result of the step
    // before. Each returns 1; 0 when there are no unknowns or memory runs out.
    [[nodiscard]] int LUDivid();                // work = U | b with U^T U = N; also 0 for a singular N
    [[nodiscard]] int ForwardSubstiotution();   // b becomes y: U^T y = b; Bcor = y
    [[nodiscard]] int BackwardSubstiotution();  // Bcor = x: U x = y
    [[nodiscard]] int CalLInverse();            // U becomes U^-1, in place
    [[nodiscard]] int CalNoeqInverse();         // inverse = U^-1 U^-T

    // ---- Precision; after solving ----

    double CalStandard() const;   // sqrt(sum v^2 / m)
    double CalStandard2() const;  // sqrt(sum v^2 / f), f = m - n; f = m when m - n is below 1
    double CalSigma2() const;     // sum P v^2 / f: the variance of unit weight, not its root; f as above
    // All three return the largest finite double when there is no equation.

    // Multiplies the inverse by sigma, again at each call; with SetSigma(CalSigma2()) cofactors become
    // covariances. Returns 1.
    int CalVarianceOfEstimate();
    // Var(k) = a_k C a_k^T of every equation: cofactor of the adjusted observation where the inverse C holds
    // cofactors, variance where it holds covariances. Returns 1; 0 when memory runs out.
    [[nodiscard]] int CalVarianceOfObservation();

    // ---- Diagnostics ----

    // 1 when every |Noeq(i, i)| is greater than `tolerance`, or there are no unknowns; else 0.
    int CheckNoeq() const;
    // Writes `rows` by `cols` elements of Noeq to "Noeq.txt" in the current folder: docs/file_formats.md.
    // Returns 1; 0 when the file cannot be opened or written.
    [[nodiscard]] int SaveErrorNoeqStatus(int rows, int cols) const;

    void Trace();  // a hook for debugging, does nothing

    // Hooks for debugging, too: they do nothing and return 1.
    int DisplayObeq();
    int DisplayNoeq();
    int DisplayBcor();
    int DisplayWorkMemory(CArray<double, double>& memory);
    int DisplayUnitMatrix();

    // Run the single steps on the current normal equations, for the solution or the inverse. Return 1; 0 when
    // LUDivid returns 0.
    int TestChores();
    int TestInvers();
    // Solves a straight line through (1, 2.1), (2, 3.9), (3, 6.2), (4, 7.8) with weights 1, 2, 2, 1.
    void TestBook();
    // Normal equations for TestChores and TestInvers: 3 unknowns, solution 1, 2, 3; 4 unknowns, solution 1,
    // -1, 2, -2.
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

    int m_formed;  // number of equations that Noeq was formed from; -1 when it was entered
    double m_pll;  // [pll] = l^T |P| l of those equations, negated when a weight is negative
};

#endif
