#include "veltrane/platform/sources/detail/sourcefile.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/internal/foreigncode.h"
#include "veltrane/platform/files/internal/openfile.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/text/internal/utf16.h"
#include "veltrane/platform/text/internal/utf8.h"

namespace veltrane::detail {

namespace {

NativeFile Open(const std::string& spelled, Spelling spelling) {
    return spelling == Spelling::Exact ? OpenWithoutWaiting(spelled, O_RDONLY) : OpenForReading(spelled);
}

/// Why a file is not read, as far as its status tells; Done for one that can be.
SourceReading Examine(const NativeFile& file, int error, std::size_t& size) noexcept {
    struct stat status;
    if (!file)
        return error == ENOENT || error == ENOTDIR || error == 0 ? SourceReading::Missing : SourceReading::Failed;
    if (fstat(file.Handle(), &status) != 0) return SourceReading::Failed;
    if (S_ISDIR(status.st_mode)) return SourceReading::Folder;
    if (!S_ISREG(status.st_mode)) return SourceReading::NotRegular;
    size = static_cast<std::size_t>(status.st_size);
    return size <= SourceFile::MAX_SIZE ? SourceReading::Done : SourceReading::TooLarge;
}

std::string Utf8OfUtf16(std::string_view bytes, Utf16Order order) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (Utf16Reader reader{bytes, order}; reader.More();) AppendCodePoint(text, reader.Next());
    return text;
}

}  // namespace

SourceFile::SourceFile(CStringView path, Spelling spelling) {
    if (const auto replacement = SourceReplacement::Find(path)) {
        if (replacement->size() > MAX_SIZE) m_Reading = SourceReading::TooLarge;
        if (m_Reading == SourceReading::Done) Assign(*replacement);
        return;
    }
    errno = 0;
    const NativeFile file = Open(SpelledPath(path), spelling);
    const int error = errno;
    if (ReadSmall(file)) return;
    std::size_t size = 0;
    m_Reading = Examine(file, error, size);
    if (m_Reading == SourceReading::Done) m_Reading = ReadBytes(file, size);
    if (m_Reading == SourceReading::Done) Assign({m_Bytes.get(), m_nSize});
}

// FIONREAD costs half of an fstat. For a regular file it gives the bytes that are left. Most devices do not support it,
// and those that do, such as a terminal or a pipe, cannot be read at a position.
bool SourceFile::ReadSmall(const NativeFile& file) {
    int size = 0;
    if (!file || ioctl(file.Handle(), FIONREAD, &size) != 0 || size <= 0 || size >= int{SMALL_SIZE}) return false;
    const ssize_t count = Retried([&] { return pread(file.Handle(), m_SmallBytes, SMALL_SIZE, 0); });
    if (count != size) return false;  // it is changing, or its size is beyond an int
    Assign({m_SmallBytes, static_cast<std::size_t>(count)});
    return true;
}

// One byte more than the size, so that one read reaches the end of a file that reports its true size. Files in /proc
// and on some file systems claim to be empty.
SourceReading SourceFile::ReadBytes(const NativeFile& file, std::size_t size) {
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

void SourceFile::MakeRoom(std::size_t room) {
    auto bytes = std::make_unique_for_overwrite<char[]>(room);
    std::copy_n(m_Bytes.get(), m_nSize, bytes.get());
    m_Bytes = std::move(bytes);
}

void SourceFile::Assign(std::string_view bytes) {
    const bool isLittle = bytes.starts_with("\xFF\xFE");
    const bool isBig = bytes.starts_with("\xFE\xFF");
    const bool isMarked = bytes.starts_with("\xEF\xBB\xBF");
    if (isLittle || isBig) {
        m_Encoding = isLittle ? SourceEncoding::Utf16LittleEndian : SourceEncoding::Utf16BigEndian;
        m_Converted = Utf8OfUtf16(bytes.substr(2), isLittle ? Utf16Order::LittleEndian : Utf16Order::BigEndian);
        m_Text = {m_Converted, /*withSurrogates*/ true};
        m_Bytes.reset();
    } else {
        if (isMarked) m_Encoding = SourceEncoding::Utf8WithMark;
        m_Text = {bytes.substr(isMarked ? 3 : 0)};
    }
}

const ProfileIndex* SourceFile::Profile() {
    if (m_nAsked++ == 0) return nullptr;
    if (!m_Profile) m_Profile.emplace(m_Text);
    return m_Profile->IsUsable() ? &*m_Profile : nullptr;
}

RegistryIndex& SourceFile::Registry() {
    if (!m_Registry) m_Registry.emplace(m_Text);
    return *m_Registry;
}

namespace {

/// The files that this thread's snapshot has read, missing ones included. A file whose reading failed is not kept: the
/// next reading may succeed.
class KeptFiles {
public:
    bool AreOutdated() const noexcept { return m_nForeignRuns != ForeignCode::Runs(); }

    /// A file that is read now replaces the one read three files before; a question may still hold that one.
    std::shared_ptr<SourceFile> Get(CStringView path, Spelling spelling) {
        for (const Entry& kept : m_Entries) {
            if (kept.file && kept.spelling == spelling && kept.path.View() == path.View()) return kept.file;
        }
        auto file = std::make_shared<SourceFile>(path, spelling);
        if (file->Result() != SourceReading::Failed) {
            m_Entries[m_nNext++ % m_Entries.size()] = {path.View(), spelling, file};
        }
        return file;
    }

private:
    struct Entry {
        CString path;
        Spelling spelling = Spelling::AnyCase;
        std::shared_ptr<SourceFile> file;
    };
    std::array<Entry, 3> m_Entries;  // the two files of a store and the registry
    std::size_t m_nNext = 0;
    unsigned m_nForeignRuns = ForeignCode::Runs();  // when the first file was read
};

// Of this thread. Plain numbers and addresses: nothing is made when the first snapshot begins or ends, and nothing is
// destroyed while objects that end late may still ask.
thread_local int g_Snapshots = 0;  // alive now
thread_local KeptFiles* g_Kept = nullptr;

/// The file of the snapshot that is in force; null without one.
std::shared_ptr<SourceFile> KeptFile(CStringView path, Spelling spelling) {
    if (g_Snapshots == 0 || ForeignCode::IsRunning()) return nullptr;
    if (g_Kept && g_Kept->AreOutdated()) delete std::exchange(g_Kept, nullptr);
    if (!g_Kept) g_Kept = new KeptFiles;
    return g_Kept->Get(path, spelling);
}

}  // namespace

SourceSnapshot::SourceSnapshot() noexcept {
    ++g_Snapshots;
}

SourceSnapshot::~SourceSnapshot() {
    if (--g_Snapshots == 0) delete std::exchange(g_Kept, nullptr);
}

AskedFile::AskedFile(CStringView path, Spelling spelling) : m_Kept(KeptFile(path, spelling)) {
    if (!m_Kept) m_Own.emplace(path, spelling);
}

}  // namespace veltrane::detail
