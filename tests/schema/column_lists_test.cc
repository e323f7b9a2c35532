#include <gtest/gtest.h>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/columns.h"

namespace {

using test::Columns;
using test::make_columns;
using test::Texts;

// `count` columns with texts of the longest length.
Texts long_texts(int count) {
  Texts texts;
  for (int i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    texts.emplace_back(number + std::string(127 - number.size(), 'n'), std::string(127, 't'));
  }
  return texts;
}

Columns compare(const Columns& current, const Columns& wanted, int* count) {
  return Columns(devcfg_compare_table_schema(current.get(), wanted.get(), count));
}

}  // namespace

TEST(ColumnLists, HaveRoomForEveryColumn) {
  EXPECT_EQ(test::texts_of(*make_columns(long_texts(500))), long_texts(500));
  table_info info{7, nullptr, nullptr};
  devcfg_init_tb_info(nullptr, 3);
  devcfg_del_tb_info(nullptr);
  devcfg_init_tb_info(&info, -3);
  EXPECT_EQ(info.col_count, 0);
  std::free(info.col_name);
  std::free(info.col_type);
}

TEST(ColumnLists, CompareByNameAlone) {
  struct Row {
    Texts current;
    Texts wanted;
    Texts found;
  };
  const Row kRows[] = {
      {{{"a", "INT"}, {"b", "TEXT"}}, {{"a", "INT"}, {"b", "TEXT"}}, {}},
      {{}, {{"c", "INT"}, {"a", ""}, {"b", "X"}}, {{"c", "INT"}, {"a", ""}, {"b", "X"}}},
      {{{"a", "INT"}}, {{"A", "INT"}, {"a", "TEXT"}}, {{"A", "INT"}}},
      {{{"b", "X"}, {"old", "X"}}, {{"a", "X"}, {"b", "X"}, {"c", "X"}}, {{"a", "X"}, {"c", "X"}}},
      {{}, long_texts(128), long_texts(128)},
  };
  for (const Row& row : kRows) {
    int count = 77;
    const Columns found = compare(make_columns(row.current), make_columns(row.wanted), &count);
    EXPECT_EQ(count, static_cast<int>(row.found.size()));
    EXPECT_EQ(test::texts_of(*found), row.found);
  }
}

TEST(ColumnLists, ComparisonRefusesWhatWouldNotFit) {
  const Columns none(static_cast<table_info*>(std::calloc(1, sizeof(table_info))));
  const Columns good = make_columns({{"a", "INT"}});
  struct Row {
    Columns current;
    Columns wanted;
    const char* reason;
  };
  Row rows[] = {
      {make_columns({}), make_columns(long_texts(129)), "More than 128 new columns"},
      {make_columns({{std::string(128, 'n'), "INT"}}), make_columns({}), nullptr},
      {make_columns({}), make_columns({{"a", std::string(128, 't')}}), nullptr},
      {nullptr, make_columns({}), nullptr},
      {make_columns({}), nullptr, nullptr},
  };
  for (const Row& row : rows) {
    int count = 77;
    test::take_log();
    const Columns found = compare(row.current, row.wanted, &count);
    EXPECT_EQ(count, -1);
    EXPECT_EQ(found->col_count, 0);
    const std::string reason =
        row.reason != nullptr ? row.reason : "A column list is missing or not valid";
    EXPECT_EQ(test::take_product_log(),
              std::vector<std::string>{"[devcfg_compare_table_schema] " + reason});
  }
  EXPECT_EQ(compare(none, good, nullptr)->col_count, 1);
}
