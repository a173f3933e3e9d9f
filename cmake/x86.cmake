# 32 bits on a 64-bit machine. Arithmetic goes through SSE2: the x87 control word is under test in this
# program, with zero divide unmasked, so x87 code of the program's own could raise a signal.
set(CMAKE_C_FLAGS_INIT "-m32")
set(CMAKE_CXX_FLAGS_INIT "-m32 -march=i686 -msse2 -mfpmath=sse")
