## SPDX-License-Identifier: Apache-2.0
<%
cls = interface.class_name
%>\
/** Generated from ${interface.path}.interface.yaml, where changes belong. */
#include "${interface.path}/server.hpp"

#include "bindings/property_access.hpp"

#include <sdbusplus/vtable.hpp>

#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace ${interface.namespace} {

namespace {

% for enum in interface.enumerations:
constexpr std::array<std::string_view, ${len(enum.values)}> ${enum.name}_texts{
% for value, _ in enum.values:
    "${interface.name}.${enum.name}.${value}",
% endfor
};

% endfor
% for p in interface.properties:
/** ${p.name}, as a client reads${"" if p.readonly else " and writes"} it. */
struct ${p.name}_access {
    using Owner = ${cls};
    using Wire = ${p.type.wire};
% if p.type.enum:
    static Wire read(const Owner& owner) {
        return Owner::convert${p.type.enum}ToString(owner.${p.method}());
    }
% if not p.readonly:
    static void write(Owner& owner, Wire text) {
        const auto value = Owner::convert${p.type.enum}FromString(text);
        if (!value) {
            throw ::bindings::InvalidValue("${p.name} can't be '" + text + "'");
        }
        owner.${p.method}(*value);
    }
% endif
% else:
    static Wire read(const Owner& owner) { return owner.${p.method}(); }
% if not p.readonly:
    static void write(Owner& owner, Wire value) { owner.${p.method}(std::move(value)); }
% endif
% endif
};

% endfor
const sdbusplus::vtable_t table[] = {
    sdbusplus::vtable::start(),
% for p in interface.properties:
    sdbusplus::vtable::property("${p.name}", "${p.type.signature}",
        &::bindings::Get<${p.name}_access>,
% if not p.readonly:
        &::bindings::Set<${p.name}_access>,
% endif
        sdbusplus::vtable::property_::${p.flag}),
% endfor
% for s in interface.signals:
    sdbusplus::vtable::signal("${s.name}", "${s.signature}"),
% endfor
    sdbusplus::vtable::end(),
};

} // namespace

% for enum in interface.enumerations:
std::string ${cls}::convert${enum.name}ToString(${enum.name} value) {
    return std::string(${enum.name}_texts.at(static_cast<std::size_t>(value)));
}

std::optional<${cls}::${enum.name}> ${cls}::convert${enum.name}FromString(const std::string& text) {
    for (std::size_t i = 0; i < ${enum.name}_texts.size(); ++i) {
        if (${enum.name}_texts[i] == text) {
            return static_cast<${enum.name}>(i);
        }
    }
    return std::nullopt;
}

% endfor
${cls}::${cls}(sdbusplus::bus_t& bus, const char* path)
    : interface_(bus, path, interface, table, this) {}

${cls}::${cls}(sdbusplus::bus_t& bus, const char* path,
    const std::map<std::string, PropertiesVariant>& vals, bool skipSignal)
    : ${cls}(bus, path) {
    for (const auto& [name, val] : vals) {
        ${cls}::setPropertyByName(name, val, skipSignal);
    }
}
% for p in interface.properties:
<%
    type_ = f"{cls}::{p.type.cpp}" if p.type.enum else p.type.cpp
%>
${type_} ${cls}::${p.method}() const { return ${p.method}_; }

% if interface.write_hook:
${type_} ${cls}::${p.method}(${p.type.cpp} newValue, bool${"" if p.const else " skipSignal"}) {
    write({"${p.name}", PropertiesVariant(std::in_place_type<${p.type.cpp}>, newValue),
        !::bindings::Same(${p.method}_, newValue), ${"true" if p.const else "skipSignal"},
        [&] { ${p.method}_ = std::move(newValue); }});
    return ${p.method}_;
}
% else:
${type_} ${cls}::${p.method}(${p.type.cpp} newValue, bool${"" if p.const else " skipSignal"}) {
    if (!::bindings::Same(${p.method}_, newValue)) {
        ${p.method}_ = std::move(newValue);
% if not p.const:
        if (!skipSignal) {
            interface_.property_changed("${p.name}");
        }
% endif
    }
    return ${p.method}_;
}
% endif

${type_} ${cls}::${p.method}(${p.type.cpp} newValue) {
    return ${p.method}(std::move(newValue), false);
}
% endfor
% if interface.write_hook:

void ${cls}::write(const Write& write) {
    if (!write.differs) {
        return;
    }
    write.store();
    if (!write.skipSignal) {
        property_changed(write.property);
    }
}
% endif

void ${cls}::setPropertyByName(const std::string& propertyName, const PropertiesVariant& val,
    bool skipSignal) {
% for p in interface.properties:
    if (propertyName == "${p.name}") {
        ${p.method}(std::get<${p.type.cpp}>(val), skipSignal);
        return;
    }
% endfor
}

${cls}::PropertiesVariant ${cls}::getPropertyByName(const std::string& propertyName) const {
% for p in interface.properties:
    if (propertyName == "${p.name}") {
        return ${p.method}();
    }
% endfor
    throw std::out_of_range(std::string(interface) + " has no property " + propertyName);
}

} // namespace ${interface.namespace}
