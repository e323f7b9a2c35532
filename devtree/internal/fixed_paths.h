// The paths of the device tree's files.
#pragma once

namespace orvaneip {

inline constexpr char kDeviceTreePath[] = ORVANEIP_ROOT "/third_party/zelip/config/zelip.xml";
inline constexpr char kBuiltinListPath[] =
    ORVANEIP_ROOT "/third_party/zelip/config/zelip_builtin.xml";

}  // namespace orvaneip
