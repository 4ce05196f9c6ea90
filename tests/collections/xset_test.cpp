#include <algorithm>
#include <random>

#include "collections/XSet.h"
#include "collections/elements.h"
#include "collections/xsetint.h"
#include "collections/xsetstring.h"
#include "support/support.h"

namespace {

template <class T>
XSet<T> SetOf(std::initializer_list<T> values) {
    XSet<T> set;
    for (const T& value : values) set.Insert(value, /*unique*/ false);
    return set;
}

template <class T>
std::vector<T> ValuesOf(const XSet<T>& set) {
    std::vector<T> values;
    for (int i = 0; i < set.Size(); ++i) values.push_back(set.GetConstRefAt(i));
    return values;
}

std::vector<int> NumbersOf(const XSet<Moody>& set) {
    std::vector<int> numbers;
    for (int i = 0; i < set.Size(); ++i) numbers.push_back(set.GetConstRefAt(i).value);
    return numbers;
}

using Ints = std::vector<int>;

class XSetOfMoody : public testing::Test {
protected:
    XSetOfMoody() {
        Moody::Reset();
        for (const int value : {30, 10, 20}) set.Insert(value, /*unique*/ false);
        set.SetFlag(1, true);
        Moody::Reset();
    }
    ~XSetOfMoody() override { Moody::Reset(); }

    // The boxes that an action shows, in the plain style.
    template <class Action>
    std::vector<CString> BoxesOf(Action&& action) {
        BoxRecorder recorder;
        action();
        Moody::Reset();
        std::vector<CString> texts;
        for (const BoxRecorder::Box& box : recorder.boxes) {
            EXPECT_EQ(box.style, static_cast<unsigned>(MB_OK));
            texts.push_back(box.text);
        }
        return texts;
    }

    XSet<Moody> set;
};

using Texts = std::vector<CString>;

int ThrowingComparison(const XSetData<Moody>&, const XSetData<Moody>&) {
    throw std::runtime_error("comparison");
}

}  // namespace

TEST(XSet, InsertRefusesADuplicateOnlyWhenAsked) {
    XSet<int> set = SetOf({5});
    EXPECT_FALSE(set.Insert(5, /*unique*/ true));
    EXPECT_TRUE(set.Insert(5, /*unique*/ false));
    EXPECT_EQ(ValuesOf(set), (Ints{5, 5}));
    EXPECT_TRUE(set.Insert(set.GetConstRefAt(0), /*unique*/ false)) << "a value of the set itself";
    EXPECT_EQ(ValuesOf(set), (Ints{5, 5, 5}));
}

TEST(XSet, OnlyInsertionClearAndCopyClearTheSortedMark) {
    XSet<int> set = SetOf({40, 10, 30, 20});
    set.Sort(nullptr);
    EXPECT_EQ(ValuesOf(set), (Ints{10, 20, 30, 40}));
    for (const int outside : {-1, 4}) set.Delete(outside);
    set.Delete(2);
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
    XSet<int> set = SetOf({1, 2, 3});
    for (const int outside : {-1, 3, INT_MAX, INT_MIN}) {
        SCOPED_TRACE(outside);
        EXPECT_EQ(set.GetAt(outside), nullptr);
        EXPECT_EQ(set.GetConstRefAt(outside), 0);
        EXPECT_FALSE(set.SetFlag(outside, true));
        EXPECT_FALSE(set.GetFlag(outside));
    }
    set.GetRefAt(9) = 77;
    EXPECT_EQ(SetOf({1}).GetRefAt(-1), 77) << "the writable empty element is shared";
    EXPECT_EQ(set.GetConstRefAt(9), 0) << "the read-only one is another";
    set.GetRefAt(9) = 0;
}

TEST(XSet, FindGivesTheFirstOfAnUnsortedSetAndAnyOfASortedOne) {
    XSet<CString> set = SetOf<CString>({L"b", L"a", L"B", L"a"});
    EXPECT_EQ(set.Find(L"a", XSet<CString>::Comp), 1);
    EXPECT_EQ(set.Find(L"c", XSet<CString>::Comp), -1);
    EXPECT_EQ(set.Find(L"B", nullptr), 2) << "null stands for Comp";
    set.Sort(nullptr);
    EXPECT_EQ(ValuesOf(set), (std::vector<CString>{L"B", L"a", L"a", L"b"}));
    EXPECT_EQ(set.GetConstRefAt(set.Find(L"a", XSet<CString>::Comp)), L"a");
    EXPECT_EQ(set.Find(L"", XSet<CString>::Comp), -1);
    EXPECT_EQ(set.Find(L"c", XSet<CString>::Comp), -1);
}

