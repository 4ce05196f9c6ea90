#include <algorithm>
#include <climits>
#include <random>

#include "collections/sets.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/collections/xsetstring.h"

// One that can only be copied.
struct Stiff : Moody {
    using Moody::Moody;
    Stiff(const Stiff&) = default;
    Stiff& operator=(const Stiff&) = default;
};

template class XSet<Moody>;  // as a whole it fits a host's own type
template class XSet<Stiff>;

namespace {

using IntSet = XSet<int>;
using Int = XSetData<int>;
using Moodies = XSet<Moody>;

int Throwing(const XSetData<Moody>&, const XSetData<Moody>&) {
    throw 7;
}

// Sets that hold each value once, few enough to be compared, and many. Addresses name places, and flags go along.
template <class T>
void ExpectSorted(const std::vector<T>& ascending) {
    ASSERT_TRUE(std::is_sorted(ascending.begin(), ascending.end()));
    for (const std::size_t times : {1U, 100U}) {
        std::vector<T> expected;
        for (const T& value : ascending) expected.insert(expected.end(), times, value);
        std::vector<T> shuffled = expected;
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937{5});
        XSet<T> set = SetOf(shuffled);
        set.SetFlag(set.Find(ascending.back(), nullptr), true);
        const T* const place = set.GetAt(1);
        set.Sort();
        EXPECT_EQ(ValuesOf(set), expected);
        EXPECT_EQ(set.GetAt(1), place);
        XSet<T> marked;
        set.GetSubset(marked, true);
        EXPECT_EQ(ValuesOf(marked), std::vector<T>{ascending.back()});
        for (const T& value : ascending) EXPECT_EQ(set.GetConstRefAt(set.Find(value, nullptr)), value);
    }
}

}  // namespace

TEST(XSet, OperationsLeaveValuesAndSortedMarkAsTheySay) {
    // clang-format off
    struct {
        const char* what; Ints before; void (*action)(IntSet& set); Ints after; bool sorted;
    } const cases[] = {
        {"a duplicate is refused when asked", {5}, [](auto& s) { EXPECT_FALSE(s.Insert(5, true)); }, {5}, false},
        {"and taken else, from the set too", {5}, [](auto& s) { EXPECT_TRUE(s.Insert(s.GetConstRefAt(0), false)); }, {5, 5}, false},
        {"Delete keeps the mark", {4, 1, 3, 2}, [](auto& s) { s.Sort(); for (int at : {-1, 4, 2}) s.Delete(at); }, {1, 2, 4}, true},
        {"Insert clears it", {2, 1}, [](auto& s) { s.Sort(); s.Insert(0, false); }, {1, 2, 0}, false},
        {"a copy has none", {2, 1}, [](auto& s) { s.Sort(); s = IntSet{s}; }, {1, 2}, false},
        {"a copy onto itself keeps it", {2, 1}, [](auto& s) { s.Sort(); s.Copy(s); s.Copy(nullptr); }, {1, 2}, true},
        {"Sort believes it", {2, 1}, [](auto& s) { s.SetSorted(true); s.Sort(); }, {2, 1}, true},
        {"Sort by a comparison", {1, 3, 2}, [](auto& s) { s.Sort([](const Int& a, const Int& b) { return b.GetValue() - a.GetValue(); }); }, {3, 2, 1}, true},
        {"Clear", {2, 1}, [](auto& s) { s.Sort(); s.Clear(); EXPECT_TRUE(s.IsEmpty()); }, {}, false},
        {"a subset of itself", {1, 2, 3}, [](auto& s) { EXPECT_TRUE(s.SetFlag(1, true)); s.GetSubset(s, false); }, {1, 3}, false},
        {"all flags", {1, 2}, [](auto& s) { s.SetFlag(true); s.GetSubset(s, false); }, {}, false},
        {"flags are not copied", {1, 2}, [](auto& s) { s.SetFlag(true); IntSet copy{s}; copy.GetSubset(s, true); }, {}, false},
    };
    // clang-format on
    for (const auto& [what, before, action, after, sorted] : cases) {
        IntSet set = SetOf(before);
        action(set);
        EXPECT_EQ(ValuesOf(set), after) << what;
        EXPECT_EQ(set.IsSorted(), sorted) << what;
    }
}

