#include "platform/trace.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/process.h"
#include "support/environment.h"
#include "support/support.h"

namespace {

/// The environment alone stands for the sources here; it is the simplest one to ask.
class Trace : public testing::Test {
protected:
    void TearDown() override { SetSourceTrace({}); }

    static CString Ask(const CString& name) {
        CString value{L"none"};
        GetEnvironmentText(value, name);
        return value;
    }
    void Record() {
        SetSourceTrace([this](const SourceEvent& event) { m_Events.push_back(event); });
    }

    EnvironmentGuard m_Set{"veltrane_traced", "value"};
    EnvironmentGuard m_Empty{"veltrane_empty", ""};
    std::vector<SourceEvent> m_Events;
};

TEST_F(Trace, ReportsEachQuestionWithItsAnswer) {
    Record();
    for (const wchar_t* name : {L"veltrane_traced", L"veltrane_empty", L"veltrane_missing", L"a=b", L""}) Ask(name);
    struct {
        const wchar_t* key;
        const wchar_t* value;
        bool found;
    } const cases[] = {
        {L"veltrane_traced", L"value", true},
        {L"veltrane_empty", L"", true},
        {L"veltrane_missing", L"", false},
        {L"a=b", L"", false},
        {L"", L"", false},
    };
    ASSERT_EQ(m_Events.size(), std::size(cases));
    for (std::size_t i = 0; i < m_Events.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(m_Events[i].source, SourceEvent::Source::Environment);
        EXPECT_EQ(m_Events[i].key, cases[i].key);
        EXPECT_EQ(m_Events[i].value, cases[i].value);
        EXPECT_EQ(m_Events[i].found, cases[i].found);
        EXPECT_EQ(m_Events[i].file, L"");
        EXPECT_EQ(m_Events[i].section, L"");
        EXPECT_EQ(m_Events[i].line, 0);
    }
}

TEST_F(Trace, EndsWithAnEmptyObserver) {
    Record();
    EXPECT_TRUE(SetSourceTrace({}));
    Ask(L"veltrane_traced");
    EXPECT_TRUE(m_Events.empty());
    EXPECT_FALSE(SetSourceTrace({}));
}

TEST_F(Trace, DoesNotReportWhatTheObserverAsks) {
    int calls = 0;
    CString answer;
    SetSourceTrace([&](const SourceEvent&) {
        ++calls;
        answer = Ask(L"veltrane_traced");
    });
    Ask(L"veltrane_missing");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(answer, L"value");
    Ask(L"veltrane_missing");
    EXPECT_EQ(calls, 2) << "and the next question is reported again";
}

TEST_F(Trace, ChangesNoResultWhenTheObserverThrows) {
    int calls = 0;
    SetSourceTrace([&](const SourceEvent&) {
        ++calls;
        throw std::runtime_error("observer");
    });
    EXPECT_EQ(Ask(L"veltrane_traced"), L"value");
    EXPECT_EQ(Ask(L"veltrane_traced"), L"value");
    EXPECT_EQ(calls, 2);
}

TEST_F(Trace, LetsAnObserverReplaceItself) {
    int calls = 0;
    SetSourceTrace([&, text = CString{L"a text too long to stand in the object itself"}](const SourceEvent&) {
        Record();
        Ask(L"veltrane_missing");
        calls += text.GetLength();  // the observer that runs lives until it returns
    });
    Ask(L"veltrane_traced");
    EXPECT_EQ(calls, 45);
    EXPECT_TRUE(m_Events.empty()) << "one observer a question";
    Ask(L"veltrane_traced");
    EXPECT_EQ(m_Events.size(), 1U);
}

}  // namespace
