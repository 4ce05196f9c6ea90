#include <climits>

#include "collections/sets.h"
#include "veltrane/collections/xstringpair.h"

// A moody number that lives on the heap of a set, and knows how many of its kind live.
class Subject : public Moody {
public:
    static inline int alive = 0;

    explicit Subject(int number = 0) : Moody(number) { ++alive; }
    Subject(const Subject& other) : Moody(other) { ++alive; }
    ~Subject() noexcept(false) {
        --alive;
        if (mood.first == DESTROY) throw MakeError(XSite{L".\\inner", L"Subject::~Subject", 7}, L"No!");
    }

    bool GetFlag() const { return Try(FLAG, isMarked); }
    void SetFlag(bool flag) { isMarked = Try(FLAG, flag); }
    int Compare(const Subject& other) const { return value - other.value; }
    int FullCompare(const Subject& other) const { return other.value - value; }

    bool isMarked = false;
};

using Set = XSetP<Subject>;
constexpr int NOTHING = -99;  // stands for a null pointer

static void Fill(Set& set, std::initializer_list<int> values) {
    for (const int value : values) set.Insert(value == NOTHING ? nullptr : new Subject(value));
}

static Ints ValuesOf(const Set& set) {
    Ints values;
    for (int i = 0; i < set.Size(); ++i) values.push_back(set.GetConstAt(i) ? set.GetConstAt(i)->value : NOTHING);
    return values;
}

class XSetPOfSubjects : public testing::Test {
protected:
    XSetPOfSubjects() { Fill(set, {30, 10, 20}); }
    ~XSetPOfSubjects() override {
        Moody::mood = {};
        set.Clear();
        EXPECT_EQ(Subject::alive, m_nBefore) << "an object was left over or deleted twice";
    }

    Set set;
    const int m_nBefore = (set.GetRefAt(-1), Subject::alive);  // the shared empty objects stay alive
};

TEST_F(XSetPOfSubjects, OperationsLeaveObjectsAndSortedMarkAsTheySay) {
    // clang-format off
    struct {
        const char* what; void (*action)(Set& set, Set& other); Ints after; bool sorted;  // other holds 20, 40, 20
    } const cases[] = {
        {"DeleteObj", [](auto& s, auto&) { for (int at : {-1, 3, 1}) s.DeleteObj(at); }, {30, 20}, false},
        {"DeleteData", [](auto& s, auto&) { s.DeleteData(Subject{99}); s.DeleteData(*s.GetAt(1)); }, {30, 20}, false},
        {"DeleteIf", [](auto& s, auto&) { Fill(s, {NOTHING}); s.DeleteIf([](auto& o) { return o.value > 10; }); }, {10, NOTHING}, false},
        {"Sort", [](auto& s, auto&) { s.Sort(); s.DeleteObj(0); s.SetFlag(true); }, {20, 30}, true},
        {"Sort of one", [](auto& s, auto&) { s.Clear(); Fill(s, {1}); s.Sort(); }, {1}, false},
        {"Clear", [](auto& s, auto&) { s.Sort(); s.Clear(); }, {}, false},
        {"Insert", [](auto& s, auto&) { s.Sort(); Fill(s, {1}); }, {10, 20, 30, 1}, false},
        {"operator=", [](auto& s, auto& o) { Fill(o, {NOTHING}); s.Sort(); s = o; }, {20, 40, 20, NOTHING}, false},
        {"a copy onto itself", [](auto& s, auto&) { s.Sort(); s.Copy(s); s.Copy(nullptr); }, {10, 20, 30}, true},
        {"Sub", [](auto& s, auto& o) { Set all{&s}; s.Clear(); s.Sub(all, o); s.Sub(o, all); EXPECT_TRUE(all.IsSorted() && o.IsSorted()); }, {10, 30, 20, 40}, false},
        {"Intersection", [](auto& s, auto& o) { s.Intersection(s, o); }, {10, 20, 30, 20}, false},
        {"GetSubset", [](auto& s, auto& o) { o.SetFlag(1, true); Fill(o, {NOTHING}); o.GetSubset(s, false); o.GetSubset(o, true); EXPECT_EQ(ValuesOf(o), Ints{40}); }, {20, 20}, false},
        {"null is least", [](auto& s, auto&) { Fill(s, {NOTHING}); EXPECT_EQ(s.FindPos(nullptr, -1), 3); s.Sort(); s.Sub(s, s); }, {NOTHING, 10, 20, 30}, true},
        {"positions outside", [](auto& s, auto& o) { Fill(o, {NOTHING}); for (int at : {-1, 3, 4}) EXPECT_TRUE(!o.GetAt(at) && &o.GetRefAt(at) == &s.GetRefAt(9) && &o.GetConstRefAt(at) == &s.GetConstRefAt(9)); }, {30, 10, 20}, false},
        {"null of another set", [](auto& s, auto&) { EXPECT_EQ(Set(static_cast<const Set*>(nullptr)).Size(), 0); s.DeleteObj(2); }, {30, 10}, false},
    };
    // clang-format on
    for (const auto& [what, action, after, sorted] : cases) {
        Set other, target{set};
        Fill(other, {20, 40, 20});
        action(target, other);
        other.Clear();
        EXPECT_EQ(ValuesOf(target), after) << what;
        EXPECT_EQ(target.IsSorted(), sorted) << what;
    }
}

