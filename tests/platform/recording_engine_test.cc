// The operations of the vault database use an engine as its interface asks.
#include "tests/platform/recording_engine.h"

#include <functional>

#include "tests/support/vault_calls.h"

using namespace metadata_vault;

struct Operation {
  std::function<int(CDataSource&)> run;
  std::string calls;
};

// On a vault with the data source "a", its channel "g" and a filter.
const std::vector<Operation>& operations() {
  static std::vector<DataSource> sources;
  static std::vector<Channel> channels;
  static std::vector<Filter> filters;
  static const DataSource b = test::data_source("b", 1);
  static const DataSource a = test::data_source("a", 0);
  static const Channel channel = {"1", "a", 7, "new", "new"};
  static const std::vector<Operation> kOperations = {
      {[](CDataSource& vault) { return vault.query_data_source("", "", sources); },
       "begin_read queue queue queue flush commit "},
      {[](CDataSource& vault) { return vault.query_data_source_sort_by_index(sources); },
       "begin_read queue flush commit "},
      {[](CDataSource& vault) { return vault.query_channel("", "g", channels); },
       "begin_read queue flush commit "},
      {[](CDataSource& vault) { return vault.query_filter("a", filters); },
       "begin_read queue flush commit "},
      {[](CDataSource& vault) { return vault.insert_data_source(b); }, "begin_write queue commit "},
      {[](CDataSource& vault) { return vault.update_data_source(a); },
       "begin_write queue flush commit "},
      {[](CDataSource& vault) { return vault.insert_channel(channel); },
       "begin_write queue commit "},
      {[](CDataSource& vault) { return vault.update_channel(channel); },
       "begin_write queue flush commit "},
      {[](CDataSource& vault) { return vault.remove_channel_by_guid("g"); },
       "begin_write queue commit "},
      {[](CDataSource& vault) { return vault.remove_channel_by_vault_id("a"); },
       "begin_write queue commit "},
      {[](CDataSource& vault) {
         return vault.insert_filter({"", "a", 1, "x", "y", "z"});
       },
       "begin_write queue commit "},
      {[](CDataSource& vault) { return vault.remove_filter_by_vault_id("a"); },
       "begin_write queue commit "},
      {[](CDataSource& vault) { return vault.remove_data_source(a); },
       "begin_write queue queue queue flush commit "},
  };
  return kOperations;
}

void fill() {
  EXPECT_EQ(test::add("a", "A", R"([{"guid":"g","channel_index":0,"name":"n"}])"), 0);
  EXPECT_EQ(test::OpenVault()->insert_filter({"", "a", 1, "t", "r", "n"}), 0);
  test::take_calls();
}

TEST(RecordingEngine, EachOperationIsOneTransactionOfTheseCalls) {
  for (const Operation& operation : operations()) {
    const test::TempVault directory;
    fill();
    test::OpenVault vault;
    test::take_calls();
    EXPECT_EQ(operation.run(vault.vault), 0) << operation.calls;
    EXPECT_EQ(test::take_calls(), operation.calls);
  }
}

TEST(RecordingEngine, WhicheverCallFailsNothingIsChangedAndTheNextOperationSucceeds) {
  for (const Operation& operation : operations()) {
    const auto count = std::count(operation.calls.begin(), operation.calls.end(), ' ');
    for (int failing = 0; failing < count; ++failing) {
      const test::TempVault directory;
      fill();
      const std::string before = test::show();
      test::OpenVault vault;
      test::take_calls();
      test::fail_after(failing);
      EXPECT_EQ(operation.run(vault.vault), kVaultFailed);
      const std::string calls = test::take_calls();
      EXPECT_EQ(calls.ends_with(" roll_back "), failing > 0) << calls;
      EXPECT_EQ(test::show(), before) << calls;
      EXPECT_EQ(operation.run(vault.vault), 0) << calls;
    }
  }
}

TEST(RecordingEngine, ARefusedRecordRollsBackAndTheSchemaIsCreatedInOneTransaction) {
  const test::TempVault directory;
  const DataSource a = test::data_source("a", 0);
  test::take_calls();
  test::OpenVault vault;
  EXPECT_EQ(vault->insert_data_source(a), 0);
  const std::string calls = test::take_calls();
  EXPECT_TRUE(calls.starts_with("begin_read commit prepare_empty begin_write queue ")) << calls;
  EXPECT_TRUE(calls.ends_with("queue commit begin_write queue commit ")) << calls;
  EXPECT_EQ(vault->insert_data_source(test::data_source("a", 1)), kVaultIdTaken);
  EXPECT_EQ(test::take_calls(), "begin_write queue commit roll_back ");
  EXPECT_EQ(vault->update_data_source(test::data_source("b", 1)), kVaultNotFound);
  EXPECT_EQ(test::take_calls(), "begin_write queue flush roll_back ");
}
