#include "veltrane/foundation/xoci.h"

#include <climits>

#include "support/oci.h"
#include "support/support.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

void Add(XOCI::XError& record, std::int32_t status, void* handle = nullptr, const wchar_t* message = L"Cannot fetch") {
    record.Add(status, L".\\xcursor", L"XCursor::Fetch", 88, message, handle);
}

TEST(XError, DescribesEachStatusWithoutTheClient) {
    struct {
        std::int32_t status;
        const wchar_t* message;
    } const cases[] = {
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
    const ClientGuard guard{0, 942, "ORA-00942\n"};
    XOCI::XError record;
    Add(record, 0, &record);
    EXPECT_EQ(record.GetCount(), 0);
    for (const auto& [status, message] : cases) {
        SCOPED_TRACE(status);
        Add(record, status, status == -1 ? nullptr : &record);
        const XOCI::XErrorEntry* entry = record.GetAt(record.GetCount() - 1);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->message, message);
        EXPECT_EQ(entry->number, status);
        EXPECT_EQ(entry->oraNumber, 0);
    }
    EXPECT_EQ(guard.Asked().count, 0) << "only an error with a handle asks it";
}

TEST(XError, TakesTextAndNumbersFromTheClient) {
    struct {
        const char* what;
        const char* client;
        const wchar_t* message;
        const wchar_t* text;
        int oraNumber;
    } const cases[] = {
        {"usual", "ORA-00942: no table\n", L"M", L"M: ORA-00942: no table!", 942},
        {"five digits at most", "ORA-123456\n", L"M", L"M: ORA-123456!", 12345},
        {"fewer digits", "ORA-7x\n", L"M", L"M: ORA-7x!", 7},
        {"a sign, no digits", "ORA--7\n", L"M", L"M: ORA--7!", 0},
        {"the first of two", "ORA-00001\nORA-00002\n", L"M", L"M: ORA-00001\nORA-00002!", 1},
        {"in the caller's message, in front", "ORA-00002\n", L"ORA-00001", L"ORA-00001: ORA-00002!", 0},
        {"no ORA", "9876543\n", L"M", L"M: 9876543!", 0},
        {"the last character goes, whatever it is", "text", L"M", L"M: tex!", 0},
        {"empty", "", L"M", L"M: !", 0},
    };
    for (const auto& [what, client, message, text, oraNumber] : cases) {
        SCOPED_TRACE(what);
        const ClientGuard guard{0, 942, client};
        XOCI::XError record;
        Add(record, -1, &record, message);
        ASSERT_EQ(record.GetCount(), 1);
        EXPECT_EQ(record.GetAt(0)->message, text);
        EXPECT_EQ(record.GetAt(0)->number, 942);
        EXPECT_EQ(record.GetAt(0)->oraNumber, oraNumber);
    }
}

TEST(XError, PassesOverTheColumnThatIsNullAndKeepsTheNumberOfItsFirstEntry) {
    const ClientGuard guard{0, 1405, "ORA-01405: fetched column value is NULL\n"};
    XOCI::XError record;
    Add(record, -1, &record);
    EXPECT_EQ(record.GetCount(), 0);
    EXPECT_EQ(record.GetNumber(), 0);
    Add(record, 100);
    Add(record, 99);
    Add(record, -1, &record);
    EXPECT_EQ(record.GetNumber(), 100);
    EXPECT_EQ(record.GetCount(), 2);
    for (const int outside : {-1, 2}) EXPECT_EQ(record.GetAt(outside), nullptr);
    record.Clear();
    EXPECT_EQ(record.GetNumber(), 0);
    EXPECT_EQ(record.GetCount(), 0);
    EXPECT_EQ(record.GetAt(0), nullptr);
}

TEST(XError, ListsTheLastEntryFirst) {
    XOCI::XError record;
    Add(record, 100);
    record.Add(-1, L".\\xdb", L"XDb::Open", 7, L"100%s", nullptr);
    CString text{L"overwritten"};
    record.GetErrorText(text, L"head");
    EXPECT_EQ(
        text,
        L"head\n\tReason: 100%s\t[method: 'XDb::Open', file: '.\\xdb', line: '7']"
        L"\n\tReason: Oracle OCI-Error: 'OCI_NO_DATA'\t[method: 'XCursor::Fetch', file: '.\\xcursor', line: '88']");
    EXPECT_EQ(XOCI::XError{}.GetErrorText(L"head"), L"head");
}

}  // namespace
