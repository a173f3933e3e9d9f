#include "machine/mrhost.h"

#include <sys/utsname.h>
#include <unistd.h>

mrHost::mrHost() {
    char name[1024] = "";
    gethostname(name, sizeof name - 1);
    m_text = name;
}

mrOS::mrOS() {
    utsname names = {};
    uname(&names);
    m_text << names.sysname << " (" << names.release << ", " << names.machine << ")";
}

int mrGetNumOfProcessors() {
    const long online = sysconf(_SC_NPROCESSORS_ONLN);
    return online > 0 ? static_cast<int>(online) : 1;
}
