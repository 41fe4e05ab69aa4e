#include "bench/BenchXvfb.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "app/Settings.h"
#include "ui/DefaultFontSet.h"
#include "ui/XGlobals.h"

#include <X11/Intrinsic.h>

double Milliseconds(BenchClock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

bool BenchXvfb::Start() {
    int fds[2];
    if (pipe(fds) != 0) return false;
    server_ = fork();
    if (server_ == 0) {
        close(fds[0]);
        // Its notes on the display numbers it skipped are of no interest.
        const int quiet = open("/dev/null", O_WRONLY);
        if (quiet >= 0) dup2(quiet, 1), dup2(quiet, 2);
        const std::string fd = std::to_string(fds[1]);
        execlp("Xvfb", "Xvfb", "-nolisten", "tcp", "-noreset", "-screen", "0", "1024x768x24", "-displayfd", fd.c_str(),
               static_cast<char*>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    // The number and its newline may come in two writes; closing our end
    // before the second would end the server.
    std::string number;
    const auto end = BenchClock::now() + std::chrono::seconds(20);
    while (server_ > 0 && (number.empty() || number.back() != '\n') && BenchClock::now() < end) {
        pollfd readable{fds[0], POLLIN, 0};
        if (poll(&readable, 1, 100) <= 0) continue;
        char buffer[16];
        const ssize_t n = read(fds[0], buffer, sizeof buffer);
        if (n == 0) break;
        if (n > 0) number.append(buffer, static_cast<std::size_t>(n));
    }
    close(fds[0]);
    if (number.size() < 2 || number.back() != '\n') return false;
    number.pop_back();
    name_ = ":" + number;
    setenv("DISPLAY", name_.c_str(), 1);
    setenv("XFILESEARCHPATH", "/nonexistent/%N", 1);
    setenv("XUSERFILESEARCHPATH", "/nonexistent/%N", 1);
    observer_ = XOpenDisplay(nullptr);
    if (observer_ == nullptr) return false;
    XSelectInput(observer_, DefaultRootWindow(observer_), SubstructureNotifyMask);
    XSync(observer_, True);
    return true;
}

void BenchXvfb::Stop() {
    if (observer_ != nullptr) XCloseDisplay(observer_);
    observer_ = nullptr;
    if (server_ > 0) {
        kill(server_, SIGTERM);
        waitpid(server_, nullptr, 0);
    }
    server_ = -1;
}

Window NextMap(Display* observer) {
    const auto end = BenchClock::now() + std::chrono::seconds(10);
    while (BenchClock::now() < end) {
        while (XPending(observer) > 0) {
            XEvent event;
            XNextEvent(observer, &event);
            if (event.type == MapNotify) return event.xmap.window;
        }
        usleep(100);
    }
    return 0;
}

bool OpenProgramDisplay() {
    international = false;
    XtToolkitInitialize();
    app_context = XtCreateApplicationContext();
    char name[] = "ZAMClientUI";
    char* args[] = {name, nullptr};
    int count = 1;
    display = XtOpenDisplay(app_context, nullptr, nullptr, "XZAMClientUI", nullptr, 0, &count, args);
    if (display == nullptr) return false;
    ConfigValidDefaultFontSet();
    return true;
}

long ProcKiB(const std::string& pid, const char* file, const char* field) {
    std::ifstream status("/proc/" + pid + "/" + file);
    const std::string prefix = std::string(field) + ":";
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(prefix, 0) == 0) return std::stol(line.substr(prefix.size()));
    }
    return -1;
}
