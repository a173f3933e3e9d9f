#pragma once

#include "text/mrstring.h"

class mrSession;

/// The two operations of one key: `info` says in words what the key will do with its argument, `apply` does
/// it. A key that its info calls ignored is applied all the same.
#define MR_OPTION(key)                 \
    mrString key##_info(mrString arg); \
    void key##_apply(mrString arg, mrSession* session)

// Files that are read and written: options_files.cpp.
MR_OPTION(i);
MR_OPTION(I);
MR_OPTION(o);
MR_OPTION(O);
MR_OPTION(r);
MR_OPTION(R);
MR_OPTION(q);
MR_OPTION(Q);
MR_OPTION(u);
MR_OPTION(U);
MR_OPTION(g);
MR_OPTION(n);
MR_OPTION(p);
MR_OPTION(l);

// Which tests run, and in which order: options_tests.cpp.
MR_OPTION(f);
MR_OPTION(t);
MR_OPTION(m);
MR_OPTION(k);
MR_OPTION(F);
MR_OPTION(P);
MR_OPTION(s);
MR_OPTION(e);
MR_OPTION(H);

// How they are measured and what of it is shown: options_measure.cpp.
MR_OPTION(d);
MR_OPTION(c);
MR_OPTION(j);
MR_OPTION(J);
MR_OPTION(S);
MR_OPTION(C);
MR_OPTION(Y);
MR_OPTION(W);
MR_OPTION(L);

// The library under test: options_library.cpp.
MR_OPTION(T);
MR_OPTION(N);

// The session: options_session.cpp.
MR_OPTION(B);
MR_OPTION(A);
MR_OPTION(v);
MR_OPTION(h);
MR_OPTION(hq);  // -?

#undef MR_OPTION
