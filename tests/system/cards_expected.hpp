/** Tables of what stands on the bus, and a suite whose tests share one daemon. */
#pragma once

#include "support/eventually.hpp"
#include "system/played_server.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>

namespace vantric::test {

/** One object of a table: its path without the root, such as "temperature/NIC_Slot_3_sensorid_5" or
 *  "Nic/Slot/3", and properties by the last word of their interface, such as "ProbeObj.Key", with
 *  their texts. A text stands without its quotation marks. */
struct Expected {
    std::string path;
    std::vector<std::pair<std::string, std::string>> properties;
};

/** The whole path of an object of a table. */
inline std::string WholePath(const std::string& path) {
    const auto starts = [&path](const char* text) { return path.starts_with(text); };
    if (starts("temperature/") || starts("power/")) {
        return "/xyz/openbmc_project/sensors/" + path;
    }
    const bool network = !starts("accelerator/") && !starts("cxl/") && !starts("UBB");
    return "/xyz/openbmc_project/inventory/system/" + (network ? "networkdevice/" + path : path);
}

/** The paths of objects as a table writes them, sorted. */
inline std::vector<std::string> ShortPaths(const PublishedObjects& objects) {
    std::vector<std::string> paths;
    for (auto path : Paths(objects)) {
        for (const auto& root : {WholePath(""), std::string("/xyz/openbmc_project/sensors/"),
                                 std::string("/xyz/openbmc_project/inventory/system/")}) {
            path.erase(0, path.starts_with(root) ? root.size() : 0);
        }
        paths.push_back(path);
    }
    std::ranges::sort(paths);
    return paths;
}

/** The text of a property of a table, or what is missing. */
inline std::string Shown(const PublishedObjects& objects, const std::string& path,
                         const std::string& property) {
    const auto object = objects.find(WholePath(path));
    if (object == objects.end()) {
        return "no object";
    }
    const auto dot = property.find('.');
    const auto word = '.' + property.substr(0, dot);
    for (const auto& [interface, properties] : object->second) {
        if (!interface.ends_with(word)) {
            continue;
        }
        const auto found = properties.find(property.substr(dot + 1));
        if (found == properties.end()) {
            return "no property";
        }
        const auto& text = found->second;
        return text.starts_with('"') ? text.substr(1, text.size() - 2) : text;
    }
    return "no interface";
}

/** A suite whose tests look at one daemon, started once. Suite has the name of its scenario. */
template <typename Suite>
class SharedServer : public testing::Test {
protected:
    static void SetUpTestSuite() {
        server = std::make_unique<PlayedServer>(ReadScenario(Suite::scenario));
    }
    static void TearDownTestSuite() { server.reset(); }

    static void Simctl(const std::vector<std::string>& words) { server->Simctl(words); }

    static std::string Show(const std::string& path, const std::string& property) {
        return Shown(server->Objects(), path, property);
    }

    /** Waits until the bus shows the whole table. Names what it doesn't. */
    static void ExpectShown(const std::vector<Expected>& table) {
        std::string different;
        Eventually([&] {
            different = Difference(server->Objects(), table);
            return different.empty() || !server->Daemon().Runs();
        });
        EXPECT_EQ(different, "");
    }

    static inline std::unique_ptr<PlayedServer> server;

private:
    static std::string Difference(const PublishedObjects& objects,
                                  const std::vector<Expected>& table) {
        std::string different;
        for (const auto& [path, properties] : table) {
            for (const auto& [property, text] : properties) {
                const auto shown = Shown(objects, path, property);
                if (shown != text) {
                    different += path + ' ' + property + ": " + shown + ", not " + text + '\n';
                }
            }
        }
        return different;
    }
};

} // namespace vantric::test
