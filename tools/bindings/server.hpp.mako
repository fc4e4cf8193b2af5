## SPDX-License-Identifier: Apache-2.0
<%
cls = interface.class_name
%>\
/** Generated from ${interface.path}.interface.yaml, where changes belong. */
#pragma once

#include <sdbusplus/bus.hpp>
#include <sdbusplus/message/native_types.hpp>
#include <sdbusplus/server/interface.hpp>

#include <cstdint>
% if interface.write_hook:
#include <functional>
% endif
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

namespace ${interface.namespace} {

${comment(interface.description)}
class ${cls} {
public:
    /** The interface's name on the bus. */
    static constexpr auto interface = "${interface.name}";

% for enum in interface.enumerations:
${comment(enum.description or enum.name, 4)}
    enum class ${enum.name} {
% for value, description in enum.values:
% if description:
${comment(description, 8)}
% endif
        ${value},
% endfor
    };

    /** Returns the enumerator as it stands on the bus, with the names of interface and enumeration
     *  in front. Throws std::out_of_range for a number that is none. */
    static std::string convert${enum.name}ToString(${enum.name} value);

    /** Returns the enumerator that such a text stands for, or nothing. */
    static std::optional<${enum.name}> convert${enum.name}FromString(const std::string& text);

% endfor
    /** A value of any of the properties. */
    using PropertiesVariant = std::variant<${", ".join(interface.variant_types)}>;

    /** Puts the interface on the object at path, with all properties at their defaults. It isn't
     *  announced yet. Throws sdbusplus::exception::SdBusError if the object has it already. */
    ${cls}(sdbusplus::bus_t& bus, const char* path);

    /** Does the same and then writes vals, in the map's order, like setPropertyByName. The writes
     *  arrive at this class's own operations, as a derived class doesn't exist yet. */
    ${cls}(sdbusplus::bus_t& bus, const char* path,
        const std::map<std::string, PropertiesVariant>& vals, bool skipSignal = false);

    ${cls}(const ${cls}&) = delete;
    ${cls}& operator=(const ${cls}&) = delete;
    ${cls}(${cls}&&) = delete;
    ${cls}& operator=(${cls}&&) = delete;

    /** Withdraws the interface if it is announced, and takes it off the bus. */
    virtual ~${cls}() = default;

    // Each property has three operations: read; write and say whether to signal; write and signal.
    // A write of the value that is there already does nothing. A write returns the value that the
    // property has then. A client's write over the bus arrives at the third.
% for p in interface.properties:

${comment(p.description, 4)}
    virtual ${p.type.cpp} ${p.method}() const;
    virtual ${p.type.cpp} ${p.method}(${p.type.cpp} newValue, bool skipSignal);
    virtual ${p.type.cpp} ${p.method}(${p.type.cpp} newValue);
% endfor

    /** Writes a property, by its name on the bus, through its virtual operation. A name that the
     *  interface doesn't have is ignored. Throws std::bad_variant_access if val is of another
     *  type. */
    void setPropertyByName(const std::string& propertyName, const PropertiesVariant& val,
        bool skipSignal = false);

    /** Returns the value of a property by its name on the bus. Throws std::out_of_range if the
     *  interface has none of that name. */
    PropertiesVariant getPropertyByName(const std::string& propertyName) const;

    /** Announces the interface with InterfacesAdded, unless it is announced. */
    void emit_added() { interface_.emit_added(); }

    /** Withdraws the interface with InterfacesRemoved, if it is announced. */
    void emit_removed() { interface_.emit_removed(); }

% if interface.write_hook:
protected:
    /** A write of a property on its way. */
    struct Write {
        const char* property;        ///< its name on the bus
        PropertiesVariant value;     ///< what is to be written
        bool differs;                ///< from what the property is
        bool skipSignal;             ///< the caller wants no signal
        std::function<void()> store; ///< makes the property the value, without a signal
    };

    /** What all writes end in, also those that don't differ: stores and signals a value that
     *  differs. For a derived class that has something to do before or after. */
    virtual void write(const Write& write);

    /** Emits PropertiesChanged for a property. */
    void property_changed(const char* property) { interface_.property_changed(property); }

% endif
private:
% for p in interface.properties:
    ${p.type.cpp} ${p.method}_{${p.default}};
% endfor
    // After the values, so that no call can ask for them once they are gone.
    sdbusplus::server::interface_t interface_;
};

} // namespace ${interface.namespace}
