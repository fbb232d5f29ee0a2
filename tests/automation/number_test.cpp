#include "automation/number.h"

#include <gtest/gtest.h>

#include <limits>

#include "automation/failure.h"

namespace automation {
namespace {

const std::string huge = "00" + std::string(310, '9');
const std::string tiny = "0." + std::string(330, '0') + "1";

TEST(Number, ReadsOnlyWhatIsANumberInWhole) {
  struct Case {
    std::string text;
    double value;
  };
  for (const Case& c :
       {Case{"7", 7}, Case{" 3 ", 3}, Case{"-2.5", -2.5}, Case{"+4", 4}, Case{".5", 0.5}, Case{"5.", 5},
        Case{"1e3", 1000}, Case{"1E-2", 0.01}, Case{"00012", 12}, Case{"1e-999", 0}, Case{tiny, 0},
        Case{"0e99999999999", 0}, Case{"1e-99999999999", 0}, Case{huge + "e-310", 1}}) {
    const auto number = read_number(c.text);
    ASSERT_TRUE(number) << c.text;
    EXPECT_EQ(*number, c.value) << c.text;
  }
  for (const char* text :
       {"",    " ",   "-",   ".",     "+.",   "2,5",  "12abc", "1e",  "1e+",   "e3",
        "--1", "1 2", "\t1", "1.2.3", "&H10", "0x10", "inf",   "nan", "1e999", "0001e99999999999"}) {
    EXPECT_FALSE(read_number(text)) << text;
  }
  EXPECT_FALSE(read_number(huge));
  EXPECT_FALSE(read_number(huge + "e-1"));
}

TEST(Number, TakesThePrefixThatIsOne) {
  struct Case {
    std::string text;
    double value;
  };
  constexpr double most = std::numeric_limits<double>::max();
  for (const Case& c : {Case{"12.5abc", 12.5}, Case{"12,5", 12}, Case{"", 0}, Case{"abc", 0}, Case{"-", 0},
                        Case{"-.5x", -0.5}, Case{"  7 8", 7}, Case{"1e3", 1}, Case{"&H10", 0}, Case{"+3.", 3},
                        Case{"1.2.3", 1.2}, Case{"\t1", 0}, Case{"- 1", 0}, Case{huge, most},
                        Case{"-" + huge + ".5", -most}, Case{tiny, 0}}) {
    EXPECT_EQ(numeric_prefix(c.text), c.value) << c.text;
  }
}

TEST(Number, RoundsHalvesToEvenAndKeepsTheRange) {
  EXPECT_EQ(to_int32(2.5), 2);
  EXPECT_EQ(to_int32(3.5), 4);
  EXPECT_EQ(to_int32(-2.5), -2);
  EXPECT_EQ(to_int32(-0.6), -1);
  EXPECT_EQ(to_int32(2147483647.4), 2147483647);
  EXPECT_EQ(to_int16(32767.4), 32767);
  EXPECT_THROW(to_int16(32767.5), Failure);
  EXPECT_THROW(to_int32(2147483647.5), Failure);
  EXPECT_THROW(to_int32(std::numeric_limits<double>::quiet_NaN()), Failure);
}

TEST(Number, HasAPlainAndAShortestText) {
  struct Case {
    double value;
    const char* plain;
    const char* shortest;
  };
  for (const Case& c :
       {Case{0, "0", "0"}, Case{-0.0, "0", "0"}, Case{12.5, "12.5", "12.5"}, Case{100, "100", "100"},
        Case{-63.95, "-63.95", "-63.95"}, Case{0.1 + 0.2, "0.3", "0.30000000000000004"},
        Case{1.0 / 3, "0.333333333333333", "0.3333333333333333"}, Case{0.0001, "0.0001", "0.0001"},
        Case{0.00001, "1E-05", "0.00001"}, Case{999999999999999, "999999999999999", "999999999999999"},
        Case{1e15, "1E+15", "1000000000000000"}, Case{999999999999999.9, "1E+15", "999999999999999.9"},
        Case{-1.5e-7, "-1.5E-07", "-0.00000015"}, Case{1e100, "1E+100", nullptr}}) {
    EXPECT_EQ(plain_text(c.value), c.plain);
    if (c.shortest != nullptr) {
      EXPECT_EQ(shortest_text(c.value), c.shortest);
    }
  }
  set_decimal_sign(',');
  EXPECT_EQ(plain_text(12.5), "12,5");
  EXPECT_EQ(shortest_text(12.5), "12.5");
  set_decimal_sign('.');
}

TEST(Number, RoundsToDecimalsWithHalvesToEven) {
  struct Case {
    double value;
    const char* text;
  };
  for (const Case& c :
       {Case{0, "0"}, Case{12.5, "12.5"}, Case{0.125, "0.12"}, Case{0.375, "0.38"}, Case{-0.125, "-0.12"},
        Case{2.675, "2.68"}, Case{12.345, "12.34"}, Case{0.135, "0.14"}, Case{-0.004, "0"},
        Case{99.995, "100"}, Case{0.1 + 0.2, "0.3"}, Case{1e15, "1000000000000000"},
        Case{1e15 + 0.125, "1000000000000000.1"}, Case{7.006, "7.01"}}) {
    EXPECT_EQ(rounded_text(c.value, 2), c.text) << c.value;
  }
}

}  // namespace
}  // namespace automation
