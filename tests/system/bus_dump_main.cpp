// SPDX-License-Identifier: Apache-2.0
/** Compares what the daemon shows on the system bus with a scenario's .bus file. */
#include "support/eventually.hpp"
#include "system/bus_dump.hpp"

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: bus_dump FILE.bus\n"
                     "Waits up to 30 s until the objects on the system bus, which "
                     "DBUS_SYSTEM_BUS_ADDRESS may name, are those of the file. Prints what is "
                     "different then and fails.\n";
        return EXIT_FAILURE;
    }
    try {
        using namespace vantric::test;
        const BusDump dump(arguments[1]);
        BusClient client;
        std::string difference;
        Eventually([&] { return (difference = dump.Difference(client)).empty(); });
        std::cout << difference;
        return difference.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& e) {
        std::cerr << "bus_dump: " << e.what() << '\n';
        return EXIT_FAILURE;
    }
}
