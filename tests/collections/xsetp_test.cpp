#include <memory>
#include <stdexcept>

#include "support/support.h"
#include "veltrane/collections/XSet.h"
#include "veltrane/collections/xstringpair.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// Lives on the heap of a set; knows how many of its kind live, and fails at one kind of action when told to.
class Subject {
public:
    enum Action { NONE, COPY, LESS, FLAG, DESTROY };
    static inline Action failing = NONE;
    static inline int alive = 0;

    explicit Subject(int value = 0) : m_nValue(value) { ++alive; }
    Subject(const Subject& other) : m_nValue(other.m_nValue), m_bFlag(May(COPY) && other.m_bFlag) { ++alive; }
    Subject& operator=(const Subject&) = delete;
    ~Subject() noexcept(false) {
        --alive;
        if (failing == DESTROY) throw MakeError(XSite{L".\\inner", L"Subject::~Subject", 7}, L"No!");
    }

    int Value() const { return m_nValue; }
    bool GetFlag() const { return May(FLAG) && m_bFlag; }
    void SetFlag(bool flag) { m_bFlag = May(FLAG) && flag; }
    int Compare(const Subject& other) const { return m_nValue - other.m_nValue; }
    int FullCompare(const Subject& other) const { return other.m_nValue - m_nValue; }
    bool operator<(const Subject& other) const { return May(LESS) && m_nValue < other.m_nValue; }

private:
    static bool May(Action action) {
        if (failing == action) throw std::runtime_error("told to");
        return true;
    }

    int m_nValue;
    bool m_bFlag = false;
};

using Set = XSetP<Subject>;
using Ints = std::vector<int>;

constexpr int NOTHING = -99;  // stands for a null pointer

void Fill(Set& set, std::initializer_list<int> values) {
    for (const int value : values) set.Insert(value == NOTHING ? nullptr : new Subject(value));
}

Ints ValuesOf(const Set& set) {
    Ints values;
    for (int i = 0; i < set.Size(); ++i) {
        const Subject* subject = set.GetConstAt(i);
        values.push_back(subject ? subject->Value() : NOTHING);
    }
    return values;
}

class XSetPOfSubjects : public testing::Test {
protected:
    XSetPOfSubjects() {
        set.GetConstRefAt(-1);  // the shared empty ones live on
        set.GetRefAt(-1);
        m_nBefore = Subject::alive;
        Fill(set, {30, 10, 20});
    }
    ~XSetPOfSubjects() override {
        Subject::failing = Subject::NONE;
        set.Clear();
        EXPECT_EQ(Subject::alive, m_nBefore) << "an object was left over or deleted twice";
    }

    Set set;

private:
    int m_nBefore = 0;
};

}  // namespace

TEST_F(XSetPOfSubjects, DeletesWhatItRemovesAndKeepsTheRestInOrder) {
    for (const int position : {-1, 3, 1}) set.DeleteObj(position);
    set.DeleteData(Subject{99});
    EXPECT_EQ(ValuesOf(set), (Ints{30, 20}));
    set.DeleteData(*set.GetAt(1));
    EXPECT_EQ(ValuesOf(set), Ints{30});
}

TEST_F(XSetPOfSubjects, SortNeedsTwoObjectsToMarkTheSet) {
    Set one;
    Fill(one, {1});
    one.Sort();
    EXPECT_FALSE(one.IsSorted());
    set.Sort();
    set.DeleteObj(0);
    set.SetFlag(true);
    EXPECT_TRUE(set.IsSorted());
    EXPECT_EQ(ValuesOf(set), (Ints{20, 30}));
    Fill(set, {1});
    EXPECT_FALSE(set.IsSorted());
}

TEST_F(XSetPOfSubjects, FindPosGoesOnFromStartOnlyInASortedSet) {
    EXPECT_EQ(set.FindPos(Subject{30}, 3), 0) << "unsorted: start is not used";
    Fill(set, {20, 20});
    set.Sort();
    const Subject twenty{20};
    struct {
        int start;
        int position;
    } const cases[] = {{0, 1}, {1, 1}, {2, 2}, {3, 3}, {4, -1}, {5, -1}, {INT_MAX, -1}};
    for (const auto& [start, position] : cases) EXPECT_EQ(set.FindPos(twenty, start), position) << start;
    EXPECT_EQ(set.Find(twenty, -1)->Value(), 20);
    EXPECT_EQ(set.FindPos(Subject{15}, -1), -1);
    EXPECT_EQ(set.Find(Subject{99}, 0), nullptr);
}

