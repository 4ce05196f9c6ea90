#pragma once

#include <unistd.h>

#include <filesystem>

/// Makes a folder the current one while it lives.
class CurrentFolderGuard {
public:
    explicit CurrentFolderGuard(const std::filesystem::path& folder) : m_Before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    CurrentFolderGuard(const CurrentFolderGuard&) = delete;
    CurrentFolderGuard& operator=(const CurrentFolderGuard&) = delete;
    ~CurrentFolderGuard() { std::filesystem::current_path(m_Before); }

private:
    std::filesystem::path m_Before;
};

/// Gives up the rights of the superuser while it lives, for tests that need something to be forbidden.
class OrdinaryUser {
public:
    OrdinaryUser() : m_Before(geteuid()) {
        constexpr uid_t nobody = 65534;
        if (m_Before == 0 && seteuid(nobody) != 0) std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (seteuid(m_Before) != 0) std::abort();
    }

private:
    uid_t m_Before;
};
