#include "zylcore.h"

const char* zylGetStatusString(int status) {
    switch (status) {
        case zylStsNoErr:
            return "no error";
        case zylStsNoRoomNote:
            return "the destination was full before the source ended";
        case zylStsThreadsNote:
            return "the library uses fewer threads than were asked for";
        case zylStsBadArgErr:
            return "bad argument";
        case zylStsSizeErr:
            return "a length, an index or a capacity is out of range";
        case zylStsNullPtrErr:
            return "null pointer";
        case zylStsNotSupportedErr:
            return "the processor lacks a feature that was asked for";
        case zylStsRegExpPatternErr:
            return "bad regular expression or bad options";
        case zylStsRegExpLimitErr:
            return "the search took too many steps and was given up";
        case zylStsRegExpStateErr:
            return "the state block was not initialised";
        default:
            return status < 0 ? "unknown error" : "unknown note";
    }
}
