/** Reads objects, interfaces and properties out of D-Bus messages. */
#pragma once

#include "object_model.hpp"

#include <systemd/sd-bus.h>

namespace monitor {

/** Reads one message from front to back. Every operation throws std::system_error, with the errno
 *  that libsystemd gave, if the message holds something else. Refers to the message. */
class MessageReader {
public:
    explicit MessageReader(sd_bus_message* message) : message(message) {}

    /** Reads a{oa{sa{sv}}}, the answer of GetManagedObjects. */
    std::map<std::string, Interfaces> ReadObjects();

    /** Reads a{sa{sv}}: interfaces with their properties. */
    Interfaces ReadInterfaces();

    /** Reads a{sv}. A property of a type that the table doesn't show is passed over. */
    Properties ReadProperties();

    /** Reads as. */
    std::vector<std::string> ReadTexts();

    /** Reads s or o, as type says. */
    std::string ReadText(char type = SD_BUS_TYPE_STRING);

private:
    template <typename Entry>
    void ReadArray(const char* contents, const Entry& readEntry);
    template <typename Entry>
    void ReadDictionary(const char* contents, const Entry& readEntry);
    bool ReadVariant(Value& value);
    Value ReadBasic(char type);
    template <typename Type>
    Type Read(char type);
    StateDetails ReadStateDetails();
    Associations ReadAssociations();

    sd_bus_message* message;
};

} // namespace monitor
