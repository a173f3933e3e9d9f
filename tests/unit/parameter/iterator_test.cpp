#include <gtest/gtest.h>

#include <string>

#include "parameter/mrmapiterator.h"
#include "parameter/mrstepiterator.h"
#include "support/captured_output.h"

namespace {

/// The text of the refusal, or the walk that the text makes, the first values of a long one.
std::string outcome(mrParameter& iterator, const char* text) {
    try {
        iterator.translate(text);
    } catch (const mrException& refusal) {
        return str(refusal.msg());
    }
    std::string walk;
    for (bool more = iterator.firstValue(); more && walk.size() < 24; more = iterator.nextValue()) {
        walk += str(iterator.valueString()) + " ";
    }
    return walk;
}

#define REFUSED "--ZYL. Exception: "
#define CONFLICT REFUSED "Conflict between iterator limits and operation"

TEST(StepIterator, TakesListsAndSteps) {
    static constexpr const char* rows[][2] = {
        {"1; 100; *3", "1 3 9 27 81 "},
        {"10; 4; -3", "10 7 4 "},
        {"-1; -20; *3", "-1 -3 -9 "},
        {"2; 1; +0", "2 2 2 2 2 2 2 2 2 2 2 2 "},
        {"1073741824; 2147483647; *2", "1073741824 -2147483648 0 "},
        {"a; 5; +1", REFUSED "Invalid first value = a"},
        {";", REFUSED "Empty iterator definition"},
        {"0; 100; *2", CONFLICT},
        {"1; 1; +0", CONFLICT},
    };
    for (const auto& [text, expected] : rows) {
        mrStepIterator<int> size;
        size.setName("size");
        EXPECT_EQ(outcome(size, text), expected) << text;
    }
}

TEST(StepIterator, TellsItselfInTheFormInForce) {
    static constexpr const char* rows[][4] = {
        // the text, then the default, the description and the prompt that it makes

        {"9 1 -2", "9; 1; -2", "for (size = 9; size >= 1; size -= 2)", "for size"},
        {"4;0x10", "4; 16", "size = 4; 16", "size"},
    };
    mrStepIterator<int> size;
    size.setName("size");
    for (const auto& [text, byDefault, description, prompt] : rows) {
        size.translate(text);
        EXPECT_THROW(size.translate("1; 2; -1"), mrException);  // and changes nothing
        EXPECT_EQ(str(size.defaultString()), byDefault);
        EXPECT_EQ(str(size.description()), description);
        EXPECT_EQ(str(size.prompt()), prompt);
    }
}

TEST(MapIterator, TakesBeginningsOfNames) {
    mrMapIterator<int> search;
    search[7] = "";
    search[0] = "-";
    search[1] = "hardSearch";
    search[2] = "hardest";
    search[1] = "second name of 1";
    search.setName("hardSearch");
    EXPECT_EQ(str(search.prompt()), "hardSearch {|-|hardSearch|hardest}");
    EXPECT_EQ(outcome(search, " ; HARD; harde; -"), " hardSearch hardest - ");
    EXPECT_EQ(str(search.defaultString()), "; hardSearch; hardest; -");
    EXPECT_EQ(outcome(search, "second"), REFUSED "Invalid value of hardSearch = second");
}

}  // namespace
