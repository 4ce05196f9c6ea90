#pragma once

#include <sys/stat.h>

#include <ctime>

/// What the system says of a file or folder. Two equal states of which the first was settled mean that nothing has been
/// changed in between, so what was read then need not be read again.
class FileState {
public:
    FileState() = default;  ///< of nothing
    /// @param name  of the file; links are followed
    explicit FileState(const char* name) noexcept { m_Exists = stat(name, &m_Status) == 0; }

    bool Exists() const noexcept { return m_Exists; }

    /// Whether the last change is some time ago: one in the same tick of the system's clock would leave no trace.
    bool IsSettled() const noexcept {
        constexpr std::time_t settlingSeconds = 2;
        const std::time_t now = std::time(nullptr);
        return m_Exists && m_Status.st_mtim.tv_sec + settlingSeconds < now &&
               m_Status.st_ctim.tv_sec + settlingSeconds < now;
    }

    friend bool operator==(const FileState& a, const FileState& b) noexcept {
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
