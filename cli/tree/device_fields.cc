#include "cli/tree/device_fields.h"

namespace devcfg {
namespace {

template <auto kMember, typename... Names>
DeviceField field(const char* option, const char* meaning, Names... path) {
  return {option, meaning, {path...}, sizeof(TDeviceInfo{}.*kMember)};
}

}  // namespace

const std::vector<DeviceField>& device_fields() {
  using Info = TDeviceInfo;
  static const std::vector<DeviceField> kFields = {
      field<&Info::device_id>("id", "Identifier", "device_id"),
      field<&Info::device_name>("name", "Display name", "device_name"),
      field<&Info::type>("type", "Device type", "type"),
      field<&Info::brand>("brand", "Brand", "brand"),
      field<&Info::plugin>("plugin", "Plug-in", "plugin"),
      field<&Info::install_path>("install-path", "Directory of the plug-in", "install_path"),
      field<&Info::description>("description", "Free text", "description"),
      field<&Info::conn_type>("connection", "Kind of connection", "src_property_list", "conn",
                              "type"),
      field<&Info::lan_ip>("ip", "Network address", "src_property_list", "conn", "lan", "ip"),
      field<&Info::lan_port>("port", "Port number", "src_property_list", "conn", "lan", "port"),
      field<&Info::com_port>("com", "Serial port", "src_property_list", "conn", "com", "com"),
      field<&Info::baudrate>("baudrate", "Serial speed", "src_property_list", "conn", "com",
                             "baudrate"),
      field<&Info::src_id>("login", "Login name at the device", "src_property_list", "id"),
      field<&Info::recording_cam>("camera", "Bound recording camera", "src_property_list",
                                  "binding", "recording_cam"),
  };
  return kFields;
}

const DeviceField& password_field() {
  static const DeviceField kField = field<&TDeviceInfo::src_pwd>(
      "password", "Password at the device", "src_property_list", "pwd");
  return kField;
}

std::string field_text(const DeviceTreeFile& tree, const std::string& node,
                       const DeviceField& field) {
  std::string text(field.size_bytes, '\0');
  const char* const* path = field.path;
  xmlcfg_get_str(tree.handle(), "", text.data(), static_cast<int>(text.size()), "device",
                 node.c_str(), path[0], path[1], path[2], path[3], nullptr);
  return text.c_str();
}

}  // namespace devcfg
