# 32 bits on a 64-bit machine.
set(CMAKE_C_FLAGS_INIT "-m32")
set(CMAKE_CXX_FLAGS_INIT "-m32 -march=i686")
