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

TEST(StepIterator, TakesListsAndSteps) {
    static constexpr struct {
        const char* text;
        const char* outcome;
    } rows[] = {
        {"64", "64 "},
        {"32; 64; 0x100", "32 64 256 "},
        {"32; 32768; *4", "32 128 512 2048 8192 32768 "},
        {"1; 100; *3", "1 3 9 27 81 "},
        {"8 512 *4", "8 32 128 512 "},
        {"8 512 4", "8 "},
        {"10; 4; -3", "10 7 4 "},
        {"10; 4; +-3", "10 7 4 "},
        {"4; 10; --3", "4 7 10 "},
        {"1; 5; +2", "1 3 5 "},
        {"-1; -2; -3", "-1 "},
        {"-1; -20; *3", "-1 -3 -9 "},
        {"1; 1; *2", "1 "},
        {"2; 1; +0", "2 2 2 2 2 2 2 2 ..."},
        {"1;2;3;-4", "1 2 3 -4 "},
        {"100; 1; -1", "100 99 98 97 96 95 94 93 ..."},
        {"1073741824; 2147483647; *2", "1073741824 -2147483648 0 0 0 0 0 0 ..."},
        {"a; 5; +1", REFUSED "Invalid first value = a"},
        {"1; b; +1", REFUSED "Invalid last value = b"},
        {"1; 5; *c", REFUSED "Invalid step = c"},
        {"1; x", REFUSED "Invalid value of size = x"},
        {";", REFUSED "Empty iterator definition"},
        {"", REFUSED "Empty iterator definition"},
    };
    for (const auto& row : rows) {
        mrStepIterator<int> size;
        size.setName("size");
        EXPECT_EQ(outcome(size, row.text), row.outcome) << row.text;
    }
    for (const char* conflict :
         {"-1; -1; *2", "1; 100; -1", "1; 100; +-1", "0; 100; *2", "-5; 5; *2", "1; 100; *1", "1; 1; +0"}) {
        mrStepIterator<int> size;
        EXPECT_EQ(outcome(size, conflict), REFUSED "Conflict between iterator limits and operation")
            << conflict;
    }
}

TEST(StepIterator, TellsItselfInTheFormInForce) {
    static constexpr struct {
        const char* text;
        const char* byDefault;
        const char* description;
        const char* prompt;
    } rows[] = {
        {"32;32768;*4", "32; 32768; *4", "for (size = 32; size <= 32768; size *= 4)", "for size"},
        {"9 1 -2", "9; 1; -2", "for (size = 9; size >= 1; size -= 2)", "for size"},
        {"4;0x10", "4; 16", "size = 4; 16", "size"},
    };
    mrStepIterator<int> size;
    size.setName("size", "length of the text");
    for (const auto& row : rows) {
        size.translate(row.text);
        for (const char* bad : {"1; 2; x", "1; 2; -1", ";"}) {
            EXPECT_THROW(size.translate(bad), mrException) << bad;
        }
        EXPECT_EQ(str(size.defaultString()), row.byDefault);
        EXPECT_EQ(str(size.description()), row.description);
        EXPECT_EQ(str(size.prompt()), row.prompt);
    }
}

TEST(StepIterator, ResetDropsTheListAndKeepsTheSteps) {
    mrStepIterator<int> size;
    EXPECT_EQ(walkOf(size), "");
    size.add(5);
    size.add(6);
    EXPECT_EQ(walkOf(size), "5 6 ");
    EXPECT_EQ(size.value(), 0);
    size.firstValue();
    size.reset();
    EXPECT_EQ(walkOf(size), "");
    size.setSteps(4, 32, OprtnMul, 2);
    size.firstValue();
    size.reset();
    EXPECT_EQ(walkOf(size), "4 8 16 32 ");
    EXPECT_THROW(size.setSteps(4, 32, OprtnSub, 2), mrException);
    EXPECT_EQ(walkOf(size), "4 8 16 32 ");
}

TEST(Iterator, CopyWalksOnItsOwn) {
    mrIterator<mrString> words;
    words.setName("words");
    EXPECT_EQ(outcome(words, " abc; def ;;g h "), "abc def g h ");
    words.firstValue();
    mrIterator<mrString> copy = words;
    EXPECT_TRUE(copy.nextValue());
    EXPECT_EQ(str(copy.value()), "abc");
    words.reset();
    EXPECT_EQ(walkOf(copy), "abc def g h ");
    words = copy;
    EXPECT_EQ(walkOf(words), "abc def g h ");
    words.addDeprecated("def", "old");
    EXPECT_TRUE(words.firstValue());
    EXPECT_FALSE(words.setDeprecatedFlag(true));
    EXPECT_TRUE(words.nextValue());
    EXPECT_TRUE(words.setDeprecatedFlag(true));
}

TEST(MapIterator, TakesBeginningsOfNames) {
    mrMapIterator<int> search;
    search[0] = "-";
    search[1] = "hardSearch";
    search[2] = "hardest";
    search[1] = "second name of 1";
    search.reset();
    search.setName("hardSearch");
    search.add(0);
    search.add(1);
    EXPECT_EQ(str(search.validString()), "-|hardSearch|hardest");
    EXPECT_EQ(str(search.prompt()), "hardSearch {-|hardSearch|hardest}");
    EXPECT_EQ(str(search.defaultString()), "-; hardSearch");
    static constexpr struct {
        const char* text;
        const char* outcome;
    } rows[] = {
        {"HARD", "hardSearch "},
        {"harde; -", "hardest - "},
        {"-; hardSearch", "- hardSearch "},
        {"soft", REFUSED "Invalid value of hardSearch = soft"},
        {"second", REFUSED "Invalid value of hardSearch = second"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(outcome(search, row.text), row.outcome) << row.text;
    }
    search.resetMap();
    EXPECT_EQ(str(search.validString()), "");
    EXPECT_EQ(walkOf(search), "");
}

TEST(EnumIterator, ValidatesFromTheFirstCallOn) {
    mrEnumIterator_NCS<int> kinds;
    kinds.add(4);
    EXPECT_FALSE(kinds.addValidation(4));  // present, so legal
    EXPECT_TRUE(kinds.addValidation(5));
    EXPECT_FALSE(kinds.addValidation(5));
    kinds.add(6);
    EXPECT_FALSE(kinds.addValidation(6));
    kinds.resetValidation();
    EXPECT_TRUE(kinds.addValidation(5));
}

}  // namespace
