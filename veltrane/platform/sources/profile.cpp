#include "veltrane/platform/sources/profile.h"

#include <algorithm>
#include <string_view>

#include "veltrane/platform/sources/detail/profilescan.h"
#include "veltrane/platform/sources/detail/sourcefile.h"
#include "veltrane/platform/sources/internal/linenumbers.h"
#include "veltrane/platform/text/cstring.h"
#include "veltrane/platform/text/internal/decoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

std::wstring_view WithoutTrailingBlanks(const wchar_t* text) noexcept {
    std::wstring_view view = text ? std::wstring_view{text} : std::wstring_view{};
    while (view.ends_with(L' ')) view.remove_suffix(1);
    return view;
}

// The caller's buffer, which may have no room at all: check before writing.
class AnswerBuffer {
public:
    AnswerBuffer(wchar_t* buffer, unsigned capacity) noexcept : m_Buffer(buffer), m_Capacity(buffer ? capacity : 0) {}

    /// Adds an element while there is room for one NUL after it.
    bool Put(wchar_t element) noexcept {
        if (m_Length + 1 >= m_Capacity) return false;
        m_Buffer[m_Length++] = element;
        return true;
    }

    bool PutText(FileText text) noexcept {
        while (!text.bytes.empty()) {
            text.bytes.remove_prefix(PutAscii(text.bytes));
            if (!text.bytes.empty() && !Put(CutFileCharacter(text))) return false;
        }
        return true;
    }

    void PutText(std::wstring_view text) noexcept {
        for (const wchar_t element : text) {
            if (!Put(element)) return;
        }
    }

    unsigned EndValue() noexcept {
        if (m_Capacity > 0) m_Buffer[m_Length] = L'\0';
        return m_Length;
    }

    /// A list ends with a NUL of its own, two if it is empty. One that did not fit gives up an element for its last
    /// name's NUL.
    unsigned EndList(bool isCut) noexcept {
        if (isCut && m_Length > 0) --m_Length;
        if (m_Capacity > 0) m_Buffer[m_Length] = L'\0';
        if ((isCut || m_Length == 0) && m_Length + 1 < m_Capacity) m_Buffer[m_Length + 1] = L'\0';
        return m_Length;
    }

private:
    /// Adds the ASCII at the front as far as there is room, nearly always all of it. @return how much that was
    std::size_t PutAscii(std::string_view bytes) noexcept {
        const std::size_t room = std::min<std::size_t>(bytes.size(), m_Capacity - std::min(m_Length + 1, m_Capacity));
        wchar_t* const to = m_Buffer + m_Length;
        std::size_t count = 0;
        for (; count < room && static_cast<signed char>(bytes[count]) >= 0; ++count) to[count] = bytes[count];
        m_Length += static_cast<unsigned>(count);
        return count;
    }

    wchar_t* m_Buffer;
    unsigned m_Capacity;
    unsigned m_Length = 0;
};

/// The sections of a file from its index.
struct IndexedSections {
    const ProfileIndex& index;
    std::size_t number = 0;

    bool Next(std::string_view& name) noexcept { return index.NextSection(number, name); }
};

/// One question to a file.
class Question {
public:
    Question(SourceFile& file, AnswerBuffer& answer) : m_Answer(answer), m_Text(file.Text()), m_Index(file.Profile()) {}

    unsigned Ask(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText) {
        if (!section) return m_Index ? List(IndexedSections{*m_Index}) : List(ProfileSections{m_Text});
        std::string_view lines;
        const bool hasSection = FindSection(ProfileName{section}, lines);
        if (!key) return List(ProfileKeys{lines});
        if (hasSection && FindValue(ProfileName{section}, lines, ProfileName{key})) {
            m_Answer.PutText(m_Text.Piece(m_Value));
        } else {
            m_Answer.PutText(WithoutTrailingBlanks(defaultText));
        }
        return m_Answer.EndValue();
    }

    /// Line of the value, counted only here; 0 for a list or when nothing was found.
    int Line() const noexcept {
        if (!m_Value.data()) return 0;
        const auto place = static_cast<std::size_t>(m_Value.data() - m_Text.bytes.data());
        return m_Index ? m_Index->LineNumber(place) : LineNumber(m_Text.bytes, place);
    }

private:
    bool FindSection(const ProfileName& name, std::string_view& lines) const {
        if (m_Index) return m_Index->FindSection(name, lines);
        return ProfileSections{m_Text}.Find(name, lines);
    }
    bool FindValue(const ProfileName& section, std::string_view lines, const ProfileName& key) {
        if (m_Index) return m_Index->FindValue(section, lines, key, m_Value);
        return FindProfileValue(m_Text.Piece(lines), key, m_Value);
    }

    // What comes after a full buffer is not looked at.
    template <class Names>
    unsigned List(Names names) {
        for (std::string_view name; names.Next(name);) {
            if (name.empty()) continue;  // an empty name would end the list
            if (!m_Answer.PutText(m_Text.Piece(name)) || !m_Answer.Put(L'\0')) {
                return m_Answer.EndList(/*isCut*/ true);
            }
        }
        return m_Answer.EndList(/*isCut*/ false);
    }

    AnswerBuffer& m_Answer;
    FileText m_Text;
    const ProfileIndex* m_Index;
    std::string_view m_Value;
};

// Lines are counted only when asked for.
unsigned Ask(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText, wchar_t* buffer, unsigned capacity,
             const wchar_t* fileName, int* line) {
    AskedFile asked{fileName};
    AnswerBuffer answer{buffer, capacity};
    Question question{asked.File(), answer};
    const unsigned count = question.Ask(section, key, defaultText);
    if (line) *line = question.Line();
    return count;
}

}  // namespace

unsigned GetPrivateProfileStringW(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
                                  wchar_t* buffer, unsigned capacity, const wchar_t* fileName) {
    return Ask(section, key, defaultText, buffer, capacity, fileName, nullptr);
}

unsigned veltrane::detail::GetProfileStringAndLine(const wchar_t* section, const wchar_t* key,
                                                   const wchar_t* defaultText, wchar_t* buffer, unsigned capacity,
                                                   const wchar_t* fileName, int& line) {
    return Ask(section, key, defaultText, buffer, capacity, fileName, &line);
}
