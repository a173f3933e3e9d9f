# METRIG_EMULATOR: what stands in front of a program of this build; empty where the machine runs it.
# Some virtual machines have no 32-bit mode. There the tests run under an emulator: what they check holds, but
# figures mean nothing.

set(METRIG_EMULATOR "")
# The kernel may have changed since the last time, so the answer is not kept.
unset(METRIG_PROBE_STATUS CACHE)
try_run(METRIG_PROBE_STATUS METRIG_PROBE_BUILT ${CMAKE_BINARY_DIR}/probe ${CMAKE_SOURCE_DIR}/cmake/probe.cpp)
if(METRIG_PROBE_BUILT AND NOT METRIG_PROBE_STATUS EQUAL 0)
    find_program(METRIG_QEMU_I386 qemu-i386-static)
    if(METRIG_QEMU_I386)
        set(METRIG_EMULATOR ${METRIG_QEMU_I386})
        set(CMAKE_CROSSCOMPILING_EMULATOR ${METRIG_EMULATOR})  # of each test program
        message(STATUS "This machine runs no programs of this width: tests run under ${METRIG_EMULATOR}")
    else()
        message(WARNING "This machine runs no programs of this width, and there is no qemu-i386-static: "
                        "script/bootstrap installs it")
    endif()
endif()
