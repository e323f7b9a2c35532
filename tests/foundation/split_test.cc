#include <gtest/gtest.h>

#include "orvaneip.h"

TEST(Split, Table) {
  const std::pair<std::string, std::vector<std::string>> kRows[] = {{"", {}},
                                                                    {"NULL", {"NULL"}},
                                                                    {"a,,b", {"a", "", "b"}},
                                                                    {",a", {"", "a"}},
                                                                    {"a,", {"a"}},
                                                                    {"a,,", {"a", ""}},
                                                                    {",", {""}},
                                                                    {" a , b ", {" a ", " b "}}};
  for (const auto& [text, items] : kRows) {
    EXPECT_EQ(split(text, ','), items) << text;
    std::vector<std::string> expected = {"kept"};
    std::vector<std::string> list = expected;
    expected.insert(expected.end(), items.begin(), items.end());
    EXPECT_EQ(&split(text, ',', list), &list);
    EXPECT_EQ(list, expected);
  }
}
