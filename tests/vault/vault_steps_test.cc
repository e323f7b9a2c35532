// The steps and messages of the vault calls, in order, on a stand-in for the vault database: this
// program's definitions of its classes take precedence over the platform's.

#include <cstdarg>
#include <functional>
#include <regex>
#include <sstream>

#include "tests/support/vault_calls.h"

using metadata_vault::Channel;
using metadata_vault::DataSource;
using metadata_vault::Filter;
using std::string, std::string_view;

namespace {

constexpr int kFailure = 77;

struct StandIn {
  int data_sources = 2;      // how many are stored, of those named a, b, c, ...
  string_view refused = {};  // the operation that returns `refusal`
  int refusal = 0;
  int failing = 0;  // the number of the operation that returns kFailure; 0: none

  string trace = {};     // the operations and messages; a message ends its line
  int operations = 0;    // how many there were
  string failed = {};    // the one that failed
  bool misused = false;  // an operation on an object that was not open, or one opened twice
};
StandIn stand_in;

// Records the operation and returns its status.
template <typename... Values>
int operate(bool allowed, string_view name, const Values&... values) {
  std::ostringstream event;
  ((event << name), ..., (event << ' ' << values)) << "; ";
  stand_in.misused |= !allowed && !stand_in.failed.starts_with("init");
  stand_in.trace += event.str();
  if (++stand_in.operations != stand_in.failing) {
    return !allowed ? kFailure : name == stand_in.refused ? stand_in.refusal : 0;
  }
  stand_in.failed = event.str();
  return kFailure;
}

}  // namespace

