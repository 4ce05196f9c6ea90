#include <algorithm>
#include <climits>
#include <random>

#include "collections/sets.h"

// One that can only be copied, as it has a destructor of its own.
struct Stiff : Moody {
    using Moody::Moody;
    ~Stiff() noexcept(false) { Try(DESTROY, 0); }
};

template class XSet<Moody>;  // all of it compiles for a host's own type
template class XSet<Stiff>;

using IntSet = XSet<int>;
using Int = XSetData<int>;
using Moodies = XSet<Moody>;

// Values are equal that are not more than the slack apart: with any slack the relation is not even transitive.
template <int Slack, int Divisor>
static int Compared(const Int& a, const Int& b) {
    const int difference = a.GetValue() / Divisor - b.GetValue() / Divisor;
    return std::abs(difference) <= Slack ? 0 : difference;
}

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
        {"Sort by a comparison", {1, 3, 2}, [](auto& s) { s.Sort(Compared<0, -1>); }, {3, 2, 1}, true},
        {"Clear", {2, 1}, [](auto& s) { s.Sort(); s.Clear(); EXPECT_TRUE(s.IsEmpty()); }, {}, false},
        {"a subset of itself", {1, 2, 3}, [](auto& s) { EXPECT_TRUE(s.SetFlag(1, true)); s.GetSubset(s, false); }, {1, 3}, false},
        {"all flags", {1, 2}, [](auto& s) { s.SetFlag(true); s.GetSubset(s, false); }, {}, false},
        {"flags are not copied", {1, 2}, [](auto& s) { s.SetFlag(true); IntSet copy{s}; copy.GetSubset(s, true); }, {}, false},
        {"Find gives the first", {2, 1, 1}, [](auto& s) { EXPECT_EQ(s.Find(1, IntSet::Comp), 1); }, {2, 1, 1}, false},
        {"or none", {4, 2}, [](auto& s) { s.Sort(); for (int absent : {1, 3, 5}) EXPECT_EQ(s.Find(absent, nullptr), -1); }, {2, 4}, true},
        {"with the value in front", {1, 2}, [](auto& s) { EXPECT_EQ(s.Find(7, [](const Int& a, const Int& b) { return a.GetValue() - 7 + b.GetValue() - 2; }), 1); }, {1, 2}, false},
        {"nothing is outside", {1, 2}, [](auto& s) { for (int at : {-1, 2, INT_MAX, INT_MIN}) EXPECT_FALSE(s.GetAt(at) || s.SetFlag(at, true) || s.GetFlag(at)); }, {1, 2}, false},
        {"but two values for all sets", {1}, [](auto& s) { s.GetRefAt(9) = 7; EXPECT_EQ(s.GetConstRefAt(1), 0); EXPECT_EQ(std::exchange(IntSet{}.GetRefAt(-1), 0), 7); }, {1}, false},
        {"the size decides before values", {1, 3}, [](auto& s) { for (const Ints& more : {Ints{0, 0, 0}, {2, 2}, {1, 4}}) EXPECT_TRUE(s < SetOf(more) && !(SetOf(more) < s)); }, {1, 3}, false},
    };
    // clang-format on
    for (const auto& [what, before, action, after, sorted] : cases) {
        IntSet set = SetOf(before);
        action(set);
        EXPECT_EQ(ValuesOf(set), after) << what;
        EXPECT_EQ(set.IsSorted(), sorted) << what;
        EXPECT_FALSE(set < set);
    }
}

