// Input: a line with the name, one with the version and whether the case counts ("3 k"), then one rule a line: version,
// old and new text, separated by tabs. The new name is compared with that of replacing rule by rule.
#include <vector>

#include "fuzz_input.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/options/xnamingrules.h"
#include "veltrane/platform/text/numbers.h"

using namespace veltrane;

namespace {

struct Rule {
    int version;
    CString oldText, newText;
};

Rule ReadRule(const CString& line) {
    CString version;
    CString rest;
    Rule rule{};
    SplitString(version, rest, line, L'\t');
    SplitString(rule.oldText, rule.newText, rest, L'\t');
    rule.version = _wtoi(version);
    return rule;
}

constexpr int LONGEST_NAME = 100'000;  // rules that multiply a text would only take time

/// @return false if the name gets too long
bool RenamePlainly(CString& name, const std::vector<Rule>& rules, int version, bool keepCase) {
    if (!keepCase) name.MakeUpper();
    for (Rule rule : rules) {
        if (rule.version > version) break;
        if (!keepCase) rule.oldText.MakeUpper();
        if (!keepCase) rule.newText.MakeUpper();
        name.Replace(rule.oldText, rule.newText);
        if (name.GetLength() > LONGEST_NAME) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input = InputText(data, size);
    CString name = FromUtf8(NextLine(input));
    const CString mode = FromUtf8(NextLine(input));
    const int version = _wtoi(mode);
    const bool keepCase = mode.Find(L'k') >= 0;

    std::vector<Rule> rules;
    XNamingRules set;
    while (!input.empty()) {
        rules.push_back(ReadRule(FromUtf8(NextLine(input))));
        set.InsertRule(rules.back().version, rules.back().oldText, rules.back().newText);
    }
    CString expected = name;
    if (!RenamePlainly(expected, rules, version, keepCase)) return 0;
    set.ReplaceName(name, version, keepCase);
    REQUIRE(name == expected);
    return 0;
}
