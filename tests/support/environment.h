#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

/// A new folder, removed with all that is in it.
class TempFolder {
public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "veltrane-XXXXXX").string();
        if (!mkdtemp(name.data())) std::abort();
        m_Path = name;
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
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
        std::ostringstream bytes;
        bytes << std::ifstream{m_Path / name, std::ios::binary}.rdbuf();
        return bytes.str();
    }

private:
    std::filesystem::path m_Path;
};

/// Sets (or, without a value, unsets) an environment variable while it lives.
class EnvironmentGuard {
public:
    EnvironmentGuard(std::string name, std::optional<std::string> value) : m_Name(std::move(name)) {
        if (const char* before = std::getenv(m_Name.c_str())) m_Before = before;
        Set(value);
    }
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;
    ~EnvironmentGuard() { Set(m_Before); }

private:
    void Set(const std::optional<std::string>& value) {
        if (value) {
            setenv(m_Name.c_str(), value->c_str(), 1);
        } else {
            unsetenv(m_Name.c_str());
        }
    }

    std::string m_Name;
    std::optional<std::string> m_Before;
};
