// Another libmarlet-small.so: it does not pause, it says and counts the pauses.

#include <cstdio>

#include "marlet-small.h"

namespace {

struct Pauses {
    int count = 0;
    ~Pauses() { std::printf("%d pause\n", count); }
} pauses;

}  // namespace

void Sleep(int ms) {
    std::printf("Sleep %d\n", ms);
    ++pauses.count;
}

unsigned int GetTickCount(void) {
    return 0;
}
