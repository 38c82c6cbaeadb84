#include "StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

void OccupyStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) >= 0) continue;
        // The lowest free number is this one. It is opened for the wrong direction, so that every
        // use fails, as with the closed stream.
        const int way = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (open("/dev/null", way) != stream) _exit(70);
    }
}
