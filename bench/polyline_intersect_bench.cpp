// Intersection and breaking of two long polylines with few contacts: two zigzag bands of lines
// and arcs side by side, the second dipping into the first at a handful of places.
#include <benchmark/benchmark.h>

#include "zor/polyline/split_break.h"
#include "zor/polyline/vertexarray.h"

namespace {

constexpr int kContacts = 8;

// `n` segments running along x, zigzagging within [y0, y0 + 1]; every n / kContacts segments
// (when `dips`) one segment reaches down by 3 units and back.
CZorVertexArray Band(int n, double y0, bool dips) {
    CZorVertexArray vl;
    const int dipEvery = n / kContacts;
    CZorPoint3d p(0.0, y0, 0.0);
    for (int i = 0; i < n; ++i) {
        double y = y0 + ((i % 2) ? 1.0 : 0.0);
        if (dips && dipEvery > 0 && i % dipEvery == dipEvery / 2) y = y0 - 3.0;
        const CZorPoint3d q(p.x + 1.0, y, 0.0);
        vl.append(CZorVertex(p, q, (i % 3 == 0) ? 0.2 : 0.0));
        p = q;
    }
    return vl;
}

void BM_PolylineIntersect(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const CZorVertexArray a = Band(n, 0.0, false);
    const CZorVertexArray b = Band(n, 2.5, true);
    long points = 0;
    for (auto _ : state) {
        CZorPoint3dArray out;
        a.intersectWith(out, b, 0);
        points = out.len();
        benchmark::DoNotOptimize(points);
    }
    state.counters["points"] = static_cast<double>(points);
}

void BM_PolylineBreak(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const CZorVertexArray a0 = Band(n, 0.0, false);
    const CZorVertexArray b0 = Band(n, 2.5, true);
    long pieces = 0;
    for (auto _ : state) {
        state.PauseTiming();
        CZorVertexArray a = a0;
        CZorVertexArray b = b0;
        state.ResumeTiming();
        ZOR::g_vl_break(a, b, 3);
        pieces = a.len() + b.len() - 2L * n;
        benchmark::DoNotOptimize(pieces);
    }
    state.counters["new_pieces"] = static_cast<double>(pieces);
}

BENCHMARK(BM_PolylineIntersect)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PolylineBreak)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
