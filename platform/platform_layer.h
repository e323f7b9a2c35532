// The platform layer: what this machine, the NAS, says about itself.
//
// What the library relies on:
//  - Each function returns 0 when it filled its record, and another number when it failed.
//  - Records belong to the caller, who constructs each one with its defaults before the call. A
//    question at its defaults asks for everything.
//  - Any number of threads may call at once, on records of their own.
//
// The embedded platform:
//  - The authentication always succeeds: the identity is the text "local".
//  - `ip_list` has the addresses of the interfaces that are up and are not loopback, IPv4 first, in
//    the order of the system, separated by commas without blanks. Link-local IPv6 addresses are
//    left out: without the name of an interface of the machine that uses them they lead nowhere. It
//    is empty when there is no such address; the call fails when the interfaces cannot be listed.
//  - The numbers are port numbers, 1 to 65535: `share_value_1` of http, `share_value_2` of https,
//    `app_value` of the applications. They are 80, 443 and 8080, or what the file
//    /etc/orvane/host.conf says in lines such as
//        http_port = 80
//        https_port = 443
//        app_port = 8080
//    The file need not exist. "#" begins a comment; of several lines for one number the last
//    counts; a line that is none of these is logged and ignored. It is read anew by every call.
// Log lines of the embedded platform layer carry the tag "[hostinfo]".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/export.h"

// The identity under which the library talks to the platform. It passes the record on and reads
// none of its fields. (The order and types of all fields of the three records are the platform's
// interface and must not change.)
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
  std::string ip_list;  // separated by commas, with or without a blank after each
};

extern "C" {

ORVANEIP_API int PAL_auth_get_auth(t_auth& auth);

ORVANEIP_API int PAL_network_get_app_info(const t_auth& auth, const t_network_app_info& question,
                                          t_network_app_info& answer);

ORVANEIP_API int PAL_system_get_share_addr(const t_auth& auth, const t_system_share_addr& question,
                                           t_system_share_addr& answer);

}  // extern "C"
