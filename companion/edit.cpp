#include "edit.h"

#include <algorithm>
#include <utility>

#include "printable.h"
#include "request.h"
#include "unifieddiff.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/text/internal/utf16.h"
#include "veltrane/platform/text/internal/windows1252.h"

namespace veltrane::config {

using namespace detail;

namespace {

constexpr std::wstring_view FILE_BLANKS = L" \t\v\f\x1A";  // that the readers remove from both ends

std::string InUtf16(const CString& text, SourceEncoding encoding) {
    const bool isLittle = encoding == SourceEncoding::Utf16LittleEndian;
    const Utf16Order order = isLittle ? Utf16Order::LittleEndian : Utf16Order::BigEndian;
    std::string bytes;
    for (const wchar_t element : text.View()) AppendUtf16(bytes, static_cast<char32_t>(element), order);
    return bytes;
}

// A character without a byte becomes '?', which is not read as that character.
std::string InWindows1252(const CString& text) {
    std::string bytes;
    for (const wchar_t element : text.View()) {
        int byte = 0xFF;
        while (byte >= 0 && FromWindows1252(static_cast<std::uint8_t>(byte)) != element) --byte;
        bytes += byte < 0 ? '?' : static_cast<char>(byte);
    }
    return bytes;
}

}  // namespace

FileEdit::FileEdit(const CString& path, std::string bytes) : m_Path(path), m_Bytes(std::move(bytes)) {
    const SourceReplacement replacement{m_Path, m_Bytes};
    m_View = ReadProfileLines(m_Path);
}

const SourceLine& FileEdit::LastEntry(const SourceLine& header) const {
    using enum SourceLine::Kind;
    const SourceLine* last = &header;
    for (int number = header.number + 1; HasLine(number) && Line(number).kind != Section; ++number) {
        if (Line(number).kind == Entry) last = &Line(number);
    }
    return *last;
}

// Old files without a mark keep one byte for each character.
std::string FileEdit::Encoded(const CString& text) const {
    using enum SourceEncoding;
    const bool isWindows1252 = m_View.encoding == Utf8 && m_View.hasWindows1252;
    std::string bytes = IsUtf16() ? InUtf16(text, m_View.encoding) : isWindows1252 ? InWindows1252(text) : ToUtf8(text);
    if (DecodeSource(bytes, m_View.encoding) == text) return bytes;
    throw Refusal{FormatText(L"'%s' has a character that %s cannot hold", Printable(text),
                             isWindows1252 ? L"a file in Windows-1252" : L"the file")};
}

void FileEdit::Replace(const SourceRange& place, const CString& text) {
    m_Pieces.push_back({place, Encoded(text)});
}

void FileEdit::SetValue(const SourceLine& entry, const CString& value) {
    RequireValue(value);
    Replace(entry.valuePlace, entry.isQuoted ? value : QuotedValue(value));
}

// The line end nearby: that of the line itself, of the one before it or of the next one that has one.
std::string FileEdit::EndNear(int number) const {
    const auto& lines = m_View.lines;
    const auto at = std::max(number - 1, 0);
    for (const int near : {at, at - 1, at + 1}) {
        if (near < 0 || near >= static_cast<int>(lines.size())) continue;
        const SourceLine& line = lines[static_cast<std::size_t>(near)];
        if (line.endLength > 0) return m_Bytes.substr(line.place.End(), line.endLength);
    }
    return Encoded(L"\n");
}

void FileEdit::InsertAfter(int number, const std::vector<CString>& lines) {
    const std::string end = EndNear(number);
    std::string bytes;
    const bool isAfterLast = number > 0 && number == static_cast<int>(m_View.lines.size());
    const bool isEndInFront = isAfterLast && EndsWithoutEnd();
    for (const CString& line : lines) bytes += isEndInFront ? end + Encoded(line) : Encoded(line) + end;
    const std::uint32_t start = number > 0 ? Line(number).place.End() + Line(number).endLength : StartOfText();
    m_Pieces.push_back({{start, 0}, std::move(bytes)});
}

std::uint32_t FileEdit::StartOfText() const {
    using enum SourceEncoding;
    return m_View.encoding == Utf8 ? 0 : m_View.encoding == Utf8WithMark ? 3 : 2;
}

void FileEdit::Remove(const SourceLine& line) {
    m_Pieces.push_back({{line.place.start, line.place.length + line.endLength}, {}});
}

std::vector<EditPiece> FileEdit::Pieces() const {
    std::vector<EditPiece> pieces = m_Pieces;
    const auto byStart = [](const EditPiece& piece) { return piece.place.start; };
    std::ranges::stable_sort(pieces, {}, byStart);
    if (pieces.empty() || !EndsWithoutEnd()) return pieces;
    // Removing the last line also removes the end before it, unless the lines before it are removed too.
    auto line = m_View.lines.rbegin();
    for (auto piece = pieces.rbegin(); piece != pieces.rend() && line != m_View.lines.rend(); ++piece, ++line) {
        const bool isGone = piece->bytes.empty() && piece->place.start == line->place.start &&
                            piece->place.length == line->place.length + line->endLength;
        if (!isGone) break;
    }
    const bool isLastGone = line != m_View.lines.rbegin();
    if (!isLastGone || line == m_View.lines.rend() || line->endLength == 0) return pieces;
    pieces.push_back({{line->place.End(), line->endLength}, {}});
    std::ranges::stable_sort(pieces, {}, byStart);
    return pieces;
}

std::string FileEdit::Result() const {
    std::string result;
    result.reserve(m_Bytes.size());
    std::size_t at = 0;
    for (const EditPiece& piece : Pieces()) {
        result.append(m_Bytes, at, piece.place.start - at);
        result += piece.bytes;
        at = piece.place.End();
    }
    return result.append(m_Bytes, at);
}

std::string FileEdit::Diff(const std::string& name) const {
    const auto shown = [this](const std::string& bytes) {
        return IsUtf16() ? ToUtf8(DecodeSource(std::string_view{bytes}.substr(StartOfText()), m_View.encoding)) : bytes;
    };
    return UnifiedDiff(name, shown(m_Bytes), shown(Result()));
}

const wchar_t* ReasonAgainstValue(const CString& value) {
    if (value.IsEmpty()) return L"an empty value in a file counts as no value";
    if (value.FindOneOf(L"\r\n") >= 0 || value.Find(L'\0') >= 0) return L"it does not fit on one line";
    return value.GetLength() > XConfiguration::MAX_VALUE ? L"it is longer than the 2,047 characters that are read"
                                                         : nullptr;
}

void RequireValue(const CString& value) {
    const wchar_t* const reason = ReasonAgainstValue(value);
    if (reason) throw Refusal{FormatText(L"no file can hold the value: %s", reason)};
}

CString QuotedValue(const CString& value) {
    const std::wstring_view text = value.View();
    if (text.empty()) return value;
    const auto isBlank = [](wchar_t element) { return FILE_BLANKS.find(element) != FILE_BLANKS.npos; };
    const bool isPlain = !isBlank(text.front()) && !isBlank(text.back()) && text[0] != L'"' && text[0] != L'\'';
    return isPlain ? value : L"\"" + value + L"\"";
}

}  // namespace veltrane::config
