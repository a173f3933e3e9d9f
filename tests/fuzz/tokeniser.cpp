/// The words of a text. First line: the separators. Rest: the text.

#include "fuzz.h"
#include "text/mrparse.h"

namespace {

std::string without(const std::string& text, const std::string& characters) {
    std::string left;
    for (const char c : text) {
        if (characters.find(c) == std::string::npos) {
            left += c;
        }
    }
    return left;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::string separators = input.line().c_str();
    const std::string text = input.rest().c_str();
    mrStringList words;
    const int count = mrString(text.c_str()).parse(words, separators.c_str());
    mustHold(count == words.size());
    std::string joined;
    for (const mrString& word : words) {
        mustHold(!word.empty());
        joined += word.c_str();
    }
    if (separators.find('"') == std::string::npos) {
        mustHold(joined == without(text, separators));
    }
    mrString first, second, third;
    mustHold(mrString(text.c_str()).parse(first, second, third, separators.c_str()) == count);
    mustHold(third.empty() == (count < 3));
    return 0;
}
