/// The name of a function, taken apart, and compared with that of the second line. The rest is what a test
/// tells of itself.

#include "fuzz.h"
#include "job/mrtest.h"
#include "zyfunc.h"

namespace {

void askAll(const zyFunc& name) {
    mrString base, first, second, third, descriptor;
    name.parseFunction(base, first, second, third, descriptor);
    const mrString types = name.typeName();
    mustHold(name.beginsWith(name.prefix() + name.baseName() + (types.empty() ? "" : "_") + types));
    for (const zyArg argument : {zyArgSrc, zyArgSrc2, zyArgDst, zyArgDst2}) {
        const zyType type = name.type(argument);
        const mrString text = zyFunc::typeToString(type);
        mustHold(text == "undef" || zyFunc::stringToType(text) == type);
        zyFunc::zylType(type);
        name.channelsName(argument);
        mustHold(name.channels(argument) >= 0);
        name.plane(argument);
        name.alpha(argument);
    }
    for (int index = 0; index < 4; ++index) {
        name.zylChannels(index);
    }
    name.inplace(), name.mask(), name.scale(), name.roi(), name.coi();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const zyFunc name = input.line().c_str();
    const zyFunc other = input.line().c_str();
    askAll(name);
    mustHold(name.compare(name) == 0);
    mustHold((name.compare(other) < 0) == (other.compare(name) > 0));
    const mrTest test(nullptr, nullptr, name, other, input.rest().c_str());
    mustHold((test.compareFunc(&test) == 0));
    return 0;
}
