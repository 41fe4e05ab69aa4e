#pragma once

// Sleeps about `ms` milliseconds: whole seconds with sleep(), the rest with
// usleep(). A signal may shorten the sub-second part.
void MilliSecondSleep(unsigned long ms);
