// SPDX-License-Identifier: Apache-2.0
#include "pdr/record.hpp"
#include "quantity.hpp"

#include <cmath>

namespace simulator {

using simulator_link::PayloadWriter;

Pdr EncodeNumericEffector(const NumericEffector& effector) {
    const auto format = FormatOfDataSize(effector.dataSize);
    const auto rangeFormat = FormatOfRangeField(effector.rangeFormat);
    const auto settable = [&](double value) {
        return BitsOf(RawOf(value, effector.resolution, effector.offset, effector.modifier),
                      format);
    };
    const auto range = [&](double value) {
        return BitsOf(value / std::pow(10.0, effector.modifier), rangeFormat);
    };
    constexpr std::uint8_t rangeSupport = 0x1F;
    const double middle = (effector.least + effector.most) / 2;
    PayloadWriter writer;
    writer.Write(terminusHandle).Write(effector.id);
    WriteEntity(writer, effector.entity);
    writer.Write(effector.semantic)
        .Write(static_cast<std::uint8_t>(effector.initial ? 1 : 0))
        .WriteUnsigned(0, 1) // no auxiliary names
        .Write(effector.unit)
        .Write(effector.modifier)
        .WriteUnsigned(0, 6)                 // rate, OEM units and auxiliary unit
        .Write(static_cast<std::uint8_t>(1)) // linear
        .Write(effector.dataSize)
        .Write(effector.resolution)
        .Write(effector.offset)
        .WriteUnsigned(0, 4) // accuracy and tolerances
        .Write(0.0F)         // state transition interval
        .Write(0.0F)         // transition interval
        .WriteUnsigned(settable(effector.most), WidthOf(format))
        .WriteUnsigned(settable(effector.least), WidthOf(format))
        .Write(effector.rangeFormat)
        .Write(rangeSupport);
    for (const double value :
         {middle, effector.most, effector.least, effector.most, effector.least}) {
        writer.WriteUnsigned(range(value), WidthOf(rangeFormat));
    }
    return {PdrType::NumericEffector, writer.Finish()};
}

Pdr EncodeNumericEffectorInitialization(const NumericEffector& effector) {
    const auto format = FormatOfDataSize(effector.dataSize);
    const double raw = RawOf(effector.initial.value_or(0.0), effector.resolution, effector.offset,
                             effector.modifier);
    return {PdrType::NumericEffectorInitialization,
            PayloadWriter()
                .Write(terminusHandle)
                .Write(effector.id)
                .WriteUnsigned(0, 2) // enabled, set when the terminus comes up
                .Write(effector.dataSize)
                .WriteUnsigned(BitsOf(raw, format), WidthOf(format))
                .Finish()};
}

Pdr EncodeStateEffector(const StateEffector& effector) {
    PayloadWriter writer;
    writer.Write(terminusHandle).Write(effector.id);
    WriteEntity(writer, effector.entity);
    writer.Write(effector.semantic)
        .Write(static_cast<std::uint8_t>(effector.initial ? 1 : 0))
        .WriteUnsigned(0, 1) // no description
        .Write(static_cast<std::uint8_t>(effector.members.size()));
    for (const auto& member : effector.members) {
        writer.Write(member.stateSet);
        WriteStates(writer, member.possibleStates);
    }
    return {PdrType::StateEffector, writer.Finish()};
}

Pdr EncodeStateEffectorInitialization(const StateEffector& effector) {
    PayloadWriter writer;
    writer.Write(terminusHandle)
        .Write(effector.id)
        .WriteUnsigned(0, 2) // enabled, set when the terminus comes up
        .Write(static_cast<std::uint8_t>(effector.members.size()));
    for (std::size_t i = 0; i < effector.members.size(); ++i) {
        constexpr std::uint8_t requestSet = 1;
        writer.Write(requestSet).Write(effector.initial.value_or(0));
    }
    return {PdrType::StateEffectorInitialization, writer.Finish()};
}

} // namespace simulator
