/** What the platform libraries share: frames, texts of numbers, fields and the worker. */

#include "bench/bytes.hpp"
#include "frame.hpp"
#include "number_text.hpp"
#include "payload.hpp"
#include "pdr/utf16.hpp"
#include "quantity.hpp"
#include "worker.hpp"

#include <gtest/gtest.h>

#include <future>
#include <limits>

namespace {

using benchlink::Frame;
using benchlink::FrameAssembler;
using benchlink::FrameKind;
using test::Bytes;
using test::Text;

TEST(Frame, HasItsLengthItsKindAndItsTagBeforeItsPayload) {
    EXPECT_EQ("07 00 00 00 02 04 03 02 01 aa bb",
              Text(benchlink::EncodeFrame({FrameKind::Request, 0x01020304, {0xAA, 0xBB}})));
}

class Pieces : public testing::TestWithParam<std::size_t> {};

TEST_P(Pieces, MakeTheFramesThatWereSent) {
    std::vector<std::uint8_t> stream;
    for (std::uint32_t tag = 1; tag <= 3; ++tag) {
        const auto bytes = benchlink::EncodeFrame(
            {FrameKind::Response, tag, std::vector<std::uint8_t>(tag * 10, 0x55)});
        stream.insert(stream.end(), bytes.begin(), bytes.end());
    }
    FrameAssembler assembler;
    std::uint32_t received = 0;
    for (std::size_t begin = 0; begin < stream.size(); begin += GetParam()) {
        assembler.Feed(
            std::span(stream).subspan(begin).first(std::min(GetParam(), stream.size() - begin)));
        while (const auto frame = assembler.Next()) {
            EXPECT_EQ(++received, frame->tag);
            EXPECT_EQ(received * 10, frame->payload.size());
        }
    }
    EXPECT_EQ(3U, received);
    EXPECT_FALSE(assembler.Broken());
}

INSTANTIATE_TEST_SUITE_P(OfAnySize, Pieces, testing::Values(1, 3, 4, 7, 19, 20, 1000));

TEST(Frame, ALengthThatNoFrameHasBreaksTheStream) {
    for (const char* const length : {"04 00 00 00", "00 00 00 00", "ff ff ff ff"}) {
        FrameAssembler assembler;
        assembler.Feed(Bytes(length));
        EXPECT_FALSE(assembler.Next());
        EXPECT_TRUE(assembler.Broken());
        assembler.Feed(benchlink::EncodeFrame({FrameKind::Attach, 1, {}}));
        EXPECT_FALSE(assembler.Next());
    }
}

TEST(PayloadReader, ReadsZerosBehindTheEndAndSaysSo) {
    const auto bytes = Bytes("01 02 03");
    benchlink::PayloadReader reader(bytes);
    EXPECT_EQ(0x0201, reader.Read<std::uint16_t>());
    EXPECT_FALSE(reader.Truncated());
    EXPECT_EQ(3U, reader.Read<std::uint32_t>());
    EXPECT_TRUE(reader.Truncated());
    EXPECT_EQ(0U, reader.Read<std::uint64_t>());
}

TEST(Number, IsTheWholeText) {
    using bench::ParseInteger;
    EXPECT_EQ(31, ParseInteger("0x1F"));
    EXPECT_EQ(-12, ParseInteger("-12"));
    EXPECT_EQ(10, ParseInteger("010"));
    for (const char* const text :
         {"", "-", "--1", "+1", "0x", "0x-1", "1 ", " 1", "1.0", "12a", "9223372036854775808"}) {
        EXPECT_FALSE(ParseInteger(text)) << text;
    }
    EXPECT_EQ(-0.5, bench::ParseReal("-0.5"));
    for (const char* const text : {"", "nan", "inf", "1e999", "1,5", "0.5x"}) {
        EXPECT_FALSE(bench::ParseReal(text)) << text;
    }
}

TEST(Quantity, StaysWithinItsField) {
    using bench::BitsOf;
    using bench::NumberFormat;
    const double infinity = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(255U, BitsOf(255.4, NumberFormat::Uint8));
    EXPECT_EQ(255U, BitsOf(256, NumberFormat::Uint8));
    EXPECT_EQ(0U, BitsOf(-1, NumberFormat::Uint8));
    EXPECT_EQ(0xFFFFFFFFFFFFFF80U, BitsOf(-infinity, NumberFormat::Sint8));
    EXPECT_EQ(0xFFFFFFFFFFFFFFFFU, BitsOf(-0.5, NumberFormat::Sint16));
    EXPECT_EQ(0x7FFFU, BitsOf(1e9, NumberFormat::Sint16));
    EXPECT_EQ(0xFFFFFFFFU, BitsOf(4294967295.0, NumberFormat::Uint32));
    EXPECT_EQ(0x7FFFFFFFFFFFFFFFU, BitsOf(9.3e18, NumberFormat::Sint64));
    EXPECT_EQ(0x8000000000000000U, BitsOf(-9.3e18, NumberFormat::Sint64));
    EXPECT_EQ(0xFFFFFFFFFFFFFFFFU, BitsOf(infinity, NumberFormat::Uint64));
    EXPECT_EQ(0x3FC00000U, BitsOf(1.5, NumberFormat::Real32));
    EXPECT_EQ(0U, BitsOf(none, NumberFormat::Uint64));
}

TEST(Utf16, IsBigEndianAndReplacesWhatIsNoUtf8) {
    const struct {
        std::string text;
        const char* bytes;
    } cases[] = {
        {"A", "00 41"},
        {"\u00e9\u20ac", "00 e9 20 ac"},
        {"\U0001F600", "d8 3d de 00"},
        {"\xff\x41", "ff fd 00 41"},
        {"\x80", "ff fd"},
        {"\xe2\x82", "ff fd ff fd"},           // cut short
        {"\xc0\x80", "ff fd ff fd"},           // too long for what it says
        {"\xed\xa0\x80", "ff fd ff fd ff fd"}, // a surrogate
        {"\xf4\x90\x80\x80", "ff fd ff fd ff fd ff fd"},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(entry.bytes, Text(bench::ToUtf16BigEndian(entry.text)));
    }
}

TEST(Worker, RunsJobsInOrderAndNoneAfterItsStop) {
    std::vector<int> ran;
    benchlink::Worker worker("worker");
    std::promise<void> done;
    worker.Post([&] { ran.push_back(1); });
    worker.Post([&] {
        ran.push_back(2);
        done.set_value();
    });
    done.get_future().wait();
    worker.Stop();
    worker.Post([&] { ran.push_back(3); });
    EXPECT_EQ((std::vector<int>{1, 2}), ran);
}

TEST(Worker, MayBeDestroyedByItsOwnJob) {
    auto worker = std::make_unique<benchlink::Worker>("worker");
    std::promise<void> done;
    auto destroyed = done.get_future();
    auto* const running = worker.get();
    running->Post([owner = std::make_shared<std::unique_ptr<benchlink::Worker>>(std::move(worker)),
                   done = std::make_shared<std::promise<void>>(std::move(done))] {
        owner->reset();
        done->set_value();
    });
    EXPECT_EQ(std::future_status::ready, destroyed.wait_for(std::chrono::seconds(30)));
}

} // namespace
