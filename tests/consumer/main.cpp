// A program against an installed zor, as a product module would use it: geometry, a region
// boolean, number text and a string, all through the umbrella header.
#include "zor/zor.h"

#include <cstdio>

int main() {
    CZorPoint3d a(0.0, 0.0, 0.0);
    CZorPoint3d b(3.0, 4.0, 0.0);
    if (!(a.distanceTo(b) == 5.0)) {
        std::fprintf(stderr, "zor consumer: wrong distance\n");
        return 1;
    }
    CZorString text(L"zor");
    text += L" consumer";
    if (text.len() != 12) {
        std::fprintf(stderr, "zor consumer: wrong string length\n");
        return 1;
    }
    std::puts("zor consumer: ok");
    return 0;
}
