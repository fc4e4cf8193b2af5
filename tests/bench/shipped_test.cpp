/** The scenarios that come with the bench: each can be played, and a requester that knows nothing
 *  of them gets through all that they tell. */

#include "bench/bytes.hpp"
#include "payload.hpp"
#include "pldm/terminus.hpp"
#include "scenario/scenario.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

using benchlink::PayloadReader;
using benchlink::PayloadWriter;

std::string Path(const std::string& name) {
    const char* const folder = std::getenv("BENCH_SCENARIOS");
    return std::filesystem::path(folder == nullptr ? "." : folder) / name;
}

/** The answer to a command behind its completion code, which has to be 0. */
std::vector<std::uint8_t> Ask(bench::Terminus& terminus, std::uint8_t type, std::uint8_t command,
                              std::span<const std::uint8_t> data) {
    const std::uint8_t instance = 0x81;
    const auto request =
        PayloadWriter().Write(instance).Write(type).Write(command).Write(data).Finish();
    const auto response = bench::Respond(terminus, request, bench::Seconds(1));
    if (!response || response->size() < 4 || response->at(3) != 0) {
        ADD_FAILURE() << "no good answer to " << int(type) << "/" << int(command);
        return {};
    }
    return {response->begin() + 4, response->end()};
}

/** Walks through the records as a requester does. Returns the assembled records. */
std::vector<std::vector<std::uint8_t>> WalkRecords(bench::Terminus& terminus) {
    std::vector<std::vector<std::uint8_t>> records;
    std::vector<std::uint8_t> record;
    std::uint32_t recordHandle = 0;
    std::uint32_t transferHandle = 0;
    std::uint16_t changeNumber = 0;
    for (int exchanges = 0; exchanges < 10000; ++exchanges) {
        const std::uint16_t most = 0xFFFF;
        const std::uint8_t operation = record.empty() ? 1 : 0;
        const auto answer = Ask(terminus, 2, 0x51,
                                PayloadWriter()
                                    .Write(recordHandle)
                                    .Write(transferHandle)
                                    .Write(operation)
                                    .Write(most)
                                    .Write(changeNumber)
                                    .Finish());
        PayloadReader reader(answer);
        const auto next = reader.Read<std::uint32_t>();
        transferHandle = reader.Read<std::uint32_t>();
        const auto flag = reader.Read<std::uint8_t>();
        const auto part = reader.Take(reader.Read<std::uint16_t>());
        record.insert(record.end(), part.begin(), part.end());
        changeNumber = static_cast<std::uint16_t>(record.at(6) | record.at(7) << 8);
        if (flag == 4 || flag == 5) {
            records.push_back(std::exchange(record, {}));
            recordHandle = next;
            transferHandle = 0;
            changeNumber = 0;
            if (next == 0) {
                return records;
            }
        }
    }
    ADD_FAILURE() << "the walk has no end";
    return records;
}

class Shipped : public testing::TestWithParam<const char*> {};

TEST_P(Shipped, TellsWholeRecords) {
    const auto scenario = bench::ReadScenario(Path(GetParam()));
    for (const auto& card : scenario.cards) {
        for (const auto& endPoint : card.endPoints) {
            bench::Terminus terminus(endPoint.terminus);
            const auto info = Ask(terminus, 2, 0x50, {});
            PayloadReader reader(info);
            reader.Take(1 + 13 + 13);
            const auto count = reader.Read<std::uint32_t>();
            const auto size = reader.Read<std::uint32_t>();
            const auto largest = reader.Read<std::uint32_t>();
            const auto records = WalkRecords(terminus);
            EXPECT_EQ(count, records.size());
            std::size_t sum = 0;
            for (std::size_t i = 0; i < records.size(); ++i) {
                PayloadReader header(records[i]);
                EXPECT_EQ(i + 1, header.Read<std::uint32_t>());
                header.Take(1 + 1 + 2);
                EXPECT_EQ(records[i].size() - 10, header.Read<std::uint16_t>());
                EXPECT_LE(records[i].size(), largest);
                sum += records[i].size();
            }
            EXPECT_EQ(size, sum);
        }
    }
}

TEST_P(Shipped, ReadsEverySensorThatItDescribes) {
    const auto scenario = bench::ReadScenario(Path(GetParam()));
    for (const auto& card : scenario.cards) {
        for (const auto& endPoint : card.endPoints) {
            bench::Terminus terminus(endPoint.terminus);
            for (const auto& sensor : endPoint.terminus.numericSensors) {
                const std::uint8_t noRearm = 0;
                const auto reading = Ask(terminus, 2, 0x11,
                                         PayloadWriter().Write(sensor.id).Write(noRearm).Finish());
                ASSERT_GT(reading.size(), 6U);
                EXPECT_EQ(sensor.dataSize, reading[0]);
            }
            for (const auto& sensor : endPoint.terminus.stateSensors) {
                const auto reading =
                    Ask(terminus, 2, 0x21,
                        PayloadWriter().Write(sensor.id).WriteUnsigned(0, 2).Finish());
                EXPECT_EQ(1 + 4 * sensor.members.size(), reading.size());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Shipped,
                         testing::Values("first.yaml", "server.yaml", "quiet.yaml", "entities.yaml",
                                         "accelerators.yaml", "cxl.yaml", "dual-port.yaml",
                                         "cards.yaml", "texts.yaml"));

TEST(ShippedBadInput, IsPlayedToo) {
    const auto scenario = bench::ReadScenario(Path("bad-input.yaml"));
    for (const auto& card : scenario.cards) {
        for (const auto& endPoint : card.endPoints) {
            bench::Terminus terminus(endPoint.terminus);
            for (int command = 0; command < 256; ++command) {
                for (int type = 0; type < 64; ++type) {
                    const std::vector<std::uint8_t> request{0x81, static_cast<std::uint8_t>(type),
                                                            static_cast<std::uint8_t>(command)};
                    EXPECT_TRUE(bench::Respond(terminus, request, bench::Seconds(0)));
                }
            }
        }
    }
}

} // namespace
