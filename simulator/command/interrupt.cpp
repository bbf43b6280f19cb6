// Interrupts while a unit is being started or driven.
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include "simulator/command/unit.h"

namespace headunit {
namespace {

Unit watched;
pthread_t watcher;
int depth = 0;  // a boot within a scenario finds its unit watched already

sigset_t interrupts() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&set, signal);
    }
    return set;
}

void* waitForInterrupt(void*) {
    const sigset_t set = interrupts();
    int signal = 0;
    sigwait(&set, &signal);
    endUnit(watched);
    _exit(128 + signal);
}

}  // namespace

EndsOnInterrupt::EndsOnInterrupt(const Unit& unit) {
    if (depth++ > 0) {
        return;
    }
    watched = unit;
    const sigset_t set = interrupts();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    pthread_create(&watcher, nullptr, &waitForInterrupt, nullptr);
}

EndsOnInterrupt::~EndsOnInterrupt() {
    if (--depth > 0) {
        return;
    }
    pthread_cancel(watcher);
    pthread_join(watcher, nullptr);
    const sigset_t set = interrupts();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace headunit
