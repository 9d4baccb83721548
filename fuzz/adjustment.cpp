// CLeastSq driven by any sequence of calls, its normal equations compared with the plain triple loop; the
// plane transformations on any points.
#include <fieldscan/helmert.h>
#include <fieldscan/least_squares.h>

#include <vector>

#include "fuzz/input.h"

namespace {

// N_ij = sum over k of (a_kj a_ki) p_k, over the first m equations in order, as least_squares.h gives it.
void compareForming(const CLeastSq& engine, int m) {
    const int n = engine.parameterNumber, length = n + 1;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j <= n; ++j) {
            double sum = 0.0;
            for (int k = 0; k < m; ++k) {
                const double* row = engine.Obeq.GetData() + k * length;
                // The lower half is the copy of the upper one.
                const int a = j < i ? j : i, b = j < i ? i : j;
                sum += row[b] * row[a] * engine.Weight.GetData()[k];
            }
            require(same(engine.Noeq.GetData()[i * length + j], sum));
        }
    }
}

void drive(FuzzedDataProvider& input) {
    CLeastSq engine;
    for (int calls = 0; calls < 200 && input.remaining_bytes() > 0; ++calls) {
        const int a = input.ConsumeIntegralInRange(-2, 12), b = input.ConsumeIntegralInRange(-2, 12);
        const int m = engine.ObeqSize, n = engine.parameterNumber;
        switch (input.ConsumeIntegralInRange(0, 15)) {
            case 0:
                engine.Create(a, b);
                break;
            case 1:
            case 2:
                for (int k = 0; k < b; ++k)
                    engine.SetObeq(k % (n + 1), number(input));
                break;
            case 3:
                engine.SetWeight(a, number(input));
                break;
            case 4:
                engine.SetWeight(number(input));
                break;
            case 5:
                engine.SetNoeq(a, b, number(input));
                break;
            case 6:
                engine.InitNoeq();
                break;
            case 7:
                engine.InitParameter(engine.Bcor, number(input));
                break;
            case 8:
                if (engine.LessquFast(m, n))
                    compareForming(engine, m);
                break;
            case 9:
                (void)engine.Solve();
                break;
            case 10:
                (void)engine.PISolve();
                break;
            case 11:
                (void)engine.SolveWithSwpMat();
                break;
            case 12:
                (void)engine.SolveWithReduc();
                break;
            case 13:
                (void)engine.LUDivid();
                (void)engine.ForwardSubstiotution();
                (void)engine.BackwardSubstiotution();
                (void)engine.CalLInverse();
                (void)engine.CalNoeqInverse();
                break;
            case 14:
                engine.CalVarianceOfEstimate();
                (void)engine.CalVarianceOfObservation();
                engine.CalSigma2();
                engine.CalStandard2();
                break;
            default:
                engine.IncrementColumn();
                engine.GetObeq(a);
                engine.GetCovar(a, b);
                engine.GetVar(b);
                engine.CheckNoeq();
        }
        require(engine.parameterNumber == 0 || engine.rowLength == engine.parameterNumber + 1);
        require(engine.Obeq.GetSize() >= engine.ObeqSize * engine.rowLength || engine.ObeqSize == 0);
    }
}

void fitPlanes(FuzzedDataProvider& input) {
    CArray<CXYZ, CXYZ&> first, second;
    for (CArray<CXYZ, CXYZ&>* points : {&first, &second}) {
        for (int left = input.ConsumeIntegralInRange(0, 24); left > 0; --left) {
            const double x[] = {number(input), number(input)};
            CXYZ point(CString(input.ConsumeIntegralInRange<unsigned short>('A', 'F')), x[0], x[1], 0);
            points->Add(point);
        }
    }
    CHelmert helmert;
    CPlaneAffine affine;
    (void)helmert.SetPoints(first, second);
    (void)affine.SetPoints(first, second);
    require(helmert.sourcePoints.GetSize() == helmert.targetPoints.GetSize());
    for (int i = 0; i < helmert.sourcePoints.GetSize(); ++i)
        require(helmert.sourcePoints[i].name == helmert.targetPoints[i].name);
    CXYZ there, back;
    if (helmert.CalPara() && helmert.Transform(CXYZ(1, 2, 3), there, 1))
        (void)helmert.Transform(there, back, 0);
    if (affine.CalPara() && affine.Transform(CXYZ(1, 2, 3), there, 1))
        (void)affine.Transform(there, back, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    input.ConsumeBool() ? drive(input) : fitPlanes(input);
    return 0;
}
