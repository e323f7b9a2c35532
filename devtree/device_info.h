// The record of one device node.
#pragma once

#include <cstddef>
#include <cstdint>

// Size in bytes, terminator included, of most texts of the record.
inline constexpr std::size_t kDeviceTextBytes = 128;

// Programs share this record with the library byte for byte: neither order nor sizes may change.
// Texts are NUL-terminated; a longer value of the file is cut to fit. The comments give the values'
// paths below the node where they differ from the field's name; "..." is src_property_list.
struct TDeviceInfo {
  std::int32_t node_no;
  char device_id[kDeviceTextBytes];
  char type[kDeviceTextBytes];
  char brand[kDeviceTextBytes];
  char device_name[kDeviceTextBytes];
  char plugin[kDeviceTextBytes];
  char install_path[kDeviceTextBytes];
  bool enable;  // the value is exactly "true"
  char description[kDeviceTextBytes];
  char conn_type[kDeviceTextBytes];  // .../conn/type
  char lan_ip[kDeviceTextBytes];     // .../conn/lan/ip
  char lan_port[6];                  // .../conn/lan/port, as text
  char com_port[5];                  // .../conn/com/com, the name of a serial port
  char baudrate[32];                 // .../conn/com/baudrate, as text
  char src_id[kDeviceTextBytes];     // .../id, the login name at the source device
  char src_pwd[kDeviceTextBytes];    // .../pwd, the password at the source device, in plain text
  char recording_cam[kDeviceTextBytes];  // .../binding/recording_cam
};

static_assert(sizeof(bool) == 1);
static_assert(offsetof(TDeviceInfo, node_no) == 0);
static_assert(offsetof(TDeviceInfo, device_id) == 4);
static_assert(offsetof(TDeviceInfo, type) == 132);
static_assert(offsetof(TDeviceInfo, brand) == 260);
static_assert(offsetof(TDeviceInfo, device_name) == 388);
static_assert(offsetof(TDeviceInfo, plugin) == 516);
static_assert(offsetof(TDeviceInfo, install_path) == 644);
static_assert(offsetof(TDeviceInfo, enable) == 772);
static_assert(offsetof(TDeviceInfo, description) == 773);
static_assert(offsetof(TDeviceInfo, conn_type) == 901);
static_assert(offsetof(TDeviceInfo, lan_ip) == 1029);
static_assert(offsetof(TDeviceInfo, lan_port) == 1157);
static_assert(offsetof(TDeviceInfo, com_port) == 1163);
static_assert(offsetof(TDeviceInfo, baudrate) == 1168);
static_assert(offsetof(TDeviceInfo, src_id) == 1200);
static_assert(offsetof(TDeviceInfo, src_pwd) == 1328);
static_assert(offsetof(TDeviceInfo, recording_cam) == 1456);
static_assert(sizeof(TDeviceInfo) == 1584);
