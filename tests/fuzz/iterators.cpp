/// The texts of parameters: lists, steps, names and single values. The first character of the input chooses
/// the kind of parameter.

#include "fuzz.h"
#include "parameter/mrmapiterator.h"
#include "parameter/mrmemory.h"
#include "parameter/mrstepiterator.h"

namespace {

constexpr int LongestWalk = 300;  // a step of 0 never ends

template <class Parameter>
void walk(Parameter& parameter) {
    int count = 0;
    for (bool more = parameter.firstValue(); more && count < LongestWalk; more = parameter.nextValue()) {
        parameter.valueString();
        ++count;
    }
}

/// A refused text must leave the parameter as it was; a text that is taken must make a walk.
template <class Parameter>
void translate(Parameter& parameter, const char* text) {
    parameter.setName("size", "length of the text");
    const mrString before = parameter.defaultString();
    try {
        parameter.translate(text);
        walk(parameter);
        parameter.description();
        parameter.prompt();
    } catch (const mrException&) {
        mustHold(parameter.defaultString() == before);
    }
}

void translateNames(const char* text) {
    mrMapIterator<int> search;
    search[0] = "-";
    search[1] = "hardSearch";
    search[2] = "hardest";
    search.add(1);
    translate(search, text);
}

template <class Parameter>
void translateFresh(const char* text) {
    Parameter parameter;
    translate(parameter, text);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static constexpr void (*kinds[])(const char* text) = {
        translateFresh<mrStepIterator<int>>,
        translateFresh<mrIterator<int>>,
        translateFresh<mrIterator<double>>,
        translateFresh<mrIterator<mrString>>,
        translateFresh<mrDefault<long long>>,
        translateFresh<DefaultShift>,
        translateFresh<DefaultAlign>,
        translateNames,
        translateFresh<mrDefault<unsigned long long>>,
        translateFresh<mrDefault<bool>>,
    };
    if (size > 0 && data[0] >= '0' && data[0] <= '9') {
        kinds[data[0] - '0'](std::string(data + 1, data + size).c_str());
    }
    return 0;
}
