#pragma once

/// What the JSON documents have in common.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "show/figures.h"
#include "show/report.h"

namespace lab {

using Json = nlohmann::ordered_json;

template <class Number>
Json orNull(const std::optional<Number>& value) {
    return value ? Json(*value) : Json(nullptr);
}

inline Json figure(double value, int decimals) { return orNull(rounded(value, decimals)); }
inline Json ratio(double logRatio) { return orNull(ratioFigure(logRatio)); }
inline Json clocks(double value) { return orNull(clocksFigure(value)); }
inline Json text(std::string_view value) { return value.empty() ? Json(nullptr) : Json(value); }

Json toJson(const Build& build);
Json toJson(const Machine& machine);
Json toJson(const Fate& fate);
/// Names and values as one object.
Json objectOf(const std::vector<std::pair<std::string, std::string>>& parameters);

/// The document as text, line ended.
std::string documentOf(const Json& document);

}  // namespace lab
