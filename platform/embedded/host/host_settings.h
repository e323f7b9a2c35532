// The settings file of the host information.
#pragma once

#include <string>
#include <string_view>

namespace orvaneplatform {

// Port numbers, 1 to 65535.
struct HostSettings {
  int http_port = 80;
  int https_port = 443;
  int app_port = 8080;
};

// What the text of a settings file says (platform/platform_layer.h has its form), the defaults for
// all else. `name` is the file's name for the log.
HostSettings parse_host_settings(std::string_view text, const char* name);

// The settings of the file at `path`. A file that is missing, cannot be read or is larger than
// 64 KiB gives the defaults; but for the missing one this is logged.
HostSettings read_host_settings(const std::string& path);

}  // namespace orvaneplatform
