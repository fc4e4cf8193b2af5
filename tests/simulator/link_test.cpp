/** What the platform libraries and the simulator stand on: frames, texts of numbers and fields. */

#include "frame.hpp"
#include "number_text.hpp"
#include "pldm_cmds/bytes.hpp"
#include "quantity.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace vantric::test {

namespace {

using simulator_link::FrameAssembler;
using simulator_link::FrameKind;

TEST(Frame, IsMadeOfPiecesOfAnySize) {
    std::vector<std::uint8_t> stream;
    for (std::uint32_t tag = 1; tag <= 3; ++tag) {
        const auto bytes = simulator_link::EncodeFrame(
            {FrameKind::Response, tag, std::vector<std::uint8_t>(tag * 10, 0x55)});
        stream.insert(stream.end(), bytes.begin(), bytes.end());
    }
    for (const std::size_t size : {1, 3, 4, 7, 19, 20, 1000}) {
        FrameAssembler assembler;
        std::uint32_t received = 0;
        for (std::size_t begin = 0; begin < stream.size(); begin += size) {
            const auto rest = std::span(stream).subspan(begin);
            assembler.Feed(rest.first(std::min(size, rest.size())));
            while (const auto frame = assembler.Next()) {
                EXPECT_EQ(++received, frame->tag);
                EXPECT_EQ(received * 10, frame->payload.size());
            }
        }
        EXPECT_EQ(3U, received);
        EXPECT_FALSE(assembler.Broken());
    }
}

TEST(Frame, ALengthThatNoFrameHasBreaksTheStream) {
    for (const char* const length : {"04 00 00 00", "00 00 00 00", "ff ff ff ff"}) {
        FrameAssembler assembler;
        assembler.Feed(Bytes::FromHex(length));
        EXPECT_FALSE(assembler.Next());
        EXPECT_TRUE(assembler.Broken());
        assembler.Feed(simulator_link::EncodeFrame({FrameKind::Attach, 1, {}}));
        EXPECT_FALSE(assembler.Next());
    }
}

TEST(Number, IsTheWholeText) {
    using simulator::ParseInteger;
    EXPECT_EQ(31, ParseInteger("0x1F"));
    EXPECT_EQ(-12, ParseInteger("-12"));
    EXPECT_EQ(10, ParseInteger("010"));
    for (const char* const text :
         {"", "-", "--1", "+1", "0x", "0x-1", "1 ", " 1", "1.0", "12a", "9223372036854775808"}) {
        EXPECT_FALSE(ParseInteger(text)) << text;
    }
    EXPECT_EQ(-0.5, simulator::ParseReal("-0.5"));
    for (const char* const text : {"", "nan", "inf", "1e999", "1,5", "0.5x"}) {
        EXPECT_FALSE(simulator::ParseReal(text)) << text;
    }
}

TEST(Quantity, StaysWithinItsField) {
    using simulator::NumberFormat;
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double value;
        NumberFormat format;
        std::uint64_t bits;
    } rows[] = {
        {255.4, NumberFormat::Uint8, 255},
        {256, NumberFormat::Uint8, 255},
        {-1, NumberFormat::Uint8, 0},
        {-infinity, NumberFormat::Sint8, 0xFFFFFFFFFFFFFF80},
        {-0.5, NumberFormat::Sint16, 0xFFFFFFFFFFFFFFFF},
        {1e9, NumberFormat::Sint16, 0x7FFF},
        {4294967295.0, NumberFormat::Uint32, 0xFFFFFFFF},
        {9.3e18, NumberFormat::Sint64, 0x7FFFFFFFFFFFFFFF},
        {-9.3e18, NumberFormat::Sint64, 0x8000000000000000},
        {infinity, NumberFormat::Uint64, 0xFFFFFFFFFFFFFFFF},
        {1.5, NumberFormat::Real32, 0x3FC00000},
        {std::numeric_limits<double>::quiet_NaN(), NumberFormat::Uint64, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.bits, simulator::BitsOf(row.value, row.format)) << row.value;
    }
}

} // namespace

} // namespace vantric::test