TEST_F(XSetPOfSubjects, FindPosGoesOnFromStartOnlyInASortedSet) {
    EXPECT_EQ(set.FindPos(Subject{30}, 3), 0) << "unsorted: start is not used";
    Fill(set, {20, 20});
    set.Sort();
    const std::pair<int, int> cases[] = {{0, 1}, {1, 1}, {2, 2}, {3, 3}, {4, -1}, {5, -1}, {INT_MAX, -1}};
    for (const auto& [start, position] : cases) EXPECT_EQ(set.FindPos(Subject{20}, start), position) << start;
    for (const int value : {10, 20, 30}) EXPECT_EQ(set.Find(Subject{value}, -1)->value, value);
    for (const int start : {-1, 0}) EXPECT_EQ(set.Find(Subject{15}, start), nullptr);
}

TEST_F(XSetPOfSubjects, ComparesSizesThenObjects) {
    Set other;
    Fill(other, {30, 10});
    EXPECT_EQ(set.Compare(other), 1);
    EXPECT_TRUE(other < set && !(set < other));
    Fill(other, {25});
    EXPECT_EQ(set.Compare(other), -5);
    EXPECT_EQ(set.FullCompare(other), 5);
    EXPECT_TRUE(set < other && !(other < set) && !(set < Set{set}));
    other.DeleteObj(2);
    Fill(other, {NOTHING});
    EXPECT_EQ(set.Compare(other), 1) << "null is less";
    EXPECT_EQ(other.Compare(Set{other}), 0);
}

