#include "veltrane/platform/sources/detail/textfile.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/openfile.h"
#include "veltrane/platform/text/utf16.h"
#include "veltrane/platform/text/utf8.h"

namespace veltrane::detail {

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

TextFile::TextFile(CStringView path) {
    KeptFiles* const kept = KeptFiles::Current();
    if (const FileBytes* const bytes = kept ? kept->Find(path) : nullptr) {
        m_Bytes = *bytes;
        Recode(m_Bytes.View());
    } else {
        Read(path, kept);
    }
}

void TextFile::Read(CStringView path, KeptFiles* kept) {
    const NativeFile file = OpenForReading(SpelledPath(path));
    if (!kept && ReadSmall(file)) return;
    const std::size_t regular = RegularSize(file);
    const std::size_t size = regular <= MAX_SIZE ? regular : 0;
    char* buffer = m_SmallBytes;
    if (size > SMALL_SIZE || kept) {
        const auto data = std::make_shared_for_overwrite<char[]>(size);
        buffer = data.get();
        m_Bytes = {data, size};
    }
    m_Bytes.size = ReadUpTo(file, buffer, size);
    if (kept) kept->Keep(path, m_Bytes);
    Recode({buffer, m_Bytes.size});
}

// FIONREAD costs half of an fstat. Of a regular file it gives the bytes that are left; most devices do not know it, and
// those that do, as a terminal or a pipe, have no position to read at. What it leaves open the caller looks at again.
bool TextFile::ReadSmall(const NativeFile& file) {
    int size = 0;
    if (!file || ioctl(file.Handle(), FIONREAD, &size) != 0 || size <= 0 || size >= int{SMALL_SIZE}) return false;
    const ssize_t count = Retried([&] { return pread(file.Handle(), m_SmallBytes, SMALL_SIZE, 0); });
    if (count != size) return false;  // it is changing, or its size is beyond an int
    Recode({m_SmallBytes, static_cast<std::size_t>(count)});
    return true;
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

}  // namespace veltrane::detail
