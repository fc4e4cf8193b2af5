// SPDX-License-Identifier: Apache-2.0
#include "monitor/options.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace monitor;

Options Parse(std::vector<std::string> arguments) {
    std::vector<char*> pointers{const_cast<char*>("vantric-monitor")};
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    return ParseOptions(static_cast<int>(pointers.size() - 1), pointers.data());
}

TEST(Options, AreRefusedInOneLine) {
    const std::string hint = "; vantric-monitor --help tells the options";
    const std::string seconds = "--for takes seconds from 1 to 604800";
    const std::vector<std::pair<std::vector<std::string>, std::string>> rows{
        {{"--what"}, "unknown option --what" + hint},
        {{"-x"}, "unknown option -x" + hint},
        {{"extra"}, "unknown argument extra" + hint},
        {{"--for"}, "--for needs a value" + hint},
        {{"--for", "0"}, seconds},
        {{"--for", "3s"}, seconds},
        {{"--for", "604801"}, seconds},
        {{"--for", "99999999999"}, seconds},
        {{"--for", "3", "--once"}, "--for doesn't go with --once or --json; leave one of them out"},
    };
    for (const auto& [arguments, text] : rows) {
        try {
            Parse(arguments);
            ADD_FAILURE() << text;
        } catch (const UsageError& error) {
            EXPECT_EQ(error.what(), text);
        }
    }
}

} // namespace
