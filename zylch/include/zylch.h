#pragma once

/// String functions. `_8u` works on bytes, `_16u` on 16-bit units; `_I` works in place; `_Z` takes texts that
/// end in a NUL; `_D2L` takes a list of strings.
///
/// All return a status (zyltypes.h). Null pointers give zylStsNullPtrErr, lengths, capacities and indexes out
/// of range zylStsSizeErr. A length of 0 is legal everywhere. Nothing is ever written beyond the capacity
/// that was given, nothing is read beyond the length (or the NUL), and an exact fit is always enough room.

#include "zyltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

ZYL_API const ZylLibraryVersion* zylchGetLibVersion(void);

/* Case conversion: the 26 Latin letters, and of the upper half the Latin-1 letters 0xC0..0xDE / 0xE0..0xFE
   except the two signs 0xD7 and 0xF7. */
ZYL_API int zylsUppercaseLatin_8u_I(Zyl8u* data, int len);
ZYL_API int zylsLowercaseLatin_8u_I(Zyl8u* data, int len);
ZYL_API int zylsUppercaseLatin_8u(const Zyl8u* src, Zyl8u* dst, int len);
ZYL_API int zylsLowercaseLatin_8u(const Zyl8u* src, Zyl8u* dst, int len);

/* Comparison. Compare: the difference of the first differing bytes, 0 if equal. Equal: 1 or 0. IgnoreCase: as
   Compare, on the lower-case forms. */
ZYL_API int zylsCompare_8u(const Zyl8u* a, const Zyl8u* b, int len, int* result);
ZYL_API int zylsEqual_8u(const Zyl8u* a, const Zyl8u* b, int len, int* result);
ZYL_API int zylsCompareIgnoreCaseLatin_8u(const Zyl8u* a, const Zyl8u* b, int len, int* result);

/* Search. `*index` is the place of the first (Rev: last) match, or -1. An empty pattern matches at 0 (Rev: at
   len); an empty set never matches. The NUL of the _Z forms is no part of the text and never matches. */
ZYL_API int zylsFind_8u(const Zyl8u* src, int len, const Zyl8u* find, int lenFind, int* index);
ZYL_API int zylsFindRev_8u(const Zyl8u* src, int len, const Zyl8u* find, int lenFind, int* index);
ZYL_API int zylsFindC_8u(const Zyl8u* src, int len, Zyl8u value, int* index);
ZYL_API int zylsFindRevC_8u(const Zyl8u* src, int len, Zyl8u value, int* index);
ZYL_API int zylsFindCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, int* index);
ZYL_API int zylsFindRevCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, int* index);
ZYL_API int zylsFind_Z_8u(const Zyl8u* src, const Zyl8u* find, int* index);
ZYL_API int zylsFindC_Z_8u(const Zyl8u* src, Zyl8u value, int* index);

/* Hashes of `len` elements; a 16-bit element counts as two bytes, low byte first. What the closed library's
   own hashes compute is not published; the stand-in's are CRC-32 (Hash), 32-bit FNV-1a (HashSJ2) and Jenkins'
   one-at-a-time (HashMSCS). */
ZYL_API int zylsHash_8u32u(const Zyl8u* src, int len, Zyl32u* hash);
ZYL_API int zylsHash_16u32u(const Zyl16u* src, int len, Zyl32u* hash);
ZYL_API int zylsHashSJ2_8u32u(const Zyl8u* src, int len, Zyl32u* hash);
ZYL_API int zylsHashSJ2_16u32u(const Zyl16u* src, int len, Zyl32u* hash);
ZYL_API int zylsHashMSCS_8u32u(const Zyl8u* src, int len, Zyl32u* hash);
ZYL_API int zylsHashMSCS_16u32u(const Zyl16u* src, int len, Zyl32u* hash);

/* Joining. The destination holds the sum of the lengths, with C one delimiter more between each two. */
ZYL_API int zylsConcat_8u(const Zyl8u* a, int lenA, const Zyl8u* b, int lenB, Zyl8u* dst);
ZYL_API int zylsConcat_8u_D2L(const Zyl8u* const src[], const int lens[], int count, Zyl8u* dst);
ZYL_API int zylsConcatC_8u_D2L(const Zyl8u* const src[], const int lens[], int count, Zyl8u delim,
                               Zyl8u* dst);
/* k delimiters give k + 1 pieces. `lens[i]`: capacity in, length out; `*count`: capacity in, number of pieces
   out. A piece or a list that is too long is cut: zylStsNoRoomNote. Entries beyond the last piece stay. */
ZYL_API int zylsSplitC_8u_D2L(const Zyl8u* src, int len, Zyl8u delim, Zyl8u* dst[], int lens[], int* count);

