#include "lspparams.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace veltrane::config {

namespace {

// A float is cut down before it is an integer: it need not fit.
int NumberIn(const LspJson& json) {
    if (json.is_number_unsigned()) return static_cast<int>(std::min(json.get<std::uint64_t>(), std::uint64_t{INT_MAX}));
    if (json.is_number_float()) return static_cast<int>(std::clamp(json.get<double>(), 0.0, double{INT_MAX}));
    return static_cast<int>(std::clamp(json.get<std::int64_t>(), std::int64_t{0}, std::int64_t{INT_MAX}));
}

}  // namespace

std::string UriIn(const LspJson& params) {
    return params.at("textDocument").at("uri").get<std::string>();
}

TextPosition PositionIn(const LspJson& json) {
    return {NumberIn(json.at("line")), NumberIn(json.at("character"))};
}

TextRange RangeIn(const LspJson& json) {
    return {PositionIn(json.at("start")), PositionIn(json.at("end"))};
}

LspJson PositionJson(const TextPosition& position) {
    return {{"line", position.line}, {"character", position.column}};
}

LspJson RangeJson(const TextRange& range) {
    return {{"start", PositionJson(range.begin)}, {"end", PositionJson(range.end)}};
}

}  // namespace veltrane::config
