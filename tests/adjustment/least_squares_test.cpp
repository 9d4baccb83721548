// CLeastSq as a container of equations; its single steps, statistics, clock and file.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <vector>

#include "tests/adjustment/solvers.h"
#include "tests/temp_folder.h"

namespace {

TEST(LeastSquares, AnEngineWithoutUnknownsDoesNothing) {
    CLeastSq none;
    EXPECT_EQ(none.InitNoeq(), 0);
    EXPECT_EQ(none.InitBcor(), 0);
    EXPECT_EQ(none.Solve(), 0);
    EXPECT_EQ(none.LUDivid(), 0);
    EXPECT_EQ(none.CheckNoeq(), 1);
    EXPECT_EQ(none.CalSigma2(), std::numeric_limits<double>::max());
}

TEST(LeastSquares, EntersEquationsAndGrows) {
    CLeastSq adjustment(2, 2);
    EXPECT_EQ(adjustment.SetWeight(2.0), 0) << "no equation begun";
    EXPECT_EQ(adjustment.SetObeq(1, 5.0), 0) << "no equation begun";
    enter(adjustment, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    EXPECT_EQ(adjustment.GetObeqSize(), 3);
    EXPECT_EQ(adjustment.GetObeqNumber(), 3);
    EXPECT_EQ(adjustment.GetCurrentObeqNumber(), 3);
    EXPECT_EQ(adjustment.GetDegreesOfFreedom(), 1);
    EXPECT_EQ(adjustment.Weight[2], 1.0);
    EXPECT_EQ(adjustment.GetObeq(2), 9.0);
    adjustment.IncrementColumn();
    EXPECT_EQ(adjustment.SetObeq(1, 4.0), 0) << "beyond the last row";
    EXPECT_EQ(adjustment.SetObeq(0, 4.0), 1);
    EXPECT_EQ(adjustment.ObeqSize, 5);
    EXPECT_EQ(adjustment.Obeq[9], 0.0) << "a row of zeros is left between";
    EXPECT_EQ(adjustment.Obeq[12], 4.0);

    adjustment.InitObeq();
    adjustment.IncrementColumn();
    adjustment.SetObeq(0, -4.0);
    EXPECT_EQ(adjustment.SetObeq(3, 1.0), 0);
    EXPECT_EQ(adjustment.SetObeq(-1, 1.0), 0);
    EXPECT_EQ(adjustment.Obeq[0], 1.0) << "rows are kept";
    EXPECT_EQ(adjustment.Obeq[3], -4.0);
    EXPECT_EQ(adjustment.SetWeight(99, 1.0), 1);
}

TEST(LeastSquares, ClearsNormalEquationsAndUnknowns) {
    CLeastSq adjustment(3, 2);
    adjustment.SetNoeq(1, 2, 8.0);
    EXPECT_EQ(adjustment.GetNoeq(1, 2), 8.0);
    EXPECT_EQ(adjustment.GetBcor(1), 8.0) << "the right-hand side";
    adjustment.computationTime = adjustment.formTime = 9.0;
    EXPECT_EQ(adjustment.InitNoeq(), 1);
    EXPECT_EQ(adjustment.InitBcor(), 1);
    EXPECT_EQ(adjustment.GetNoeq(1, 2), 0.0);
    EXPECT_EQ(adjustment.GetBcor(1), 0.0);
    EXPECT_EQ(adjustment.GetComputationTime(), 0.0);
    EXPECT_EQ(adjustment.formTime, 0.0);
}

TEST(LeastSquares, IndicesBeyondItsTablesReadZeroAndWriteNothing) {
    CLeastSq adjustment(3, 2);
    adjustment.SetNoeq(2, 2, 1.0);
    EXPECT_EQ(adjustment.GetNoeq(9, 9), 0.0);
    EXPECT_EQ(adjustment.GetBcor(-1), 0.0);
    EXPECT_EQ(adjustment.GetVar(7), 0.0);
    EXPECT_EQ(adjustment.GetCovar(-1, 0), 0.0);
    EXPECT_EQ(adjustment.Lessqu(4, 2), 0);
    EXPECT_EQ(adjustment.Lessqu(3, 1), 0);
    EXPECT_EQ(adjustment.Lessqu(-1, 2), 0);
    EXPECT_EQ(adjustment.Lessqu(0, 2), 1) << "a sum of no equations";
}

TEST(LeastSquares, MakesRoomForAsManyAsItIsTold) {
    CLeastSq adjustment(3, 2), single(1);
    EXPECT_EQ(adjustment.Create(3, -1), 0);
    EXPECT_EQ(adjustment.Create(2147483647, 2147483646), 0);
    EXPECT_EQ(adjustment.ObeqSize, 0);
    EXPECT_EQ(adjustment.parameterNumber, 0);
    EXPECT_EQ(adjustment.rowLength, 0);
    EXPECT_EQ(CLeastSq(-1).GetCurrentObeqNumber(), 0) << "refused";
    EXPECT_EQ(single.rowLength, 2);
    EXPECT_EQ(single.ObeqSize, 1);
    EXPECT_EQ(single.Obeq.GetSize(), 2);
    EXPECT_EQ(single.Var.GetSize(), 0);
    single.SetObeq(0, 1.0);
    EXPECT_EQ(single.SetWeight(3.0), 1);
    EXPECT_EQ(single.Weight[0], 3.0);
    single.Bcor[0] = 5.0;
    EXPECT_EQ(single.Create(1, 2), 1);
    EXPECT_EQ(single.rowLength, 3);
    EXPECT_EQ(single.Bcor[0], 0.0);
    EXPECT_EQ(single.Weight[0], 1.0);
}

TEST(LeastSquares, MeasuresItsStages) {
    using Clock = std::chrono::steady_clock;
    CLeastSq adjustment(300, 300);  // takes some tens of milliseconds
    for (int k = 0; k < 300; ++k)
        for (int j = 0; j < 300; ++j)
            adjustment.SetObeq(j, j == k ? 1.0 : 0.0);
    adjustment.SetFormTime(1e6);
    EXPECT_EQ(adjustment.GetFormTime(), 1e6);
    const Clock::time_point start = Clock::now();
    ASSERT_EQ(adjustment.PISolve(), 1);
    const double passed = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    const double measured = adjustment.GetFormTime() + adjustment.GetComputationTime();
    EXPECT_GT(measured, passed / 2 - 2);
    EXPECT_LT(measured, passed + 2);
}

TEST(LeastSquares, SelfTestsAndSingleSteps) {
    const std::vector<double> solutions[] = {{1, 2, 3}, {1, -1, 2, -2}};
    for (const auto& solution : solutions) {
        const int n = static_cast<int>(solution.size());
        CLeastSq adjustment;
        n == 3 ? adjustment.TestData31() : adjustment.TestData4();
        const double below = adjustment.GetNoeq(2, 1);
        adjustment.SetNoeq(2, 1, std::nan(""));  // the half that is not read
        for (const auto& solve :
             {&CLeastSq::TestChores, &CLeastSq::SolveWithReduc, &CLeastSq::PIChores, &CLeastSq::SwpMat}) {
            adjustment.InitBcor();
            ASSERT_EQ((adjustment.*solve)(), 1);
            for (int i = 0; i < n; ++i)
                EXPECT_NEAR(adjustment.GetBcor(i), solution[static_cast<std::size_t>(i)], 1e-14);
        }
        EXPECT_EQ(adjustment.LUDivid(), 1);
        EXPECT_EQ(adjustment.ForwardSubstiotution(), 1);
        EXPECT_EQ(adjustment.InitBcor(), 1);
        EXPECT_EQ(adjustment.BackwardSubstiotution(), 1);
        EXPECT_NEAR(std::fabs(adjustment.GetBcor(0)), 1.0, 1e-14) << "from the work table";
        EXPECT_EQ(adjustment.GetDegreesOfFreedom(), -n);
        ASSERT_EQ(adjustment.TestInvers(), 1);
        adjustment.SetNoeq(2, 1, below);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                double unit = 0.0;
                for (int k = 0; k < n; ++k)
                    unit += adjustment.GetNoeq(i, k) * adjustment.GetCovar(k, j);
                EXPECT_NEAR(unit, i == j, 1e-14);
            }
        }
        adjustment.InitNoeq();
        EXPECT_EQ(adjustment.TestChores(), 0);
        EXPECT_EQ(adjustment.TestInvers(), 0);
        EXPECT_EQ(adjustment.CheckNoeq(), 0);
        adjustment.TestBook();
    }
}

