#include <algorithm>
#include <numeric>
#include <random>
#include <stdexcept>
#include <utility>

#include "collections/sets.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/collections/xsetstring.h"

using namespace veltrane;
using namespace veltrane::detail;

// A value that counts its copies, and that fails at one kind of action when told to.
struct Moody {
    enum Mood { GOOD, COPY, ASSIGN, LESS, DEFAULT };
    static inline Mood mood = GOOD;
    static inline int countdown = 0;  // the how-manieth action from now on throws
    static inline int copies = 0;

    static int Try(Mood action, int result) {
        if (action == COPY) ++copies;
        if (action == mood && --countdown == 0) throw std::runtime_error("moody");
        return result;
    }

    Moody() : value(Try(DEFAULT, 0)) {}
    Moody(int number) : value(number) {}
    Moody(const Moody& other) : value(Try(COPY, other.value)) {}
    Moody(Moody&& other) noexcept : value(std::exchange(other.value, -1)) {}
    Moody& operator=(const Moody& other) { return *this = Moody{other}; }
    Moody& operator=(Moody&& other) noexcept(false) {
        Try(ASSIGN, 0);
        value = std::exchange(other.value, -1);
        return *this;
    }
    bool operator<(const Moody& other) const { return Try(LESS, value) < other.value; }
    bool operator==(const Moody& other) const { return value == other.value; }

    int value;
};

// One that can only be copied.
struct Stiff : Moody {
    using Moody::Moody;
    Stiff(const Stiff&) = default;
    Stiff& operator=(const Stiff&) = default;
};

template class XSet<Moody>;  // as a whole it fits a host's own type
template class XSet<Stiff>;

namespace {

using Moodies = XSet<Moody>;
using Stiffs = XSet<Stiff>;

int ThrowingComparison(const XSetData<Moody>&, const XSetData<Moody>&) {
    throw 7;
}

}  // namespace

TEST(XSet, InsertRefusesADuplicateOnlyWhenAsked) {
    XSet<int> set = SetOf<int>({5});
    EXPECT_FALSE(set.Insert(5, /*unique*/ true));
    EXPECT_TRUE(set.Insert(set.GetConstRefAt(0), /*unique*/ false)) << "a value of the set itself";
    EXPECT_EQ(ValuesOf(set), (Ints{5, 5}));
}

TEST(XSet, OnlyInsertionClearAndCopyClearTheSortedMark) {
    XSet<int> set = SetOf<int>({40, 10, 30, 20});
    set.Sort(nullptr);
    for (const int position : {-1, 4, 2}) set.Delete(position);
    set.SetFlag(true);
    EXPECT_TRUE(set.IsSorted());
    EXPECT_EQ(ValuesOf(set), (Ints{10, 20, 40}));
    EXPECT_FALSE(XSet<int>(set).IsSorted());
    set.Insert(1, /*unique*/ false);
    EXPECT_FALSE(set.IsSorted());
    set.SetSorted(true);
    set.Sort(nullptr);
    EXPECT_EQ(set.GetConstRefAt(3), 1) << "marked by the caller: nothing is reordered";
    set.Clear();
    EXPECT_FALSE(set.IsSorted());
    EXPECT_TRUE(set.IsEmpty());
}

TEST(XSet, PositionsOutsideAreAnsweredNotFailed) {
    XSet<int> set = SetOf<int>({1, 2, 3});
    set.GetRefAt(9) = 77;
    EXPECT_EQ(SetOf<int>({1}).GetRefAt(-1), 77) << "the writable empty element is shared";
    for (const int outside : {-1, 3, INT_MAX, INT_MIN}) {
        SCOPED_TRACE(outside);
        EXPECT_EQ(set.GetAt(outside), nullptr);
        EXPECT_EQ(set.GetConstRefAt(outside), 0) << "the read-only one is another";
        EXPECT_FALSE(set.SetFlag(outside, true));
        EXPECT_FALSE(set.GetFlag(outside));
    }
    set.GetRefAt(9) = 0;
}

