// SPDX-License-Identifier: Apache-2.0
#include "machine/faults.hpp"

#include <algorithm>
#include <random>

namespace simulator {

namespace {

constexpr std::size_t codeOffset = 3;

/** Where the fields of a multipart answer stand. */
struct MultipartLayout {
    std::uint8_t type;
    std::uint8_t command;
    std::size_t flagOffset;
    std::size_t handleOffset;
};

constexpr MultipartLayout multipartLayouts[] = {
    {0, 0x03, 8, 4},  // GetPLDMVersion
    {2, 0x51, 12, 4}, // GetPDR: the next record, so that the walk has no end
    {4, 0x02, 8, 4},  // GetFRURecordTable
};

const MultipartLayout* LayoutOf(std::span<const std::uint8_t> request) {
    const auto* const found = std::ranges::find_if(multipartLayouts, [&](const auto& layout) {
        return layout.type == request[1] && layout.command == request[2];
    });
    return found == std::end(multipartLayouts) ? nullptr : found;
}

void SetByte(Bytes& response, std::size_t offset, std::uint8_t value) {
    if (offset < response.size()) {
        response[offset] = value;
    }
}

void MakeEndless(Bytes& response, const MultipartLayout& layout) {
    constexpr std::uint8_t moreFollows = 1;
    SetByte(response, layout.handleOffset, 1);
    if (layout.command != 0x51) {
        SetByte(response, layout.flagOffset, moreFollows);
    }
}

void MakeNoise(Bytes& response) {
    std::minstd_rand random(static_cast<unsigned>(response.size()));
    for (std::size_t i = codeOffset + 1; i < response.size(); ++i) {
        response[i] = static_cast<std::uint8_t>(random());
    }
}

void Malform(const Malformation& malformation, const MultipartLayout* layout, Bytes& response) {
    constexpr std::uint8_t filler = 0xA5;
    switch (malformation.kind) {
    case Malformation::Kind::Truncate:
        response.resize(std::min<std::size_t>(response.size(), malformation.number));
        break;
    case Malformation::Kind::Extend:
        response.resize(response.size() + malformation.number, filler);
        break;
    case Malformation::Kind::Flag:
        if (layout != nullptr) {
            SetByte(response, layout->flagOffset, static_cast<std::uint8_t>(malformation.number));
        }
        break;
    case Malformation::Kind::Garbage:
        MakeNoise(response);
        break;
    case Malformation::Kind::Endless:
        if (layout != nullptr) {
            MakeEndless(response, *layout);
        }
        break;
    }
}

bool Concerns(const Failure& failure, std::span<const std::uint8_t> request) {
    return failure.type.value_or(request[1]) == request[1] &&
           failure.command.value_or(request[2]) == request[2];
}

} // namespace

Bytes Spoil(const Faults& faults, std::span<const std::uint8_t> request, Bytes response) {
    if (faults.failure && Concerns(*faults.failure, request)) {
        response.resize(codeOffset + 1);
        response[codeOffset] = faults.failure->code;
    }
    if (faults.malformation) {
        Malform(*faults.malformation, LayoutOf(request), response);
    }
    return response;
}

} // namespace simulator