TEST(XSet, FindCallsTheComparisonWithTheValueInFront) {
    static std::vector<std::pair<int, int>> calls;
    calls.clear();
    const XSet<int> set = SetOf({10, 20});
    EXPECT_EQ(set.Find(7,
                       [](const XSetData<int>& probe, const XSetData<int>& element) {
                           calls.emplace_back(probe.GetValue(), element.GetValue());
                           return element.GetValue() == 20 ? 0 : 1;
                       }),
              1);
    EXPECT_EQ(calls, (std::vector<std::pair<int, int>>{{7, 10}, {7, 20}}));
}

TEST(XSet, SubsetsAndCopiesDoNotCarryFlags) {
    XSet<CString> set = SetOf<CString>({L"a", L"b", L"c"});
    set.SetFlag(1, true);
    XSet<CString> marked = SetOf<CString>({L"old"});
    set.GetSubset(marked, true);
    EXPECT_EQ(ValuesOf(marked), (std::vector<CString>{L"b"}));
    EXPECT_FALSE(marked.GetFlag(0));
    EXPECT_FALSE(XSet<CString>(set).GetFlag(1));
    marked = set;
    EXPECT_FALSE(marked.GetFlag(1));
    marked.Copy(nullptr);
    EXPECT_EQ(marked.Size(), 3);

    set.Copy(set);
    EXPECT_TRUE(set.GetFlag(1)) << "a set copied onto itself stays as it is";
    set.GetSubset(set, false);
    EXPECT_EQ(ValuesOf(set), (std::vector<CString>{L"a", L"c"}));
}

TEST(XSet, SizeDecidesBeforeValues) {
    EXPECT_TRUE(SetOf({9}) < SetOf({1, 2}));
    EXPECT_FALSE(SetOf({1, 3}) < SetOf({1, 2}));
    EXPECT_TRUE(SetOf({1, 2}) < SetOf({1, 3}));
    EXPECT_FALSE(SetOf({1, 2}) < SetOf({1, 2}));
}

TEST(XSet, SortsIntsAndTextsOverTheirWholeRange) {
    XSet<int> ints = SetOf({1, INT_MIN, -1, INT_MAX, 0});
    ints.Sort();
    EXPECT_EQ(ValuesOf(ints), (Ints{INT_MIN, -1, 0, 1, INT_MAX}));

    const std::wstring longer = L"ABCDEFGHIJ";  // agrees with the next in more than the front that is packed
    const std::vector<CString> ascending = {
        L"",
        std::wstring(1, L'\0'),
        L"A",
        longer.substr(0, 9),
        CString{longer},
        L"ABCDEFGHIK",
        L"A\x7F",
        L"A\x7F\x01",
        L"A\xC4",
        L"A\xE4",
        L"A\xD800",
        L"A\U0001F600",
        L"A\xE000",
        std::wstring(1, L'\x7FFFFFFF'),
    };
    for (std::size_t i = 1; i < ascending.size(); ++i) ASSERT_LT(ascending[i - 1], ascending[i]) << i;
    std::vector<CString> shuffled = ascending;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937{5});
    XSet<CString> texts;
    for (const CString& text : shuffled) texts.Insert(text, /*unique*/ false);
    texts.Sort();
    EXPECT_EQ(ValuesOf(texts), ascending);
}

TEST(XSet, SortTakesFlagsAlong) {
    XSet<int> set = SetOf({3, 1, 2});
    set.SetFlag(0, true);
    set.Sort([](const XSetData<int>& a, const XSetData<int>& b) { return b.GetValue() - a.GetValue(); });
    EXPECT_EQ(ValuesOf(set), (Ints{3, 2, 1}));
    EXPECT_TRUE(set.GetFlag(0));
    set.SetSorted(false);
    set.Sort();
    EXPECT_TRUE(set.GetFlag(2));
}