TEST(XSet, PositionsOutsideAreAnsweredNotFailed) {
    IntSet set = SetOf<int>({1, 2, 3});
    set.GetRefAt(9) = 77;
    EXPECT_EQ(SetOf<int>({1}).GetRefAt(-1), 77) << "the writable empty element is shared";
    for (const int outside : {-1, 3, INT_MAX, INT_MIN}) {
        EXPECT_EQ(set.GetAt(outside), nullptr);
        EXPECT_EQ(set.GetConstRefAt(outside), 0) << "the read-only one is another";
        EXPECT_FALSE(set.SetFlag(outside, true) || set.GetFlag(outside)) << outside;
    }
    set.GetRefAt(9) = 0;
}

TEST(XSet, FindGivesTheFirstOfAnUnsortedSet) {
    XSet<CString> set = SetOf<CString>({L"b", L"a", L"B", L"a"});
    EXPECT_EQ(set.Find(L"a", XSet<CString>::Comp), 1);
    set.Sort();
    for (const wchar_t* absent : {L"", L"c"}) EXPECT_EQ(set.Find(absent, nullptr), -1);
    const auto comparison = [](const Int& probe, const Int& element) {
        return probe.GetValue() == 7 && element.GetValue() == 20 ? 0 : 1;
    };
    EXPECT_EQ(SetOf<int>({10, 20}).Find(7, comparison), 1) << "the value stands in front";
}

TEST(XSet, SizeDecidesBeforeValues) {
    const std::pair<Ints, Ints> cases[] = {{{9}, {1, 2}}, {{1, 3}, {2, 2}}, {{1, 2}, {1, 3}}};
    for (const auto& [less, more] : cases) {
        EXPECT_TRUE(SetOf(less) < SetOf(more));
        EXPECT_FALSE(SetOf(more) < SetOf(less) || SetOf(less) < SetOf(less));
    }
}

TEST(XSet, SortsInPlaceOverTheWholeRange) {
    ExpectSorted<int>({INT_MIN, -1, 0, 1, INT_MAX});
    EXPECT_EQ(IntSet::Comp(INT_MIN, INT_MAX), -1);
    // Texts that agree in more than the front that is packed are among them.
    ExpectSorted<CString>({L"", std::wstring(1, L'\0'), L"A", L"ABCDEFGHI", L"ABCDEFGHIJ", L"ABCDEFGHIK", L"A\x7F",
                           L"A\x7F\x01", L"A\xC4", L"A\xE4", L"A\xD800", L"A\U0001F600", L"A\xE000",
                           std::wstring(1, L'\x7FFFFFFF')});
    ExpectSorted<Moody>({-1, 2, 3});
}

TEST(XSet, AComparisonWithoutAnyOrderCostsTheOrderOnly) {
    Ints numbers;
    while (numbers.size() < 5000) numbers.push_back(static_cast<int>(numbers.size()));
    IntSet set = SetOf(numbers);
    set.Sort([](const Int&, const Int&) { return -1; });
    EXPECT_TRUE(set.IsSorted());
    Ints values = ValuesOf(set);
    std::sort(values.begin(), values.end());
    EXPECT_EQ(values, numbers);
}

