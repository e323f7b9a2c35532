#include <gtest/gtest.h>

#include "orvaneip.h"

TEST(Split, Table) {
  struct Row {
    const char* text;
    std::vector<std::string> items;
  };
  const Row kRows[] = {
      {"", {}},
      {"NULL", {"NULL"}},
      {"device_001,device_002", {"device_001", "device_002"}},
      {"a,,b", {"a", "", "b"}},
      {",a", {"", "a"}},
      {"a,", {"a"}},
      {"a,,", {"a", ""}},
      {",", {""}},
      {" a , b ", {" a ", " b "}},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(split(row.text, ','), row.items) << row.text;
  }
}

TEST(Split, AppendsAndReturnsTheSameList) {
  std::vector<std::string> items = {"kept"};
  EXPECT_EQ(&split("a;b", ';', items), &items);
  split("c", ';', items);
  EXPECT_EQ(items, (std::vector<std::string>{"kept", "a", "b", "c"}));
}
