#include "veltrane/options/xnamingrules.h"

#include <random>

#include "support/support.h"

static CString Renamed(const XNamingRules& rules, CString name, int version, bool keepCase) {
    rules.ReplaceName(name, version, keepCase);
    return name;
}

TEST(XNamingRules, ReplaceNameAppliesTheRulesInOrderUpToTheVersion) {
    XNamingRules rules;
    EXPECT_EQ(Renamed(rules, L"Name", 1, /*keepCase*/ false), L"NAME");
    rules.Insert(nullptr);  // ignored
    rules.InsertRule(1, L"Tmp_", L"Wrk_");
    rules.InsertRule(1, L"\u00E4u\u00DF", L"ma\u017F\u017F");
    rules.InsertRule(2, L"mass", L"x");
    rules.InsertRule(4, L"X", L"late");
    rules.InsertRule(2, L"Wrk_", L"behind a later one");
    EXPECT_EQ(Renamed(rules, L"tmp_tmp_orders", 2, false), L"WRK_WRK_ORDERS");
    EXPECT_EQ(Renamed(rules, L"H\u00C4U\u00DFer", 1, false), L"HMASSER");
    EXPECT_EQ(Renamed(rules, L"H\u00C4U\u00DFer", 2, false), L"HXER") << "through a text that the name did not hold";
    EXPECT_EQ(Renamed(rules, L"", 9, false), L"");
}

// Few letters, so that the rules hit, chain and nearly hit; some have another upper case outside ASCII.
TEST(XNamingRules, ReplaceNameGivesWhatReplacingEachTextGives) {
    std::mt19937 random{3};
    const auto text = [&random](unsigned longest) {
        std::wstring result(random() % longest, L' ');
        for (wchar_t& element : result) element = L"abAB_\u017Fs\u00E4\u00C4"[random() % 9];
        return CString{result};
    };
    for (int round = 0; round < 2000; ++round) {
        XNamingRules rules;
        for (int i = 0; i < 10; ++i) rules.InsertRule(1, text(6), text(4));
        const CString name = text(30);
        for (const bool keepCase : {false, true}) {
            const auto cased = [&](CString part) { return keepCase ? part : part.MakeUpper(); };
            CString expected = cased(name);
            for (int i = 0; i < 10; ++i) {
                expected.Replace(cased(rules.GetAt(i)->GetFirst()), cased(rules.GetAt(i)->GetSecond()));
            }
            ASSERT_EQ(Renamed(rules, name, 1, keepCase), expected) << "round " << round;
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

TEST(XNamingRule, OrdersByVersionThenTexts) {
    EXPECT_EQ(XNamingRule(3, L"z", L"z").Compare({5, L"a", L"a"}), -2);
    EXPECT_EQ(XNamingRule(INT_MIN).Compare(XNamingRule(INT_MAX)), INT_MIN) << "no overflow";
    EXPECT_TRUE(XNamingRule(1, L"A", L"z") < XNamingRule(1, L"a", L"a"));
    EXPECT_GT(XNamingRule(1, L"a", L"y").FullCompare({1, L"a", L"x"}), 0);
    EXPECT_EQ(XNamingRule().GetVersion(), -1);
}

TEST(XNamingRule, CopiesAreNotMarked) {
    XNamingRule rule(2, L"c", L"d");
    rule.SetFlag(true);
    EXPECT_EQ(XNamingRule{rule}.Compare(rule), 0);
    EXPECT_FALSE(XNamingRule{rule}.GetFlag());
    EXPECT_EQ(ErrorOf([] { XNamingRules{}.GetFlag(0); }).GetLocation().Find(L"<XSetP<struct XNamingRule>::GetFlag> "),
              0);
}
