#include "message_reader.hpp"

#include <string_view>
#include <system_error>

namespace monitor {

namespace {

int Check(int result, const char* call) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), call);
    }
    return result;
}

constexpr std::string_view basicTypes = "ybnqiuxtds";
constexpr std::string_view stateDetailsType = "a{s(ss)}";
constexpr std::string_view associationsType = "a(sss)";

} // namespace

template <typename Entry>
void MessageReader::ReadArray(const char* contents, const Entry& readEntry) {
    Check(sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, contents), "enter array");
    while (Check(sd_bus_message_at_end(message, 0), "end of array") == 0) {
        readEntry();
    }
    Check(sd_bus_message_exit_container(message), "exit array");
}

template <typename Entry>
void MessageReader::ReadDictionary(const char* contents, const Entry& readEntry) {
    const std::string braced = std::string("{") + contents + "}";
    ReadArray(braced.c_str(), [&] {
        Check(sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, contents),
              "enter entry");
        readEntry();
        Check(sd_bus_message_exit_container(message), "exit entry");
    });
}

template <typename Type>
Type MessageReader::Read(char type) {
    Type value{};
    Check(sd_bus_message_read_basic(message, type, &value), "read");
    return value;
}

std::map<std::string, Interfaces> MessageReader::ReadObjects() {
    std::map<std::string, Interfaces> objects;
    ReadDictionary("oa{sa{sv}}", [&] {
        std::string path = ReadText(SD_BUS_TYPE_OBJECT_PATH);
        objects.insert_or_assign(std::move(path), ReadInterfaces());
    });
    return objects;
}

Interfaces MessageReader::ReadInterfaces() {
    Interfaces interfaces;
    ReadDictionary("sa{sv}", [&] {
        std::string name = ReadText();
        interfaces.insert_or_assign(std::move(name), ReadProperties());
    });
    return interfaces;
}

Properties MessageReader::ReadProperties() {
    Properties properties;
    ReadDictionary("sv", [&] {
        std::string name = ReadText();
        Value value;
        if (ReadVariant(value)) {
            properties.insert_or_assign(std::move(name), std::move(value));
        }
    });
    return properties;
}

std::vector<std::string> MessageReader::ReadTexts() {
    std::vector<std::string> texts;
    ReadArray("s", [&] { texts.push_back(ReadText()); });
    return texts;
}

std::string MessageReader::ReadText(char type) {
    return Read<const char*>(type);
}

bool MessageReader::ReadVariant(Value& value) {
    char type = 0;
    const char* signature = nullptr;
    Check(sd_bus_message_peek_type(message, &type, &signature), "look at variant");
    const std::string contents = signature == nullptr ? "" : signature;
    const bool basic = contents.size() == 1 && basicTypes.find(contents) != std::string_view::npos;
    if (!basic && contents != stateDetailsType && contents != associationsType) {
        Check(sd_bus_message_skip(message, "v"), "pass over variant");
        return false;
    }
    Check(sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, contents.c_str()),
          "enter variant");
    if (basic) {
        value = ReadBasic(contents.front());
    } else if (contents == stateDetailsType) {
        value = ReadStateDetails();
    } else {
        value = ReadAssociations();
    }
    Check(sd_bus_message_exit_container(message), "exit variant");
    return true;
}

Value MessageReader::ReadBasic(char type) {
    switch (type) {
    case SD_BUS_TYPE_BYTE:
        return std::int64_t{Read<std::uint8_t>(type)};
    case SD_BUS_TYPE_INT16:
        return std::int64_t{Read<std::int16_t>(type)};
    case SD_BUS_TYPE_UINT16:
        return std::int64_t{Read<std::uint16_t>(type)};
    case SD_BUS_TYPE_INT32:
        return std::int64_t{Read<std::int32_t>(type)};
    case SD_BUS_TYPE_UINT32:
        return std::int64_t{Read<std::uint32_t>(type)};
    case SD_BUS_TYPE_INT64:
    case SD_BUS_TYPE_UINT64:
        return Read<std::int64_t>(type);
    case SD_BUS_TYPE_BOOLEAN:
        return Read<int>(type) != 0;
    case SD_BUS_TYPE_DOUBLE:
        return Read<double>(type);
    default:
        return ReadText();
    }
}

StateDetails MessageReader::ReadStateDetails() {
    StateDetails details;
    ReadDictionary("s(ss)", [&] {
        std::string member = ReadText();
        Check(sd_bus_message_enter_container(message, SD_BUS_TYPE_STRUCT, "ss"), "enter state");
        std::string set = ReadText();
        std::string state = ReadText();
        Check(sd_bus_message_exit_container(message), "exit state");
        details.insert_or_assign(std::move(member), std::pair(std::move(set), std::move(state)));
    });
    return details;
}

Associations MessageReader::ReadAssociations() {
    Associations associations;
    ReadArray("(sss)", [&] {
        Check(sd_bus_message_enter_container(message, SD_BUS_TYPE_STRUCT, "sss"),
              "enter association");
        std::array<std::string, 3> parts{ReadText(), ReadText(), ReadText()};
        Check(sd_bus_message_exit_container(message), "exit association");
        associations.push_back(std::move(parts));
    });
    return associations;
}

} // namespace monitor
