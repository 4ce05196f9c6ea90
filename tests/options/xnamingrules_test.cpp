#include "options/xnamingrules.h"

#include <random>
#include <stdexcept>

#include "support/support.h"

namespace {

struct Rule {
    int version;
    std::wstring oldText;
    std::wstring newText;
};

XNamingRules RulesOf(const std::vector<Rule>& rules) {
    XNamingRules set;
    for (const Rule& rule : rules) set.InsertRule(rule.version, CString{rule.oldText}, CString{rule.newText});
    return set;
}

CString Renamed(const XNamingRules& rules, CString name, int version, bool keepCase) {
    rules.ReplaceName(name, version, keepCase);
    return name;
}

}  // namespace

TEST(XNamingRules, ReplaceNameAppliesTheRulesInOrderUpToTheVersion) {
    struct {
        const char* what;
        std::vector<Rule> rules;
        const wchar_t* name;
        int version;
        bool keepCase;
        const wchar_t* renamed;
    } const cases[] = {
        {"no rules, case kept", {}, L"Name", 1, true, L"Name"},
        {"no rules, upper case", {}, L"Name", 1, false, L"NAME"},
        {"later version", {{1, L"A", L"B"}, {3, L"B", L"C"}}, L"A", 2, false, L"B"},
        {"no version yet", {{1, L"A", L"B"}}, L"A", 0, false, L"A"},
        {"stops at the first later one", {{3, L"X", L"Y"}, {1, L"A", L"B"}}, L"A", 2, false, L"A"},
        {"a rule without regard to case", {{1, L"Tmp_", L"Wrk_"}}, L"tmp_orders", 1, false, L"WRK_ORDERS"},
        {"the same with regard to it", {{1, L"Tmp_", L"Wrk_"}}, L"tmp_orders", 1, true, L"tmp_orders"},
        {"every occurrence", {{1, L"AB", L"X"}}, L"ABAB", 1, false, L"XX"},
        {"new text is not searched", {{1, L"A", L"AA"}}, L"A", 1, false, L"AA"},
        {"chain, through a text that the name did not hold",
         {{1, L"OLD", L"NEW"}, {1, L"NEW", L"X"}},
         L"old",
         1,
         false,
         L"X"},
        {"empty old text", {{1, L"", L"X"}}, L"A", 1, false, L"A"},
        {"empty name", {{1, L"A", L"X"}}, L"", 1, false, L""},
        {"empty new text", {{1, L"_OLD", L""}}, L"ORDERS_OLD", 1, true, L"ORDERS"},
        {"longer than the name", {{1, L"ORDERS_OLD", L"X"}}, L"ORDERS", 1, false, L"ORDERS"},
        {"whole name", {{1, L"ORDERS", L"X"}}, L"orders", 1, false, L"X"},
        {"umlauts", {{1, L"\u00E4u\u00DF", L"x"}}, L"H\u00C4U\u00DFer", 1, false, L"HXER"},
        {"long s becomes S", {{1, L"ma\u017F\u017F", L"x"}}, L"MASS", 1, false, L"X"},
        {"the name's, too", {{1, L"mass", L"x"}}, L"ma\u017F\u017F", 1, false, L"X"},
    };
    for (const auto& [what, rules, name, version, keepCase, renamed] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Renamed(RulesOf(rules), name, version, keepCase), renamed);
    }
}

// Few letters, so that the rules hit, chain and nearly hit; some have another upper case outside ASCII.
TEST(XNamingRules, ReplaceNameGivesWhatReplacingEachTextGives) {
    std::mt19937 random{3};
    const auto text = [&random](unsigned longest) {
        std::wstring result(random() % longest, L' ');
        for (wchar_t& element : result) element = L"abAB_\u017Fs\u00E4\u00C4"[random() % 9];
        return result;
    };
    for (int round = 0; round < 2000; ++round) {
        std::vector<Rule> rules;
        for (int i = 0; i < 10; ++i) rules.push_back({1, text(6), text(4)});
        const CString name{text(30)};
        for (const bool keepCase : {false, true}) {
            CString expected = name;
            if (!keepCase) expected.MakeUpper();
            for (const Rule& rule : rules) {
                CString oldText{rule.oldText};
                CString newText{rule.newText};
                if (!keepCase) oldText.MakeUpper();
                if (!keepCase) newText.MakeUpper();
                expected.Replace(oldText, newText);
            }
            ASSERT_EQ(Renamed(RulesOf(rules), name, 1, keepCase), expected) << "round " << round;
        }
    }
}

TEST(XNamingRules, ANameThatGrowsBeyondTheLimitIsLeftAsItWas) {
    XNamingRules rules;
    rules.InsertRule(1, L"a", CString(L'b', 30'000));
    rules.InsertRule(1, L"b", CString(L'c', 30'000));
    CString name = L"aaa";
    EXPECT_THROW(rules.ReplaceName(name, 1, /*keepCase*/ true), std::length_error);
    EXPECT_EQ(name, L"aaa");
}

TEST(XNamingRules, ANullRuleIsPassedOver) {
    XNamingRules rules;
    rules.Insert(nullptr);
    rules.InsertRule(1, L"A", L"B");
    EXPECT_EQ(Renamed(rules, L"A", 1, /*keepCase*/ true), L"B");
}

TEST(XNamingRule, OrdersByVersionThenTexts) {
    EXPECT_EQ(XNamingRule(3, L"z", L"z").Compare({5, L"a", L"a"}), -2);
    EXPECT_EQ(XNamingRule(INT_MIN).Compare(XNamingRule(INT_MAX)), INT_MIN) << "no overflow";
    EXPECT_TRUE(XNamingRule(1, L"A", L"z") < XNamingRule(1, L"a", L"a"));
    EXPECT_GT(XNamingRule(1, L"a", L"y").FullCompare({1, L"a", L"x"}), 0);
    EXPECT_EQ(XNamingRule().GetVersion(), -1);
}

TEST(XNamingRule, CopiesAreNotMarked) {
    XNamingRule rule{2, L"a", L"b"};
    rule.SetFlag(true);
    const XNamingRule copy = rule;
    EXPECT_FALSE(copy.GetFlag());
    EXPECT_EQ(copy.Compare(rule), 0);

    XNamingRules rules = RulesOf({{1, L"a", L"b"}, {2, L"c", L"d"}});
    rules.SetFlag(1, true);
    XNamingRules marked;
    rules.GetSubset(marked, true);
    ASSERT_EQ(marked.Size(), 1);
    EXPECT_EQ(marked.GetAt(0)->GetFirst(), L"c");
    EXPECT_FALSE(marked.GetFlag(0));
}

TEST(XNamingRules, LocationsNameTheRuleAsTheStructureThatItIs) {
    EXPECT_EQ(ErrorOf([] { XNamingRules{}.GetFlag(0); })
                  .GetLocation()
                  .Find(L"<XSetP<struct XNamingRule>::GetFlag> in [XSet]"),
              0);
}
