// Smallest program against an installed zor: a value class from the umbrella header.
#include "zor/zor.h"

#include <cstdio>

int main() {
    CZorObj* object = new CZorObj;
    delete object;
    std::puts("zor consumer: ok");
    return 0;
}
