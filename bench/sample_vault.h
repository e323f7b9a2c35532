// A vault database of its own for a benchmark, in a temporary directory.
#pragma once

#include <string>

#include "bench/temporary_directory.h"

namespace bench {

class SampleVault {
 public:
  SampleVault();  // empty; sets ORVANE_VAULT to it

  // Adds a data source with this many channels and filters. Returns false when the library fails.
  bool add(const std::string& vault_id, int channels, int filters) const;
  bool add_plain(const std::string& vault_id) const;  // without channels and filters

  std::string file(const std::string& name) const { return directory_.file(name); }
  std::string database() const { return file("vault.db"); }

 private:
  TemporaryDirectory directory_;
};

}  // namespace bench
