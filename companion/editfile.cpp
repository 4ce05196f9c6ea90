#include "editfile.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "places.h"
#include "request.h"
#include "veltrane/platform/files/filesystem.h"

namespace veltrane::config {

using namespace detail;

namespace {

constexpr std::size_t LARGEST = std::size_t{256} << 20;  // largest that the readers read

[[noreturn]] void Refuse(const CString& path, const CString& reason) {
    throw Refusal{FormatText(L"%s cannot be changed: %s", DisplayPath(path), reason)};
}

[[noreturn]] void Refuse(const CString& path, const wchar_t* reason, int error) {
    Refuse(path, FormatText(L"%s (%s)", reason, FromUtf8(std::system_category().message(error))));
}

// ".." must not leave the folder of a drive; the readers stop there.
bool ClimbsBelowDrive(const CString& path) {
    if (path[1] != L':') return false;
    CString parts = L"/" + path.Mid(2) + L"/";
    parts.Replace(L"\\", L"/");
    return parts.Find(L"/../") >= 0;
}

/// The file that a path leads to. For a missing file its folder is resolved.
/// @throws Refusal
std::string FullName(const CString& path) {
    if (ClimbsBelowDrive(path)) Refuse(path, L"its path leaves a drive with '..'");
    const std::string name = MapPath(path);
    if (name.empty()) Refuse(path, L"there is no such drive");
    std::string full = Resolved(name);
    struct stat status;
    if (full.empty() && (errno != ENOENT || lstat(name.c_str(), &status) == 0))
        Refuse(path, L"its path leads nowhere", errno != 0 ? errno : ENOENT);
    if (!full.empty()) return full;
    const std::size_t end = name.rfind('/') + 1;
    const std::string folder = Resolved(end == 0 ? "." : name.substr(0, end));
    if (folder.empty()) Refuse(path, L"its folder cannot be found", errno);
    return folder + '/' + name.substr(end);
}

NativeFile Open(const std::string& name) noexcept {
    return NativeFile{Retried([&] { return open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); })};
}

/// Reads a file from its start; of one that is too large a little more than what is allowed.
bool ReadAll(int file, std::string& bytes) {
    constexpr std::size_t step = 65536;
    for (std::size_t used = 0;;) {
        bytes.resize(std::max(used + step, 2 * used));
        const ssize_t count =
            Retried([&] { return pread(file, &bytes[used], bytes.size() - used, static_cast<off_t>(used)); });
        if (count < 0) return false;
        used += static_cast<std::size_t>(count);
        if (count == 0 || used > LARGEST) {
            bytes.resize(used);
            return true;
        }
    }
}

/// While it lives, no signal ends the process, and a write beyond the limit of a file's size fails like any other.
class SignalsHeld {
public:
    SignalsHeld() noexcept {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &m_Before);
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() {
        sigset_t limit;
        sigemptyset(&limit);
        sigaddset(&limit, SIGXFSZ);
        const timespec now = {};
        while (sigtimedwait(&limit, nullptr, &now) > 0) {
        }
        sigprocmask(SIG_SETMASK, &m_Before, nullptr);
    }

private:
    sigset_t m_Before;
};

/// The access list of a file, in addition to its rights.
struct AccessList {
    static constexpr char NAME[] = "system.posix_acl_access";
    char bytes[XATTR_SIZE_MAX];
    ssize_t size;  // below 1: there is none

    explicit AccessList(int file) noexcept : size(fgetxattr(file, NAME, bytes, sizeof bytes)) {}
};

/// A new file beside another; it removes itself unless it takes that one's name. Nothing here allocates: the program
/// ends at once when memory is short.
class NewFile {
public:
    /// @param name  to be, ending in "XXXXXX"
    explicit NewFile(char* name) noexcept : m_Name(name), m_File(mkostemp(name, O_CLOEXEC)) {}
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (Exists() && m_Name) unlink(m_Name);
    }

    // Each tells whether it has done it; errno says why not.

