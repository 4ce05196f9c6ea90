#pragma once

#include "support/tool.h"

/// Runs veltrane-config.
class Companion : public ToolTest {
protected:
    /// Runs a command about the database "db".
    /// @param arguments  of the tool, after those that name metadata folder and database
    ChildResult Ask(Words words, const Words& arguments = {}, const Words& environment = {}) const {
        words.insert(words.end(), {"--", "-m", Path("meta"), "db"});
        words.insert(words.end(), arguments.begin(), arguments.end());
        return Run(words, environment);
    }
    ChildResult Run(Words words, const Words& environment = {}) const {
        words.insert(words.begin(), "veltrane-config");
        return RunTool(VELTRANE_CONFIG, words, environment);
    }
};

inline void ExpectOutput(const ChildResult& result, int exitCode, const std::string& output,
                         const std::string& errors = {}) {
    EXPECT_EQ(result.output, output);
    EXPECT_EQ(result.errors, errors);
    EXPECT_EQ(result.exitCode, exitCode);
}
