// A vault database whose write number FAILING_WRITE (from 1) fails once: the operations of the
// embedded one, behind a count. They come before the library's own in a program.
#include <dlfcn.h>

#include <cstdlib>

#include "orvaneip.h"

namespace {

bool fails_now() {
  static int write_count = 0;
  const char* failing = std::getenv("FAILING_WRITE");
  return ++write_count == (failing != nullptr ? std::atoi(failing) : 0);
}

// Calls the embedded operation with this mangled name.
template <typename Record>
int write(CDataSource* store, const char* symbol, const Record& record) {
  using Operation = int (*)(CDataSource*, const Record&);
  const auto operation = reinterpret_cast<Operation>(dlsym(RTLD_NEXT, symbol));
  return fails_now() ? metadata_vault::kVaultNoSpace : operation(store, record);
}

}  // namespace

#define DATA_SOURCE_OPERATION(name, symbol, Record) \
  int CDataSource::name(const Record& record) { return write(this, symbol, record); }

DATA_SOURCE_OPERATION(insert_data_source,
                      "_ZN11CDataSource18insert_data_sourceERKN14metadata_vault10DataSourceE",
                      metadata_vault::DataSource)
DATA_SOURCE_OPERATION(update_data_source,
                      "_ZN11CDataSource18update_data_sourceERKN14metadata_vault10DataSourceE",
                      metadata_vault::DataSource)
DATA_SOURCE_OPERATION(remove_data_source,
                      "_ZN11CDataSource18remove_data_sourceERKN14metadata_vault10DataSourceE",
                      metadata_vault::DataSource)
DATA_SOURCE_OPERATION(insert_channel,
                      "_ZN11CDataSource14insert_channelERKN14metadata_vault7ChannelE",
                      metadata_vault::Channel)
DATA_SOURCE_OPERATION(update_channel,
                      "_ZN11CDataSource14update_channelERKN14metadata_vault7ChannelE",
                      metadata_vault::Channel)
DATA_SOURCE_OPERATION(insert_filter, "_ZN11CDataSource13insert_filterERKN14metadata_vault6FilterE",
                      metadata_vault::Filter)
DATA_SOURCE_OPERATION(remove_channel_by_guid,
                      "_ZN11CDataSource22remove_channel_by_guidERKNSt7__cxx1112basic_"
                      "stringIcSt11char_traitsIcESaIcEEE",
                      std::string)
DATA_SOURCE_OPERATION(remove_channel_by_vault_id,
                      "_ZN11CDataSource26remove_channel_by_vault_idERKNSt7__cxx1112basic_"
                      "stringIcSt11char_traitsIcESaIcEEE",
                      std::string)
DATA_SOURCE_OPERATION(remove_filter_by_vault_id,
                      "_ZN11CDataSource25remove_filter_by_vault_idERKNSt7__cxx1112basic_"
                      "stringIcSt11char_traitsIcESaIcEEE",
                      std::string)
