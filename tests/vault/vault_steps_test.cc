// The steps and messages of the vault calls, in order, on a stand-in for the vault database: this
// program's definitions of its classes come before the platform's.

#include <cstdarg>
#include <cstdio>
#include <functional>
#include <map>
#include <regex>
#include <sstream>

#include "tests/support/vault_calls.h"

using metadata_vault::Channel;
using metadata_vault::DataSource;
using metadata_vault::Filter;

namespace {

constexpr int kFailure = 77;

struct StandIn {
  int data_sources = 2;   // how many are stored, of those named a, b, c, ...
  int insert_status = 0;  // of insert_data_source
  int list_status = 0;    // of check_channel_list_valid
  int failing = 0;        // the number of the operation that fails with kFailure; 0: none

  std::string trace = {};   // the operations on a line, each message on a line of its own
  int operations = 0;       // how many there were
  std::string failed = {};  // the one that failed
  int live = 0;             // objects that are not deleted yet
  bool misused = false;     // an operation on an object that was not open, or one opened twice
};
StandIn stand_in;

// The status of the operation, which is written down.
template <typename... Values>
int operate(bool allowed, const char* name, const Values&... values) {
  std::ostringstream event;
  ((event << name), ..., (event << ' ' << values));
  stand_in.misused |= !allowed && !stand_in.failed.starts_with("init");
  stand_in.trace += event.str() + "; ";
  if (++stand_in.operations == stand_in.failing) {
    stand_in.failed = event.str() + "; ";
    return kFailure;
  }
  return allowed ? 0 : kFailure;
}

bool matches(const std::string& wanted, const std::string& text) {
  return wanted.empty() || wanted == text;
}

}  // namespace

void orvane_log_debug(const char* format, ...) {
  char text[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  stand_in.trace += '\n' + std::regex_replace(text, std::regex(R"(\d+\))"), "N)") + '\n';
}

class metadata_vault::VaultConnectionState {};

CMetaDataVaultDB::CMetaDataVaultDB() { ++stand_in.live; }
CMetaDataVaultDB::~CMetaDataVaultDB() {
  stand_in.misused |= state_ != nullptr;
  --stand_in.live;
}
int CMetaDataVaultDB::init() {
  const int status = operate(state_ == nullptr, stand_in.operations > 0 ? "init again" : "init");
  if (status == 0) {
    state_ = std::make_unique<metadata_vault::VaultConnectionState>();
  }
  return status;
}
int CMetaDataVaultDB::release() {
  const bool open = state_ != nullptr;
  state_.reset();
  return operate(open, "release");
}

CDataSource::CDataSource() = default;
CDataSource::~CDataSource() = default;
int CDataSource::query_data_source(const std::string& vault_id, const std::string& vault_name,
                                   std::vector<DataSource>& found) {
  const int status = operate(state_ != nullptr, "query", vault_id, vault_name);
  for (int i = 0; i < stand_in.data_sources && status == 0; ++i) {
    DataSource record = test::data_source(std::string(1, static_cast<char>('a' + i)), i);
    record.record_id = "key";
    record.last_recv_time = 5;
    record.filter.resize(1);
    if (matches(vault_id, record.vault_id) && matches(vault_name, record.vault_name)) {
      found.push_back(record);
    }
  }
  return status;
}
int CDataSource::query_data_source_sort_by_index(std::vector<DataSource>& found) {
  const int status = operate(state_ != nullptr, "sorted");
  for (int i = 0; i < stand_in.data_sources && status == 0; ++i) {
    found.push_back(test::data_source("", i));
  }
  return status;
}
int CDataSource::insert_data_source(const DataSource& record) {
  const int status = operate(state_ != nullptr, "insert", record.vault_id, record.index);
  return status != 0 ? status : stand_in.insert_status;
}
int CDataSource::update_data_source(const DataSource& record) {
  return operate(state_ != nullptr, "update", record.record_id + record.vault_id, record.vault_name,
                 record.description, record.index, record.enable, record.last_recv_time,
                 record.filter.size());
}
int CDataSource::remove_data_source(const DataSource& record) {
  return operate(state_ != nullptr, "remove", record.vault_id + record.vault_name);
}
int CDataSource::insert_channel(const Channel& channel) {
  return operate(state_ != nullptr, "insert_channel", channel.vault_id, channel.channel_index,
                 channel.guid, channel.name);
}
int CDataSource::update_channel(const Channel& channel) {
  return operate(state_ != nullptr, "update_channel", channel.record_id, channel.vault_id,
                 channel.channel_index, channel.guid, channel.name);
}
int CDataSource::query_channel(const std::string& vault_id, const std::string& guid,
                               std::vector<Channel>& found) {
  const int status = operate(state_ != nullptr, "query_channel", vault_id, guid);
  if (status == 0) {
    found = {{"1", "a", 7, guid, "old"}, {"2", "b", 8, guid, "old"}};
  }
  return status;
}
int CDataSource::remove_channel_by_guid(const std::string& guid) {
  return operate(state_ != nullptr, "remove_guid", guid);
}
int CDataSource::remove_channel_by_vault_id(const std::string& vault_id) {
  return operate(state_ != nullptr, "remove_channels", vault_id);
}
int CDataSource::insert_filter(const Filter& filter) {
  return operate(state_ != nullptr, "insert_filter", filter.vault_id, filter.type, filter.name);
}
int CDataSource::remove_filter_by_vault_id(const std::string& vault_id) {
  return operate(state_ != nullptr, "remove_filters", vault_id);
}
int CDataSource::query_filter(const std::string& vault_id, std::vector<Filter>& found) {
  const int status = operate(state_ != nullptr, "query_filter", vault_id);
  found.resize(status == 0 ? 1 : 0, {"", vault_id, 1, "old", "new", ""});
  return status;
}
CMetadata::CMetadata() = default;
CMetadata::~CMetadata() = default;
int CMetadata::remove_metadata(std::string key) {
  return operate(state_ != nullptr, "remove_metadata", key);
}
int check_channel_list_valid(json_object*) {
  const int status = operate(true, "check");
  return status != 0 ? status : stand_in.list_status;
}

namespace {

constexpr char kNoDataSource[] = R"({"vault_list":[]})";
constexpr char kList[] = R"([{"guid":"g","channel_index":4,"name":"n"}])";
char id_a[] = "a";
char id_x[] = "x";

int add_new() { return test::add("new", "X", kList); }
int modify_a(const char* name, const char* enable) {
  std::vector<int> indexes;
  return test::modify("a", {name, "", enable, kList}, indexes);
}

struct Call {
  std::function<int()> call;
  StandIn stand_in;
  int result;
  std::string trace;
  std::map<std::string, int> failing = {};  // operations whose failure gives another result
};

const std::string kBeforeInsert = R"(
[libdevcfg](devcfg_add_device,N) start sql insert
init; query new ; sorted; 
[libdevcfg](devcfg_add_device,N) data_sources.size() : )";

const std::string kAfterInsert = kBeforeInsert + R"(2
insert new 2; 
[libzelip](devcfg_add_device:N) add data source success!
check; )";