// Sets that hold each value once, few enough to be compared, and many. Addresses name places, and flags go along.
TEST(XSet, SortsInPlaceOverTheWholeRange) {
    const auto check = []<class T>(const std::vector<T>& ascending) {
        for (const std::size_t times : {1U, 100U}) {
            std::vector<T> expected;
            for (const T& value : ascending) expected.insert(expected.end(), times, value);
            std::vector<T> shuffled = expected;
            std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937{5});
            XSet<T> set = SetOf(shuffled);
            set.SetFlag(set.Find(ascending.back(), nullptr), true);
            const T* const place = set.GetAt(1);
            set.Sort([](const auto&, const auto&) { return -1; });  // an inconsistent order only spoils the order
            set.SetSorted(false);
            set.Sort();
            EXPECT_EQ(ValuesOf(set), expected);
            EXPECT_EQ(set.GetAt(1), place);
            XSet<T> marked;
            set.GetSubset(marked, true);
            EXPECT_EQ(ValuesOf(marked), std::vector<T>{ascending.back()});
            for (const T& value : ascending) EXPECT_EQ(set.GetConstRefAt(set.Find(value, nullptr)), value);
        }
    };
    check(Ints{INT_MIN, -1, 0, 1, INT_MAX});
    EXPECT_EQ(IntSet::Comp(INT_MIN, INT_MAX), -1);
    // Some texts agree in more than their packed beginning.
    check(Texts{L"", std::wstring(1, L'\0'), L"A", L"ABCDEFGHI", L"ABCDEFGHIJ", L"ABCDEFGHIK", L"A\x7F", L"A\x7F\x01",
                L"A\xC4", L"A\xE4", L"A\xD800", L"A\U0001F600", L"A\xE000", std::wstring(1, L'\x7FFFFFFF')});
    check(std::vector<Moody>{-1, 2, 3});
}

TEST(XSet, UnionGivesWhatLookingUpAndSortingOneByOneGives) {
    const IntSet::Comparison comparisons[] = {IntSet::Comp, nullptr, Compared<0, 10>, Compared<2, 1>, Compared<0, -1>};
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
        IntSet& target = round % 2 ? a : b;  // each of the two can also be the target
        target.Union(a, b, comparison);
        ASSERT_EQ(ValuesOf(target), ValuesOf(expected)) << "round " << round;
        ASSERT_TRUE(target.IsSorted());
    }
}

TEST(XSetOfMoody, ElementsAreMovedNotCopied) {
    Moody::copies = 0;
    Moodies set;
    for (int i = 0; i < 100; ++i) set.Insert(99 - i, /*unique*/ false);
    set.Delete(0);
    set.Sort();
    EXPECT_EQ(Moody::copies, 100) << "one for each value, none for growing";
    EXPECT_EQ(set.GetConstRefAt(98).value, 98);
}

