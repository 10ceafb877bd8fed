// A program against an installed zor, as a product module would use it: the README's example of
// a polygon union and number text, through the umbrella header.
#include "zor/zor.h"

#include <cstdio>
#include <cwchar>

namespace {

CZorVertexArray square(double x, double y, double size) {
    CZorVertexArray vl;
    vl.append(CZorVertex(CZorPoint3d(x, y, 0), CZorPoint3d(x + size, y, 0), 0.0));
    vl.append(CZorPoint3d(x + size, y + size, 0), 0.0);
    vl.append(CZorPoint3d(x, y + size, 0), 0.0);
    vl.append(CZorPoint3d(x, y, 0), 0.0);
    return vl;
}

int fail(const char* what) {
    std::fprintf(stderr, "zor consumer: %s\n", what);
    return 1;
}

}  // namespace

int main() {
    const CZorVertexArray united =
        ZOR::g_vl_bool(square(0, 0, 10), square(5, 5, 10), CZorVertexArray::boolUnion);
    // The union of two overlapping squares is one closed outline of eight edges.
    if (united.len() != 8 || !united.isClosed()) return fail("wrong union");

    wchar_t text[56];
    if (!zorRtoS(text, 59.999, Zor::lEngineering, 2, false)) return fail("no number text");
    if (std::wcscmp(text, L"4'-12.00\"") != 0) return fail("wrong number text");

    std::puts("zor consumer: ok");
    return 0;
}
