// Stands in for libmarlet-small.so: the pauses and the tick counter run on the script's clock.

#include "Line.h"
#include "marlet-small.h"

void Sleep(int ms) {
    scripted::Line::Here().OnSleep(ms);
}

unsigned int GetTickCount(void) {
    return static_cast<unsigned int>(scripted::Line::Here().Now());
}