void orvane_log_debug(const char* format, ...) {
  char text[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  stand_in.trace += std::regex_replace(text, std::regex(R"(\d+\))"), "N)") + '\n';
}

class metadata_vault::VaultConnectionState {};

CMetaDataVaultDB::CMetaDataVaultDB() = default;
CMetaDataVaultDB::~CMetaDataVaultDB() { stand_in.misused |= state_ != nullptr; }
int CMetaDataVaultDB::init() {
  const int status = operate(state_ == nullptr, stand_in.operations > 0 ? "init again" : "init");
  if (status == 0) {
    state_ = std::make_unique<metadata_vault::VaultConnectionState>();
  }
  return status;
}
int CMetaDataVaultDB::release() {
  return operate(std::exchange(state_, nullptr) != nullptr, "release");
}

CDataSource::CDataSource() = default;
CDataSource::~CDataSource() = default;
int CDataSource::query_data_source(const string& id, const string& name,
                                   std::vector<DataSource>& found) {
  const int status = operate(state_ != nullptr, "query", id, name);
  for (int i = 0; i < stand_in.data_sources && status == 0; ++i) {
    DataSource record = test::data_source(string(1, static_cast<char>('a' + i)), i);
    record.record_id = "key";
    record.last_recv_time = 5;
    record.filter.resize(1);
    if ((id.empty() || id == record.vault_id) && (name.empty() || name == record.vault_name)) {
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
int CDataSource::query_channel(const string& id, const string& guid, std::vector<Channel>& found) {
  const int status = operate(state_ != nullptr, "query_channel", id, guid);
  if (status == 0) {
    found = {{"1", "a", 7, guid, "old"}, {"2", "b", 8, guid, "old"}};
  }
  return status;
}
int CDataSource::query_filter(const string& id, std::vector<Filter>& found) {
  const int status = operate(state_ != nullptr, "query_filter", id);
  found.resize(status == 0 ? 1 : 0, {"", id, 1, "old", "new", ""});
  return status;
}
CMetadata::CMetadata() = default;
CMetadata::~CMetadata() = default;
int CMetadata::remove_metadata(string key) {
  return operate(state_ != nullptr, "remove_metadata", key);
}
int check_channel_list_valid(json_object*) { return operate(true, "check"); }

#define OPERATION(name, Record, ...) \
  int CDataSource::name(const Record& a) { return operate(state_ != nullptr, __VA_ARGS__); }
OPERATION(insert_data_source, DataSource, "insert", a.vault_id, a.index)
OPERATION(update_data_source, DataSource, "update", a.record_id + a.vault_id, a.vault_name,
          a.description, a.index, a.enable, a.last_recv_time, a.filter.size())
OPERATION(remove_data_source, DataSource, "remove", a.vault_id + a.vault_name)
OPERATION(insert_channel, Channel, "insert_channel", a.vault_id, a.channel_index, a.guid, a.name)
OPERATION(update_channel, Channel, "update_channel", a.record_id, a.vault_id, a.channel_index,
          a.guid, a.name)
OPERATION(insert_filter, Filter, "insert_filter", a.vault_id, a.type, a.name)
OPERATION(remove_channel_by_guid, string, "remove_guid", a)
OPERATION(remove_channel_by_vault_id, string, "remove_channels", a)
OPERATION(remove_filter_by_vault_id, string, "remove_filters", a)

namespace {

constexpr char kNoDataSource[] = R"({"vault_list":[]})";
constexpr char kList[] = R"([{"guid":"g","channel_index":4,"name":"n"}])";
char id_a[] = "a";
char id_x[] = "x";

int look_up() {
  int matched = 0;
  const int status = devcfg_check_vault_exist(id_a, &matched);
  return status + devcfg_check_vault_name(id_x, &matched) == 0 ? matched : -1;
}
int add_new() { return test::add("new", "X", kList); }
int modify_a(const char* name, const char* enable) {
  std::vector<int> indexes;
  return test::modify("a", {name, "", enable, kList}, indexes);
}
int filter_x() {
  char text[] = "old";
  return ft_filter_string(id_x, text) == kDevcfgFiltered && text == string("new") ? 1 : 0;
}

struct Call {
  int result;
  string trace;  // with "@CODE" after an operation whose failure changes the result to CODE
  std::function<int()> call;
  StandIn stand_in = {};
};

const string kStart = "[libdevcfg](devcfg_add_device,N) start sql insert\ninit@77; query ";
const string kSize = "; [libdevcfg](devcfg_add_device,N) data_sources.size() : ";
const string kInsert =
    kStart + "new ; sorted" + kSize + "2\ninsert new 2@77; [libzelip](devcfg_add_device:N) ";
const string kCheck = kInsert + "add data source success!\ncheck@77; ";
const string kModify = "init@-1; query a @-1; [libdevcfg](devcfg_modify_device,N) ";
const string kEdit = "[libdevcfg](devcfg_modify_device,N) edit ";
const string kInvalid = ":N) channel list have invalid channel\nrelease; ";

const Call kCalls[] = {
    {1, "init@0; query a @0; release; init again; query  x; release; ", look_up},
    {0, kCheck + "insert_channel new 4 g n; release; [libdevcfg](devcfg_add_device,N) end\n",
     add_new},
    {kDevcfgAlreadyExists,
     kStart + "a @0; [libdevcfg](devcfg_add_device:N) Device already exist\nrelease; ",
     [] { return test::add("a"); }},
    {kDevcfgVaultListFull,
     kStart + "new ; sorted@0" + kSize +
         "128\n[libdevcfg](devcfg_add_device,N) Vault list was full\nrelease; ",
     add_new,
     {128}},
    {-4,
     kInsert + "Error! failed to add data source! ret [-4]\nrelease; ",
     add_new,
     {2, "insert", -4}},
    {8, kCheck + "[libzelip](devcfg_add_device" + kInvalid, add_new, {2, "check", 8}},
    {0,
     kModify +
         "edit name and description\ninit again; query  new; release; update a new  0 1 5 0; " +
         kEdit + "enable\nupdate a new  0 0 5 0; " + kEdit +
         "channel\ncheck@77; remove_channels a; insert_channel a 4 g n; release; ",
     [] { return modify_a("\"new\"", "false"); }},
    {kDevcfgNameTaken,
     kModify + "edit name and description\ninit again@0; query  name of b@0; release; release; ",
     [] { return modify_a("\"name of b\"", "false"); }},
    {8,
     kModify + "edit channel\ncheck@77; [libzelip](devcfg_modify_device" + kInvalid,
     [] { return modify_a("", ""); },
     {2, "check", 8}},
    {-1, kModify + "vault id is not exist!\nrelease; ", [] { return modify_a("\"b\"", ""); }, {0}},
    {0, "init; query a ; remove a; release; ",
     [] { return devcfg_remove_device(id_a, nullptr, nullptr); }},
    {0, "[devcfg](devcfg_get_device:N) dev_id = a\ninit@1; query a @1; release; ",
     [] { return test::show("a") == kNoDataSource ? 1 : 0; }},
    {1, "init; query  ; release; ", [] { return test::show() == kNoDataSource ? 1 : 0; }, {0}},
    {0, "init; remove_filters x; insert_filter x 6 ; insert_filter x 0 ; release; ",
     [] { return devcfg_modify_filter(id_x, test::Json(R"([{"type":6},{}])")); }},
    {0, "init; remove_guid x; release; ", [] { return notify_camera_removed(id_x); }},
    {0, "init; query_channel  x; update_channel 1 a 7 x a; update_channel 2 b 8 x a; release; ",
     [] { return notify_camera_modified(id_x, id_a, 0); }},
    {1, "init@0; query_filter x@0; release; ", filter_x},
    {0, "init; remove_metadata x; release; ",
     [] { return metadata_remove(id_x, nullptr, nullptr, nullptr); }},
};

// Returns the result of the call when its operation number `failing` fails.
int run(const Call& call, int failing) {
  stand_in = call.stand_in;
  stand_in.failing = failing;
  const int result = call.call();
  EXPECT_FALSE(stand_in.misused) << stand_in.trace;
  return result;
}

}  // namespace

TEST(VaultSteps, RunInOrderAndReleaseEverythingWhicheverFails) {
  const std::regex kEnd("(@(-?\\d+))?; ");
  for (const Call& call : kCalls) {
    EXPECT_EQ(run(call, 0), call.result) << call.trace;
    ASSERT_EQ(stand_in.trace, std::regex_replace(call.trace, kEnd, "; "));
    const int operations = stand_in.operations;
    std::sregex_iterator end(call.trace.begin(), call.trace.end(), kEnd);
    for (int failing = 1; failing <= operations; ++failing, ++end) {
      const int result = run(call, failing);
      const bool goes_on = !(*end)[2].matched;
      EXPECT_EQ(result, goes_on ? call.result : std::stoi((*end)[2]))
          << call.trace << stand_in.failed;
      const bool is_change = !std::regex_search(stand_in.failed, std::regex("^init|^query|^sort"));
      EXPECT_TRUE(!goes_on || !is_change || stand_in.operations == operations) << stand_in.trace;
    }
  }
}
