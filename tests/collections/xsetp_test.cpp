#include <memory>
#include <stdexcept>

#include "collections/XSet.h"
#include "collections/xstringpair.h"
#include "support/support.h"

namespace {

// Lives on the heap of a set; knows how many of its kind live, and fails when told to.
class Subject {
public:
    static inline int alive = 0;
    static inline bool failCopy = false;
    static inline bool failLess = false;
    static inline bool failFlag = false;
    static inline bool failDestructor = false;

    static void Reset() { failCopy = failLess = failFlag = failDestructor = false; }

    explicit Subject(int value = 0) : m_nValue(value) { ++alive; }
    Subject(const Subject& other) : m_nValue(other.m_nValue), m_bFlag(other.m_bFlag) {
        if (failCopy) throw std::runtime_error("copy");
        ++alive;
    }
    Subject& operator=(const Subject&) = delete;
    ~Subject() noexcept(false) {
        --alive;
        if (failDestructor) throw MakeError(XSite{L".\\inner", L"Subject::~Subject", 7}, L"No!");
    }

    int Value() const { return m_nValue; }
    bool GetFlag() const {
        if (failFlag) throw 1;
        return m_bFlag;
    }
    void SetFlag(bool flag) {
        if (failFlag) throw 1;
        m_bFlag = flag;
    }
    int Compare(const Subject& other) const { return m_nValue - other.m_nValue; }
    int FullCompare(const Subject& other) const { return other.m_nValue - m_nValue; }
    bool operator<(const Subject& other) const {
        if (failLess) throw std::runtime_error("less");
        return m_nValue < other.m_nValue;
    }

private:
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
        Subject::Reset();
        set.GetConstRefAt(-1);  // the shared empty ones live on
        set.GetRefAt(-1);
        m_nBefore = Subject::alive;
        Fill(set, {30, 10, 20});
    }
    ~XSetPOfSubjects() override {
        Subject::Reset();
        set.Clear();
        EXPECT_EQ(Subject::alive, m_nBefore) << "an object was left over or deleted twice";
    }

    Set set;

private:
    int m_nBefore = 0;
};

// The method names of a location text, newest first, with their sources.
std::vector<std::wstring> MethodsOf(const XException& error) {
    const std::wstring text{error.GetLocation().View()};
    std::vector<std::wstring> methods;
    for (std::size_t begin = text.find(L'<'), end; begin != std::wstring::npos; begin = text.find(L'<', end)) {
        end = text.find(L", line", begin);
        methods.push_back(text.substr(begin, end - begin));
    }
    return methods;
}

using Names = std::vector<std::wstring>;

}  // namespace

TEST_F(XSetPOfSubjects, DeletesWhatItRemovesAndKeepsTheRestInOrder) {
    set.DeleteObj(-1);
    set.DeleteObj(3);
    set.DeleteObj(1);
    EXPECT_EQ(ValuesOf(set), (Ints{30, 20}));
    set.DeleteData(Subject{99});
    set.DeleteData(*set.GetAt(1));
    EXPECT_EQ(ValuesOf(set), Ints{30});
}

TEST_F(XSetPOfSubjects, SortNeedsTwoObjectsToMarkTheSet) {
    Set one;
    Fill(one, {1});
    one.Sort();
    EXPECT_FALSE(one.IsSorted());
    set.Sort();
    EXPECT_TRUE(set.IsSorted());
    EXPECT_EQ(ValuesOf(set), (Ints{10, 20, 30}));
    set.DeleteObj(0);
    set.SetFlag(true);
    EXPECT_TRUE(set.IsSorted());
    Fill(set, {1});
    EXPECT_FALSE(set.IsSorted());
}

