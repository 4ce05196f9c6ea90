#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

/// Base of guards, which undo something at their end; cannot be copied.
struct Guard {
    Guard() = default;
    Guard(Guard&&) = delete;
};

/// A new folder, removed with its content.
class TempFolder : Guard {
public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "veltrane-XXXXXX").string();
        if (!mkdtemp(name.data())) std::abort();
        m_Path = name;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    const std::filesystem::path& Path() const { return m_Path; }
    /// Wide path of the folder or of something below it, with '/' as separator.
    CString Wide(const std::string& name = {}) const {
        return FromUtf8(name.empty() ? m_Path.string() : (m_Path / name).string());
    }
    /// Writes a file, folders included. @return its wide path
    CString Write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories((m_Path / name).parent_path());
        std::ofstream{m_Path / name, std::ios::binary} << bytes;
        return Wide(name);
    }
    std::string Read(const std::string& name) const {
        std::ifstream file{m_Path / name, std::ios::binary};
        return {std::istreambuf_iterator<char>{file}, {}};
    }

private:
    std::filesystem::path m_Path;
};

/// Sets (or, without a value, unsets) an environment variable while it lives.
class EnvironmentGuard : Guard {
public:
    EnvironmentGuard(std::string name, const std::optional<std::string>& value) : m_Name(std::move(name)) {
        if (const char* before = std::getenv(m_Name.c_str())) m_Before = before;
        Set(value);
    }
    ~EnvironmentGuard() { Set(m_Before); }

private:
    void Set(const std::optional<std::string>& value) const {
        value ? setenv(m_Name.c_str(), value->c_str(), 1) : unsetenv(m_Name.c_str());
    }

    std::string m_Name;
    std::optional<std::string> m_Before;
};

/// Makes a folder the current one while it lives.
class CurrentFolderGuard : Guard {
public:
    explicit CurrentFolderGuard(const std::filesystem::path& folder) { std::filesystem::current_path(folder); }
    ~CurrentFolderGuard() { std::filesystem::current_path(m_Before); }

private:
    std::filesystem::path m_Before = std::filesystem::current_path();
};

/// Gives up the rights of the superuser while it lives, for tests that need something to be forbidden.
class OrdinaryUser : Guard {
public:
    OrdinaryUser() {
        constexpr uid_t nobody = 65534;
        if (m_Before == 0 && seteuid(nobody) != 0) std::abort();
    }
    ~OrdinaryUser() {
        if (seteuid(m_Before) != 0) std::abort();
    }

private:
    uid_t m_Before = geteuid();
};

/// Does something while no more files can be opened.
template <class Action>
void WithoutMoreFiles(Action&& action) {
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{0, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    std::forward<Action>(action)();
    setrlimit(RLIMIT_NOFILE, &before);
}
