// Point list operations whose plain forms are quadratic: sorting along a direction and set
// equality. Both should grow as n log n (sort) and n (set equality with the tolerance grid).
#include <random>

#include <benchmark/benchmark.h>

#include "zor/geometry/point3d_array.h"

namespace {

CZorPoint3dArray randomPoints(int n, double spread, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> coord(-spread, spread);
    CZorPoint3dArray a;
    for (int i = 0; i < n; ++i) a.append(CZorPoint3d(coord(rng), coord(rng), 0.0));
    return a;
}

void BM_SortAlongDirection(benchmark::State& state) {
    const CZorPoint3dArray points = randomPoints(static_cast<int>(state.range(0)), 100.0, 1);
    const CZorVector3d dir = ZOR::polar(0.7, 1.0);
    for (auto _ : state) {
        CZorPoint3dArray work(points);
        work.sort(dir);
        benchmark::DoNotOptimize(work[0]);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_SortAlongDirection)->RangeMultiplier(4)->Range(64, 16384)->Complexity();

void BM_SetEquality(benchmark::State& state) {
    const CZorPoint3dArray a = randomPoints(static_cast<int>(state.range(0)), 100.0, 2);
    const CZorPoint3dArray b = a.reverse();
    for (auto _ : state) benchmark::DoNotOptimize(ZOR::g_pl_equal(a, b));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_SetEquality)->RangeMultiplier(4)->Range(64, 16384)->Complexity();

}  // namespace
