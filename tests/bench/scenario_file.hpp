/** Scenarios written by a test. */
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace test {

/** A folder that goes with its object. */
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "bench-test-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("mkdtemp");
        }
        path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    /** Writes a file and returns its path. */
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(path / name) << text;
        return path / name;
    }

    std::filesystem::path path;
};

} // namespace test
