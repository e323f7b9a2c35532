#include "tests/support/config_files.h"

#include <dlfcn.h>

#include <stdexcept>

#include "foundation/split.h"

static constexpr char kNoDirectory[] = "/no/such/directory";
static std::string directory = kNoDirectory;

void* xmlcfg_open(TCfgMode mode, const char* path) {
  static const auto embedded =
      reinterpret_cast<decltype(&xmlcfg_open)>(dlsym(RTLD_NEXT, "xmlcfg_open"));
  const std::string name = path;
  const std::string file = name.substr(name.rfind('/') + 1);
  if (test::call_fails != nullptr && test::call_fails("xmlcfg_open/" + file)) {
    return nullptr;
  }
  const bool fixed = name.ends_with("/config/" + file) &&
                     (file == "zelip.xml" || file == "zelip_builtin.xml" || file == "kfilter.xml");
  return embedded(mode, fixed ? (directory + "/" + file).c_str() : path);
}

namespace test {

ConfigFiles::ConfigFiles() { directory = path(); }
ConfigFiles::~ConfigFiles() { directory = kNoDirectory; }

std::string write_tree(const std::string& file, const std::string& top, const std::string& values) {
  write_file(file, "");
  Tree tree(kCfgChange, file);
  for (const std::string& item : split(values, ';')) {
    const std::size_t mark = item.find('=');
    const std::string path = top + "/" + item.substr(0, mark);
    if (!tree.store(split(path, '/'), item.substr(mark + 1))) {
      throw std::runtime_error("cannot store " + item);
    }
  }
  return file;
}

}  // namespace test
