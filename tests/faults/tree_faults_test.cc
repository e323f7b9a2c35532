// Every call that an exported function makes to the configuration tree or the event service fails
// once: this program's definitions, which call the embedded ones, take precedence over those.
#include <dlfcn.h>

#include <cstdarg>

#include "tests/support/exported_calls.h"

namespace {

int failing = 0;     // the number of the call that fails
int calls = 0;       // how many there were
std::string failed;  // the one that failed, with its path
int open_count = 0;  // handles and copies

bool fails(const std::string& call) {
  const bool is_failing = ++calls == failing;
  failed = is_failing ? call : failed;
  open_count += call.starts_with("xmlcfg_open") && !is_failing ? 1 : 0;
  return is_failing;
}

// The path of a call; for a call that has to fail, one that no tree has.
struct Path {
  Path(std::string call, va_list list) {
    for (const char** name = names; (*name = va_arg(list, const char*)) != nullptr; ++name) {
      call.append("/").append(*name);
    }
    if (fails(call)) {
      names[0] = "absent";
      names[1] = nullptr;
    }
  }
  const char* names[8];
};

template <typename Function>
Function* next(Function* /*type*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <typename Result>
Result counted(Result result) {
  open_count += std::is_same_v<Result, void**> && result ? 1 : 0;
  return result;
}

}  // namespace

#pragma GCC diagnostic ignored "-Wvarargs"  // va_start after a bool, as in the interface
#define FORWARD(result, name, parameters, last, ...)                                         \
  result name parameters {                                                                   \
    va_list list;                                                                            \
    va_start(list, last);                                                                    \
    const Path path(#name, list);                                                            \
    va_end(list);                                                                            \
    const char* const* n = path.names;                                                       \
    return counted(                                                                          \
        next(&name, #name)(__VA_ARGS__, n[0], n[1], n[2], n[3], n[4], n[5], n[6], nullptr)); \
  }
FORWARD(bool, xmlcfg_get_str, (void* tree, const char* otherwise, char* buffer, int size, ...),
        size, tree, otherwise, buffer, size)
FORWARD(bool, xmltree_get_str, (void** tree, const char* otherwise, char* buffer, int size, ...),
        size, tree, otherwise, buffer, size)
FORWARD(int, xmlcfg_get_int, (void* tree, int otherwise, ...), otherwise, tree, otherwise)
FORWARD(int, xmltree_get_int, (void** tree, int otherwise, ...), otherwise, tree, otherwise)
FORWARD(bool, xmlcfg_get_bool, (void* tree, bool otherwise, ...), otherwise, tree, otherwise)
FORWARD(bool, xmlcfg_set_str, (void* tree, const char* value, ...), value, tree, value)
FORWARD(bool, xmlcfg_remove, (void* tree, ...), tree, tree)
FORWARD(void**, xmlcfg_export_xmltree, (void* tree, ...), tree, tree)

void xmltree_destroy(void** tree) {
  --open_count;
  next(&xmltree_destroy, "xmltree_destroy")(tree);
}
bool xmlcfg_close(void* tree, bool save) {
  const bool is_failing = fails("xmlcfg_close");
  --open_count;
  return next(&xmlcfg_close, "xmlcfg_close")(tree, save && !is_failing) && !is_failing;
}

TEST(TreeFaults, GiveTheStatedResultWithEverythingReleasedWhicheverCallFails) {
  const test::TempVault vault;
  const test::ConfigFiles files;
  test::write_fixed_files(files);
  const std::string before = test::read_file(files.device_tree());
  test::Own own(files, "own");
  test::call_fails = fails;
  int failures = 0;
  for (const test::Call& call : test::kExportedCalls) {
    failing = 0;
    do {
      test::write_file(files.device_tree(), before);
      calls = open_count = 0;
      failed.clear();
      ++failing;
      const int result = call.run(own);
      const auto other =
          std::find_if(call.failing.rbegin(), call.failing.rend(),
                       [](const auto& row) { return failed.starts_with(row.first); });
      const int wanted = other != call.failing.rend() ? other->second : call.result;
      // A stored value that does not read back fails the whole run.
      const bool may_fail =
          call.name == std::string("devcfg_check_builtin") && failed.starts_with("xmlcfg_get");
      EXPECT_TRUE(result == wanted || (may_fail && result == 0))
          << call.name << ": " << failed << " gives " << result << ", not " << wanted;
      EXPECT_EQ(open_count, 0) << call.name << ": " << failed;
      EXPECT_TRUE(result == call.result || failed == "xmlcfg_close" ||
                  test::read_file(files.device_tree()) == before)
          << failed;
      failures += failed.empty() ? 0 : 1;
    } while (!failed.empty());
  }
  EXPECT_GT(failures, 100);
  RecordProperty("failures", failures);
  failing = 0;
}
