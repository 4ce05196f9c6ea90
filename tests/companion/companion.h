#pragma once

#include "support/childprocess.h"
#include "support/environment.h"
#include "support/support.h"

#ifdef VELTRANE_CONFIG

namespace veltrane::detail {

/// Runs veltrane-config as a real process on small configurations.
class Companion : public testing::Test {
protected:
    using Words = std::vector<std::string>;

    Companion() {
        std::filesystem::create_directories(m_Folder.Path() / "meta");
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

    /// Runs a command about the database "db" in the test's folder.
    /// @param arguments  of the tool, behind those that name metadata folder and database
    ChildResult Ask(Words words, const Words& arguments = {}, Words environment = {}) const {
        words.insert(words.end(), {"--", "-m", Path("meta"), "db"});
        words.insert(words.end(), arguments.begin(), arguments.end());
        return Run(words, std::move(environment));
    }
    ChildResult Run(Words words, Words environment = {}) const {
        words.insert(words.begin(), "veltrane-config");
        environment.push_back("VORNAK_REGISTRY=" + Path("registry.reg"));
        return RunChild([&] {
            std::vector<char*> argv;
            for (std::string& word : words) argv.push_back(word.data());
            argv.push_back(nullptr);
            clearenv();
            for (std::string& word : environment) putenv(word.data());
            std::filesystem::current_path(m_Folder.Path());
            return execv(VELTRANE_CONFIG, argv.data());
        });
    }

    TempFolder m_Folder;
};

inline void ExpectOutput(const ChildResult& result, int exitCode, const std::string& output,
                         const std::string& errors = {}) {
    EXPECT_EQ(result.output, output);
    EXPECT_EQ(result.errors, errors);
    EXPECT_EQ(result.exitCode, exitCode);
}

}  // namespace veltrane::detail

#endif
