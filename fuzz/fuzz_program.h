#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <vector>

#include "fuzz_input.h"

/// The folders that an input has made the system create, and whether it wanted one elsewhere.
struct {
    std::vector<std::string> made;
    bool isDenied = false;
} g_Folders;

// In place of the system's, for the library too: an input may name any folder, and gets one below its own only. Each
// harness is one source, so this can stand in a header.
extern "C" __attribute__((visibility("default"))) int mkdir(const char* path, mode_t mode) {
    const std::string_view name = path;
    const bool isBelow = name.find("/veltrane-fuzz-") != name.npos && name.find("..") == name.npos;
    if (!isBelow) {
        g_Folders.isDenied = true;
        errno = EACCES;
        return -1;
    }
    const int result = mkdirat(AT_FDCWD, path, mode);
    if (result == 0) g_Folders.made.emplace_back(path);
    return result;
}

/// Forgets and removes the folders.
inline void RemoveFolders() {
    for (; !g_Folders.made.empty(); g_Folders.made.pop_back()) rmdir(g_Folders.made.back().c_str());
    g_Folders.isDenied = false;
}

/// The folder of a program whose configuration changes with each input; in memory where the system has a place for
/// that.
class ProgramFolder {
public:
    ProgramFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const bool hasMemory = std::filesystem::is_directory(memory);
        std::string name =
            ((hasMemory ? memory : std::filesystem::temp_directory_path()) / "veltrane-fuzz-XXXXXX").string();
        REQUIRE(mkdtemp(name.data()) != nullptr);
        m_Path = name;
        std::filesystem::create_directory(m_Path / ".metadata");
        g_Folders.made.clear();
    }
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;
    ~ProgramFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    CString Write(const char* name, std::string_view bytes) const {
        std::ofstream{m_Path / name, std::ios::binary} << bytes;
        return veltrane::FromUtf8((m_Path / name).string());
    }
    CString Path() const { return veltrane::FromUtf8(m_Path.string()); }
    const std::filesystem::path& Native() const { return m_Path; }

private:
    std::filesystem::path m_Path;
};

/// Takes what stands before a line "====" from an input.
inline std::string_view TakePart(std::string_view& input) {
    constexpr std::string_view separator = "\n====\n";
    const std::size_t end = input.find(separator);
    const std::string_view part = input.substr(0, end);
    input.remove_prefix(end == input.npos ? input.size() : end + separator.size());
    return part;
}

/// Hands out an input line by line.
inline std::vector<CString> LinesOf(std::string_view input) {
    std::vector<CString> lines;
    while (!input.empty()) lines.push_back(veltrane::FromUtf8(TakeLine(input)));
    return lines;
}
