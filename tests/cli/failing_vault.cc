// A vault database whose write number FAILING_WRITE (from 1) fails once: the operations of the
// embedded one, behind a count. They come before the library's own in a program.
#include <dlfcn.h>

#include <cstdlib>

#include "orvaneip.h"

namespace {

int write_count = 0;

// Calls the embedded operation with this mangled name.
template <typename Record>
int write(CDataSource* store, const char* symbol, const Record& record) {
  using Operation = int (*)(CDataSource*, const Record&);
  const auto operation = reinterpret_cast<Operation>(dlsym(RTLD_NEXT, symbol));
  const char* failing = std::getenv("FAILING_WRITE");
  const bool fails = failing != nullptr && ++write_count == std::atoi(failing);
  return fails ? metadata_vault::kVaultNoSpace : operation(store, record);
}

}  // namespace

#define OPERATION(Record, mangled, length, name)                                \
  int CDataSource::name(const Record& record) {                                 \
    return write(this, "_ZN11CDataSource" #length #name "ERK" mangled, record); \
  }
#define RECORD "N14metadata_vault10DataSourceE"
#define CHANNEL "N14metadata_vault7ChannelE"
#define TEXT "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
OPERATION(metadata_vault::DataSource, RECORD, 18, insert_data_source)
OPERATION(metadata_vault::DataSource, RECORD, 18, update_data_source)
OPERATION(metadata_vault::DataSource, RECORD, 18, remove_data_source)
OPERATION(metadata_vault::Channel, CHANNEL, 14, insert_channel)
OPERATION(metadata_vault::Channel, CHANNEL, 14, update_channel)
OPERATION(metadata_vault::Filter, "N14metadata_vault6FilterE", 13, insert_filter)
OPERATION(std::string, TEXT, 22, remove_channel_by_guid)
OPERATION(std::string, TEXT, 26, remove_channel_by_vault_id)
OPERATION(std::string, TEXT, 25, remove_filter_by_vault_id)
