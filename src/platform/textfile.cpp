#include "platform/detail/textfile.h"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "platform/detail/nativefile.h"
#include "platform/detail/utf16.h"
#include "platform/detail/utf8.h"
#include "platform/filesystem.h"

namespace {

std::size_t ReadUpTo(const NativeFile& file, char* buffer, std::size_t size) noexcept {
    std::size_t got = 0;
    while (got < size) {
        const ssize_t count = Retried([&] { return read(file.Handle(), buffer + got, size - got); });
        if (count <= 0) break;
        got += static_cast<std::size_t>(count);
    }
    return got;
}

std::string Utf8OfUtf16(std::string_view bytes, Utf16Order order) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (Utf16Reader reader{bytes, order}; reader.More();) AppendUtf8(text, reader.Next());
    return text;
}

/// The bytes of small files as they were read last, for as long as the state of the file says that they are still what
/// it holds. A start asks the same two files for every option; so each question costs one call of the system.
class KeptFiles {
public:
    using Bytes = std::shared_ptr<const std::string>;

    Bytes Find(const std::string& path) const {
        for (const Entry& entry : m_Entries) {
            if (entry.path == path) return entry.state == FileState{path.c_str()} ? entry.bytes : nullptr;
        }
        return nullptr;
    }
    void Keep(const std::string& path, const FileState& state, std::string_view bytes) {
        if (!state.IsSettled()) return;
        Entry* entry = std::ranges::find(m_Entries, path, &Entry::path);
        if (entry == m_Entries.end()) entry = &m_Entries[m_nNext++ % m_Entries.size()];
        *entry = {path, state, std::make_shared<const std::string>(bytes)};
    }

private:
    struct Entry {
        std::string path;
        FileState state;
        Bytes bytes;
    };
    std::array<Entry, 2> m_Entries;  // the basic and the user file of a store
    std::size_t m_nNext = 0;
};

KeptFiles& Kept() {
    static KeptFiles& kept = *new KeptFiles;  // never destroyed: objects that end late may still ask
    return kept;
}

}  // namespace

TextFile::TextFile(const CString& path) {
    const std::string spelled = SpelledPath(path);
    m_Kept = Kept().Find(spelled);
    if (m_Kept) {
        Recode(*m_Kept);
        return;
    }

    const InputFile input = OpenForReading(spelled);
    if (!input || input.Size() > MAX_SIZE) return;
    const bool isSmall = input.Size() <= SMALL_SIZE;
    if (!isSmall) m_Bytes = std::make_unique_for_overwrite<char[]>(input.Size());
    char* const buffer = isSmall ? m_SmallBytes : m_Bytes.get();
    const std::string_view bytes{buffer, ReadUpTo(input.file, buffer, input.Size())};
    if (isSmall) Kept().Keep(spelled, input.state, bytes);
    Recode(bytes);
}

void TextFile::Recode(std::string_view bytes) {
    const bool isLittle = bytes.starts_with("\xFF\xFE");
    const bool isBig = bytes.starts_with("\xFE\xFF");
    if (isLittle || isBig) {
        m_Converted = Utf8OfUtf16(bytes.substr(2), isLittle ? Utf16Order::LittleEndian : Utf16Order::BigEndian);
        m_Text = m_Converted;
        m_WithSurrogates = true;
        m_Bytes.reset();
    } else {
        m_Text = bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    }
}