TEST_F(XSetPOfSubjects, CopiesAreIndependentObjects) {
    auto source = std::make_unique<Set>();
    Fill(*source, {1, NOTHING, 2});
    const Set copy{source.get()};
    set = *source;
    source.reset();
    EXPECT_EQ(ValuesOf(copy), (Ints{1, NOTHING, 2}));
    EXPECT_EQ(ValuesOf(set), (Ints{1, NOTHING, 2}));
    EXPECT_EQ(Set(static_cast<const Set*>(nullptr)).Size(), 0);
    const Subject* first = set.GetAt(0);
    set.Copy(set);
    set.Copy(nullptr);
    EXPECT_EQ(set.GetAt(0), first) << "a set copied onto itself stays as it is";
}

TEST_F(XSetPOfSubjects, ArithmeticAppendsCopiesAndSortsItsArguments) {
    Set other;
    Fill(other, {20, 40, 20});
    Set result;
    result.Sub(set, other);
    result.Intersection(set, other);
    EXPECT_EQ(ValuesOf(result), (Ints{10, 30, 20}));
    EXPECT_TRUE(set.IsSorted() && other.IsSorted());
    set.Intersection(set, other);
    EXPECT_EQ(ValuesOf(set), (Ints{10, 20, 30, 20}));
}

TEST_F(XSetPOfSubjects, ComparesSizesThenObjects) {
    Set other;
    Fill(other, {30, 10});
    EXPECT_EQ(set.Compare(other), 1);
    EXPECT_FALSE(set < other);
    EXPECT_TRUE(other < set);
    Fill(other, {25});
    EXPECT_EQ(set.Compare(other), -5);
    EXPECT_EQ(set.FullCompare(other), 5);
    EXPECT_TRUE(set < other);
    EXPECT_FALSE(other < set);
    EXPECT_FALSE(set < Set{set});
}

TEST_F(XSetPOfSubjects, SubsetsAreTheObjectsWithTheFlag) {
    set.SetFlag(1, true);
    Fill(set, {NOTHING});
    Set out;
    Fill(out, {7});
    set.GetSubset(out, false);
    EXPECT_EQ(ValuesOf(out), (Ints{30, 20}));
    set.GetSubset(set, true);
    EXPECT_EQ(ValuesOf(set), Ints{10});
}

TEST_F(XSetPOfSubjects, NullPointersAreNoTrap) {
    Fill(set, {NOTHING});
    EXPECT_EQ(&set.GetRefAt(3), &set.GetRefAt(-1));
    EXPECT_EQ(&set.GetConstRefAt(3), &set.GetConstRefAt(-1));
    EXPECT_EQ(set.FindPos(nullptr, -1), 3);
    Set other{set};
    EXPECT_EQ(set.Compare(other), 0);
    set.Sort();
    EXPECT_EQ(ValuesOf(set), (Ints{NOTHING, 10, 20, 30}));
    EXPECT_LT(set.Compare(other), 0);
    other.Sub(set, set);
    set.DeleteObj(0);
}

