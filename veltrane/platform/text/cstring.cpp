#include "veltrane/platform/text/cstring.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <utility>

#include "veltrane/platform/text/characters.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/internal/trim.h"
#include "veltrane/platform/text/internal/utf16.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

std::wstring_view WithinLimit(std::wstring_view text) {
    if (text.size() > static_cast<std::size_t>(CString::MAX_LENGTH)) throw std::length_error("CString");
    return text;
}

int Position(std::size_t found) noexcept {
    return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
}

// Walks a text as 16-bit code units.
template <class Fold>
class CodeUnits {
public:
    CodeUnits(std::wstring_view text, Fold fold) noexcept : m_Rest(text), m_Fold(fold) {}

    /// @return the next unit, -1 at the end
    std::int64_t Next() noexcept {
        if (m_Trail != 0) return std::exchange(m_Trail, 0);
        if (m_Rest.empty()) return -1;
        const auto element = static_cast<char32_t>(m_Fold(m_Rest.front()));
        m_Rest.remove_prefix(1);
        if (element < 0x10000) return element;
        m_Trail = TrailSurrogate(element);
        return LeadSurrogate(element);
    }

private:
    std::wstring_view m_Rest;
    Fold m_Fold;
    std::int64_t m_Trail = 0;
};

struct IsOneOf {
    std::wstring_view elements;
    bool operator()(wchar_t element) const noexcept { return elements.find(element) != std::wstring_view::npos; }
};

template <class Fold>
int CompareUnits(std::wstring_view left, std::wstring_view right, Fold fold) noexcept {
    CodeUnits a{left, fold};
    CodeUnits b{right, fold};
    for (;;) {
        const std::int64_t unitA = a.Next();
        const std::int64_t unitB = b.Next();
        if (unitA != unitB) return unitA < unitB ? -1 : 1;
        if (unitA < 0) return 0;
    }
}

}  // namespace

CString::CString(const wchar_t* text) : CString(CStringView{text}.View()) {}

CString::CString(std::wstring_view text) : m_Text(WithinLimit(text)) {}

CString::CString(std::wstring&& text) : m_Text(std::move(text)) {
    WithinLimit(m_Text);
}

CString::CString(wchar_t element, int count) {
    if (count > MAX_LENGTH) throw std::length_error("CString");
    m_Text.assign(static_cast<std::size_t>(std::max(count, 0)), element);
}

int CString::Compare(CStringView other) const noexcept {
    const std::wstring_view left = m_Text;
    const std::wstring_view right = other.View();
    const auto [a, b] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    return CompareUnits({a, left.end()}, {b, right.end()}, std::identity{});
}

std::size_t CString::Hash() const noexcept {
    CodeUnits units{m_Text, std::identity{}};
    std::uint64_t result = 0xCBF29CE484222325;  // FNV-1a, a unit at a time
    for (std::int64_t unit; (unit = units.Next()) >= 0;) {
        result = (result ^ static_cast<std::uint64_t>(unit)) * 0x100000001B3;
    }
    return result;
}

std::string CString::Utf8() const {
    return ToUtf8(*this);
}

int CString::CompareNoCase(CStringView other) const noexcept {
    return CompareUnits(m_Text, other.View(), FoldCharacter);
}

int CString::Find(CStringView text, int start) const noexcept {
    return start < 0 || start >= GetLength() ? -1 : Position(View().find(text.View(), static_cast<std::size_t>(start)));
}

int CString::Find(wchar_t element, int start) const noexcept {
    return start < 0 ? -1 : Position(View().find(element, static_cast<std::size_t>(start)));
}

int CString::ReverseFind(wchar_t element) const noexcept {
    return Position(View().rfind(element));
}

int CString::FindOneOf(CStringView elements) const noexcept {
    return Position(View().find_first_of(elements.View()));
}

CString CString::Left(int count) const {
    return Mid(0, count);
}

CString CString::Right(int count) const {
    return Mid(GetLength() - std::clamp(count, 0, GetLength()));
}

CString CString::Mid(int first) const {
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const {
    const int begin = std::clamp(first, 0, GetLength());
    const int length = std::clamp(count, 0, GetLength() - begin);
    return View().substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(length));
}

int CString::Replace(CStringView oldText, CStringView newText) {
    const std::wstring_view from = oldText.View();
    const std::wstring_view to = newText.View();
    std::size_t found = from.empty() ? std::wstring::npos : m_Text.find(from);
    if (found == std::wstring::npos) return 0;

    std::size_t count = 0;
    for (std::size_t at = found; at != std::wstring::npos; at = m_Text.find(from, at + from.size())) ++count;
    // The length is known before anything is built, so a text that cannot exist costs no memory.
    const std::size_t kept = m_Text.size() - count * from.size();
    if (count > (static_cast<std::size_t>(MAX_LENGTH) - kept) / std::max<std::size_t>(to.size(), 1)) {
        throw std::length_error("CString");
    }

    std::wstring result;
    result.reserve(kept + count * to.size());
    std::size_t begin = 0;
    for (; found != std::wstring::npos; found = m_Text.find(from, begin)) {
        result.append(m_Text, begin, found - begin).append(to);
        begin = found + from.size();
    }
    result.append(m_Text, begin);
    m_Text = std::move(result);
    return static_cast<int>(count);
}

int CString::Replace(wchar_t oldElement, wchar_t newElement) {
    const auto count = std::ranges::count(m_Text, oldElement);
    std::ranges::replace(m_Text, oldElement, newElement);
    return static_cast<int>(count);
}

CString& CString::MakeUpper() {
    std::ranges::transform(m_Text, m_Text.begin(), [](wchar_t element) { return UpperCharacter(element); });
    return *this;
}

CString& CString::MakeLower() {
    std::ranges::transform(m_Text, m_Text.begin(), [](wchar_t element) { return FoldCharacter(element); });
    return *this;
}

CString& CString::Trim() {
    return Keep(Trimmed(View(), IsWhiteSpace));
}

CString& CString::TrimLeft() {
    return Keep(TrimmedLeft(View(), IsWhiteSpace));
}

CString& CString::TrimRight() {
    return Keep(TrimmedRight(View(), IsWhiteSpace));
}

CString& CString::Trim(CStringView elements) {
    return Keep(Trimmed(View(), IsOneOf{elements.View()}));
}

CString& CString::TrimLeft(CStringView elements) {
    return Keep(TrimmedLeft(View(), IsOneOf{elements.View()}));
}

CString& CString::TrimRight(CStringView elements) {
    return Keep(TrimmedRight(View(), IsOneOf{elements.View()}));
}

CString CString::FromNarrow(const char* text) {
    return FromUtf8(text ? text : "");
}

CString& CString::Keep(std::wstring_view part) noexcept {
    const auto begin = static_cast<std::size_t>(part.data() - m_Text.data());
    m_Text.resize(begin + part.size());
    m_Text.erase(0, begin);
    return *this;
}

CString& CString::operator+=(CStringView text) {
    if (text.View().size() > static_cast<std::size_t>(MAX_LENGTH) - m_Text.size()) throw std::length_error("CString");
    m_Text.append(text.View());
    return *this;
}

CString& CString::operator+=(wchar_t element) {
    return *this += std::wstring_view{&element, 1};
}