TEST_F(XSetPOfSubjects, FindPosGoesOnFromStartOnlyInASortedSet) {
    const Subject thirty{30};
    EXPECT_EQ(set.FindPos(thirty, 3), 0) << "unsorted: start is not used";
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
    const Set byReference{*source};
    const Set byPointer{source.get()};
    set = *source;
    source.reset();
    for (const Set* copy : {&byReference, &byPointer, static_cast<const Set*>(&set)}) {
        EXPECT_EQ(ValuesOf(*copy), (Ints{1, NOTHING, 2}));
    }
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
    EXPECT_EQ(ValuesOf(result), (Ints{10, 30}));
    result.Intersection(set, other);
    EXPECT_EQ(ValuesOf(result), (Ints{10, 30, 20}));
    EXPECT_NE(result.GetAt(2), set.GetAt(1));
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
    EXPECT_EQ(ErrorOf([&] { set.GetFlag(3); }).GetMessage(),
              L"Error getting the flag of element #3 of a XSetP<T>!\r\nreason: \tIndex <3> holds no object!");
    EXPECT_EQ(set.FindPos(nullptr, -1), 3);
    Set other{set};
    EXPECT_EQ(set.Compare(other), 0);
    set.Sort();
    EXPECT_EQ(ValuesOf(set), (Ints{NOTHING, 10, 20, 30}));
    EXPECT_LT(set.Compare(other), 0);
    other.Sub(set, set);
    set.DeleteObj(0);
}

TEST_F(XSetPOfSubjects, APositionOutsideIsAnErrorForFlagsOnly) {
    const XException error = ErrorOf([&] { set.GetFlag(5); });
    EXPECT_EQ(error.GetNumber(), -1);
    EXPECT_EQ(error.GetMessage(),
              L"Error getting the flag of element #5 of a XSetP<T>!\r\n"
              L"reason: \tIndex <5> is out of bounds [0,2]!");
    EXPECT_EQ(ErrorOf([] { Set{}.SetFlag(0, true); }).GetMessage(),
              L"Error setting the flag for element #0 of a XSetP<T>!\r\nreason: \tIndex <0> is out of bounds [0,-1]!");
    Set{}.SetFlag(true);
    for (const int outside : {-1, 3}) {
        EXPECT_EQ(set.GetAt(outside), nullptr);
        EXPECT_EQ(set.GetRefAt(outside).Value(), 0);
    }
}

TEST_F(XSetPOfSubjects, AForeignExceptionBecomesAnErrorOfTheOperation) {
    struct {
        const char* what;
        bool* failure;
        void (*action)(Set&);
        const wchar_t* message;
    } const cases[] = {
        {"copy", &Subject::failCopy, [](Set& s) { Set{}.Copy(s); },
         L"An unknown exception occured when copying a XSetP<T>!"},
        {"copy constructor", &Subject::failCopy, [](Set& s) { Set{s}; },
         L"Error copying a XSetP<T>!\r\nreason: \tAn unknown exception occured when copying a XSetP<T>!"},
        {"sort", &Subject::failLess, [](Set& s) { s.Sort(); },
         L"An unknown exception occured when sorting a XSetP<T>!"},
        {"less", &Subject::failLess, [](Set& s) { static_cast<void>(s < s); },
         L"An unknown exception occured when comparing two XSetP<T>!"},
        {"flag", &Subject::failFlag, [](Set& s) { s.GetFlag(1); },
         L"An unknown exception occured when getting the flag of element #1 of a XSetP<T>!"},
        {"all flags", &Subject::failFlag, [](Set& s) { s.SetFlag(true); },
         L"Error setting the flag for all elements of a XSetP<T>!\r\n"
         L"reason: \tAn unknown exception occured when setting the flag for element #0 of a XSetP<T>!"},
    };
    for (const auto& [what, failure, action, message] : cases) {
        SCOPED_TRACE(what);
        *failure = true;
        EXPECT_EQ(ErrorOf([&, run = action] { run(set); }).GetMessage(), message);
        *failure = false;
        EXPECT_EQ(ValuesOf(set), (Ints{30, 10, 20}));
    }
}

