// Union, difference and intersection of two toothed outlines of n segments (lines and arcs
// alternating), in two cases: centres apart, so that the outlines meet at a few points, and the
// same centre with one outline turned by half a tooth, so that they meet at nearly every segment.
// Also the offset of one such outline.
#include <benchmark/benchmark.h>

#include <cmath>

#include "zor/regions/region_boolean.h"

namespace {

using Region = CZorArrayTempl<CZorVertexArray>;
using Regions = CZorArrayTempl<CZorArrayTempl<CZorVertexArray>>;

CZorVertexArray gear(double cx, int n, double turn) {
    CZorVertexArray l;
    const int teeth = n / 2;
    const double pitch = 2.0 * M_PI / teeth;
    const double rOuter = 1000.0;
    // Teeth about as deep as they are wide.
    const double rInner = rOuter * (1.0 - 0.5 * pitch);
    for (int k = 0; k < teeth; ++k) {
        const double a0 = turn + k * pitch;
        const double a1 = a0 + 0.5 * pitch;
        const double a2 = a0 + pitch;
        const CZorPoint3d p0(cx + rInner * std::cos(a0), rInner * std::sin(a0), 0);
        const CZorPoint3d p1(cx + rOuter * std::cos(a1), rOuter * std::sin(a1), 0);
        const CZorPoint3d p2(cx + rInner * std::cos(a2), rInner * std::sin(a2), 0);
        l.append(CZorVertex(p0, p1, 0.15));
        l.append(CZorVertex(p1, p2, 0.0));
    }
    l[-1].end = l[0].start;
    return l;
}

enum Case { kApart = 0, kManyContacts = 1 };
enum Op { kUnion = 0, kDiff = 1, kSect = 2 };

void BM_RegionBoolean(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const Case c = static_cast<Case>(state.range(1));
    const Op op = static_cast<Op>(state.range(2));
    Region a, b;
    a.append(gear(0.0, n, 0.0));
    if (c == kApart) {
        b.append(gear(1500.0, n, 0.0));
    } else {
        b.append(gear(0.0, n, M_PI / (n / 2)));
    }
    for (auto _ : state) {
        Regions out;
        bool ok = false;
        switch (op) {
            case kUnion:
                ok = ZOR::g_region_union(a, b, out);
                break;
            case kDiff:
                ok = ZOR::g_region_diff(a, b, out);
                break;
            case kSect:
                ok = ZOR::g_region_sect(a, b, out);
                break;
        }
        benchmark::DoNotOptimize(ok);
        benchmark::DoNotOptimize(out);
    }
    state.SetComplexityN(n);
}

void BM_Offset(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const CZorVertexArray g = gear(0.0, n, 0.0);
    CZorArrayTempl<double> dist;
    dist.append(-1.0);
    for (auto _ : state) {
        CZorVertexArray work = g;
        work.offset(dist, true);
        benchmark::DoNotOptimize(work);
    }
    state.SetComplexityN(n);
}

void boolArgs(benchmark::internal::Benchmark* b) {
    for (int op = kUnion; op <= kSect; ++op) {
        for (int c = kApart; c <= kManyContacts; ++c) {
            for (int n : {1000, 10000, 100000}) b->Args({n, c, op});
        }
    }
}

BENCHMARK(BM_RegionBoolean)
    ->Apply(boolArgs)
    ->ArgNames({"n", "contacts", "op"})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Offset)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
