// propertyReader.h: animated numbers and vectors.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "scene/jsonNode.h"
#include "scene/property.h"
#include "scene/readContext.h"

namespace orv {

/// How the values of a property are read.
struct propertyRule {
    std::size_t components = 1;  ///< further ones are not looked at
    bool switches = false;       ///< true and false count as 1 and 0
    bool holds = false;          ///< values never mix: every key holds
    /// Gets each value as it is read, with its node; may change it, warn or fail.
    std::function<void(std::vector<double>& value, const JsonNode& place)> check{};
};

/// An object {"a", "k"}, or the slot that it names. A single key frame becomes a constant.
property ReadProperty(const JsonNode& node, const propertyRule& rule, const readContext& context);

/// The member `key` of `parent`; an empty property, which stands for the default, when it is
/// missing.
property ReadPropertyAt(const JsonNode& parent, std::string_view key, const propertyRule& rule,
                        const readContext& context);

/// The same where a bare number or list may stand for the property.
property ReadPlainOrPropertyAt(const JsonNode& parent, std::string_view key,
                               const propertyRule& rule, const readContext& context);

/// Warns about an expression (which is not run).
void WarnExpression(const JsonNode& property);

/// Whether any number in the values of the property is not 0. Never fails: for features that are
/// only warned about, in whatever shape they come.
bool HoldsNonZero(const JsonNode& property);

}  // namespace orv
