#pragma once

#include "support/childprocess.h"
#include "support/support.h"

using Words = std::vector<std::string>;

/// Runs a tool as a real process on a configuration, in a folder and with an environment of its own.
class ToolTest : public testing::Test {
protected:
    ToolTest() {
        std::filesystem::create_directories(m_Folder.Path() / "data");
        WriteBasic("");
    }

    std::string Path(const std::string& name) const { return (m_Folder.Path() / name).string(); }
    void Write(const std::string& name, const std::string& bytes) const { m_Folder.Write(name, bytes); }
    /// The first four lines are those that every tool needs.
    void WriteBasic(const std::string& more) const {
        Write("meta/veltrane.ini", "[db]\ndictionary-name=d\nrole=r\nregistry=g\n" + more);
    }
    void WriteRegistry(const std::string& section, const std::string& more) const {
        Write("registry.reg", "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\veltrane\\" + section + "]\n" + more);
    }

    /// @param words  its name first
    /// @param output  device that replaces the standard output
    ChildResult RunTool(const char* program, Words words, Words environment, const std::string& output = {}) const {
        environment.push_back("VORNAK_REGISTRY=" + Path("registry.reg"));
        return RunChild([&] {
            clearenv();
            for (std::string& word : environment) putenv(word.data());
            if (!output.empty()) dup2(open(output.c_str(), O_WRONLY), STDOUT_FILENO);
            std::filesystem::current_path(m_Folder.Path());
            return Execute(program, words);
        });
    }

    TempFolder m_Folder;
};

inline void ExpectIn(const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), std::string::npos) << part << "\nin " << text;
}