/* Editing. Insert puts `ins` before index `start` (0..len), Remove takes `count` elements from `start` on,
   all of them inside the text. `*len`: length in and out; the in-place buffer of Insert holds the sum.
   Different buffers do not overlap. */
ZYL_API int zylsInsert_8u_I(const Zyl8u* ins, int lenIns, Zyl8u* data, int* len, int start);
ZYL_API int zylsInsert_8u(const Zyl8u* src, int len, const Zyl8u* ins, int lenIns, Zyl8u* dst, int start);
ZYL_API int zylsRemove_8u_I(Zyl8u* data, int* len, int start, int count);
ZYL_API int zylsRemove_8u(const Zyl8u* src, int len, Zyl8u* dst, int start, int count);
ZYL_API int zylsReplaceC_8u(const Zyl8u* src, Zyl8u* dst, int len, Zyl8u oldValue, Zyl8u newValue);

/* Trimming at both ends, or at one, of one byte value or of a set. `*lenDst`: length out. */
ZYL_API int zylsTrimC_8u_I(Zyl8u* data, int* len, Zyl8u value);
ZYL_API int zylsTrimC_8u(const Zyl8u* src, int len, Zyl8u value, Zyl8u* dst, int* lenDst);
ZYL_API int zylsTrimCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, Zyl8u* dst, int* lenDst);
ZYL_API int zylsTrimStartCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, Zyl8u* dst,
                                 int* lenDst);
ZYL_API int zylsTrimEndCAny_8u(const Zyl8u* src, int len, const Zyl8u* set, int lenSet, Zyl8u* dst,
                               int* lenDst);

/* UTF conversion. `*lenSrc`: elements in, elements consumed out; `*lenDst`: capacity in, elements written
   out. Lone surrogates pass in both directions as three bytes; two of them that would join to a pair are no
   UTF-8. `flag` 0: native order, no byte-order mark is read or written; no other value is defined
   (zylStsBadArgErr). Text that is no UTF stops the conversion with zylStsBadArgErr, a full destination with
   zylStsNoRoomNote; both leave the counts at the last whole character. */
ZYL_API int zylsConvertUTF_8u16u(const Zyl8u* src, int* lenSrc, Zyl16u* dst, int* lenDst, int flag);
ZYL_API int zylsConvertUTF_16u8u(const Zyl16u* src, int* lenSrc, Zyl8u* dst, int* lenDst, int flag);

/* Regular expressions, in the syntax and the meaning of ECMAScript, on bytes. A find record: element 0 is the
   whole match, then one for each capture group; a group that took no part has a null pointer and length 0. A
   search that takes too many steps, or whose memory of choices is full (64 MiB), ends with
   zylStsRegExpLimitErr; the counts say how far it came. */
typedef struct {
    const void* pFind;
    int lenFind;
} ZylRegExpFind;

/* `*size`: bytes of the state block for `pattern` with any options, at least those that zylsRegExpInit needs
 * to find the fault in a bad one (zylStsRegExpPatternErr). The caller owns the block, which is aligned as an
 * int is; it holds everything, may be moved, and needs no closing call: what a search takes from the heap
 * beside it, it gives back. Calls at the same time need blocks of their own. */
ZYL_API int zylsRegExpGetSize(const char* pattern, int* size);
/* `options`: letters of "gimsx", null or empty for none. `*errorOffset`: place of the fault in a bad pattern,
 * else -1, also for bad options (zylStsRegExpPatternErr as well). A failure leaves no valid state. */
ZYL_API int zylsRegExpInit(const char* pattern, const char* options, void* state, int* errorOffset);
/* `*count`: capacity of `found` in records, number of records out. Without option g the records of the first
   match, with it one record for each match. No match gives 0 records and status 0. A list that is too short
   is filled and ends there. */
ZYL_API int zylsRegExpFind_8u(const Zyl8u* src, int len, void* state, ZylRegExpFind found[], int* count);

/* Replacement text: $0 the match, $1..$9 the groups, $$ a dollar; any other dollar is itself. The block of
   zylsRegExpReplaceInit is under the same rules as that of zylsRegExpInit. */
ZYL_API int zylsRegExpReplaceGetSize(const Zyl8u* replacement, int* size);
ZYL_API int zylsRegExpReplaceInit(const Zyl8u* replacement, void* state);
/* `*lenSrc`: length in, consumed out; `*lenDst`: capacity in, written out; `*count`: capacity of `found` in,
   matches replaced out, each with the record of the whole match in `found`. Text outside the matches, and
   matches beyond the capacity of `found`, are copied. A full destination: zylStsNoRoomNote; no replacement is
   written in part. */
ZYL_API int zylsRegExpReplace_8u(const Zyl8u* src, int* lenSrc, Zyl8u* dst, int* lenDst,
                                 ZylRegExpFind found[], int* count, void* state, void* replaceState);

#ifdef __cplusplus
}
#endif