TEST_F(XSetPOfSubjects, FailuresBecomeErrorsOfTheOperation) {
    using enum Subject::Action;
    const wchar_t* const copying =
        L"Error copying a XSetP<T>!\r\nreason: \tAn unknown exception occured when copying a XSetP<T>!";
    struct {
        Subject::Action failing;
        void (*action)(Set& s);
        const wchar_t* where;  // of the operation, behind the element type
        const wchar_t* message;
    } const cases[] = {
        {COPY, [](Set& s) { Set{}.Copy(s); }, L"Copy>", L"An unknown exception occured when copying a XSetP<T>!"},
        {COPY, [](Set& s) { Set{s}; }, L"XSetP>", copying},
        {COPY, [](Set& s) { Set{&s}; }, L"XSetP>", copying},
        {COPY, [](Set& s) { Set{} = s; }, L"operator =>", copying},
        {LESS, [](Set& s) { s.Sort(); }, L"Sort>", L"An unknown exception occured when sorting a XSetP<T>!"},
        {LESS, [](Set& s) { static_cast<void>(s < Set{s}); }, L"operator <>",
         L"An unknown exception occured when comparing two XSetP<T>!"},
        {FLAG, [](Set& s) { s.GetFlag(1); }, L"GetFlag>",
         L"An unknown exception occured when getting the flag of element #1 of a XSetP<T>!"},
        {FLAG, [](Set& s) { s.SetFlag(true); }, L"SetFlag>",
         L"Error setting the flag for all elements of a XSetP<T>!\r\n"
         L"reason: \tAn unknown exception occured when setting the flag for element #0 of a XSetP<T>!"},
        {NONE, [](Set& s) { s.GetFlag(3); }, L"GetFlag>",
         L"Error getting the flag of element #3 of a XSetP<T>!\r\nreason: \tIndex <3> holds no object!"},
        {NONE, [](Set& s) { s.GetFlag(4); }, L"GetFlag>",
         L"Error getting the flag of element #4 of a XSetP<T>!\r\nreason: \tIndex <4> is out of bounds [0,3]!"},
        {NONE, [](Set&) { Set{}.SetFlag(0, true); }, L"SetFlag>",
         L"Error setting the flag for element #0 of a XSetP<T>!\r\nreason: \tIndex <0> is out of bounds [0,-1]!"},
    };
    Fill(set, {NOTHING});
    for (const auto& [failing, action, where, message] : cases) {
        Subject::failing = failing;
        const XException error = ErrorOf([&, run = action] { run(set); });
        Subject::failing = NONE;
        EXPECT_EQ(error.GetMessage(), message);
        EXPECT_EQ(error.GetNumber(), -1);
        const CString location = error.GetLocation();
        const CString method = location.Mid(location.Find(L">::") + 3);
        EXPECT_EQ(method.Find(FormatText(L"%s in [XSet], line [", where)), 0) << ToUtf8(method);
        EXPECT_EQ(ValuesOf(set), (Ints{30, 10, 20, NOTHING}));
    }
    Set{}.SetFlag(true);
    for (const int outside : {-1, 4}) {
        EXPECT_EQ(set.GetAt(outside), nullptr);
        EXPECT_EQ(set.GetRefAt(outside).Value(), 0);
    }
}

TEST_F(XSetPOfSubjects, AnErrorOfTheObjectTakesTheReasonAlong) {
    Set victims;
    Fill(victims, {1, 2, 3});
    BoxRecorder recorder;
    {
        Set dying;
        Fill(dying, {1, 2});
        Subject::failing = Subject::DESTROY;
    }
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSetP<T>::~XSetP()'");
    EXPECT_EQ(ErrorOf([&] { victims.DeleteObj(0); }).GetMessage(),
              L"Error deleting an element from a XSetP<T>!\r\nreason: \tNo!");
    EXPECT_EQ(ErrorOf([&] { victims.Clear(); }).GetMessage(), L"Error cleaning-up a XSetP<T>!\r\nreason: \tNo!");
    EXPECT_EQ(victims.Size(), 0) << "the others are deleted all the same";
}

TEST_F(XSetPOfSubjects, ReadAccessorsShowABoxInstead) {
    BoxRecorder recorder;
    const Subject ten{10};
    Subject::failing = Subject::LESS;
    EXPECT_EQ(set.Find(ten, -1), nullptr);
    Set out;
    Subject::failing = Subject::COPY;
    set.GetSubset(out, false);
    ASSERT_EQ(recorder.boxes.size(), 2u);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSetP<T>::Find()'");
    EXPECT_EQ(recorder.boxes[1].text, L"Exception in 'XSetP<T>::GetSubset()'");
}

TEST(XSetP, LocationsNameTheOperationWithTheElementType) {
    XSetStringPairs pairs;
    const CString location = ErrorOf([&] { pairs.SetFlag(2, true); }).GetLocation();
    EXPECT_EQ(location.Find(L"<XSetP<class XStringPair>::SetFlag> in [XSet], line ["), 0);
    EXPECT_GT(location.Find(L"<XSetP<class XStringPair>::CheckLimits> in [XSet], line ["), 0);
}

TEST(XStringPair, OrdersByTheFirstThenTheSecondString) {
    const XStringPair ascending[] = {{L"A", L"x"}, {L"a", L"x"}, {L"a", L"y"}, {L"b", L""}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(ascending[i] < ascending[i + 1]);
        EXPECT_GT(ascending[i + 1].FullCompare(ascending[i]), 0);
        EXPECT_EQ(ascending[i].Compare(XStringPair{ascending[i]}), 0);
    }
}

TEST(XSetStringPairs, EveryPairIsMarkedAndMayBeThereTwice) {
    XSetStringPairs pairs;
    for (int i = 0; i < 2; ++i) pairs.InsertPair(L"x", L"y");
    pairs.SetFlag(false);
    XSetStringPairs out;
    pairs.GetSubset(out, true);
    EXPECT_EQ(out.Size(), 2);
    EXPECT_EQ(out.GetConstRefAt(1).GetSecond(), L"y");
    pairs.GetSubset(out, false);
    EXPECT_EQ(out.Size(), 0);
}