TEST_F(XSetPOfSubjects, AnErrorOfTheObjectTakesTheReasonAlong) {
    Set victims;
    Fill(victims, {1, 2, 3});
    Subject::failDestructor = true;
    const XException one = ErrorOf([&] { victims.DeleteObj(0); });
    EXPECT_EQ(one.GetMessage(), L"Error deleting an element from a XSetP<T>!\r\nreason: \tNo!");
    EXPECT_EQ(ErrorOf([&] { victims.Clear(); }).GetMessage(), L"Error cleaning-up a XSetP<T>!\r\nreason: \tNo!");
    EXPECT_EQ(victims.Size(), 0) << "the others are deleted all the same";

    BoxRecorder recorder;
    {
        Subject::failDestructor = false;
        Set dying;
        Fill(dying, {1, 2});
        Subject::failDestructor = true;
    }
    Subject::failDestructor = false;
    ASSERT_EQ(recorder.boxes.size(), 1u);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSetP<T>::~XSetP()'");
}

TEST_F(XSetPOfSubjects, ReadAccessorsShowABoxInstead) {
    BoxRecorder recorder;
    const Subject ten{10};
    Subject::failLess = true;
    EXPECT_EQ(set.FindPos(ten, -1), -1);
    EXPECT_EQ(set.Find(ten, -1), nullptr);
    Set out;
    Subject::failCopy = true;
    set.GetSubset(out, false);
    std::vector<CString> texts;
    for (const auto& box : recorder.boxes) texts.push_back(box.text);
    EXPECT_EQ(texts, (std::vector<CString>{L"Exception in 'XSetP<T>::Find()'", L"Exception in 'XSetP<T>::Find()'",
                                           L"Exception in 'XSetP<T>::GetSubset()'"}));
}

TEST(XSetP, LocationsNameTheOperationWithTheElementType) {
    XSetStringPairs pairs;
    EXPECT_EQ(MethodsOf(ErrorOf([&] { pairs.SetFlag(2, true); })),
              (Names{L"<XSetP<class XStringPair>::SetFlag> in [XSet]",
                     L"<XSetP<class XStringPair>::CheckLimits> in [XSet]"}));
}

TEST_F(XSetPOfSubjects, ConstructorsAndOperatorsAreNamedAsTheyAreSpelled) {
    Subject::failCopy = true;
    const auto namesOf = [](const std::wstring& text) { return text.substr(text.find(L">::") + 3); };
    Set other;
    const Names assigned = MethodsOf(ErrorOf([&] { other = set; }));
    ASSERT_EQ(assigned.size(), 2u);
    EXPECT_EQ(namesOf(assigned[0]), L"operator => in [XSet]");
    EXPECT_EQ(namesOf(assigned[1]), L"Copy> in [XSet]");
    EXPECT_EQ(namesOf(MethodsOf(ErrorOf([&] { Set{&set}; }))[0]), L"XSetP> in [XSet]");
    Subject::failLess = true;
    EXPECT_EQ(namesOf(MethodsOf(ErrorOf([&] { static_cast<void>(set < set); }))[0]), L"operator <> in [XSet]");
}

TEST(XStringPair, OrdersByTheFirstThenTheSecondString) {
    struct {
        XStringPair less;
        XStringPair more;
    } const cases[] = {{{L"A", L"x"}, {L"a", L"x"}}, {{L"a", L"x"}, {L"a", L"y"}}, {{L"a", L"z"}, {L"b", L""}}};
    for (const auto& [less, more] : cases) {
        EXPECT_TRUE(less < more);
        EXPECT_GT(more.FullCompare(less), 0);
    }
    EXPECT_EQ(XStringPair(L"a", L"b").Compare({L"a", L"b"}), 0);
}

TEST(XSetStringPairs, EveryPairIsMarkedAndMayBeThereTwice) {
    XSetStringPairs pairs;
    pairs.InsertPair(L"x", L"y");
    pairs.InsertPair(L"x", L"y");
    XSetStringPairs out;
    pairs.SetFlag(false);
    pairs.GetSubset(out, true);
    EXPECT_EQ(out.Size(), 2);
    pairs.GetSubset(out, false);
    EXPECT_EQ(out.Size(), 0);
}