// Of 1, 3, 4 with weights 1, 1, 2: the mean is 3, the residuals are -2, 0, 1.
TEST(LeastSquares, WeightedMeanByHand) {
    CLeastSq mean(3, 1);
    enter(mean, {{1, 1}, {1, 3}});
    enter(mean, {{1, 4}}, 2.0);
    ASSERT_EQ(mean.Solve(), 1);
    EXPECT_EQ(mean.GetBcor(0), 3.0);
    EXPECT_EQ(mean.CalSigma2(), 3.0);
    EXPECT_DOUBLE_EQ(mean.CalStandard(), std::sqrt(5.0 / 3.0));
    EXPECT_DOUBLE_EQ(mean.CalStandard2(), std::sqrt(5.0 / 2.0));
    mean.CalVarianceOfEstimate();
    EXPECT_EQ(mean.GetCovar(0, 0), 0.25) << "sigma is 1 until it is set";
    mean.SetSigma(mean.CalSigma2());
    mean.CalVarianceOfEstimate();
    EXPECT_EQ(mean.GetCovar(0, 0), 0.75);
}

TEST(LeastSquares, VariancesOfObservationsByHand) {
    CLeastSq line(3, 2);  // N^-1 = [5 -3; -3 3] / 6
    enter(line, {{1, 0, 1}, {1, 1, 2}, {1, 2, 4}});
    ASSERT_EQ(line.Solve(), 1);
    EXPECT_EQ(line.GetNoeq(0, 1), 3.0);
    EXPECT_EQ(line.GetNoeq(1, 0), 3.0);
    ASSERT_EQ(line.CalVarianceOfObservation(), 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(line.GetVar(i), i == 1 ? 1.0 / 3.0 : 5.0 / 6.0, 1e-15);
}

TEST(LeastSquares, WithoutRedundancySumsAreDividedByTheNumberOfEquations) {
    CLeastSq exact(2, 2);
    enter(exact, {{1, 0, 1}, {0, 1, 2}});
    ASSERT_EQ(exact.Solve(), 1);
    exact.Bcor[0] = 3.0;
    EXPECT_DOUBLE_EQ(exact.CalStandard2(), std::sqrt(2.0));
    EXPECT_DOUBLE_EQ(exact.CalSigma2(), 2.0);
}

class LeastSquaresFile : public TempFolder {};

TEST_F(LeastSquaresFile, MarksADiagonalBelowTheTolerance) {
    const std::filesystem::path before = std::filesystem::current_path();
    CLeastSq adjustment(0, 2);
    enterNormal(adjustment, {12.5, -1e-300, 0, 0, 1e-308});
    std::filesystem::current_path(folder);
    EXPECT_EQ(adjustment.SaveErrorNoeqStatus(2, 3), 1);
    EXPECT_EQ(get("Noeq.txt"), "Col:2 Row:3\n#1.2e+01 -1.0e-300 0.0e+00 \n0.0e+00 *1.0e-308 0.0e+00 \n");
    EXPECT_EQ(adjustment.CheckNoeq(), 0);
    std::filesystem::remove("Noeq.txt");
    std::filesystem::create_directory("Noeq.txt");
    EXPECT_EQ(adjustment.SaveErrorNoeqStatus(2, 3), 0);
    std::filesystem::current_path(before);
}

TEST(LeastSquares, ClockIsNineHoursAheadOfUtc) {
    unsigned long ms = 0;
    const std::time_t before = std::time(nullptr);
    ASSERT_EQ(CLeastSq().time(&ms), 1);
    const long long expected = (before % 86400 + 9 * 3600) * 1000LL,
                    late = (static_cast<long long>(ms) - expected + 86400000) % 86400000;
    EXPECT_NEAR(static_cast<double>(late), 1000.0, 1001.0);
}

}  // namespace
