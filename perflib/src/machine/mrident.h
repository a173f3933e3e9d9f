#pragma once

/// The processor's identity as CPUID tells it. Flags are 0 or 1.
struct tamarinIdent {
    int family;
    int stepping;
    int model;
    int type;
    int features;  ///< EDX of leaf 1
    int leaf2EAX;
    int leaf2EDX;
    int mmx;
    int sse;
    int sse2;
    int htt;
    int sse3;
    int lm64;
    int ssse3;
    int cores;  ///< per package, 1 if the processor does not tell
    int sse41;
    int sse42;
    int extendedFamily;
    int extendedModel;
    int movbe;
    int avx;
    int osxsave;
};

/// Fills the record; returns 0. For suites that depend on the processor; the program asks for single leaves.
int zyl_get_tamarin_ident(tamarinIdent* ident);
