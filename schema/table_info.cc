#include "schema/table_info.h"

#include <cstdlib>

namespace {

void release_texts(char** texts, std::int32_t count) {
  for (std::int32_t i = 0; texts != nullptr && i < count; ++i) {
    std::free(texts[i]);
  }
  std::free(texts);
}

// Returns `count` empty strings, or null when memory is exhausted.
char** allocate_texts(std::int32_t count) {
  // One more entry, so that an empty array is not a null pointer either.
  auto** texts =
      static_cast<char**>(std::calloc(static_cast<std::size_t>(count) + 1, sizeof(char*)));
  for (std::int32_t i = 0; texts != nullptr && i < count; ++i) {
    texts[i] = static_cast<char*>(std::calloc(kColumnTextBytes, 1));
    if (texts[i] == nullptr) {
      release_texts(texts, i);
      return nullptr;
    }
  }
  return texts;
}

}  // namespace

void devcfg_init_tb_info(table_info* info, int count) {
  if (info == nullptr) {
    return;
  }
  const std::int32_t wanted = count > 0 ? count : 0;
  *info = {wanted, allocate_texts(wanted), allocate_texts(wanted)};
  if (info->col_name == nullptr || info->col_type == nullptr) {
    release_texts(info->col_name, wanted);
    release_texts(info->col_type, wanted);
    *info = {0, nullptr, nullptr};
  }
}

void devcfg_del_tb_info(table_info* info) {
  if (info != nullptr) {
    release_texts(info->col_name, info->col_count);
    release_texts(info->col_type, info->col_count);
    std::free(info);
  }
}