TEST(XSet, FindGivesTheFirstOfAnUnsortedSetAndAnyOfASortedOne) {
    XSet<CString> set = SetOf<CString>({L"b", L"a", L"B", L"a"});
    EXPECT_EQ(set.Find(L"a", XSet<CString>::Comp), 1);
    EXPECT_EQ(set.Find(L"B", nullptr), 2) << "null stands for Comp";
    EXPECT_EQ(set.Find(L"c", nullptr), -1);
    set.Sort(nullptr);
    for (const wchar_t* held : {L"B", L"a", L"b"}) EXPECT_EQ(set.GetConstRefAt(set.Find(held, nullptr)), held);
    for (const wchar_t* absent : {L"", L"c"}) EXPECT_EQ(set.Find(absent, nullptr), -1);
    const auto comparison = [](const XSetData<int>& probe, const XSetData<int>& element) {
        return probe.GetValue() == 7 && element.GetValue() == 20 ? 0 : 1;
    };
    EXPECT_EQ(SetOf<int>({10, 20}).Find(7, comparison), 1) << "the value stands in front";
}

TEST(XSet, SubsetsAndCopiesDoNotCarryFlags) {
    XSet<CString> set = SetOf<CString>({L"a", L"b", L"c"});
    set.SetFlag(1, true);
    XSet<CString> marked = SetOf<CString>({L"old"});
    set.GetSubset(marked, true);
    EXPECT_EQ(ValuesOf(marked), Texts{L"b"});
    EXPECT_FALSE(marked.GetFlag(0));
    marked = set;
    EXPECT_FALSE(marked.GetFlag(1));
    marked.Copy(nullptr);
    EXPECT_EQ(marked.Size(), 3);

    set.Copy(set);
    EXPECT_TRUE(set.GetFlag(1)) << "a set copied onto itself stays as it is";
    set.GetSubset(set, false);
    EXPECT_EQ(ValuesOf(set), (Texts{L"a", L"c"}));
}

TEST(XSet, SizeDecidesBeforeValues) {
    EXPECT_TRUE(SetOf<int>({9}) < SetOf<int>({1, 2}));
    EXPECT_FALSE(SetOf<int>({1, 3}) < SetOf<int>({1, 2}));
    EXPECT_FALSE(SetOf<int>({2, 2}) < SetOf<int>({1, 3}));
    EXPECT_TRUE(SetOf<int>({1, 2}) < SetOf<int>({1, 3}));
    EXPECT_FALSE(SetOf<int>({1, 2}) < SetOf<int>({1, 2}));
}

// Each value as often as few are sorted, and as many; addresses name places, so they stay.
template <class T>
void ExpectSorted(const std::vector<T>& ascending) {
    ASSERT_TRUE(std::is_sorted(ascending.begin(), ascending.end()));
    for (const std::size_t times : {1U, 100U}) {
        std::vector<T> expected;
        for (const T& value : ascending) expected.insert(expected.end(), times, value);
        std::vector<T> shuffled = expected;
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937{5});
        XSet<T> set = SetOf(shuffled);
        const int marked = set.Find(ascending.back(), nullptr);
        set.SetFlag(marked, true);
        const T* const place = set.GetAt(1);
        set.Sort();
        EXPECT_EQ(ValuesOf(set), expected);
        EXPECT_EQ(set.GetAt(1), place);
        XSet<T> subset;
        set.GetSubset(subset, true);
        EXPECT_EQ(ValuesOf(subset), std::vector<T>{ascending.back()}) << "the flag went along";
    }
}

TEST(XSet, SortsInPlaceOverTheWholeRange) {
    ExpectSorted<int>({INT_MIN, -1, 0, 1, INT_MAX});
    // Texts that agree in more than the front that is packed are among them.
    ExpectSorted<CString>({
        L"",
        std::wstring(1, L'\0'),
        L"A",
        L"ABCDEFGHI",
        L"ABCDEFGHIJ",
        L"ABCDEFGHIK",
        L"A\x7F",
        L"A\x7F\x01",
        L"A\xC4",
        L"A\xE4",
        L"A\xD800",
        L"A\U0001F600",
        L"A\xE000",
        std::wstring(1, L'\x7FFFFFFF'),
    });
    ExpectSorted<Moody>({-1, 2, 3});
    XSet<int> set = SetOf<int>({1, 3, 2});
    set.Sort([](const XSetData<int>& a, const XSetData<int>& b) { return b.GetValue() - a.GetValue(); });
    EXPECT_EQ(ValuesOf(set), (Ints{3, 2, 1}));
}

