// The device tree as bytes of a file: read in both modes, changed, saved and read back. Another XML
// parser accepts what is opened, and what is saved.
// Input: the file, a value, and the names of its path below the top element "device".
#include <libxml/parser.h>

#include "fuzz/fuzz.h"
#include "tests/support/config_tree.h"
#include "tests/support/temp_directory.h"

// Returns true for a file without an element as well.
static bool is_strict_xml(const std::string& text) {
  xmlResetLastError();
  xmlDoc* document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                   XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE);
  xmlFreeDoc(document);
  return document != nullptr || text.empty() || xmlGetLastError()->code == XML_ERR_DOCUMENT_EMPTY;
}

// Returns nodes 0 to 3, and the numbers under which their devices are found.
static std::string read_devices(void* tree) {
  std::string read;
  for (int number = 0; number < 4; ++number) {
    TDeviceInfo info;
    read += std::to_string(get_device(tree, number, &info) ? 1 : 0);
    read.append(reinterpret_cast<const char*>(&info), sizeof(info));
    read += std::to_string(find_device_exist(tree, info.device_id));
  }
  return read;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::TempDirectory directory;
  const std::string file = directory.file("zelip.xml");
  auto texts = fuzz::texts_of(data, size, 2);
  test::write_file(file, texts[0]);
  const std::string value = texts[1].substr(0, 8000).c_str();
  texts[1] = "device";
  const test::Path path(texts.begin() + 1, texts.begin() + std::min(7L, std::ssize(texts)));

  test::Tree reader(kCfgRead, file);
  test::Tree changer(kCfgChange, file);
  fuzz::require(reader.is_open() == changer.is_open() &&
                    read_devices(reader.handle()) == read_devices(changer.handle()),
                "both modes read the same");
  fuzz::require(!reader.is_open() || is_strict_xml(texts[0]), "what is opened is strict XML");
  add_device_node(changer.handle(), 3, texts[1].data());
  const bool stored = changer.store(path, value);
  const std::string changed = read_devices(changer.handle());
  const bool closed = changer.close();
  const test::Tree saved(kCfgRead, file);
  fuzz::require(read_devices(saved.handle()) == changed, "what is saved is the changed tree");
  fuzz::require(closed && saved.is_open() == reader.is_open(), "a change is saved");
  fuzz::require(!stored || saved.value(path) == value, "a value reads back unchanged");
  fuzz::require(!stored || is_strict_xml(test::read_file(file)), "as strict XML");
  fuzz::require(test::Tree(kCfgChange, file).remove(path) || !stored, "and can be removed");
  return 0;
}
