#include "platform/profile.h"

#include <string_view>

#include "platform/cstring.h"
#include "platform/detail/filetext.h"
#include "platform/detail/profilescan.h"
#include "platform/detail/textfile.h"

namespace {

std::wstring_view WithoutTrailingBlanks(const wchar_t* text) noexcept {
    std::wstring_view view = text ? std::wstring_view{text} : std::wstring_view{};
    while (view.ends_with(L' ')) view.remove_suffix(1);
    return view;
}

// The caller's buffer; whoever writes asks for room first, as there may be none at all.
class AnswerBuffer {
public:
    AnswerBuffer(wchar_t* buffer, unsigned capacity) noexcept : m_Buffer(buffer), m_Capacity(buffer ? capacity : 0) {}

    /// Adds an element while there is room for one NUL behind it.
    bool Put(wchar_t element) noexcept {
        if (m_Length + 1 >= m_Capacity) return false;
        m_Buffer[m_Length++] = element;
        return true;
    }

    bool PutText(std::string_view bytes, bool withSurrogates) noexcept {
        while (!bytes.empty()) {
            if (!Put(TakeFileCharacter(bytes, withSurrogates))) return false;
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
    wchar_t* m_Buffer;
    unsigned m_Capacity;
    unsigned m_Length = 0;
};

// What is behind a full buffer is not looked at.
template <class Names>
unsigned List(AnswerBuffer& answer, bool withSurrogates, Names names) {
    for (std::string_view name; names.Next(name);) {
        if (name.empty()) continue;  // it would end the list for every reader
        if (!answer.PutText(name, withSurrogates) || !answer.Put(L'\0')) return answer.EndList(/*isCut*/ true);
    }
    return answer.EndList(/*isCut*/ false);
}

}  // namespace

unsigned GetPrivateProfileStringW(const wchar_t* section, const wchar_t* key, const wchar_t* defaultText,
                                  wchar_t* buffer, unsigned capacity, const wchar_t* fileName) {
    const TextFile file{fileName};
    const bool withSurrogates = file.WithSurrogates();
    ProfileSections sections{file.Text(), withSurrogates};
    AnswerBuffer answer{buffer, capacity};
    if (!section) return List(answer, withSurrogates, sections);

    std::string_view lines;
    const bool hasSection = sections.Find(ProfileName{section}, lines);
    if (!key) return List(answer, withSurrogates, ProfileKeys{lines});

    std::string_view value;
    if (hasSection && FindProfileValue(lines, ProfileName{key}, withSurrogates, value)) {
        answer.PutText(value, withSurrogates);
    } else {
        answer.PutText(WithoutTrailingBlanks(defaultText));
    }
    return answer.EndValue();
}
