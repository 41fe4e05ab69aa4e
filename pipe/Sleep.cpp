#include "pipe/Sleep.h"

#include <unistd.h>

void MilliSecondSleep(unsigned long ms) {
    // sleep() returns the seconds left when a signal cut it short.
    unsigned int seconds = static_cast<unsigned int>(ms / 1000);
    while (seconds > 0) seconds = sleep(seconds);
    const unsigned long rest = ms % 1000;
    if (rest > 0) usleep(static_cast<useconds_t>(rest * 1000));
}
