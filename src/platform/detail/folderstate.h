#pragma once

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <ctime>
#include <string>

/// Whether every change of a folder shows in its state: on the file systems of local disks and of memory it does. A
/// network tells what it was told last, and the system's own folders change without a trace.
inline bool ShowsItsChanges(const std::string& folder) noexcept {
    struct statfs system;
    if (statfs(folder.c_str(), &system) != 0) return false;
    switch (system.f_type) {
        case EXT4_SUPER_MAGIC:
        case XFS_SUPER_MAGIC:
        case BTRFS_SUPER_MAGIC:
        case F2FS_SUPER_MAGIC:
        case TMPFS_MAGIC:
        case OVERLAYFS_SUPER_MAGIC:
            return true;
        default:
            return false;
    }
}

/// What the system says of a folder that shows its changes. Two equal states of which the first was settled mean that
/// nothing has been changed in between, so what was read then need not be read again.
class FolderState {
public:
    FolderState() = default;  ///< of nothing
    /// @param folder  links are followed
    explicit FolderState(const std::string& folder) noexcept { m_Exists = stat(folder.c_str(), &m_Status) == 0; }

    /// Whether the last change is some time ago: one in the same tick of the system's clock would leave no trace.
    bool IsSettled() const noexcept {
        constexpr std::time_t settlingSeconds = 2;
        const std::time_t now = std::time(nullptr);
        return m_Exists && m_Status.st_mtim.tv_sec + settlingSeconds < now &&
               m_Status.st_ctim.tv_sec + settlingSeconds < now;
    }

    friend bool operator==(const FolderState& a, const FolderState& b) noexcept {
        const auto isSame = [](const timespec& s, const timespec& t) {
            return s.tv_sec == t.tv_sec && s.tv_nsec == t.tv_nsec;
        };
        return a.m_Exists && b.m_Exists && a.m_Status.st_dev == b.m_Status.st_dev &&
               a.m_Status.st_ino == b.m_Status.st_ino && a.m_Status.st_size == b.m_Status.st_size &&
               isSame(a.m_Status.st_mtim, b.m_Status.st_mtim) && isSame(a.m_Status.st_ctim, b.m_Status.st_ctim);
    }

private:
    struct stat m_Status {};
    bool m_Exists = false;
};
