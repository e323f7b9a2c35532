// The vault calls against SQLite's C interface on the same file.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <json-c/json.h>
#include <unistd.h>

#include <vector>

#include "bench/bare_vault.h"
#include "bench/counted_syncs.h"
#include "bench/ratio.h"
#include "bench/sample_vault.h"
#include "orvaneip.h"

namespace {

using bench::require;
using bench::SampleVault;

std::string id_of(int number) { return "ID" + std::to_string(number); }

// The vault of the lookups and listings: full; each data source has 16 channels and 8 filters, the
// first has none.
class FullVault : public SampleVault {
 public:
  FullVault() {
    for (int i = 0; i < metadata_vault::kMaxDataSources; ++i) {
      require(i == 0 ? add_plain(id_of(i)) : add(id_of(i), 16, 8), "filling the sample vault");
    }
  }
};

const SampleVault& full_vault() {
  static const FullVault vault;
  setenv("ORVANE_VAULT", vault.database().c_str(), 1);
  return vault;
}

int library_matches(std::string vault_id) {
  int count = 0;
  require(devcfg_check_vault_exist(vault_id.data(), &count) == 0, "existence lookup");
  return count;
}

void existence_bare(benchmark::State& state) {
  const std::string database = full_vault().database();
  require(bench::bare_exists(database, id_of(77)) && !bench::bare_exists(database, "none"),
          "bare existence lookup");
  for (auto _ : state) {
    benchmark::DoNotOptimize(bench::bare_exists(database, id_of(77)));
  }
}

void lookup(benchmark::State& state, const std::string& vault_id, int matches) {
  full_vault();
  require(library_matches(vault_id) == matches, "existence lookup");
  for (auto _ : state) {
    benchmark::DoNotOptimize(library_matches(vault_id));
  }
}

void existence_lookup(benchmark::State& state) { lookup(state, id_of(0), 1); }
void existence_lookup_with_lists(benchmark::State& state) { lookup(state, id_of(77), 1); }
void absence_lookup(benchmark::State& state) { lookup(state, "none", 0); }

void listing_bare(benchmark::State& state) {
  const std::string database = full_vault().database();
  for (auto _ : state) {
    json_object_put(bench::bare_listing(database));
  }
}

void listing(benchmark::State& state) {
  const std::string database = full_vault().database();
  int error_code = -1;
  json_object* ours = devcfg_get_all_device(&error_code, nullptr, nullptr, nullptr);
  json_object* bare = bench::bare_listing(database);
  require(error_code == 0 && json_object_equal(ours, bare), "listing");
  json_object_put(ours);
  json_object_put(bare);
  for (auto _ : state) {
    json_object_put(devcfg_get_all_device(&error_code, nullptr, nullptr, nullptr));
  }
}

// A vault with one data source. One more is added, and removed again while the clock is stopped.
class AddingVault {
 public:
  AddingVault() { require(vault_.add_plain("first"), "adding the first data source"); }

  bool add() const { return vault_.add_plain("added"); }
  void remove() const {
    char id[] = "added";
    devcfg_remove_device(id, nullptr, nullptr);
  }
  std::string file(const std::string& name) const { return vault_.file(name); }

 private:
  SampleVault vault_;
};

void adding(benchmark::State& state) {
  const AddingVault vault;
  int syncs = 0;
  for (auto _ : state) {
    const int before = bench::sync_count();
    require(vault.add(), "adding a data source");
    syncs = bench::sync_count() - before;
    state.PauseTiming();
    vault.remove();
    state.ResumeTiming();
  }
  state.counters["syncs"] = syncs;
}

// Writes and syncs what an addition does, and nothing else: the header of the write-ahead log and
// its directory, the changed pages in the log, the log again and the pages in the database when it
// closes.
class RawWrites {
 public:
  explicit RawWrites(const AddingVault& vault)
      : directory_(open(vault.file("").c_str(), O_RDONLY | O_DIRECTORY)),
        log_(open(vault.file("raw-log").c_str(), O_RDWR | O_CREAT, 0600)),
        pages_(open(vault.file("raw-pages").c_str(), O_RDWR | O_CREAT, 0600)) {}
  ~RawWrites() {
    close(directory_);
    close(log_);
    close(pages_);
  }
  RawWrites(const RawWrites&) = delete;
  RawWrites& operator=(const RawWrites&) = delete;

  bool write() const {
    const bool written = put(log_, 32, 0) && sync(log_) && sync(directory_) && put_pages(log_) &&
                         sync(log_) && sync(log_) && put_pages(pages_) && sync(pages_);
    return written && ftruncate(log_, 0) == 0;
  }

 private:
  static bool put(int file, std::size_t size_bytes, off_t offset) {
    static const std::vector<char> bytes(4096 + 24, 'x');
    return pwrite(file, bytes.data(), size_bytes, offset) == static_cast<ssize_t>(size_bytes);
  }
  static bool put_pages(int file) {
    bool written = true;
    for (int page = 0; page < 4; ++page) {
      written = written && put(file, 4096, 32 + page * 4096);
    }
    return written;
  }
  static bool sync(int file) { return fdatasync(file) == 0; }

  int directory_;
  int log_;
  int pages_;
};

void adding_raw_syncs(benchmark::State& state) {
  const AddingVault vault;
  const RawWrites raw(vault);
  int syncs = 0;
  for (auto _ : state) {
    const int before = bench::sync_count();
    require(raw.write(), "raw writes");
    syncs = bench::sync_count() - before;
  }
  state.counters["syncs"] = syncs;
}

BENCHMARK(existence_bare)->Unit(benchmark::kMicrosecond);
BENCHMARK(existence_lookup)->Unit(benchmark::kMicrosecond);
BENCHMARK(existence_lookup_with_lists)->Unit(benchmark::kMicrosecond);
BENCHMARK(absence_lookup)->Unit(benchmark::kMicrosecond);
BENCHMARK(listing_bare)->Unit(benchmark::kMicrosecond);
BENCHMARK(listing)->Unit(benchmark::kMicrosecond);
BENCHMARK(adding_raw_syncs)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(adding)->UseRealTime()->Unit(benchmark::kMicrosecond);

const bool kDeclared = [] {
  bench::expect_ratio("existence_lookup", "existence_bare", 1.3);
  bench::expect_ratio("existence_lookup_with_lists", "existence_bare", 1.3);
  bench::expect_ratio("absence_lookup", "existence_bare", 1.3);
  bench::expect_ratio("listing", "listing_bare", 1.15);
  bench::expect_ratio("adding", "adding_raw_syncs", 1.7);
  return true;
}();

}  // namespace
