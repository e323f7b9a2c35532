// The fixed paths of files and programs. Each begins with the prefix ORVANEIP_ROOT, which the build
// sets: empty in a release, a directory of its own in the development presets.
#pragma once

namespace base {

// The device tree, and the list of the devices that come with the system.
inline constexpr char kDeviceTreePath[] = ORVANEIP_ROOT "/third_party/zelip/config/zelip.xml";
inline constexpr char kBuiltinListPath[] =
    ORVANEIP_ROOT "/third_party/zelip/config/zelip_builtin.xml";

// The rule filters of devices.
inline constexpr char kRuleFilePath[] = ORVANEIP_ROOT "/etc/config/kfilter.xml";

// The vault database when the environment variable ORVANE_VAULT is not set or empty.
inline constexpr char kDefaultVaultPath[] = ORVANEIP_ROOT "/var/lib/orvane/vault.db";

// The port numbers of this machine.
inline constexpr char kHostSettingsPath[] = ORVANEIP_ROOT "/etc/orvane/host.conf";

// The script that restarts the metadata service, and the device manager.
inline constexpr char kServiceScriptPath[] = ORVANEIP_ROOT "/etc/init.d/Kmetadatad.sh";
inline constexpr char kDeviceManagerPath[] = ORVANEIP_ROOT "/usr/bin/kdevmgmt";

}  // namespace base