const Call kCalls[] = {
    {[] {
       int matched = 0;
       return devcfg_check_vault_exist(id_a, &matched) + devcfg_check_vault_name(id_x, &matched) +
              matched;
     },
     {},
     1,
     "init; query a ; release; init again; query  x; release; ",
     {{"init;", 0}, {"query a", 0}}},
    {add_new,
     {},
     0,
     kAfterInsert + R"(insert_channel new 4 g n; release; 
[libdevcfg](devcfg_add_device,N) end
)",
     {{"init", kFailure}, {"insert new", kFailure}, {"check", kFailure}}},
    {[] { return test::add("a"); },
     {},
     kDevcfgAlreadyExists,
     R"(
[libdevcfg](devcfg_add_device,N) start sql insert
init; query a ; 
[libdevcfg](devcfg_add_device:N) Device already exist
release; )",
     {{"init", kFailure}, {"query", 0}}},
    {add_new,
     {128},
     kDevcfgVaultListFull,
     kBeforeInsert + R"(128

[libdevcfg](devcfg_add_device,N) Vault list was full
release; )",
     {{"init", kFailure}, {"sorted", 0}}},
    {add_new,
     {2, -4},
     -4,
     kBeforeInsert + R"(2
insert new 2; 
[libzelip](devcfg_add_device:N) Error! failed to add data source! ret [-4]
release; )",
     {{"init", kFailure}, {"insert", kFailure}}},
    {add_new,
     {2, 0, 8},
     8,
     kAfterInsert + R"(
[libzelip](devcfg_add_device:N) channel list have invalid channel
release; )",
     {{"init", kFailure}, {"insert", kFailure}, {"check", kFailure}}},
    {[] { return modify_a("\"new\"", "false"); },
     {},
     0,
     R"(init; query a ; 
[libdevcfg](devcfg_modify_device,N) edit name and description
init again; query  new; release; update a new  0 1 5 0; 
[libdevcfg](devcfg_modify_device,N) edit enable
update a new  0 0 5 0; 
[libdevcfg](devcfg_modify_device,N) edit channel
check; remove_channels a; insert_channel a 4 g n; release; )",
     {{"init;", -1}, {"query a", -1}, {"check", kFailure}}},
    {[] { return modify_a("\"name of b\"", "false"); },
     {},
     kDevcfgNameTaken,
     R"(init; query a ; 
[libdevcfg](devcfg_modify_device,N) edit name and description
init again; query  name of b; release; release; )",
     {{"init;", -1}, {"init again", 0}, {"query a", -1}, {"query  name", 0}}},
    {[] { return modify_a("", ""); },
     {2, 0, 8},
     8,
     R"(init; query a ; 
[libdevcfg](devcfg_modify_device,N) edit channel
check; 
[libzelip](devcfg_modify_device:N) channel list have invalid channel
release; )",
     {{"init;", -1}, {"query a", -1}, {"check", kFailure}}},
    {[] { return modify_a("\"b\"", ""); }, {0}, -1, R"(init; query a ; 
[libdevcfg](devcfg_modify_device,N) vault id is not exist!
release; )"},
    {[] { return devcfg_remove_device(id_a, nullptr, nullptr); },
     {},
     0,
     "init; query a ; remove a; release; "},
    {[] { return devcfg_remove_device(id_x, nullptr, nullptr); },
     {},
     0,
     "init; query x ; release; "},
    {[] { return test::show("a") == kNoDataSource ? 1 : 0; },
     {},
     0,
     "\n[devcfg](devcfg_get_device:N) dev_id = a\ninit; query a ; release; ",
     {{"init", 1}, {"query", 1}}},
    {[] { return test::show() == kNoDataSource ? 1 : 0; }, {0}, 1, "init; query  ; release; "},
    {[] { return devcfg_modify_filter(id_x, test::Json(R"([{"type":6},{}])")); },
     {},
     0,
     "init; remove_filters x; insert_filter x 6 ; insert_filter x 0 ; release; "},
    {[] { return notify_camera_removed(id_x); }, {}, 0, "init; remove_guid x; release; "},
    {[] { return notify_camera_modified(id_x, id_a, 0); },
     {},
     0,
     "init; query_channel  x; update_channel 1 a 7 x a; update_channel 2 b 8 x a; release; "},
    {[] {
       char text[] = "old";
       return ft_filter_string(id_x, text) == kDevcfgFiltered && text == std::string("new") ? 1 : 0;
     },
     {},
     1,
     "init; query_filter x; release; ",
     {{"init", 0}, {"query", 0}}},
    {[] { return metadata_remove(id_x, nullptr, nullptr, nullptr); },
     {},
     0,
     "init; remove_metadata x; release; "},
};

