// What the system knows of this machine's own names and addresses.
#pragma once

#include <string>

#include "native/endpoint.h"

namespace kelvaron {

/// This machine's first IPv4 address that is up and not loopback, else "127.0.0.1".
std::string firstMachineAddress();

/// Empty on failure; then errno says why.
std::string machineName();

/// The IPv4 addresses of a host in the order of the name service, which getaddrinfo(3) would sort.
/// None, without an error, where it has none.
Resolution addressesInOrder(const std::string& host);

}  // namespace kelvaron
