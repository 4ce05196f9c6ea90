#include "platform/detail/textfile.h"

#include <unistd.h>

#include <memory>
#include <utility>

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

}  // namespace

TextFile::TextFile(const CString& path) {
    if (const FileBytes* const kept = Kept().Find(path)) {
        m_Bytes = *kept;
        Recode(m_Bytes.View());
    } else {
        Read(path);
    }
}

void TextFile::Read(const CString& path) {
    const InputFile input = OpenForReading(SpelledPath(path));
    const std::size_t size = input && input.Size() <= MAX_SIZE ? input.Size() : 0;
    const bool isKept = KeptFiles::AreWanted();
    char* buffer = m_SmallBytes;
    if (size > SMALL_SIZE || isKept) {
        const auto data = std::make_shared_for_overwrite<char[]>(size);
        buffer = data.get();
        m_Bytes = {data, size};
    }
    m_Bytes.size = ReadUpTo(input.file, buffer, size);
    if (isKept) Kept().Keep(path, m_Bytes);
    Recode({buffer, m_Bytes.size});
}

void TextFile::Recode(std::string_view bytes) {
    const bool isLittle = bytes.starts_with("\xFF\xFE");
    const bool isBig = bytes.starts_with("\xFE\xFF");
    if (isLittle || isBig) {
        m_Converted = Utf8OfUtf16(bytes.substr(2), isLittle ? Utf16Order::LittleEndian : Utf16Order::BigEndian);
        m_Text = m_Converted;
        m_WithSurrogates = true;
        m_Bytes = {};
    } else {
        m_Text = bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    }
}
