// The platform layer: information about this machine, the NAS.
//
// What the library relies on:
//  - Each function returns 0 when it filled in its record, and another number when it failed.
//  - Records belong to the caller, who constructs each one with its defaults before the call. A
//    question with its defaults asks for everything.
//  - Any number of threads may call at once, each with its own records.
//
// The embedded platform:
//  - PAL_auth_get_auth always succeeds: the identity is the string "local".
//  - `ip_list` contains the addresses of the interfaces that are up and are not loopback, IPv4
//    first, in the order of the system, separated by commas without spaces. Link-local IPv6
//    addresses are left out: another machine cannot use them without the name of one of its own
//    interfaces. The list is empty when there are no such addresses; the call fails when the
//    interfaces cannot be listed.
//  - The numbers are port numbers, 1 to 65535: `share_value_1` is the port of HTTP, `share_value_2`
//    of HTTPS, `app_value` of the applications. The settings file /etc/orvane/host.conf sets them;
//    these are the defaults:
//        http_port = 80
//        https_port = 443
//        app_port = 8080
//    The file may be missing. "#" begins a comment. When several lines set the same port, the last
//    one counts; a line that is not a setting is logged and ignored. Every call reads the file
//    again.
// Log lines of the embedded platform layer have the tag "[hostinfo]".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/export.h"

// The order and types of the fields of the three records are the platform's interface: they must
// not change.

// The identity that the library has for the platform. The library passes the record on and reads
// none of its fields.
struct t_auth {
  std::string identity;
  std::string further_text_2;
  std::string further_text_3;
  std::string further_text_4;
  std::uint8_t further_bytes[6] = {};
  std::string further_text_5;
};

struct t_network_app_info {
  std::uint8_t further_bytes[12] = {};
  std::int32_t app_value = 0;
};
static_assert(sizeof(t_network_app_info) == 16 && offsetof(t_network_app_info, app_value) == 12);

struct t_system_share_addr {
  std::int32_t share_value_1 = 0;
  std::int32_t share_value_2 = 0;
  std::uint8_t further_bytes[12] = {};
  std::string further_texts[4];
  std::string ip_list;  // separated by commas, with or without a space after each
};

extern "C" {

ORVANEIP_API int PAL_auth_get_auth(t_auth& auth);

ORVANEIP_API int PAL_network_get_app_info(const t_auth& auth, const t_network_app_info& question,
                                          t_network_app_info& answer);

ORVANEIP_API int PAL_system_get_share_addr(const t_auth& auth, const t_system_share_addr& question,
                                           t_system_share_addr& answer);

}  // extern "C"
