// A vault database of its own for a benchmark, in a folder that goes away with it.
#pragma once

#include <string>

namespace bench {

class SampleVault {
 public:
  SampleVault();  // empty; ORVANE_VAULT names it from now on
  ~SampleVault();
  SampleVault(const SampleVault&) = delete;
  SampleVault& operator=(const SampleVault&) = delete;

  // Adds a data source with this many channels and filters. False when the library refuses.
  bool add(const std::string& vault_id, int channels, int filters) const;
  bool add_plain(const std::string& vault_id) const;  // neither channels nor filters

  std::string file(const std::string& name) const { return folder_ + "/" + name; }
  std::string database() const { return file("vault.db"); }

 private:
  std::string folder_;
};

}  // namespace bench