    bool Exists() const noexcept { return static_cast<bool>(m_File); }
    bool Write(std::string_view bytes) const noexcept {
        while (!bytes.empty()) {
            const ssize_t count = Retried([&] { return write(m_File.Handle(), bytes.data(), bytes.size()); });
            if (count == 0) errno = EIO;
            if (count <= 0) return false;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return Retried([&] { return fsync(m_File.Handle()); }) == 0;
    }
    bool SetOwner(const struct stat& status) const noexcept {
        struct stat own;
        if (fstat(m_File.Handle(), &own) != 0) return false;
        const bool isSame = own.st_uid == status.st_uid && own.st_gid == status.st_gid;
        return isSame || fchown(m_File.Handle(), status.st_uid, status.st_gid) == 0;
    }
    bool SetRights(mode_t rights) const noexcept { return fchmod(m_File.Handle(), rights & 07777) == 0; }
    bool SetAccess(const AccessList& list) const noexcept {
        const auto size = static_cast<std::size_t>(list.size);
        return list.size < 1 || fsetxattr(m_File.Handle(), AccessList::NAME, list.bytes, size, 0) == 0;
    }
    /// @param isNew  whether nobody may have the name yet
    bool RenameTo(const char* name, bool isNew) noexcept {
        if (isNew ? !RenameToFree(name) : rename(m_Name, name) != 0) return false;
        m_Name = nullptr;
        return true;
    }

private:
    // Some file systems know only one of the two calls.
    bool RenameToFree(const char* name) const noexcept {
        if (renameat2(AT_FDCWD, m_Name, AT_FDCWD, name, RENAME_NOREPLACE) == 0) return true;
        return errno == EINVAL && link(m_Name, name) == 0 && unlink(m_Name) == 0;
    }

    const char* m_Name;  // null once it has the other's
    NativeFile m_File;
};

/// What has failed, and why; nothing with an error of 0.
struct Failure {
    const wchar_t* reason = nullptr;
    int error = 0;
};

Failure Failed(const wchar_t* reason) noexcept {
    return {reason, errno};
}

mode_t DefaultRights() noexcept {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

bool IsAsRead(const std::string& name, const struct stat& known) noexcept {
    struct stat now;
    return stat(name.c_str(), &now) == 0 && now.st_dev == known.st_dev && now.st_ino == known.st_ino &&
           now.st_size == known.st_size && now.st_mtim.tv_sec == known.st_mtim.tv_sec &&
           now.st_mtim.tv_nsec == known.st_mtim.tv_nsec;
}

/// @param beside  name of the new file, ending in "XXXXXX"
/// @param file    that is replaced; -1 for none
Failure PutInPlace(const std::string& name, char* beside, std::string_view bytes, int file,
                   const struct stat& status) noexcept {
    const bool isNew = file < 0;
    const SignalsHeld held;
    NewFile made{beside};
    if (!made.Exists()) return Failed(L"no new file can be created beside it");
    if (!made.Write(bytes)) return Failed(L"a new file beside it cannot be written");
    if (!isNew && !made.SetOwner(status)) return Failed(L"its owner cannot be kept");
    if (!made.SetRights(isNew ? DefaultRights() : status.st_mode)) return Failed(L"its rights cannot be kept");
    if (!isNew && !made.SetAccess(AccessList{file})) return Failed(L"its access list cannot be kept");
    if (!isNew && !IsAsRead(name, status)) return {L"it has changed", ECANCELED};
    if (!made.RenameTo(name.c_str(), isNew)) return Failed(L"the new file cannot take its name");
    return {};
}

/// @return whether the folder of a file is on the disk, the names of its files included
bool FlushFolder(const std::string& name) {
    const std::string path = name.substr(0, name.rfind('/') + 1);
    const NativeFile folder{open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    return folder && (fsync(folder.Handle()) == 0 || errno == EINVAL);  // some file systems cannot
}

}  // namespace

EditFile::EditFile(const CString& path) : m_Path(path), m_Name(FullName(path)), m_File(Open(m_Name)) {
    if (!Exists() && errno == ENOENT) return;
    if (!Exists() || fstat(m_File.Handle(), &m_Status) != 0) Refuse(path, L"it cannot be read", errno);
    if (S_ISDIR(m_Status.st_mode)) Refuse(path, L"it is a folder");
    if (!S_ISREG(m_Status.st_mode)) Refuse(path, L"it is not a regular file");
    if (m_Status.st_nlink > 1) Refuse(path, L"it has another name (a hard link), which would keep the old text");
    if (!ReadAll(m_File.Handle(), m_Bytes)) Refuse(path, L"it cannot be read", errno);
    if (m_Bytes.size() > LARGEST) Refuse(path, L"it is larger than 256 MiB");
}

void EditFile::RequireUnchanged() const {
    std::string now;
    if (!ReadAll(m_File.Handle(), now)) Refuse(m_Path, L"it cannot be read", errno);
    if (now != m_Bytes || !IsAsRead(m_Name, m_Status)) Refuse(m_Path, L"it has changed in the meantime; try again");
}

void EditFile::Write(std::string_view bytes) {
    if (Exists()) {
        // Whoever else would change it this way; where the file system knows no locks, the look below has to do.
        if (flock(m_File.Handle(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
            Refuse(m_Path, L"another process is changing it; try again");
        if (faccessat(AT_FDCWD, m_Name.c_str(), W_OK, AT_EACCESS) != 0) Refuse(m_Path, L"it is not writable", errno);
        RequireUnchanged();
    } else if (!Resolved(MapPath(m_Path)).empty()) {  // perhaps in letters of another case
        Refuse(m_Path, L"it has changed in the meantime; try again");
    }
    std::string beside = m_Name + ".XXXXXX";
    beside.insert(beside.rfind('/') + 1, ".");
    const Failure failure = PutInPlace(m_Name, beside.data(), bytes, m_File.Handle(), m_Status);
    if (failure.error == EEXIST || failure.error == ECANCELED)
        Refuse(m_Path, L"it has changed in the meantime; try again");
    if (failure.error != 0) Refuse(m_Path, failure.reason, failure.error);
    if (!FlushFolder(m_Name)) {
        throw Refusal{FormatText(L"%s is changed, but the change may be lost if the machine stops now (%s)",
                                 DisplayPath(m_Path), FromUtf8(std::system_category().message(errno)))};
    }
}

}  // namespace veltrane::config
