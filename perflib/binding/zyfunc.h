#pragma once

#include "text/mrstring.h"
#include "zytype.h"

/// The name of a library function, taken apart on demand: [zyls|zyli] base [_types [_descriptor]]. An
/// underscore that no type follows belongs to the base. There is no table of functions: any name of this
/// grammar works. Nothing is cached, each question parses the name anew.
class zyFunc : public mrString {
  public:
    zyFunc() = default;
    zyFunc(const char* name) : mrString(name) {}
    zyFunc(const mrString& name) : mrString(name) {}

    /// "zyls" or "zyli", or empty.
    mrString prefix() const;
    mrString baseName() const;
    mrString typeName() const;
    mrString descrName() const;
    void parseFunction(mrString& base, mrString& types, mrString& descr) const;
    /// With the types one by one; of fewer than three the last one is repeated.
    void parseFunction(mrString& base, mrString& type1, mrString& type2, mrString& type3,
                       mrString& descr) const;

    /// The order of the test list: negative, 0 or positive by prefix and base, then types, then descriptor.
    int compare(const zyFunc& other) const;
    /// By value type for type, unsigned before signed before floating, a complex type right after its real
    /// one.
    static int compareTypes(mrString a, mrString b);
    /// In-place forms after the others, alpha layouts after plain ones.
    static int compareDescr(mrString a, mrString b);

    /// 0 for a text that is no type.
    static zyType stringToType(mrString text);
    /// "undef" for a value that is no type.
    static mrString typeToString(zyType type);
    /// The library's own code, for suites of functions that take one.
    static int zylType(zyType type);

    /// The first, second or third type of the name. Index 0 asks the base name first.
    /// This and typeFromBase are for suites whose names do not tell types by argument.
    zyType type(int index) const;
    /// A type that the base name contains; 0 if there is none.
    zyType typeFromBase() const;
    /// Types of the arguments: one type serves all, two are source and destination, three two sources and a
    /// destination.
    void getTypes(zyType& src, zyType& src2, zyType& dst, zyType& dst2) const;
    zyType type(zyArg arg) const;
    zyType srcType() const { return type(zyArgSrc); }
    zyType src2Type() const { return type(zyArgSrc2); }
    zyType dstType() const { return type(zyArgDst); }
    zyType dst2Type() const { return type(zyArgDst2); }

    // The channel layout, a word such as C3, P2 or AC4 in the descriptor. A second word is that of the
    // destination, else the first counts for both. Index 1 is the source, 2 the destination; any other has 1
    // channel and no layout. All of it is for suites of image functions; those of the program use none.
    void getChannelsName(mrString& src, mrString& dst) const;
    mrString channelsName(int index) const;
    mrString channelsName(zyArg arg) const { return channelsName(indexOf(arg)); }
    mrString srcChannelsName() const { return channelsName(1); }
    mrString dstChannelsName() const { return channelsName(2); }

    /// Numbers of channels; 0 without a channel word.
    void getChannels(int& src, int& dst) const;
    int channels(int index) const;
    int channels(zyArg arg) const { return channels(indexOf(arg)); }
    int srcChannels() const { return channels(1); }
    int dstChannels() const { return channels(2); }

    /// The channels stand in planes of their own.
    void getPlanes(bool& src, bool& dst) const;
    bool plane(int index) const;
    bool plane(zyArg arg) const { return plane(indexOf(arg)); }
    bool srcPlane() const { return plane(1); }
    bool dstPlane() const { return plane(2); }

    /// One channel is alpha.
    void getAlpha(bool& src, bool& dst) const;
    bool alpha(int index) const;
    bool alpha(zyArg arg) const { return alpha(indexOf(arg)); }
    bool srcAlpha() const { return alpha(1); }
    bool dstAlpha() const { return alpha(2); }

    /// The library's code of a layout, 0 for one that it does not know.
    int zylChannels(int index) const;

    // Flags of the descriptor: in place, masked, scaled result, region of interest, channel of interest. All
    // but the first are for suites of image and signal functions.
    bool inplace() const { return descrName().found("I"); }
    bool mask() const { return descrName().found("M"); }
    bool scale() const { return descrName().found("Sfs"); }
    bool roi() const { return descrName().found("R"); }
    bool coi() const;

    /// Corrections for families whose names do not tell the truth; a derived class may have more of them.
    virtual void updateTypes(zyType& src, zyType& src2, zyType& dst, zyType& dst2) const;
    virtual void updateChannels(int& src, int& dst) const;
    virtual void updatePlanes(bool& src, bool& dst) const;

  private:
    static int indexOf(zyArg arg);
    void updateStringTypes(zyType& src, zyType& src2, zyType& dst, zyType& dst2) const;
    void updateImageTypes(zyType& src2, zyType& dst, zyType& dst2) const;
};
