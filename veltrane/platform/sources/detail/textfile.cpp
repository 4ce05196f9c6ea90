#include "veltrane/platform/sources/detail/textfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "veltrane/platform/text/utf16.h"
#include "veltrane/platform/text/utf8.h"

namespace veltrane::detail {

namespace {

/// Why a file is not read, as far as its status tells; Done for one that can be.
SourceReading Examine(const NativeFile& file, int error, std::size_t& size) noexcept {
    struct stat status;
    if (!file)
        return error == ENOENT || error == ENOTDIR || error == 0 ? SourceReading::Missing : SourceReading::Failed;
    if (fstat(file.Handle(), &status) != 0) return SourceReading::Failed;
    if (S_ISDIR(status.st_mode)) return SourceReading::Folder;
    if (!S_ISREG(status.st_mode)) return SourceReading::NotRegular;
    size = static_cast<std::size_t>(status.st_size);
    return size <= TextFile::MAX_SIZE ? SourceReading::Done : SourceReading::TooLarge;
}

std::string Utf8OfUtf16(std::string_view bytes, Utf16Order order) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (Utf16Reader reader{bytes, order}; reader.More();) AppendCodePoint(text, reader.Next());
    return text;
}

}  // namespace

void TextFile::Read(const NativeFile& file, int error) {
    std::size_t size = 0;
    m_Reading = Examine(file, error, size);
    if (m_Reading == SourceReading::Done) m_Reading = ReadBytes(file, size);
    if (m_Reading == SourceReading::Done) Take({m_Bytes.get(), m_nSize});
}

// One byte more than the size, so that the end of a file that tells its size shows at once. Files of the system and of
// some file systems claim to be empty.
SourceReading TextFile::ReadBytes(const NativeFile& file, std::size_t size) {
    constexpr std::size_t leastRoom = 4096;
    for (std::size_t room = size + 1;; room = std::max(2 * room, leastRoom)) {
        MakeRoom(room);
        while (m_nSize < room) {
            const ssize_t count = Retried([&] { return read(file.Handle(), m_Bytes.get() + m_nSize, room - m_nSize); });
            if (count < 0) return SourceReading::Failed;
            if (count == 0) return SourceReading::Done;
            m_nSize += static_cast<std::size_t>(count);
        }
        if (room > MAX_SIZE) return SourceReading::TooLarge;
    }
}

void TextFile::MakeRoom(std::size_t room) {
    auto bytes = std::make_unique_for_overwrite<char[]>(room);
    std::copy_n(m_Bytes.get(), m_nSize, bytes.get());
    m_Bytes = std::move(bytes);
}

void TextFile::Take(std::string_view bytes) {
    const bool isLittle = bytes.starts_with("\xFF\xFE");
    const bool isBig = bytes.starts_with("\xFE\xFF");
    const bool isMarked = bytes.starts_with("\xEF\xBB\xBF");
    if (isLittle || isBig) {
        m_Encoding = isLittle ? SourceEncoding::Utf16LittleEndian : SourceEncoding::Utf16BigEndian;
        m_Converted = Utf8OfUtf16(bytes.substr(2), isLittle ? Utf16Order::LittleEndian : Utf16Order::BigEndian);
        m_Text = m_Converted;
        m_WithSurrogates = true;
        m_Bytes.reset();
    } else {
        if (isMarked) m_Encoding = SourceEncoding::Utf8WithMark;
        m_Text = bytes.substr(isMarked ? 3 : 0);
    }
}

}  // namespace veltrane::detail
