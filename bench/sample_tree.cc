#include "bench/sample_tree.h"

#include <cstdio>
#include <fstream>

namespace bench {
namespace {

void add_line(std::string& text, int level, const std::string& line) {
  text.append(static_cast<std::size_t>(level) * 2, ' ') += line + '\n';
}

std::string tag(const char* begin, const std::string& name) {
  std::string text = begin;
  text += name;
  text += '>';
  return text;
}

void add_value(std::string& text, int level, const std::string& name, const std::string& value) {
  add_line(text, level, tag("<", name) + value + tag("</", name));
}

void add_source(std::string& text, int number) {
  add_line(text, 2, "<src_property_list>");
  add_value(text, 3, "id", "operator");
  add_value(text, 3, "pwd", "s3cret-" + std::to_string(number));
  add_line(text, 3, "<conn>");
  add_value(text, 4, "type", "lan");
  add_line(text, 4, "<lan>");
  add_value(text, 5, "ip", "192.168.10." + std::to_string(number));
  add_value(text, 5, "port", std::to_string(9000 + number));
  add_line(text, 4, "</lan>");
  add_line(text, 4, "<com>");
  add_value(text, 5, "com", "COM1");
  add_value(text, 5, "baudrate", "115200");
  add_line(text, 4, "</com>");
  add_line(text, 3, "</conn>");
  add_line(text, 3, "<binding>");
  add_value(text, 4, "recording_cam", "Camera over till " + std::to_string(number));
  add_line(text, 3, "</binding>");
  add_line(text, 2, "</src_property_list>");
}

void add_device(std::string& text, int number) {
  const std::string name = std::to_string(number);
  add_line(text, 1, tag("<", sample_node(number)));
  add_value(text, 2, "device_id", sample_device_id(number));
  add_value(text, 2, "type", "pos");
  add_value(text, 2, "brand", "Generic");
  add_value(text, 2, "device_name", "Till " + name + " at the front door");
  add_value(text, 2, "plugin", "till_reader");
  add_value(text, 2, "install_path", "/usr/lib/plugins/till_reader");
  add_value(text, 2, "enable", "true");
  add_value(text, 2, "description", "Receipts of till " + name + ", ground floor");
  add_value(text, 2, "builtin", "false");
  add_value(text, 2, "qid", "Q" + name);
  add_value(text, 2, "db_name", "till_" + name);
  add_source(text, number);
  add_line(text, 1, tag("</", sample_node(number)));
}

}  // namespace

std::string sample_node(int number) {
  char name[16];
  std::snprintf(name, sizeof(name), "device_%03d", number);
  return name;
}

std::string sample_device_id(int number) {
  char id[35];
  std::snprintf(id, sizeof(id), "ID%032X", static_cast<unsigned>(number) * 7919U);
  return id;
}

std::string sample_tree_text() {
  std::string list;
  std::string devices;
  for (int i = 0; i < kSampleDevices; ++i) {
    list += i > 0 ? "," : "";
    list += sample_node(i);
    add_device(devices, i);
  }
  std::string text = "<?xml version=\"1.0\"?>\n<device>\n";
  add_value(text, 1, "device_node_list", list);
  return text + devices + "</device>\n";
}

SampleTree::SampleTree() { std::ofstream(path(), std::ios::binary) << sample_tree_text(); }

}  // namespace bench
