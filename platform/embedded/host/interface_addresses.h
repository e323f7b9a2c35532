// The addresses of this machine.
#pragma once

#include <optional>
#include <string>

namespace orvaneplatform {

// Returns the addresses of the network interfaces that other machines can use, separated by commas,
// IPv4 first; empty when there are none. Interfaces that are down, loopback interfaces and
// link-local IPv6 addresses are left out. Returns nothing, and logs why, when the interfaces cannot
// be listed.
std::optional<std::string> list_interface_addresses();

}  // namespace orvaneplatform
