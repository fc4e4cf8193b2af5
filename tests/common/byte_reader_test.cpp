// SPDX-License-Identifier: Apache-2.0
#include "common/byte_reader.hpp"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace vantric {
namespace {

TEST(ByteReader, ReadsLittleEndianFieldsInOrder) {
    const std::array<std::uint8_t, 10> bytes{0x01, 0x34, 0x12, 0xFF, 0xFF,
                                             0xFF, 0xFF, 0x80, 0xAA, 0xBB};
    ByteReader reader(bytes);
    EXPECT_EQ(reader.Read<std::uint8_t>(), 0x01);
    EXPECT_EQ(reader.Read<std::uint16_t>(), 0x1234);
    EXPECT_EQ(reader.Read<std::int32_t>(), -1);
    EXPECT_EQ(reader.Read<std::int8_t>(), -128);
    EXPECT_EQ(reader.ReadUnsigned(2), 0xBBAAU);
    EXPECT_FALSE(reader.Truncated());
    EXPECT_EQ(reader.Remaining(), 0U);
}

TEST(ByteReader, WhatIsMissingReadsAsZeroAndIsTold) {
    const std::array<std::uint8_t, 3> bytes{0x11, 0x22, 0x33};
    ByteReader reader(bytes);
    reader.Skip(2);
    EXPECT_EQ(reader.Read<std::uint32_t>(), 0x33U);
    EXPECT_TRUE(reader.Truncated());
    EXPECT_EQ(reader.Read<std::uint16_t>(), 0U);
    EXPECT_EQ(reader.Take(5).size(), 0U);
}

TEST(ByteReader, AnOffsetAfterTheEndReadsNothing) {
    const std::array<std::uint8_t, 2> bytes{0x11, 0x22};
    ByteReader reader(bytes);
    EXPECT_EQ(reader.At<std::uint16_t>(1000), 0U);
    EXPECT_EQ(reader.Position(), 0U);
    reader.Seek(SIZE_MAX);
    EXPECT_EQ(reader.Remaining(), 0U);
    EXPECT_EQ(reader.Take(SIZE_MAX).size(), 0U);
    EXPECT_EQ(reader.Read<std::uint64_t>(), 0U);
}

} // namespace
} // namespace vantric
