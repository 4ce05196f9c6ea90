#include "summary.h"

#include "printable.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/tool/output.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int TABULATOR_WIDTH = 8;

CString LabelOf(const XOptionItem& item) {
    CString label;
    item.GetOptionName(label);
    if (item.GetOptionIndex() != -1) label += FormatText(L"[%d]", item.GetOptionIndex());
    return label;
}

// The table counts the tabulators after the bare name; an index must not move the column.
CString TabulatorsAfter(const CString& label, const XOptionItem& item) {
    CString name;
    item.GetOptionName(name);
    const int column = name.GetLength() / TABULATOR_WIDTH + item.GetNrTabulators();
    const CString tabulators = GetTabulator(label, column);
    return tabulators.IsEmpty() ? GetTabulator(1) : tabulators;
}

CString OriginText(const OptionOrigin& origin) {
    if (origin.file.IsEmpty()) return LayerName(origin.layer);
    return FormatText(L"%s %s:%d [%s]", LayerName(origin.layer), origin.file, origin.line, origin.section);
}

// Lone surrogates (bytes that were not valid UTF-8) are written as escapes too: JSON must be valid UTF-8.
CString JsonText(const CString& text) {
    CString json = L"\"";
    for (const wchar_t element : text.View()) {
        const bool isSurrogate = element >= 0xD800 && element <= 0xDFFF;
        if (element == L'"' || element == L'\\') {
            json += L'\\';
            json += element;
        } else if (IsBelowBlank(element) || isSurrogate) {
            json += FormatText(L"\\u%04x", static_cast<unsigned>(element));
        } else {
            json += element;
        }
    }
    return json + L'"';
}

CString JsonList(const XSetInt& list) {
    CString json = L"[";
    for (int i = 0; i < list.Size(); ++i) {
        if (i > 0) json += L',';
        json += FormatText(L"%d", list.GetConstRefAt(i));
    }
    return json + L']';
}

// Without brackets: a line of the summary continues with other fields.
CString JsonSource(const OptionOrigin& origin) {
    CString json = FormatText(L"\"source\":\"%s\"", LayerName(origin.layer));
    if (origin.file.IsEmpty()) return json;
    return json + FormatText(L",\"file\":%s,\"line\":%d,\"section\":%s", JsonText(origin.file), origin.line,
                             JsonText(origin.section));
}

CString JsonCandidates(const OptionCandidates& found) {
    CString json;
    for (const OptionOrigin& origin : found.candidates) {
        json += (json.IsEmpty() ? L"{" : L",{") + JsonSource(origin);
        if (!origin.file.IsEmpty()) json += L",\"key\":" + JsonText(origin.key);
        if (origin.word >= 0) json += FormatText(L",\"word\":%d", origin.word);
        json += L",\"text\":" + JsonText(origin.text) + L"}";
    }
    return L"[" + json + L"]";
}

}  // namespace

void PrintSummary(XOption& options) {
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption == eOptionTitle) continue;
        const CString name = row->szLongName;
        for (const auto* item = options.GetFirstOptionItem(name); item; item = options.GetNextOptionItem(name)) {
            const CString label = LabelOf(*item);
            PrintLine(label + TabulatorsAfter(label, *item) + Printable(item->GetOptionValue()) + L"\t(" +
                      OriginText(options.GetOptionOrigin(item)) + L")");
        }
    }
}

void PrintSummaryAsJson(XOption& options) {
    const std::vector<OptionCandidates> candidates = options.GetAllOptionCandidates(L"");
    auto found = candidates.begin();
    for (auto* item = options.GetFirstOptionItem(L""); item; item = options.GetNextOptionItem(L"")) {
        CString name;
        item->GetOptionName(name);
        CString line = FormatText(L"{\"option\":%s,\"index\":%d,\"value\":%s", JsonText(name), item->GetOptionIndex(),
                                  JsonText(item->GetOptionValue()));
        if (item->GetID() == eOptionObsoleteClasses) line += L",\"list\":" + JsonList(*item->GetOptionIList());
        line += L"," + JsonSource(options.GetOptionOrigin(item));
        PrintLine(line + L",\"candidates\":" + JsonCandidates(*found++) + L"}");
    }
}