// Values of one tenth are equal, and neighbours by at most two: the second relation is not even transitive.
TEST(XSet, UnionGivesWhatLookingUpAndSortingOneByOneGives) {
    const IntSet::Comparison comparisons[] = {
        IntSet::Comp,
        nullptr,
        [](const Int& a, const Int& b) { return a.GetValue() / 10 - b.GetValue() / 10; },
        [](const Int& a, const Int& b) {
            const int difference = a.GetValue() - b.GetValue();
            return difference >= -2 && difference <= 2 ? 0 : difference;
        },
        [](const Int& a, const Int& b) { return b.GetValue() - a.GetValue(); },
    };
    std::mt19937 random{23};
    for (int round = 0; round < 1000; ++round) {
        IntSet a, b;
        for (auto i = random() % 20; i > 0; --i) a.Insert(int(random() % 100), /*unique*/ false);
        for (auto i = random() % 40; i > 0; --i) b.Insert(int(random() % 100), /*unique*/ false);
        const auto comparison = comparisons[round % 5];
        IntSet expected = a;
        expected.Sort();
        for (const int value : ValuesOf(b)) {
            if (expected.Find(value, comparison) < 0) expected.Insert(value, /*unique*/ false);
            expected.Sort();
        }
        IntSet& target = round % 2 ? a : b;  // each of the two may be the target as well
        target.Union(a, b, comparison);
        ASSERT_EQ(ValuesOf(target), ValuesOf(expected)) << "round " << round;
        ASSERT_TRUE(target.IsSorted());
    }
}

TEST(XSetOfMoody, ElementsAreMovedNotCopied) {
    Moody::copies = 0;
    Moodies set;
    for (int i = 0; i < 100; ++i) set.Insert(99 - i, /*unique*/ false);
    EXPECT_EQ(Moody::copies, 100) << "one for each value, none for growing";
    set.Delete(99);
    set.Sort();
    EXPECT_EQ(Moody::copies, 100);
    EXPECT_EQ(set.GetConstRefAt(98).value, 99);
}

