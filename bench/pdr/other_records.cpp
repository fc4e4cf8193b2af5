#include "pdr/record.hpp"
#include "pdr/utf16.hpp"
#include "quantity.hpp"

#include <algorithm>
#include <cmath>

namespace bench {

using benchlink::PayloadWriter;

void WriteEntity(PayloadWriter& writer, const EntityId& entity) {
    writer.Write(entity.type).Write(entity.instance).Write(entity.container);
}

void WriteStates(PayloadWriter& writer, const std::vector<std::uint8_t>& states) {
    const auto highest = std::ranges::max_element(states);
    Bytes field(highest == states.end() ? 0 : *highest / 8 + 1);
    for (const auto state : states) {
        field[state / 8] |= static_cast<std::uint8_t>(1U << (state % 8));
    }
    writer.Write(static_cast<std::uint8_t>(field.size()))
        .Write(std::span<const std::uint8_t>(field));
}

Pdr EncodeStateSensor(const StateSensor& sensor) {
    const bool named = !sensor.members.empty() && !sensor.members.front().names.empty();
    PayloadWriter writer;
    writer.Write(terminusHandle).Write(sensor.id);
    WriteEntity(writer, sensor.entity);
    writer.Write(sensor.init)
        .Write(static_cast<std::uint8_t>(named ? 1 : 0))
        .Write(static_cast<std::uint8_t>(sensor.members.size()));
    for (const auto& member : sensor.members) {
        writer.Write(member.stateSet);
        WriteStates(writer, member.possibleStates);
    }
    return {PdrType::StateSensor, writer.Finish()};
}

Pdr EncodeNames(std::uint16_t sensorId, const std::vector<std::vector<LocalName>>& members) {
    constexpr std::uint16_t endOfName = 0;
    constexpr std::uint8_t endOfTag = 0;
    PayloadWriter writer;
    writer.Write(terminusHandle)
        .Write(sensorId)
        .Write(static_cast<std::uint8_t>(members.size()))
        .Write(static_cast<std::uint8_t>(members.empty() ? 0 : members.front().size()));
    for (const auto& names : members) {
        for (const auto& name : names) {
            writer.Write(std::string_view(name.language))
                .Write(endOfTag)
                .Write(std::span<const std::uint8_t>(ToUtf16BigEndian(name.text)))
                .Write(endOfName);
        }
    }
    return {PdrType::SensorAuxiliaryNames, writer.Finish()};
}

Pdr EncodeAssociation(const Association& association) {
    PayloadWriter writer;
    writer.Write(association.containerId)
        .Write(static_cast<std::uint8_t>(association.logical ? 1 : 0));
    WriteEntity(writer, association.container);
    writer.Write(static_cast<std::uint8_t>(association.contained.size()));
    for (const auto& entity : association.contained) {
        WriteEntity(writer, entity);
    }
    return {PdrType::EntityAssociation, writer.Finish()};
}

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

Pdr EncodeLocator(const TerminusLocator& locator) {
    return {PdrType::TerminusLocator, PayloadWriter()
                                          .Write(terminusHandle)
                                          .Write(static_cast<std::uint8_t>(locator.valid ? 1 : 0))
                                          .Write(locator.tid)
                                          .Write(locator.container)
                                          .Write(locator.type)
                                          .Write(static_cast<std::uint8_t>(locator.value.size()))
                                          .Write(std::span<const std::uint8_t>(locator.value))
                                          .Finish()};
}

std::vector<Pdr> EncodeDescribed(const TerminusDescription& terminus) {
    std::vector<Pdr> records;
    for (const auto& locator : terminus.locators) {
        records.push_back(EncodeLocator(locator));
    }
    for (const auto& association : terminus.entities.associations) {
        records.push_back(EncodeAssociation(association));
    }
    for (const auto& sensor : terminus.numericSensors) {
        records.push_back(EncodeNumericSensor(sensor));
        if (!sensor.names.empty() && sensor.form != SensorForm::Compact) {
            records.push_back(EncodeNames(sensor.id, {sensor.names}));
        }
    }
    for (const auto& sensor : terminus.stateSensors) {
        records.push_back(EncodeStateSensor(sensor));
        if (!sensor.members.empty() && !sensor.members.front().names.empty()) {
            std::vector<std::vector<LocalName>> names;
            for (const auto& member : sensor.members) {
                names.push_back(member.names);
            }
            records.push_back(EncodeNames(sensor.id, names));
        }
    }
    for (const auto& effector : terminus.numericEffectors) {
        records.push_back(EncodeNumericEffector(effector));
        if (effector.initial) {
            records.push_back(EncodeNumericEffectorInitialization(effector));
        }
    }
    for (const auto& effector : terminus.stateEffectors) {
        records.push_back(EncodeStateEffector(effector));
        if (effector.initial) {
            records.push_back(EncodeStateEffectorInitialization(effector));
        }
    }
    return records;
}

} // namespace bench
