#pragma once

/// Types and statuses that all libraries of the zyl family share. Plain C.

#ifdef __cplusplus
extern "C" {
#endif

#define ZYL_API __attribute__((visibility("default")))

typedef unsigned char Zyl8u;
typedef unsigned short Zyl16u;
typedef unsigned int Zyl32u;
typedef unsigned long long Zyl64u;

/// What a library says of itself. The texts live as long as the library is loaded.
typedef struct {
    const char* Name;
    const char* Version;
    const char* BuildDate;
} ZylLibraryVersion;

/// The outcome of a call: 0 is good, above 0 is a note (the work was done as far as it could be), below 0 is
/// a failure (nothing but status and in/out counts can be relied on). -2 is never returned: callers use it as
/// their own mark for a function that is not there.
enum {
    zylStsNoErr = 0,
    /// The destination was full before the source ended; the in/out counts say how far it went.
    zylStsNoRoomNote = 1,
    /// A call that asked for more threads than the library uses.
    zylStsThreadsNote = 2,

    zylStsBadArgErr = -5,
    /// A length, an index or a capacity out of its range.
    zylStsSizeErr = -6,
    zylStsNullPtrErr = -8,
    /// The features asked for are not all present on this processor.
    zylStsNotSupportedErr = -20,
    /// A regular expression or its options could not be read.
    zylStsRegExpPatternErr = -30,
    /// A search was given up after the bounded number of steps.
    zylStsRegExpLimitErr = -31,
    /// A state block does not hold what its init call writes.
    zylStsRegExpStateErr = -32
};

#ifdef __cplusplus
}
#endif
