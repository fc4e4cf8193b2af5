/** What an interface says of itself on the bus. */
#pragma once

#include "support/bus_client.hpp"

#include <string>

namespace vantric::test {

/** Returns one line for each member of the interface, in the order of the introspection: for a
 *  property its name, type, access, the flag of its changes ("change" where they are signalled,
 *  "const" where there are none) and its value, and for a signal the word and its types. */
std::string DescribeInterface(BusClient& client, const char* service, const std::string& path,
                              const std::string& interface);

} // namespace vantric::test