TEST_F(XSetPOfSubjects, FailuresBecomeErrorsOfTheOperation) {
    using S = Subject;
    // clang-format off
    struct {
        S::Action mood; void (*action)(Set& s);
        const wchar_t* where;  // the operation, after the element type
        const wchar_t* doing;  // the words of its messages
        const wchar_t* below;  // the reason from the element; null if there is none
    } const cases[] = {
        {S::COPY, [](Set& s) { Set{}.Copy(s); }, L"Copy", L"copying a XSetP<T>!", nullptr},
        {S::COPY, [](Set& s) { Set{s}; }, L"XSetP", L"copying a XSetP<T>!", L"An unknown exception occured when copying a XSetP<T>!"},
        {S::COPY, [](Set& s) { Set{&s}; }, L"XSetP", L"copying a XSetP<T>!", L"An unknown exception occured when copying a XSetP<T>!"},
        {S::COPY, [](Set& s) { Set{} = s; }, L"operator =", L"copying a XSetP<T>!", L"An unknown exception occured when copying a XSetP<T>!"},
        {S::LESS, [](Set& s) { s.Sort(); }, L"Sort", L"sorting a XSetP<T>!", nullptr},
        {S::LESS, [](Set& s) { static_cast<void>(s < Set{s}); }, L"operator <", L"comparing two XSetP<T>!", nullptr},
        {S::FLAG, [](Set& s) { s.GetFlag(1); }, L"GetFlag", L"getting the flag of element #1 of a XSetP<T>!", nullptr},
        {S::FLAG, [](Set& s) { s.SetFlag(true); }, L"SetFlag", L"setting the flag for all elements of a XSetP<T>!", L"An unknown exception occured when setting the flag for element #0 of a XSetP<T>!"},
        {S::NONE, [](Set& s) { s.GetFlag(3); }, L"GetFlag", L"getting the flag of element #3 of a XSetP<T>!", L"Index <3> holds no object!"},
        {S::NONE, [](Set& s) { s.GetFlag(4); }, L"GetFlag", L"getting the flag of element #4 of a XSetP<T>!", L"Index <4> is out of bounds [0,3]!"},
        {S::NONE, [](Set&) { Set{}.SetFlag(0, true); }, L"SetFlag", L"setting the flag for element #0 of a XSetP<T>!", L"Index <0> is out of bounds [0,-1]!"},
        {S::DESTROY, [](Set&) { Set all; Fill(all, {1}); all.DeleteObj(0); }, L"DeleteObj", L"deleting an element from a XSetP<T>!", L"No!"},
        {S::DESTROY, [](Set&) { Set all; Fill(all, {1, 2}); all.Clear(); }, L"Clear", L"cleaning-up a XSetP<T>!", L"No!"},  // both are deleted
    };
    // clang-format on
    Fill(set, {NOTHING});
    for (const auto& [mood, action, where, doing, below] : cases) {
        Moody::mood = {mood, 1};
        const XException error = ErrorOf([&, run = action] { run(set); });
        const CString message = below ? FormatText(L"Error %s\r\nreason: \t%s", doing, below)
                                      : FormatText(L"An unknown exception occured when %s", doing);
        EXPECT_EQ(error.GetMessage(), message);
        EXPECT_EQ(error.GetNumber(), -1);
        EXPECT_EQ(error.GetLocation().Find(FormatText(L"<XSetP<class Subject>::%s> in [XSet], line [", where)), 0);
        EXPECT_EQ(error.GetLocation().Find(L"<XSetP<class Subject>::CheckLimits> in [XSet]") > 0, mood == S::NONE);
        EXPECT_EQ(ValuesOf(set), (Ints{30, 10, 20, NOTHING}));
    }
}

TEST_F(XSetPOfSubjects, ReadAccessorsShowABoxInstead) {
    BoxRecorder recorder;
    Moody::mood = {Moody::LESS, 1};
    EXPECT_EQ(set.Find(*set.GetAt(1), -1), nullptr);
    Moody::mood = {Moody::COPY, 1};
    set.GetSubset(*std::make_unique<Set>(), false);
    Moody::mood = {Moody::DESTROY, 1};
    Fill(*std::make_unique<Set>(), {1, 2});
    ASSERT_EQ(recorder.boxes.size(), 3U);
    EXPECT_EQ(recorder.boxes[0].text, L"Exception in 'XSetP<T>::Find()'");
    EXPECT_EQ(recorder.boxes[1].text, L"Exception in 'XSetP<T>::GetSubset()'");
    EXPECT_EQ(recorder.boxes[2].text, L"Exception in 'XSetP<T>::~XSetP()'");
}

TEST(XSetStringPairs, AreOrderedByTheFirstStringAndAlwaysMarked) {
    const XStringPair ascending[] = {{L"A", L"x"}, {L"a", L"x"}, {L"a", L"y"}, {L"b", L""}, {L"b", L""}};
    XSetStringPairs pairs, out;
    for (int i = 4; i >= 0; --i) pairs.InsertPair(ascending[i].GetFirst(), ascending[i].GetSecond());
    pairs.Sort();
    pairs.SetFlag(false);
    pairs.GetSubset(out, true);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(out.GetConstRefAt(i).FullCompare(ascending[i]), 0);
}
