#include "veltrane/foundation/xoci.h"

#include <climits>

#include "support/oci.h"
#include "support/support.h"

static void Add(XOCI::XError& record, std::int32_t status, void* handle = nullptr,
                const wchar_t* message = L"Cannot fetch") {
    record.Add(status, ".\\xcursor", "XCursor::Fetch", 88, message, handle);
}

TEST(XError, DescribesEachStatusWithoutTheClient) {
    const ClientGuard guard{0, 942, "ORA-00942\n"};
    XOCI::XError record;
    CString described;
    for (const int status : {0, 1, -1, -2, 99, 100, -3123, -24200, 7, INT_MIN}) {
        Add(record, status, status == -1 ? nullptr : &record);
        const XOCI::XErrorEntry* entry = record.GetAt(record.GetCount() - 1);
        if (entry) described += FormatText(L"%d %d %s\n", entry->number, entry->oraNumber, entry->message);
    }
    EXPECT_EQ(described,
              L"1 0 \n-1 0 Cannot fetch\n"
              L"-2 0 Oracle OCI-Error: 'OCI_INVALID_HANDLE'\n99 0 Oracle OCI-Error: 'OCI_NEED_DATA'\n"
              L"100 0 Oracle OCI-Error: 'OCI_NO_DATA'\n-3123 0 Oracle OCI-Error: 'OCI_STILL_EXECUTING'\n"
              L"-24200 0 Oracle OCI-Error: 'OCI_CONTINUE'\n7 0 Unknown OCI-Error!\n"
              L"-2147483648 0 Unknown OCI-Error!\n");
    EXPECT_EQ(guard.Asked().count, 0) << "only an error with a handle asks it";
}

TEST(XError, TakesTextAndNumbersFromTheClient) {
    const std::tuple<const char*, ClientAnswer, const wchar_t*, const wchar_t*, int, int> cases[] = {
        {"usual", {0, 942, "ORA-00942: no table\n"}, L"M", L"M: ORA-00942: no table!", 942, 942},
        {"with info", {1, 0, "ORA-00000: normal\n"}, L"M", nullptr, 0, 0},
        {"five digits at most", {0, 7, "ORA-123456\n"}, L"M", L"M: ORA-123456!", 7, 12345},
        {"fewer digits", {0, 7, "ORA-7x\n"}, L"M", L"M: ORA-7x!", 7, 7},
        {"a sign, no digits", {0, 7, "ORA--7\n"}, L"M", L"M: ORA--7!", 7, 0},
        {"in the caller's message, in front", {0, 7, "ORA-00002\n"}, L"ORA-00001", L"ORA-00001: ORA-00002!", 7, 0},
        {"no ORA", {0, 7, "9876543\n"}, L"M", L"M: 9876543!", 7, 0},
        {"the last character goes, whatever it is", {0, 7, "text"}, L"M", L"M: tex!", 7, 0},
        {"failed with a code", {-1, 12541, ""}, L"M", L"M: !", 12541, 0},
        {"failed with a text alone", {-1, 0, "lost\n"}, L"M", L"M: lost!", -1, 0},
        {"failed with nothing", {100, 0, ""}, L"M", L"M", -1, 0},
    };
    for (const auto& [what, answer, message, text, number, oraNumber] : cases) {
        const ClientGuard guard{answer.status, answer.number, answer.text};
        XOCI::XError record;
        Add(record, -1, &record, message);
        EXPECT_EQ(std::pair(record.GetNumber(), record.GetCount()), std::pair(number, text ? 1 : 0)) << what;
        const XOCI::XErrorEntry entry = text ? *record.GetAt(0) : XOCI::XErrorEntry{};
        EXPECT_EQ(entry.message, text) << what;
        EXPECT_EQ(std::pair(entry.number, entry.oraNumber), std::pair(number, oraNumber)) << what;
    }
}

TEST(XError, PassesOverTheColumnThatIsNullAndKeepsTheNumberOfItsFirstEntry) {
    const ClientGuard guard{0, 1405, "ORA-01405: fetched column value is NULL\n"};
    XOCI::XError record;
    Add(record, -1, &record);
    EXPECT_EQ(record.GetCount(), 0);
    for (const int status : {100, 99, -1}) Add(record, status, &record);
    EXPECT_EQ(std::pair(record.GetNumber(), record.GetCount()), std::pair(100, 2));
    for (const int outside : {-1, 2}) EXPECT_EQ(record.GetAt(outside), nullptr);
    record.Clear();
    EXPECT_EQ(std::tuple(record.GetNumber(), record.GetCount(), record.GetAt(0)), std::tuple(0, 0, nullptr));
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
