#pragma once

#include <vector>

#include "json.h"
#include "veltrane/options/xoption.h"

namespace veltrane::config {

/// The naming rules of tables, then those of columns, each in the order of their application with the hidden ones last.
std::vector<OptionRule> AllRules(const XOption& options);

/// What a rule is for: "table" or "column".
const char* KindOf(bool isTable);
inline const char* KindOf(const OptionRule& rule) {
    return KindOf(rule.option == eOptionTableNameRules);
}

Json RuleJson(const OptionRule& rule);

}  // namespace veltrane::config
