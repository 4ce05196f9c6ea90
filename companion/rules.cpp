#include "rules.h"

#include <nlohmann/json.hpp>

#include "places.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

std::vector<OptionRule> AllRules(const XOption& options) {
    std::vector<OptionRule> rules = options.GetNamingRules(eOptionTableNameRules);
    const std::vector<OptionRule> columns = options.GetNamingRules(eOptionColumnNameRules);
    rules.insert(rules.end(), columns.begin(), columns.end());
    return rules;
}

const char* KindOf(bool isTable) {
    return isTable ? "table" : "column";
}

Json RuleJson(const OptionRule& rule) {
    return {{"kind", KindOf(rule)},        {"version", rule.version},    {"old", ToUtf8(rule.oldText)},
            {"new", ToUtf8(rule.newText)}, {"in_force", rule.isInForce}, {"origin", PlaceJson(rule.origin)}};
}

}  // namespace veltrane::config
