#include "platform/embedded/host/host_settings.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

#include "base/strings.h"
#include "platform/log_sinks.h"

namespace orvaneplatform {
namespace {

constexpr std::size_t kFileBytesMax = kMaxHostSettingsKib * 1024;
constexpr std::string_view kWhitespace = " \t\r";

std::optional<int> parse_port(std::string_view text) {
  int port = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, port);
  const bool is_number = read.ec == std::errc() && read.ptr == end;
  return is_number && port >= kPortMin && port <= kPortMax ? std::optional(port) : std::nullopt;
}

int* find_setting(HostSettings& settings, std::string_view name) {
  if (name == "http_port") {
    return &settings.http_port;
  }
  if (name == "https_port") {
    return &settings.https_port;
  }
  return name == "app_port" ? &settings.app_port : nullptr;
}

// Returns false when the line is not a setting.
bool apply_line(HostSettings& settings, std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) {
    return false;
  }
  int* const setting = find_setting(settings, base::trim(line.substr(0, equals), kWhitespace));
  const std::optional<int> port = parse_port(base::trim(line.substr(equals + 1), kWhitespace));
  if (setting == nullptr || !port) {
    return false;
  }
  *setting = *port;
  return true;
}

HostSettings refuse(const std::string& path, const std::string& reason) {
  orvane_log_debug("[hostinfo] %s is not read: %s", path.c_str(), reason.c_str());
  return {};
}

}  // namespace

HostSettings parse_host_settings(std::string_view text, const char* name) {
  HostSettings settings;
  for (int number = 1; !text.empty(); ++number) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const std::string_view content = base::trim(line.substr(0, line.find('#')), kWhitespace);
    if (!content.empty() && !apply_line(settings, content)) {
      orvane_log_debug("[hostinfo] %s, line %d is ignored: %.*s", name, number,
                       static_cast<int>(content.size()), content.data());
    }
  }
  return settings;
}

HostSettings read_host_settings(const std::string& path) {
  const auto close = [](std::FILE* file) { std::fclose(file); };
  const std::unique_ptr<std::FILE, decltype(close)> file(std::fopen(path.c_str(), "re"));
  if (file == nullptr) {
    return errno == ENOENT ? HostSettings() : refuse(path, strerrordesc_np(errno));
  }
  std::string text(kFileBytesMax + 1, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  if (std::ferror(file.get()) != 0) {
    return refuse(path, "it cannot be read");
  }
  if (text.size() > kFileBytesMax) {
    return refuse(path, "it is larger than " + std::to_string(kMaxHostSettingsKib) + " KiB");
  }
  return parse_host_settings(text, path.c_str());
}

}  // namespace orvaneplatform
