#include "machine/mrpriority.h"

#include <sys/resource.h>
#include <unistd.h>

namespace {

bool _bSavedPrio = false;
int _prio = 0;

int niceness(int level) {
    switch (level) {
        case MR_PRIORITY_HIGH:
            return -20;
        case MR_PRIORITY_LOW:
            return 10;
        default:
            return 0;
    }
}

}  // namespace

void mrSetPriority(int level) {
    _bSavedPrio = level != MR_PRIORITY_KEEP;
    if (_bSavedPrio && getuid() == 0) {
        _prio = getpriority(PRIO_PROCESS, 0);
        setpriority(PRIO_PROCESS, 0, niceness(level));
    }
}

void mrResetPriority() {
    if (_bSavedPrio && getuid() == 0) {
        setpriority(PRIO_PROCESS, 0, _prio);
    }
    _bSavedPrio = false;
}
