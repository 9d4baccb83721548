// Every file operation with every fault of the medium: what gives 1 has done all of it, what gives 0 keeps
// what was there. A program that is killed on the way loses nothing either.
#include <sys/wait.h>
#include <unistd.h>

#include <set>
#include <utility>

#include "tests/faults/file_operations.h"

namespace {

using Faults = FileOperations;

TEST_F(Faults, LoseNothing) {
    for (const Operation& operation : operations()) {
        std::set<int> happened;
        for (const bool present : {true, false}) {
            prepare(operation, present);
            if (operation.kind == reads ? !present : operation.run() != 1)
                continue;                   // a list is only added to an existing file
            if (operation.kind != reads) {  // the name of a new file has to be on the medium too
                EXPECT_EQ(faults::folderFlushes(), operation.kind == rewrites || !present) << operation.name;
            }
            wanted = get("file");
            for (int fault = faults::open; fault != faults::kFaults; ++fault) {
                for (int call = 1;; ++call) {
                    prepare(operation, present);
                    faults::arm(static_cast<faults::Fault>(fault), call);
                    const int result = operation.run();
                    const bool hasHappened = faults::hasHappened();
                    faults::arm(faults::none, 0);
                    if (!hasHappened)
                        break;
                    happened.insert(fault);
                    const std::string what = std::string(operation.name) + ", fault " +
                                             std::to_string(fault) + ", call " + std::to_string(call) +
                                             (present ? "" : ", no file before");
                    EXPECT_TRUE(tidy()) << what;
                    const bool done = result == 1 && operation.kind != reads;
                    EXPECT_TRUE(done ? get("file") == wanted : kept(operation, present)) << what;
                    if (fault == faults::flush || (fault == faults::read && operation.kind == reads)) {
                        EXPECT_EQ(result, 0) << what;
                    }
                    ASSERT_LT(call, 10000);
                }
            }
        }
        // An operation that never asks for this does not do what it promises.
        EXPECT_TRUE(happened.count(faults::open)) << operation.name;
        if (operation.kind == reads) {
            EXPECT_TRUE(happened.count(faults::read)) << operation.name;
        } else {
            EXPECT_TRUE(happened.count(faults::write)) << operation.name;
            EXPECT_TRUE(happened.count(faults::flush)) << operation.name;
            EXPECT_EQ(happened.count(faults::replace), operation.kind == rewrites) << operation.name;
        }
    }
}

// Whether `run`, in a program of its own, is killed at call number `call` of the system.
bool isKilledAt(int call, const std::function<int()>& run) {
    const pid_t child = fork();
    if (child == 0) {
        faults::arm(faults::killed, call);
        run();
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFSIGNALED(status);
}

// The next run needs no repair: it replaces what the killed one left, or adds to its whole lines.
TEST_F(Faults, AKilledProgramLosesNothing) {
    for (const Operation& operation : operations()) {
        const bool adds = operation.kind == appends || operation.kind == appendsMany;
        std::string added;
        for (const bool present : {true, false}) {
            prepare(operation, present);
            if (operation.kind == reads || operation.run() != 1)
                continue;
            wanted = get("file");
            if (adds && present)
                added = wanted.substr(old.size());
            int call = 1;
            for (prepare(operation, present); isKilledAt(call, operation.run); prepare(operation, present)) {
                const std::string what = std::string(operation.name) + ", call " + std::to_string(call++),
                                  left = get("file"), whole = left.substr(0, left.rfind('\n') + 1);
                if (left != before) {
                    EXPECT_TRUE(left == (operation.kind == rewrites ? wanted : wanted.substr(0, left.size())))
                        << what;
                }
                std::set<std::string> allowed = {wanted};
                if (adds)  // a line that was cut off goes, or is ended in a file of another kind
                    allowed.insert({whole + added, left + "\n" + added});
                EXPECT_EQ(operation.run(), 1) << what;
                EXPECT_EQ(allowed.count(get("file")), 1u) << what;
                EXPECT_TRUE(tidy()) << what;
            }
            EXPECT_GT(call, 3) << operation.name;
        }
    }
}

TEST_F(Faults, OfTheLastFlushAreNotReported) {
    CFile scan;
    EXPECT_EQ(ScanFileOpen(&scan, path("new")), 1);
    EXPECT_EQ(faults::folderFlushes(), 1);
    faults::arm(faults::flush, 1);
    EXPECT_EQ(ScanFileClose(&scan), 1) << "always";
    EXPECT_TRUE(faults::hasHappened());
}

// What throws here is a caller's own copy of an argument, or a list that the caller lets grow.
TEST_F(Faults, MemoryEnds) {
    std::vector<Operation> all = operations();
    CLeastSq engine, spoiled;
    CHelmert helmert;
    CPolyline line, smooth;
    CArray<int, int> order;
    for (int i = 0; i < 40; ++i)
        line.AddVertex(CVertex(i % 7, i % 5, i, 0));
    const auto solve = [&] {
        int status = engine.Create(60, 20);
        for (int k = 0; status && k < 60 * 21; ++k)
            status = engine.SetObeq(k % 21, k * 7919 % 1000 * 0.01 + (k % 21 == k / 21 % 21)) && true;
        return status && engine.Solve() ? 1 : 0;
    };
    const auto match = [&] {
        const int pairs = helmert.SetPoints(points, points);
        EXPECT_EQ(pairs, helmert.targetPoints.GetSize());
        return pairs > 0 && helmert.CalPara();
    };
    const auto sort = [&] {
        QuickSortKey(numbers, order, 1);
        EXPECT_EQ(order.GetSize() % numbers.GetSize(), 0);
        return order.IsEmpty() ? 0 : 1;
    };
    const std::pair<const char*, std::function<int()>> computations[] = {
        {"adjustment", solve},
        {"adjustment grows", [&] { return spoiled.SetObeq(0, 1.0); }},
        {"Helmert", match},
        {"adjustment made", [] { return CLeastSq(20).Create(30, 20); }},
        {"key sort", sort},
        {"shooting grid", [] { return CScanArea().CalShootAng(CWPK(1, 0, 1), CWPK(2, 0, 3)); }},
        {"spline", [&] { return (smooth = line).Spline(4); }},
        {"interpolation", [&] { return (smooth = line).InterpolateVertex(0.1); }}};
    for (const auto& [what, run] : computations)
        all.push_back({what, overwrites, run});
    const std::string versioned = "versioned points";
    for (const Operation& operation : all) {
        for (const bool present : {true, false}) {
            if (!present && (operation.kind == reads || operation.kind == overwrites))
                continue;
            prepare(operation, present);
            operation.run();
            wanted = get("file");
            for (int call = 1;; call += 1 + call / 8) {
                prepare(operation, present);
                back.SetSize(0);
                numbersBack.SetSize(0);
                moreBack.SetSize(0);
                textsBack.SetSize(0);
                spoiled.Create(1, 1);
                faults::arm(faults::memory, call);
                int result = 0;
                try {
                    result = operation.run();
                } catch (const std::bad_alloc&) {}
                const bool happened = faults::hasHappened();
                faults::arm(faults::none, 0);
                if (!happened)
                    break;
                const std::string what = std::string(operation.name) + ", allocation " + std::to_string(call);
                EXPECT_TRUE(tidy()) << what;
                if (result != 1) {
                    EXPECT_TRUE(kept(operation, present)) << what;
                }
                if (operation.kind != reads)
                    continue;
                EXPECT_EQ(result, 0) << what;
                for (int i = 0; i < back.GetSize(); ++i) {
                    ASSERT_EQ(back[i].name, points[i].name) << what;
                    ASSERT_EQ(back[i].y, -i) << what;
                }
                if (operation.name == versioned) {
                    EXPECT_EQ(textsBack.GetSize(), back.GetSize()) << what;
                    EXPECT_EQ(numbersBack.GetSize(), back.GetSize()) << what;
                    EXPECT_EQ(moreBack.GetSize(), back.GetSize()) << what;
                }
            }
        }
    }
    EXPECT_EQ(solve(), 1) << "objects that saw failures work on";
}

TEST_F(Faults, AListKeepsItsElementsWhenMemoryEnds) {
    const CXYZ point(u"P", 1, 2, 3);
    CArray<CXYZ, const CXYZ&> list;
    int refused = 0, withoutReserve = 0;
    for (int i = 0; i < 5000; ++i) {
        const int capacity = list.GetCapacity();
        faults::arm(faults::memory, 1);
        try {
            EXPECT_EQ(list.Add(point), i);
            withoutReserve += faults::hasHappened();  // the room that GetCapacity shows could be had
        } catch (const std::bad_alloc&) {
            ++refused;
            EXPECT_EQ(list.GetSize(), i);
            EXPECT_EQ(list.GetCapacity(), capacity);
            list.Add(point);
        }
        faults::arm(faults::none, 0);
    }
    EXPECT_GT(refused, 10);
    EXPECT_GT(withoutReserve, 2);
    for (const CXYZ& each : list)
        ASSERT_EQ(each.name, point.name);
}

}  // namespace
