// SPDX-License-Identifier: MIT
#include "comparison.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

constexpr const char* kDump =
    "0xf0,0xde,0xbc,0x9a,0x78,0x56,0x34,0x12,0x01,0x00,0x00,0x00,0x00,0x00,0x00,0x00";

[[nodiscard]] bool Agree(std::string_view expected, std::string_view actual) {
  return FindDifference(expected, actual, {{"TEXT", "some text"}}).empty();
}

TEST(ComparisonTest, TakesTheSameTextOnly) {
  EXPECT_TRUE(Agree("INFO one\nERROR two\n", "INFO one\nERROR two\n"));
  EXPECT_FALSE(Agree("INFO one\n", "INFO One\n"));
  EXPECT_FALSE(Agree("INFO one\n", "INFO one \n"));
  EXPECT_FALSE(Agree("INFO one \n", "INFO one\n"));
}

TEST(ComparisonTest, MissesLinesAndFindsThoseTooMany) {
  EXPECT_FALSE(Agree("one\ntwo\n", "one\n"));
  EXPECT_FALSE(Agree("one\n", "one\ntwo\n"));
  EXPECT_FALSE(Agree("one\n", ""));
  EXPECT_FALSE(Agree("one\n", "one"));
}

TEST(ComparisonTest, PassesOverComments) {
  EXPECT_TRUE(Agree("# about one\none\n", "one\n"));
}

TEST(ComparisonTest, TakesAnEscapeForAByte) {
  EXPECT_TRUE(Agree("a\\x3c\\x80b\n",
                    "a<\x80"
                    "b\n"));
  EXPECT_FALSE(Agree("a\\x3c\n", "a=\n"));
}

TEST(ComparisonTest, PutsGivenTextsIn) {
  EXPECT_TRUE(Agree("(<TEXT>)\n", "(some text)\n"));
  EXPECT_FALSE(Agree("(<TEXT>)\n", "(some test)\n"));
}

TEST(ComparisonTest, TakesSixteenUpperCaseDigitsForAnAddress) {
  EXPECT_TRUE(Agree("0x<ADDRESS>)\n", "0x00007FFF12345678)\n"));
  EXPECT_FALSE(Agree("0x<ADDRESS>)\n", "0x00007fff12345678)\n"));
  EXPECT_FALSE(Agree("0x<ADDRESS>)\n", "0x0007FFF12345678)\n"));
  EXPECT_FALSE(Agree("0x<ADDRESS>)\n", "0x000007FFF12345678)\n"));
}

TEST(ComparisonTest, TellsNullFromAnAddress) {
  EXPECT_FALSE(Agree("0x<ADDRESS>\n", "0x0000000000000000\n"));
  EXPECT_FALSE(Agree("0x0000000000000000\n", "0x0000000000000001\n"));
  EXPECT_FALSE(Agree("0x<ADDRESS IN LOWER CASE>\n", "0x0\n"));
}

TEST(ComparisonTest, TakesALowerCaseAddressWithoutLeadingZeros) {
  EXPECT_TRUE(Agree("0x<ADDRESS IN LOWER CASE>,\n", "0x7fff12345678,\n"));
  EXPECT_FALSE(Agree("0x<ADDRESS IN LOWER CASE>,\n", "0x07fff12345678,\n"));
  EXPECT_FALSE(Agree("0x<ADDRESS IN LOWER CASE>,\n", "0x7FFF12345678,\n"));
}

TEST(ComparisonTest, WantsTheSameAddressUnderTheSameName) {
  EXPECT_TRUE(Agree("0x<A 1>\n0x<A 1>\n", "0x0000000000000005\n0x0000000000000005\n"));
  EXPECT_FALSE(Agree("0x<A 1>\n0x<A 1>\n", "0x0000000000000005\n0x0000000000000006\n"));
}

TEST(ComparisonTest, WantsTheSameAddressInALineUnderALowerCaseName) {
  EXPECT_TRUE(Agree("<a>,<a>\n<a>,<a>\n",
                    "0000000000000005,0000000000000005\n0000000000000006,0000000000000006\n"));
  EXPECT_FALSE(Agree("<a>,<a>\n", "0000000000000005,0000000000000006\n"));
}

TEST(ComparisonTest, RefusesNamesThatStandOnce) {
  EXPECT_FALSE(Agree("<A>\n", "0000000000000005\n"));
  EXPECT_FALSE(Agree("<a>\n<a>\n", "0000000000000005\n0000000000000005\n"));
}

TEST(ComparisonTest, WantsTheLowHalfOfTheNamedAddress) {
  constexpr const char* expected = "0x<LOW HALF OF A>\n0x<A>\n";
  EXPECT_TRUE(Agree(expected, "0x5678abcd\n0x000012345678ABCD\n"));
  EXPECT_FALSE(Agree(expected, "0x5678abce\n0x000012345678ABCD\n"));
  EXPECT_FALSE(Agree(expected, "0x12345678abcd\n0x000012345678ABCD\n"));
  EXPECT_FALSE(Agree("<A>\n<LOW HALF OF A>\n", "000012345678ABCD\n5678abce\n"));
}

TEST(ComparisonTest, TakesANumberOfThirtyTwoBitsForATime) {
  EXPECT_TRUE(Agree("(<TIME>)\n", "(4294967295)\n"));
  EXPECT_TRUE(Agree("(<TIME>)\n", "(0)\n"));
  EXPECT_FALSE(Agree("(<TIME>)\n", "(4294967296)\n"));
  EXPECT_FALSE(Agree("(<TIME>)\n", "(-1)\n"));
  EXPECT_FALSE(Agree("(<TIME>)\n", "()\n"));
}

TEST(ComparisonTest, ReadsTheAddressesInEventData) {
  const std::string dump = kDump;
  constexpr const char* expected = "<A>,<B>\n(<EVENT DATA OF A AND B>)\n";
  EXPECT_TRUE(Agree(expected, "123456789ABCDEF0,0000000000000001\n(" + dump + "\n)\n"));
  EXPECT_FALSE(Agree(expected, "123456789ABCDEF1,0000000000000001\n(" + dump + "\n)\n"));
  EXPECT_FALSE(Agree(expected, "123456789ABCDEF0,0000000000000002\n(" + dump + "\n)\n"));
  EXPECT_FALSE(Agree(expected, "123456789ABCDEF0,0000000000000001\n(" + dump + ")\n"));
  EXPECT_FALSE(Agree(expected, "123456789ABCDEF0,0000000000000001\n(" + dump + ",0x00\n)\n"));
}

TEST(ComparisonTest, TellsWhereTheFirstDifferenceIs) {
  EXPECT_EQ(FindDifference("# first\none\ntwo <ADDRESS>, two\nthree\n",
                           "one\ntwo 0000000000000005, zwei\nthree\n", {}),
            "message 2 differs after 22 bytes\n"
            "  expected:  two <ADDRESS>, two\n"
            "  it has:    two 0000000000000005, \n"
            "  and then:  zwei\n"
            "  not:       'two'\n");
}

}  // namespace
}  // namespace vextrel_test
