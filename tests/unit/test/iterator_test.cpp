#include <gtest/gtest.h>

#include <string>

#include "support/captured_output.h"
#include "test/mrmapiterator.h"
#include "test/mrstepiterator.h"

namespace {

constexpr int LongestWalk = 8;

/// The values of a walk, with "..." for one that goes on after a few of them.
template <class Iterator>
std::string walkOf(Iterator& iterator) {
    std::string walk;
    int count = 0;
    for (bool more = iterator.firstValue(); more; more = iterator.nextValue()) {
        if (count++ == LongestWalk) {
            return walk + "...";
        }
        walk += str(iterator.valueString()) + " ";
    }
    return walk;
}

/// The text of the refusal, or the walk that the text makes.
template <class Iterator>
std::string outcome(Iterator& iterator, const char* text) {
    try {
        iterator.translate(text);
    } catch (const mrException& refusal) {
        return str(refusal.msg());
    }
    return walkOf(iterator);
}

#define REFUSED "--ZYL. Exception: "
#define CONFLICT REFUSED "Conflict between iterator limits and operation"

TEST(StepIterator, TakesListsAndSteps) {
    static constexpr const char* rows[][2] = {
        {"32; 32768; *4", "32 128 512 2048 8192 32768 "},
        {"1; 100; *3", "1 3 9 27 81 "},
        {"10; 4; -3", "10 7 4 "},
        {"-1; -20; *3", "-1 -3 -9 "},
        {"2; 1; +0", "2 2 2 2 2 2 2 2 ..."},
        {"1073741824; 2147483647; *2", "1073741824 -2147483648 0 0 0 0 0 0 ..."},
        {"a; 5; +1", REFUSED "Invalid first value = a"},
        {"1; x", REFUSED "Invalid value of size = x"},
        {";", REFUSED "Empty iterator definition"},
        {"0; 100; *2", CONFLICT},
        {"1; 100; *1", CONFLICT},
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
        {"32;32768;*4", "32; 32768; *4", "for (size = 32; size <= 32768; size *= 4)", "for size"},
        {"9 1 -2", "9; 1; -2", "for (size = 9; size >= 1; size -= 2)", "for size"},
        {"4;0x10", "4; 16", "size = 4; 16", "size"},
    };
    mrStepIterator<int> size;
    size.setName("size", "length of the text");
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
    search[0] = "-";
    search[1] = "hardSearch";
    search[2] = "hardest";
    search[1] = "second name of 1";
    search.setName("hardSearch");
    EXPECT_EQ(str(search.prompt()), "hardSearch {-|hardSearch|hardest}");
    static constexpr const char* rows[][2] = {
        {"HARD", "hardSearch "},
        {"harde; -", "hardest - "},
        {"soft", REFUSED "Invalid value of hardSearch = soft"},
        {"second", REFUSED "Invalid value of hardSearch = second"},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(outcome(search, text), expected) << text;
    }
}

}  // namespace
