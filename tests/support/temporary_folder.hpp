// SPDX-License-Identifier: Apache-2.0
/** A folder for the files of a test. */
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace vantric::test {

/** A folder that goes with its object. */
class TemporaryFolder {
public:
    /** @throws std::system_error if it can't be made. */
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "vantric-test.XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), "mkdtemp");
        }
        path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored; // a folder that stays does no harm, an exception here would
        std::filesystem::remove_all(path, ignored);
    }

    /** Writes a file and returns its path. */
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(path / name) << text;
        return path / name;
    }

    std::filesystem::path path;
};

} // namespace vantric::test
