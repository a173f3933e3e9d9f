/// Insertion and removal, in place and from one text to another.

#include <climits>
#include <cstddef>
#include <cstring>

#include "zylch.h"

namespace {

void copy(Zyl8u* dst, const Zyl8u* src, int len) { std::memcpy(dst, src, static_cast<std::size_t>(len)); }

void move(Zyl8u* dst, const Zyl8u* src, int len) { std::memmove(dst, src, static_cast<std::size_t>(len)); }

bool insertFits(int len, int lenIns, int start) {
    return len >= 0 && lenIns >= 0 && start >= 0 && start <= len && lenIns <= INT_MAX - len;
}

bool removeFits(int len, int start, int count) {
    return len >= 0 && start >= 0 && count >= 0 && start <= len && count <= len - start;
}

}  // namespace

int zylsInsert_8u_I(const Zyl8u* ins, int lenIns, Zyl8u* data, int* len, int start) {
    if (ins == nullptr || data == nullptr || len == nullptr) {
        return zylStsNullPtrErr;
    }
    if (!insertFits(*len, lenIns, start)) {
        return zylStsSizeErr;
    }
    move(data + start + lenIns, data + start, *len - start);
    copy(data + start, ins, lenIns);
    *len += lenIns;
    return zylStsNoErr;
}

int zylsInsert_8u(const Zyl8u* src, int len, const Zyl8u* ins, int lenIns, Zyl8u* dst, int start) {
    if (src == nullptr || ins == nullptr || dst == nullptr) {
        return zylStsNullPtrErr;
    }
    if (!insertFits(len, lenIns, start)) {
        return zylStsSizeErr;
    }
    copy(dst, src, start);
    copy(dst + start, ins, lenIns);
    copy(dst + start + lenIns, src + start, len - start);
    return zylStsNoErr;
}

int zylsRemove_8u_I(Zyl8u* data, int* len, int start, int count) {
    if (data == nullptr || len == nullptr) {
        return zylStsNullPtrErr;
    }
    if (!removeFits(*len, start, count)) {
        return zylStsSizeErr;
    }
    move(data + start, data + start + count, *len - start - count);
    *len -= count;
    return zylStsNoErr;
}

int zylsRemove_8u(const Zyl8u* src, int len, Zyl8u* dst, int start, int count) {
    if (src == nullptr || dst == nullptr) {
        return zylStsNullPtrErr;
    }
    if (!removeFits(len, start, count)) {
        return zylStsSizeErr;
    }
    copy(dst, src, start);
    copy(dst + start, src + start + count, len - start - count);
    return zylStsNoErr;
}
