// SPDX-License-Identifier: Apache-2.0
/** Frames between the default platform libraries, simctl and the simulator. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace simulator_link {

/** What a frame says. Values up to 15 go to the simulator, the others come from it. All fields of a
 *  payload are little-endian. */
enum class FrameKind : std::uint8_t {
    /** u32 link type, u32 filter. Reply: result. Tables and discoveries come from then on. */
    Attach = 1,
    /** u8 eid, u8 message type, request bytes. Reply: result; a Response follows if it is 0. */
    Request = 2,
    /** u32 selector. Reply: result, u32 group count, u32 record capacity, u32 reserved. */
    CatalogInfo = 3,
    /** u32 selector, u32 group. Reply: result, records of 98 bytes. */
    CatalogData = 4,
    /** Empty. Reply: result, entries of 232 bytes. */
    CatalogAll = 5,
    /** Notification name. Reply: result. Notifications of that name come from then on. */
    Subscribe = 6,
    /** A command of simctl as text, words separated by NUL. Reply: result, text. */
    Control = 7,

    /** Answers the frame with the same tag: u8 result, 0 for success, then what was asked for. */
    Reply = 16,
    /** With the tag of the request: u32 status, u32 flags, u32 error type, response bytes. */
    Response = 17,
    /** A discovery has started. Empty. */
    Discovery = 18,
    /** u32 attached flag, the endpoint table. */
    Table = 19,
    /** Notification name. */
    Notification = 20,
};

/** One message. tag pairs an answer with its question; 0 where there is no question. */
struct Frame {
    FrameKind kind{};
    std::uint32_t tag = 0;
    std::vector<std::uint8_t> payload;
};

/** A frame's bytes: u32 length of what follows, u8 kind, u32 tag, payload. */
std::vector<std::uint8_t> EncodeFrame(const Frame& frame);

/** Puts frames together from a stream that comes in pieces of any size. */
class FrameAssembler {
public:
    /** Takes the next bytes of the stream. */
    void Feed(std::span<const std::uint8_t> bytes);

    /** Takes out the next complete frame, if there is one. */
    std::optional<Frame> Next();

    /** True once a length was read that no frame can have: the stream is of no use any more. */
    bool Broken() const { return broken; }

private:
    std::vector<std::uint8_t> buffer;
    bool broken = false;
};

} // namespace simulator_link
