#include "foundation/xoci.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/oci.h"
#include "support/support.h"

namespace {

constexpr int LINE = 88;

void Add(XOCI::XError& record, std::int32_t status, void* handle = nullptr, const wchar_t* message = L"Cannot fetch") {
    record.Add(status, L".\\xcursor", L"XCursor::Fetch", LINE, message, handle);
}

TEST(XError, DescribesEachStatus) {
    struct {
        std::int32_t status;
        const wchar_t* message;  // null: no entry
    } const cases[] = {
        {0, nullptr},
        {1, L""},
        {-1, L"Cannot fetch"},
        {-2, L"Oracle OCI-Error: 'OCI_INVALID_HANDLE'"},
        {99, L"Oracle OCI-Error: 'OCI_NEED_DATA'"},
        {100, L"Oracle OCI-Error: 'OCI_NO_DATA'"},
        {-3123, L"Oracle OCI-Error: 'OCI_STILL_EXECUTING'"},
        {-24200, L"Oracle OCI-Error: 'OCI_CONTINUE'"},
        {7, L"Unknown OCI-Error!"},
        {INT_MIN, L"Unknown OCI-Error!"},
    };
    for (const auto& [status, message] : cases) {
        SCOPED_TRACE(status);
        XOCI::XError record;
        Add(record, status);
        EXPECT_EQ(record.GetNumber(), status);
        ASSERT_EQ(record.GetCount(), message ? 1 : 0);
        if (!message) continue;
        const XOCI::XErrorEntry& entry = *record.GetAt(0);
        EXPECT_EQ(entry.file, L".\\xcursor");
        EXPECT_EQ(entry.method, L"XCursor::Fetch");
        EXPECT_EQ(entry.line, LINE);
        EXPECT_EQ(entry.message, message);
        EXPECT_EQ(entry.number, status);
        EXPECT_EQ(entry.oraNumber, 0);
    }
}

TEST(XError, TakesTextAndNumbersFromTheClient) {
    struct {
        const char* what;
        std::int32_t number;
        const char* client;
        const wchar_t* message;
        const wchar_t* text;
        int oraNumber;
    } const cases[] = {
        {"usual", 942, "ORA-00942: no table\n", L"M", L"M: ORA-00942: no table!", 942},
        {"five digits at most", 1, "ORA-123456\n", L"M", L"M: ORA-123456!", 12345},
        {"fewer digits", 1, "ORA-7x\n", L"M", L"M: ORA-7x!", 7},
        {"no digits", 1, "ORA-x\n", L"M", L"M: ORA-x!", 0},
        {"the first of two", 1, "ORA-00001\nORA-00002\n", L"M", L"M: ORA-00001\nORA-00002!", 1},
        {"in the caller's message, in front", 1, "ORA-00002\n", L"ORA-00001", L"ORA-00001: ORA-00002!", 0},
        {"no ORA", 1, "text\n", L"M", L"M: text!", 0},
        {"the last character goes, whatever it is", 1, "text", L"M", L"M: tex!", 0},
        {"empty", 1, "", L"M", L"M: !", 0},
    };
    for (const auto& [what, number, client, message, text, oraNumber] : cases) {
        SCOPED_TRACE(what);
        const ClientGuard guard{0, number, client};
        XOCI::XError record;
        Add(record, -1, &record, message);
        ASSERT_EQ(record.GetCount(), 1);
        EXPECT_EQ(record.GetNumber(), number);
        EXPECT_EQ(record.GetAt(0)->message, text);
        EXPECT_EQ(record.GetAt(0)->number, number);
        EXPECT_EQ(record.GetAt(0)->oraNumber, oraNumber);
    }
}

TEST(XError, AsksTheClientOnlyForAnErrorWithAHandle) {
    const ClientGuard guard{0, 942, "ORA-00942\n"};
    XOCI::XError record;
    for (const std::int32_t status : {0, 1, -2, 100}) Add(record, status, &record);
    Add(record, -1);
    EXPECT_EQ(guard.Asked().count, 0);
    EXPECT_EQ(record.GetAt(3)->message, L"Cannot fetch");
    EXPECT_EQ(record.GetAt(3)->number, -1);
}

TEST(XError, PassesOverTheColumnThatIsNull) {
    const ClientGuard guard{0, 1405, "ORA-01405: fetched column value is NULL\n"};
    XOCI::XError record;
    Add(record, -1, &record);
    EXPECT_EQ(record.GetCount(), 0);
    EXPECT_EQ(record.GetNumber(), 0);
    Add(record, 100);
    Add(record, -1, &record);
    EXPECT_EQ(record.GetCount(), 1);
    EXPECT_EQ(record.GetNumber(), 100) << "a record with entries keeps its number";
}

TEST(XError, KeepsTheNumberOfItsFirstEntry) {
    XOCI::XError record;
    Add(record, 0);
    Add(record, 99);
    Add(record, 100);
    EXPECT_EQ(record.GetNumber(), 99);
    EXPECT_EQ(record.GetCount(), 2);
    EXPECT_EQ(record.GetAt(1)->number, 100);
    EXPECT_EQ(record.GetAt(2), nullptr);
    EXPECT_EQ(record.GetAt(-1), nullptr);
    record.Clear();
    EXPECT_EQ(record.GetNumber(), 0);
    EXPECT_EQ(record.GetCount(), 0);
    EXPECT_EQ(record.GetAt(0), nullptr);
}

TEST(XError, ListsTheLastEntryFirst) {
    XOCI::XError record;
    CString text{L"overwritten"};
    record.GetErrorText(text, L"head");
    EXPECT_EQ(text, L"head");
    Add(record, 100);
    record.Add(-1, L".\\xdb", L"XDb::Open", 7, L"100%s", nullptr);
    record.GetErrorText(text, L"head");
    EXPECT_EQ(
        text,
        L"head\n\tReason: 100%s\t[method: 'XDb::Open', file: '.\\xdb', line: '7']"
        L"\n\tReason: Oracle OCI-Error: 'OCI_NO_DATA'\t[method: 'XCursor::Fetch', file: '.\\xcursor', line: '88']");
    EXPECT_EQ(record.GetErrorText(L"head"), text);
}

}  // namespace
