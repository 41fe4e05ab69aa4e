#include <cstdio>

// The client protocol, the display and the dialogs are not wired into the
// program yet: refuse to run rather than pretend to be a user interface.
int main() {
    std::fputs("ZAMClientUI: not usable yet (the client protocol is not wired up)\n", stderr);
    return 1;
}
