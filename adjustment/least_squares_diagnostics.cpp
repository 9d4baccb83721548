// The diagnostic file of CLeastSq, its self-tests and the hooks for debugging.
#include <fieldscan/framework/file.h>
#include <fieldscan/least_squares.h>

#include <cmath>
#include <string>

#include "platform/framework/number_text.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

int CLeastSq::CheckNoeq() const {
    for (int i = 0; i < parameterNumber; ++i)
        if (!(std::fabs(GetNoeq(i, i)) > tolerance))
            return 0;
    return 1;
}

int CLeastSq::SaveErrorNoeqStatus(int rows, int cols) const {
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!file.Open(u"Noeq.txt", CFile::modeCreate | CFile::modeWrite))
            return 0;
        std::string text = "Col:";
        appendInt(text, rows);
        text += " Row:";
        appendInt(text, cols);
        text += '\n';
        int written = file.Write(text.data(), static_cast<unsigned int>(text.size()));
        for (int i = 0; i < rows && written; ++i) {
            text.clear();
            for (int j = 0; j < cols; ++j) {
                const long long index = i * (parameterNumber + 1LL) + j;  // `cols` may exceed n + 1
                const double element = index < Noeq.GetSize() ? Noeq[static_cast<int>(index)] : 0.0;
                if (i == j)
                    text += element < tolerance ? '*' : '#';
                appendExponent(text, element, 1);
                text += ' ';
            }
            text += '\n';
            written = file.Write(text.data(), static_cast<unsigned int>(text.size()));
        }
        return file.Close() && written ? 1 : 0;
    });
}

void CLeastSq::Trace() {}

int CLeastSq::DisplayObeq() { return 1; }
int CLeastSq::DisplayNoeq() { return 1; }
int CLeastSq::DisplayBcor() { return 1; }
int CLeastSq::DisplayWorkMemory(CArray<double, double>&) { return 1; }
int CLeastSq::DisplayUnitMatrix() { return 1; }

// ---- Self-tests ----

int CLeastSq::TestChores() {
    return LUDivid() && ForwardSubstiotution() && BackwardSubstiotution() && DisplayNoeq() &&
           DisplayWorkMemory(work) && DisplayBcor();
}

int CLeastSq::TestInvers() {
    return LUDivid() && CalLInverse() && CalNoeqInverse() && DisplayNoeq() && DisplayWorkMemory(inverse) &&
           DisplayUnitMatrix();
}

void CLeastSq::TestBook() {
    const double observed[] = {2.1, 3.9, 6.2, 7.8}, weights[] = {1.0, 2.0, 2.0, 1.0};
    CLeastSq line(2);
    for (int k = 0; k < 4; ++k) {
        line.SetObeq(0, 1.0);
        line.SetObeq(1, k + 1.0);
        line.SetObeq(2, observed[k]);
        line.SetWeight(weights[k]);
    }
    if (!line.Solve() || !line.CalVarianceOfObservation())
        return;
    for (int i = 0; i < 2; ++i) {
        line.GetBcor(i);
        line.GetCovar(i, i);
    }
    for (int k = 0; k < 4; ++k)
        line.GetVar(k);
    line.DisplayObeq();
    line.DisplayNoeq();
    line.DisplayBcor();
}

void CLeastSq::TestData31() {
    const double normal[] = {4, 1, 0, 6, 1, 5, 2, 17, 0, 2, 6, 22};
    Create(0, 3);
    for (int k = 0; k < 12; ++k)
        SetNoeq(k / 4, k % 4, normal[k]);
}

void CLeastSq::TestData4() {
    const double normal[] = {5, 1, 0, 1, 2, 1, 6, 2, 0, -1, 0, 2, 7, 1, 10, 1, 0, 1, 8, -13};
    Create(0, 4);
    for (int k = 0; k < 20; ++k)
        SetNoeq(k / 5, k % 5, normal[k]);
}