TEST(XSet, AComparisonWithoutAnyOrderCostsTheOrderOnly) {
    XSet<int> set;
    for (int i = 0; i < 5000; ++i) set.Insert(i, /*unique*/ false);
    static std::mt19937 random{11};
    for (const auto comparison : {+[](const XSetData<int>&, const XSetData<int>&) { return -1; },
                                  +[](const XSetData<int>&, const XSetData<int>&) { return int(random() % 3) - 1; }}) {
        set.SetSorted(false);
        set.Sort(comparison);
        EXPECT_TRUE(set.IsSorted());
        Ints values = ValuesOf(set);
        std::sort(values.begin(), values.end());
        for (int i = 0; i < 5000; ++i) ASSERT_EQ(values[static_cast<std::size_t>(i)], i);
    }
}

TEST(XSet, UnionKeepsTheDuplicatesOfTheFirstSetOnly) {
    XSet<int> result = SetOf({99});
    result.Union(SetOf({3, 1, 3}), SetOf({2, 3, 2}), XSet<int>::Comp);
    EXPECT_EQ(ValuesOf(result), (Ints{1, 2, 3, 3}));
    EXPECT_TRUE(result.IsSorted());
    result.Union(XSet<int>{}, XSet<int>{}, XSet<int>::Comp);
    EXPECT_TRUE(result.IsEmpty() && result.IsSorted());

    XSet<int> self = SetOf({2, 1});
    self.Union(self, SetOf({3}), XSet<int>::Comp);
    EXPECT_EQ(ValuesOf(self), (Ints{1, 2, 3}));
    self.Union(SetOf({5, 3}), self, nullptr);
    EXPECT_EQ(ValuesOf(self), (Ints{1, 2, 3, 5}));
}

// Values of one tenth are equal, and neighbours by at most two: the second relation is not even transitive.
TEST(XSet, UnionGivesWhatLookingUpAndSortingOneByOneGives) {
    const XSet<int>::Comparison comparisons[] = {
        XSet<int>::Comp,
        [](const XSetData<int>& a, const XSetData<int>& b) { return a.GetValue() / 10 - b.GetValue() / 10; },
        [](const XSetData<int>& a, const XSetData<int>& b) {
            const int difference = a.GetValue() - b.GetValue();
            return difference >= -2 && difference <= 2 ? 0 : difference;
        },
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
            XSet<int> result;
            result.Union(a, b, comparison);
            ASSERT_EQ(ValuesOf(result), ValuesOf(expected)) << "round " << round;
        }
    }
}

TEST_F(XSetOfMoody, ElementsAreMovedNotCopied) {
    for (int i = 0; i < 100; ++i) set.Insert(i, /*unique*/ false);
    EXPECT_EQ(Moody::copies, 100) << "one for each value, none for growing";
    set.Delete(0);
    set.Sort();
    set.SetSorted(false);
    set.Sort(
        [](const XSetData<Moody>& a, const XSetData<Moody>& b) { return b.GetValue().value - a.GetValue().value; });
    EXPECT_EQ(Moody::copies, 100);
    EXPECT_EQ(set.GetConstRefAt(0).value, 99);
}

TEST_F(XSetOfMoody, AFailedCopyLeavesTheElementsCopiedSoFar) {
    XSet<Moody> target;
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failCopyAt = 3;
                  target.Copy(set);
              }),
              Texts{L"Exception in 'XSet<T>::Copy()'"});
    EXPECT_EQ(NumbersOf(target), (Ints{30, 10}));
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failCopyAt = 2;
                  target = set;
              }),
              Texts{L"Exception in 'XSet<T>::operator=()'"});
    EXPECT_EQ(NumbersOf(target), Ints{30});
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failCopyAt = 2;
                  const XSet<Moody> copy{set};
                  EXPECT_EQ(copy.Size(), 1);
              }),
              Texts{L"Exception in 'XSet<T>::XSet()'"});
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failCopyAt = 1;
                  set.GetSubset(target, true);
              }),
              Texts{L"Exception in 'XSet<T>::GetSubset()'"});
}

