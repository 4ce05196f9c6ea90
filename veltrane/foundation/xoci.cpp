#include "veltrane/foundation/xoci.h"

#include <algorithm>
#include <utility>

#include "veltrane/platform/process/oci.h"
#include "veltrane/platform/text/numbers.h"

using namespace veltrane;

namespace XOCI {

namespace {

// The client's published return codes.
constexpr std::int32_t OCI_SUCCESS = 0;
constexpr std::int32_t OCI_ERROR = -1;
constexpr std::int32_t FETCHED_NULL = 1405;  // ORA-01405 only says that a fetched column is null

struct StatusRow {
    std::int32_t status;
    const wchar_t* text;
};

constexpr StatusRow STATUS_ROWS[] = {
    {1, L""},  // OCI_SUCCESS_WITH_INFO
    {-2, L"Oracle OCI-Error: 'OCI_INVALID_HANDLE'"},
    {99, L"Oracle OCI-Error: 'OCI_NEED_DATA'"},
    {100, L"Oracle OCI-Error: 'OCI_NO_DATA'"},
    {-3123, L"Oracle OCI-Error: 'OCI_STILL_EXECUTING'"},
    {-24200, L"Oracle OCI-Error: 'OCI_CONTINUE'"},
};

const wchar_t* StatusText(std::int32_t status) {
    const auto* const row = std::ranges::find(STATUS_ROWS, status, &StatusRow::status);
    return row == std::end(STATUS_ROWS) ? L"Unknown OCI-Error!" : row->text;
}

int OraNumber(const CString& text) {
    const int position = text.Find(L"ORA-");
    const wchar_t first = text[position + 4];
    return position > 0 && first >= L'0' && first <= L'9' ? _wtoi(text.Mid(position + 4, 5)) : 0;
}

// Text, number and ORA number of an entry; number 0 makes no entry.
void DescribeStatus(XErrorEntry& entry, std::int32_t status, const CString& message, void* errorHandle) {
    entry.number = status;
    if (status != OCI_ERROR) {
        if (status != OCI_SUCCESS) entry.message = StatusText(status);
        return;
    }
    const OCIErrorText client = errorHandle ? ReadOCIError(errorHandle) : OCIErrorText{};
    if (!client.available) {
        entry.message = message;
        return;
    }
    entry.number = client.number == FETCHED_NULL ? 0 : client.number;
    // The client's text ends in a line feed.
    entry.message.Format(L"%s: %s!", message, client.text.Left(client.text.GetLength() - 1));
    entry.oraNumber = OraNumber(entry.message);
}

}  // namespace

XError::~XError() = default;

void XError::Add(std::int32_t status, const CString& file, const CString& method, int line, const CString& message,
                 void* errorHandle) {
    auto entry = std::make_unique<XErrorEntry>(XErrorEntry{file, method, line, {}, 0, 0});
    DescribeStatus(*entry, status, message, errorHandle);
    const int number = entry->number;
    if (number != 0) m_Entries.push_back(std::move(entry));
    if (m_nCount == 0) m_nNumber = number;
    m_nCount = static_cast<int>(m_Entries.size());
}

const XErrorEntry* XError::GetAt(int index) const {
    return index >= 0 && index < m_nCount ? m_Entries[static_cast<std::size_t>(index)].get() : nullptr;
}

XErrorEntry* XError::GetAt(int index) {
    return const_cast<XErrorEntry*>(std::as_const(*this).GetAt(index));
}

void XError::GetErrorText(CString& text, const CString& head) const {
    text = GetErrorText(head);
}

CString XError::GetErrorText(const CString& head) const {
    CString text = head;
    for (auto entry = m_Entries.rbegin(); entry != m_Entries.rend(); ++entry) {
        const XErrorEntry& row = **entry;
        text += FormatText(L"\n\tReason: %s\t[method: '%s', file: '%s', line: '%d']", row.message, row.method, row.file,
                           row.line);
    }
    return text;
}

void XError::Clear() {
    m_Entries.clear();
    m_nCount = 0;
    m_nNumber = 0;
}

}  // namespace XOCI
