#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <vector>

#include "fuzz_input.h"

/// The folders that were created for an input, and whether one was asked for elsewhere.
struct {
    std::vector<std::string> made;
    bool isDenied = false;
} g_Folders;

// Replaces that of the system, also for the library: an input may name any folder, but gets only those below the folder
// of the program. Each harness is one source, so a header can define it.
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

/// Removes the folders, and forgets them.
inline void RemoveFolders() {
    for (; !g_Folders.made.empty(); g_Folders.made.pop_back()) rmdir(g_Folders.made.back().c_str());
    g_Folders.isDenied = false;
}

/// The folder of a program whose configuration changes with each input; in memory if the system has /dev/shm.
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

/// Cuts off the part of an input before the next line "====", and that line, and returns the part.
inline std::string_view NextPart(std::string_view& input) {
    constexpr std::string_view separator = "\n====\n";
    const std::size_t end = input.find(separator);
    const std::string_view part = input.substr(0, end);
    input.remove_prefix(end == input.npos ? input.size() : end + separator.size());
    return part;
}

/// The lines of an input.
inline std::vector<CString> LinesOf(std::string_view input) {
    std::vector<CString> lines;
    while (!input.empty()) lines.push_back(veltrane::FromUtf8(NextLine(input)));
    return lines;
}