TEST_F(XSetOfMoody, AFailedChangeShowsItsBoxAndGivesItsFallback) {
    const Moody value{5};
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failCopyAt = 1;
                  EXPECT_FALSE(set.Insert(value, /*unique*/ false));
              }),
              Texts{L"Exception in 'XSet<T>::Insert()'"});
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failCopyAt = 1;
                  EXPECT_EQ(set.Find(value, XSet<Moody>::Comp), -1);
              }),
              Texts{L"Exception in 'XSet<T>::Find()'"});
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failAssign = true;
                  set.Delete(0);
              }),
              Texts{L"Exception in 'XSet<T>::Delete()'"});
    EXPECT_EQ(BoxesOf([&] { set.Sort(ThrowingComparison); }), Texts{L"Exception in 'XSet<T>::Sort()'"});
    EXPECT_FALSE(set.IsSorted());
    EXPECT_EQ(BoxesOf([&] { EXPECT_EQ(set.Find(value, ThrowingComparison), -1); }),
              Texts{L"Exception in 'XSet<T>::Find()'"});
    EXPECT_EQ(NumbersOf(set), (Ints{30, 10, 20}));
    XSet<Moody> result;
    EXPECT_EQ(BoxesOf([&] { result.Union(set, set, ThrowingComparison); }), Texts{L"Exception in 'XSet<T>::Union()'"});
}

TEST_F(XSetOfMoody, AFailedOrderIsNoOrder) {
    const XSet<Moody> other{set};
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failLess = true;
                  EXPECT_FALSE(set < other);
              }),
              Texts{L"Exception in 'XSet<T>::operator<()'"});
    const XSetData<Moody> one{1};
    const XSetData<Moody> two{2};
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failLess = true;
                  EXPECT_FALSE(one < two);
              }),
              Texts{L"Exception in 'XSetData<T>::operator<()'"});
    BoxesOf([&] {
        Moody::failLess = true;
        EXPECT_EQ(XSet<Moody>::Comp(one, two), 0);
        set.Sort();
    });
    EXPECT_EQ(set.Size(), 3);
}

TEST_F(XSetOfMoody, AFailedAssignmentOfAnElementLeavesTheFlag) {
    XSetData<Moody> target{1};
    XSetData<Moody> source{2};
    source.SetFlag(true);
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failAssign = true;
                  target = source;
              }),
              Texts{L"Exception in 'XSetData<T>::operator=()'"});
    EXPECT_FALSE(target.GetFlag());
    target = source;
    EXPECT_TRUE(target.GetFlag());
    EXPECT_EQ(target.GetValue().value, 2);
}

TEST_F(XSetOfMoody, ADefaultValueThatFailsIsTriedOnceMore) {
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failDefaults = 1;
                  EXPECT_EQ(set.GetConstRefAt(-1).value, 0);
              }),
              Texts{L"Exception in 'XSet<T>::GetConstRefAt()'"});
    EXPECT_EQ(BoxesOf([&] {
                  Moody::failDefaults = 1;
                  EXPECT_EQ(set.GetRefAt(-1).value, 0);
              }),
              Texts{L"Exception in 'XSet<T>::GetRefAt()'"});
}

TEST_F(XSetOfMoody, ABoxThatFailsIsAbsorbedToo) {
    const MessageBoxHandler before = SetMessageBoxHandler([](const CString&, unsigned, unsigned) -> int { throw 1; });
    Moody::failCopyAt = 1;
    EXPECT_FALSE(set.Insert(set.GetConstRefAt(0), /*unique*/ false));
    SetMessageBoxHandler(before);
}

// The template as a whole fits a host's own type.
struct OwnNumber {
    int number = 0;
    bool operator<(const OwnNumber& other) const { return number < other.number; }
};
template class XSet<OwnNumber>;

TEST(XSetOfOwnType, AFailingDestructorIsShownAndEndsThere) {
    struct Bomb {
        bool isArmed = false;
        bool operator<(const Bomb&) const { return false; }
        ~Bomb() noexcept(false) {
            if (isArmed) throw 7;
        }
    };
    BoxRecorder recorder;
    {
        XSet<Bomb> set;
        set.Insert(Bomb{}, /*unique*/ false);
        set.GetAt(0)->isArmed = true;
    }
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSet<T>::~XSet()'");
}

TEST(XSetOfOwnType, AUnionWhoseComparisonFailsIsTheFirstSetSorted) {
    XSet<int> a;
    XSet<int> b;
    for (const int number : {3, 1}) a.Insert(number, /*unique*/ false);
    b.Insert(2, /*unique*/ false);
    BoxRecorder recorder;
    XSet<int> both;
    both.Union(a, b, [](const XSetData<int>&, const XSetData<int>&) -> int { throw 7; });
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSet<T>::Union()'");
    ASSERT_EQ(both.Size(), 2);
    EXPECT_EQ(both.GetConstRefAt(0), 1);
    EXPECT_TRUE(both.IsSorted());
}
