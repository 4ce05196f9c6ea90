#include "veltrane/platform/sources/detail/askedfile.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/openfile.h"

namespace veltrane::detail {

namespace {

NativeFile Open(const std::string& spelled, Spelling spelling) {
    return spelling == Spelling::Exact ? OpenWithoutWaiting(spelled, O_RDONLY) : OpenForReading(spelled);
}

}  // namespace

AskedFile::AskedFile(CStringView path, Spelling spelling) {
    KeptFiles* const keeper = KeptFiles::Current();
    if (keeper) m_Kept = keeper->Find(path, spelling);
    if (m_Kept) return;
    errno = 0;
    const NativeFile file = Open(SpelledPath(path), spelling);
    const int error = errno;
    if (!keeper) {
        if (!ReadSmall(file)) m_Own.Read(file, error);
        return;
    }
    m_Kept = std::make_shared<KeptFile>();
    m_Kept->file.Read(file, error);
    if (m_Kept->file.Result() != SourceReading::Failed)
        keeper->Keep(path, spelling, m_Kept);  // the next question may have more luck
}

// FIONREAD costs half of an fstat. Of a regular file it gives the bytes that are left; most devices do not know it, and
// those that do, as a terminal or a pipe, have no position to read at. What it leaves open is for TextFile to find out.
bool AskedFile::ReadSmall(const NativeFile& file) {
    int size = 0;
    if (!file || ioctl(file.Handle(), FIONREAD, &size) != 0 || size <= 0 || size >= int{SMALL_SIZE}) return false;
    const ssize_t count = Retried([&] { return pread(file.Handle(), m_SmallBytes, SMALL_SIZE, 0); });
    if (count != size) return false;  // it is changing, or its size is beyond an int
    m_Own.Take({m_SmallBytes, static_cast<std::size_t>(count)});
    return true;
}

}  // namespace veltrane::detail