TEST(XSetOfMoody, AFailureShowsItsBoxAndGivesItsFallback) {
    struct Fresh : Moody {  // whose default value nobody has asked for yet
        using Moody::Moody;
    };
    struct Bomb {
        ~Bomb() noexcept(false) {
            if (isArmed) throw 7;
        }
        bool isArmed = false;
    };
    using M = Moody;
    // clang-format off
    struct {
        const wchar_t* operation; M::Mood mood; int countdown; std::vector<M> left;  // in out
        void (*action)(Moodies& set, Moodies& out);
    } const cases[] = {
        // A value that cannot be copied is left out; the others follow.
        {L"XSet<T>::Insert", M::COPY, 1, {}, [](auto& set, auto&) { EXPECT_FALSE(set.Insert(5, false)); }},
        {L"XSet<T>::Insert", M::COPY, 3, {30, 10}, [](auto& set, auto& out) { out.Copy(set); }},
        {L"XSet<T>::Insert", M::COPY, 2, {30, 20}, [](auto& set, auto& out) { out = set; }},
        {L"XSet<T>::Insert", M::COPY, 2, {}, [](auto& set, auto&) { EXPECT_EQ(Moodies(set).Size(), 2); }},
        {L"XSet<T>::Insert", M::COPY, 2, {30, 20}, [](auto& set, auto& out) { set.GetSubset(out, false); }},
        {L"XSet<T>::Insert", M::COPY, 2, {20, 30}, [](auto& set, auto& out) { out.Union(set, {}, nullptr); }},
        {L"XSet<T>::Find", M::COPY, 1, {}, [](auto& set, auto&) { EXPECT_EQ(set.Find(5, nullptr), -1); }},
        {L"XSet<T>::Find", M::GOOD, 0, {5, 10, 20, 30}, [](auto& set, auto& out) { out.Union(set, SetOf<M>({5}), Throwing); EXPECT_TRUE(out.IsSorted()); }},
        {L"XSet<T>::Delete", M::ASSIGN, 1, {}, [](auto& set, auto&) { set.Delete(0); }},
        {L"XSet<T>::Sort", M::GOOD, 0, {}, [](auto& set, auto&) { set.Sort(Throwing); }},
        {L"XSet<T>::operator<", M::LESS, 1, {}, [](auto& set, auto&) { EXPECT_FALSE(set < Moodies(set)); }},
        {L"XSetData<T>::operator<", M::LESS, 1, {}, [](auto&, auto&) { EXPECT_EQ(Moodies::Comp({1}, {2}), 0); }},
        {L"XSetData<T>::operator=", M::ASSIGN, 1, {}, [](auto&, auto&) {
            XSetData<M> target{1}, source{2};
            source.SetFlag(true);
            target = source;
            EXPECT_FALSE(target.GetFlag()) << "not without the value";
            target = source;
            EXPECT_TRUE(target.GetFlag() && target.GetValue() == 2);
        }},
        {L"XSet<T>::~XSet", M::GOOD, 1, {}, [](auto&, auto&) { XSetData<Bomb>{Bomb{}}.GetValue().isArmed = true; }},
        // A default value that fails is tried once more.
        {L"XSet<T>::GetConstRefAt", M::DEFAULT, 1, {}, [](auto& set, auto&) { EXPECT_EQ(set.GetConstRefAt(-1), 0); }},
        {L"XSet<T>::GetRefAt", M::DEFAULT, 1, {}, [](auto&, auto&) { EXPECT_EQ(XSet<Fresh>{}.GetRefAt(-1), 0); }},
    };
    // clang-format on
    for (const auto& [operation, mood, countdown, left, action] : cases) {
        SCOPED_TRACE(ToUtf8(operation));
        Moodies set = SetOf<Moody>({30, 10, 20});
        Moodies out = SetOf<Moody>({99});
        if (left.empty()) out.Clear();
        BoxRecorder recorder;
        {
            const InMood moody{mood, countdown};
            action(set, out);
        }
        ASSERT_EQ(recorder.boxes.size(), 1U);
        EXPECT_EQ(recorder.boxes[0].text, CString{FormatText(L"Exception in '%s()'", operation)});
        EXPECT_EQ(recorder.boxes[0].style, static_cast<unsigned>(MB_OK));
        EXPECT_EQ(ValuesOf(out), left);
        EXPECT_EQ(ValuesOf(set), (std::vector<Moody>{30, 10, 20}));
        EXPECT_FALSE(set.IsSorted());
    }
    const MessageBoxHandler before = SetMessageBoxHandler([](const CString&, unsigned, unsigned) -> int { throw 1; });
    Moodies set = SetOf<Moody>({2, 1});
    set.Sort(Throwing);
    EXPECT_FALSE(set.IsSorted()) << "a box that fails is absorbed too";
    SetMessageBoxHandler(before);
}

// Each copy fails once: a sort loses no value, and a union that fails keeps none of the old ones.
TEST(XSetOfStiff, WhatCannotBeMovedIsSafeToo) {
    const std::vector<Stiff> all = {10, 20, 30};
    for (const bool unite : {false, true}) {
        std::size_t boxes = 1;
        for (int failing = 1; boxes > 0; ++failing) {
            const XSet<Stiff> source = SetOf<Stiff>({30, 10, 20});
            XSet<Stiff> set = unite ? SetOf<Stiff>({99}) : source;
            BoxRecorder recorder;
            {
                const InMood moody{Moody::COPY, failing};
                unite ? set.Union(source, {}, nullptr) : set.Sort();
            }
            boxes = recorder.boxes.size();
            std::vector<Stiff> values = ValuesOf(set);
            EXPECT_EQ(set.IsSorted(), boxes == 0 || recorder.boxes[0].text.Find(L"Insert") > 0);
            std::sort(values.begin(), values.end());
            EXPECT_TRUE(std::includes(all.begin(), all.end(), values.begin(), values.end()));
            EXPECT_TRUE(values.size() == 3 || (unite && boxes == 1)) << failing;
        }
    }
}
