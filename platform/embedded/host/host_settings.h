// The settings file of the host information.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvaneplatform {

// Size limit of the settings file. A larger file is not read.
inline constexpr std::size_t kMaxHostSettingsKib = 64;

inline constexpr int kPortMin = 1;
inline constexpr int kPortMax = 65535;

// Port numbers where the settings file has none: HTTP, HTTPS and the usual second HTTP port.
inline constexpr int kDefaultHttpPort = 80;
inline constexpr int kDefaultHttpsPort = 443;
inline constexpr int kDefaultAppPort = 8080;

// Port numbers, kPortMin to kPortMax.
struct HostSettings {
  int http_port = kDefaultHttpPort;
  int https_port = kDefaultHttpsPort;
  int app_port = kDefaultAppPort;
};

// Returns the settings in `text`, the contents of a settings file; a port that it does not set has
// its default. A line that is not a setting is ignored and logged. `name`: the file's name for the
// log.
HostSettings parse_host_settings(std::string_view text, const char* name);

// Returns the settings of the file at `path`. A file that does not exist, cannot be read or is
// larger than kMaxHostSettingsKib gives the defaults; the last two are logged.
HostSettings read_host_settings(const std::string& path);

}  // namespace orvaneplatform