TEST(XSet, AComparisonWithoutAnyOrderCostsTheOrderOnly) {
    Ints numbers(5000);
    std::iota(numbers.begin(), numbers.end(), 0);
    XSet<int> set = SetOf(numbers);
    set.Sort([](const XSetData<int>&, const XSetData<int>&) { return -1; });
    EXPECT_TRUE(set.IsSorted());
    Ints values = ValuesOf(set);
    std::sort(values.begin(), values.end());
    EXPECT_EQ(values, numbers);
}

// Values of one tenth are equal, and neighbours by at most two: the second relation is not even transitive.
TEST(XSet, UnionGivesWhatLookingUpAndSortingOneByOneGives) {
    const XSet<int>::Comparison comparisons[] = {
        XSet<int>::Comp,
        nullptr,
        [](const XSetData<int>& a, const XSetData<int>& b) { return a.GetValue() / 10 - b.GetValue() / 10; },
        [](const XSetData<int>& a, const XSetData<int>& b) {
            const int difference = a.GetValue() - b.GetValue();
            return difference >= -2 && difference <= 2 ? 0 : difference;
        },
        [](const XSetData<int>& a, const XSetData<int>& b) { return b.GetValue() - a.GetValue(); },
        [](const XSetData<int>& a, const XSetData<int>& b) { return a.GetValue() % 5 - b.GetValue() % 5; },
    };
    std::mt19937 random{23};
    for (int round = 0; round < 200; ++round) {
        XSet<int> a;
        XSet<int> b;
        for (auto i = random() % 20; i > 0; --i) a.Insert(int(random() % 100), /*unique*/ false);
        for (auto i = random() % 40; i > 0; --i) b.Insert(int(random() % 100), /*unique*/ false);
        for (const auto comparison : comparisons) {
            XSet<int> expected = a;
            expected.Sort();
            for (const int value : ValuesOf(b)) {
                if (expected.Find(value, comparison) < 0) expected.Insert(value, /*unique*/ false);
                expected.Sort();
            }
            XSet<int> first = a;  // each of the two may be the target as well
            first.Union(first, b, comparison);
            ASSERT_EQ(ValuesOf(first), ValuesOf(expected)) << "round " << round;
            XSet<int> second = b;
            second.Union(a, second, comparison);
            ASSERT_EQ(ValuesOf(second), ValuesOf(expected)) << "round " << round;
            ASSERT_TRUE(first.IsSorted());
        }
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
    struct {
        const wchar_t* operation;
        Moody::Mood mood;
        int countdown;
        std::vector<Moody> left;  // in out
        void (*action)(Moodies& set, Moodies& out);
    } const cases[] = {
        // A value that cannot be copied is left out; the others follow.
        {L"XSet<T>::Insert", Moody::COPY, 1, {}, [](auto& set, auto&) { EXPECT_FALSE(set.Insert(5, false)); }},
        {L"XSet<T>::Insert", Moody::COPY, 3, {30, 10}, [](auto& set, auto& out) { out.Copy(set); }},
        {L"XSet<T>::Insert", Moody::COPY, 2, {30, 20}, [](auto& set, auto& out) { out = set; }},
        {L"XSet<T>::Insert", Moody::COPY, 2, {}, [](auto& set, auto&) { EXPECT_EQ(Moodies(set).Size(), 2); }},
        {L"XSet<T>::Insert", Moody::COPY, 2, {30, 20}, [](auto& set, auto& out) { set.GetSubset(out, false); }},
        {L"XSet<T>::Insert", Moody::COPY, 2, {20, 30}, [](auto& set, auto& out) { out.Union(set, {}, nullptr); }},
        {L"XSet<T>::Find", Moody::COPY, 1, {}, [](auto& set, auto&) { EXPECT_EQ(set.Find(5, nullptr), -1); }},
        {L"XSet<T>::Find",
         Moody::GOOD,
         0,
         {5, 10, 20, 30},
         [](auto& set, auto& out) {
             out.Union(set, SetOf<Moody>({5}), ThrowingComparison);
             EXPECT_TRUE(out.IsSorted());
         }},
        {L"XSet<T>::Delete", Moody::ASSIGN, 1, {}, [](auto& set, auto&) { set.Delete(0); }},
        {L"XSet<T>::Sort", Moody::GOOD, 0, {}, [](auto& set, auto&) { set.Sort(ThrowingComparison); }},
        {L"XSet<T>::operator<", Moody::LESS, 1, {}, [](auto& set, auto&) { EXPECT_FALSE(set < Moodies(set)); }},
        {L"XSetData<T>::operator<", Moody::LESS, 1, {}, [](auto&, auto&) { EXPECT_EQ(Moodies::Comp({1}, {2}), 0); }},
        // A default value that fails is tried once more.
        {L"XSet<T>::GetConstRefAt",
         Moody::DEFAULT,
         1,
         {},
         [](auto& set, auto&) { EXPECT_EQ(set.GetConstRefAt(-1), 0); }},
        {L"XSet<T>::GetRefAt", Moody::DEFAULT, 1, {}, [](auto&, auto&) { EXPECT_EQ(XSet<Fresh>{}.GetRefAt(-1), 0); }},
    };
    for (const auto& [operation, mood, countdown, left, action] : cases) {
        const CString box = FormatText(L"Exception in '%s()'", operation);
        SCOPED_TRACE(ToUtf8(box));
        Moodies set = SetOf<Moody>({30, 10, 20});
        Moodies out;
        BoxRecorder recorder;
        Moody::countdown = countdown;
        Moody::mood = mood;
        action(set, out);
        Moody::mood = Moody::GOOD;
        ASSERT_EQ(recorder.boxes.size(), 1U);
        EXPECT_EQ(recorder.boxes[0].text, box);
        EXPECT_EQ(recorder.boxes[0].style, static_cast<unsigned>(MB_OK));
        EXPECT_EQ(ValuesOf(out), left);
        EXPECT_EQ(ValuesOf(set), (std::vector<Moody>{30, 10, 20}));
        EXPECT_FALSE(set.IsSorted());
    }
}

// Each copy fails once: a sort loses no value, and a union that fails keeps none of the old ones.
TEST(XSetOfStiff, WhatCannotBeMovedIsSafeToo) {
    for (const bool unite : {false, true}) {
        std::size_t boxes = 1;
        for (int failing = 1; boxes > 0; ++failing) {
            Stiffs set = SetOf<Stiff>({30, 10, 20});
            Stiffs other = SetOf<Stiff>({99});
            BoxRecorder recorder;
            Moody::countdown = failing;
            Moody::mood = Moody::COPY;
            unite ? other.Union(set, {}, nullptr) : set.Sort();
            Moody::mood = Moody::GOOD;
            boxes = recorder.boxes.size();
            std::vector<Stiff> values = ValuesOf(unite ? other : set);
            EXPECT_EQ((unite ? other : set).IsSorted(), boxes == 0 || recorder.boxes[0].text.Find(L"Insert") > 0);
            std::sort(values.begin(), values.end());
            const std::vector<Stiff> all = {10, 20, 30};
            EXPECT_TRUE(boxes == 0 || !unite ? values == all
                                             : std::includes(all.begin(), all.end(), values.begin(), values.end()));
        }
    }
}

TEST(XSetOfMoody, AFailedAssignmentOfAnElementLeavesTheFlag) {
    XSetData<Moody> target{1};
    XSetData<Moody> source{2};
    source.SetFlag(true);
    BoxRecorder recorder;
    Moody::countdown = 1;
    Moody::mood = Moody::ASSIGN;
    target = source;
    EXPECT_FALSE(target.GetFlag());
    target = source;
    Moody::mood = Moody::GOOD;
    EXPECT_TRUE(target.GetFlag());
    EXPECT_EQ(target.GetValue().value, 2);
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSetData<T>::operator=()'");
}

TEST(XSetOfMoody, ABoxThatFailsIsAbsorbedToo) {
    const MessageBoxHandler before = SetMessageBoxHandler([](const CString&, unsigned, unsigned) -> int { throw 1; });
    Moodies set = SetOf<Moody>({2, 1});
    set.Sort(ThrowingComparison);
    EXPECT_FALSE(set.IsSorted());
    SetMessageBoxHandler(before);
}

TEST(XSetData, AFailingDestructorIsShownAndEndsThere) {
    struct Bomb {
        ~Bomb() noexcept(false) {
            if (isArmed) throw 7;
        }
        bool isArmed = false;
    };
    BoxRecorder recorder;
    {
        XSetData<Bomb> element{Bomb{}};
        element.GetValue().isArmed = true;
    }
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSet<T>::~XSet()'");
}