TEST(XSetOfMoody, AFailureShowsItsBoxAndGivesItsFallback) {
    using M = Moody;
    static constexpr Moodies::Comparison THROWING = [](const auto&, const auto&) -> int { throw 7; };
    // clang-format off
    struct {
        const wchar_t* operation; M::Action mood; int countdown; std::vector<M> left;  // in out
        void (*action)(Moodies& set, Moodies& out);
    } const cases[] = {
        // A value that cannot be copied is left out; the others follow.
        {L"XSet<T>::Insert", M::COPY, 1, {}, [](auto& set, auto&) { EXPECT_FALSE(set.Insert(5, false)); }},
        {L"XSet<T>::Insert", M::COPY, 3, {30, 10}, [](auto& set, auto& out) { out.Copy(set); }},
        {L"XSet<T>::Insert", M::COPY, 2, {30, 20}, [](auto& set, auto& out) { set.GetSubset(out, false); }},
        {L"XSet<T>::Insert", M::COPY, 2, {20, 30}, [](auto& set, auto& out) { out.Union(set, {}, nullptr); }},
        {L"XSet<T>::Find", M::COPY, 1, {}, [](auto& set, auto&) { EXPECT_EQ(set.Find(5, nullptr), -1); }},
        {L"XSet<T>::Find", M::NONE, 0, {5, 10, 20, 30}, [](auto& set, auto& out) { out.Union(set, SetOf<M>({5}), THROWING); EXPECT_TRUE(out.IsSorted()); }},
        {L"XSet<T>::Delete", M::ASSIGN, 1, {}, [](auto& set, auto&) { set.Delete(0); }},
        {L"XSet<T>::Sort", M::NONE, 0, {}, [](auto& set, auto&) { set.Sort(THROWING); }},
        {L"XSet<T>::operator<", M::LESS, 1, {}, [](auto& set, auto&) { EXPECT_FALSE(set < Moodies(set)); }},
        {L"XSetData<T>::operator<", M::LESS, 1, {}, [](auto&, auto&) { EXPECT_EQ(Moodies::Comp({1}, {2}), 0); }},
        {L"XSetData<T>::operator=", M::ASSIGN, 1, {}, [](auto&, auto&) {
            XSetData<M> target{1}, source{2};
            source.SetFlag(true);
            for (const bool succeeds : {false, true}) EXPECT_EQ((target = source).GetFlag(), succeeds);
            EXPECT_EQ(target.GetValue(), 2);
        }},
        {L"XSet<T>::~XSet", M::DESTROY, 1, {}, [](auto&, auto&) { XSetData<Stiff>{1}; }},
        // A default value that fails is tried once more; those of the two types have not been used yet.
        {L"XSet<T>::GetConstRefAt", M::DEFAULT, 1, {}, [](auto& set, auto&) { EXPECT_EQ(set.GetConstRefAt(-1), 0); }},
        {L"XSet<T>::GetRefAt", M::DEFAULT, 1, {}, [](auto&, auto&) { EXPECT_EQ(XSet<Stiff>{}.GetRefAt(-1), 0); }},
    };
    // clang-format on
    for (const auto& [operation, mood, countdown, left, action] : cases) {
        SCOPED_TRACE(ToUtf8(operation));
        Moodies set = SetOf<M>({30, 10, 20}), out = SetOf<M>({99});
        if (left.empty()) out.Clear();
        BoxRecorder recorder;
        M::mood = {mood, countdown};
        action(set, out);
        M::mood = {};
        ASSERT_EQ(recorder.boxes.size(), 1U);
        EXPECT_EQ(recorder.boxes[0].text, CString{FormatText(L"Exception in '%s()'", operation)});
        EXPECT_EQ(recorder.boxes[0].style, static_cast<unsigned>(MB_OK));
        EXPECT_EQ(ValuesOf(out), left);
        EXPECT_EQ(ValuesOf(set), (std::vector<M>{30, 10, 20}));
        EXPECT_FALSE(set.IsSorted());
    }
    const MessageBoxHandler before = SetMessageBoxHandler([](const CString&, unsigned, unsigned) -> int { throw 1; });
    SetOf<M>({2, 1}).Sort(THROWING);  // a box that fails is absorbed too
    SetMessageBoxHandler(before);
}

// Each copy fails once: a sort loses no value, and a union that fails keeps none of the old ones.
TEST(XSetOfStiff, WhatCannotBeMovedIsSafeToo) {
    for (const bool unite : {false, true}) {
        std::size_t boxes = 1;
        for (int failing = 1; boxes > 0; ++failing) {
            const auto source = SetOf<Stiff>({30, 10, 20});
            XSet<Stiff> set = unite ? SetOf<Stiff>({99}) : source;
            BoxRecorder recorder;
            Moody::mood = {Moody::COPY, failing};
            unite ? set.Union(source, {}, nullptr) : set.Sort();
            Moody::mood = {};
            boxes = recorder.boxes.size();
            EXPECT_EQ(set.IsSorted(), boxes == 0 || recorder.boxes[0].text.Find(L"Insert") > 0);
            int found = 0;
            for (const int value : {10, 20, 30}) found += set.Find(value, nullptr) >= 0;
            EXPECT_EQ(set.Size(), found);
            EXPECT_TRUE(found == 3 || (unite && boxes == 1)) << failing;
        }
    }
}