// The result of the call whose operation number `failing` fails.
int run(const Call& call, int failing) {
  stand_in = call.stand_in;
  stand_in.failing = failing;
  const int result = call.call();
  EXPECT_FALSE(stand_in.misused || stand_in.live != 0) << stand_in.trace;
  return result;
}

}  // namespace

TEST(VaultSteps, AreTakenInOrder) {
  for (const Call& call : kCalls) {
    EXPECT_EQ(run(call, 0), call.result) << call.trace;
    EXPECT_EQ(stand_in.trace, call.trace);
  }
}

TEST(VaultSteps, GiveTheStatedResultWithEverythingReleasedWhicheverFails) {
  for (const Call& call : kCalls) {
    run(call, 0);
    const int operations = stand_in.operations;
    for (int failing = 1; failing <= operations; ++failing) {
      const int result = run(call, failing);
      const auto other =
          std::find_if(call.failing.begin(), call.failing.end(),
                       [](const auto& row) { return stand_in.failed.starts_with(row.first); });
      const bool goes_on = other == call.failing.end();
      EXPECT_EQ(result, goes_on ? call.result : other->second) << call.trace << stand_in.failed;
      const bool is_change = !std::regex_search(stand_in.failed, std::regex("^init|^query|^sort"));
      EXPECT_TRUE(!goes_on || !is_change || stand_in.operations == operations) << stand_in.trace;
    }
  }
}
