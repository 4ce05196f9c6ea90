#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

/// How a child process ended, and what it wrote.
struct ChildResult {
    int exitCode = -1;  ///< -1 when a signal ended it
    std::string output;
    std::string errors;
};

inline std::string ReadDescriptor(int handle) {
    std::string bytes;
    char buffer[4096];
    for (ssize_t count; (count = read(handle, buffer, sizeof buffer)) > 0;) {
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
}

/// Where a test that runs as a program of its own writes its result.
inline constexpr int CHILD_OUTPUT = 9;

inline void WriteChildOutput(const std::string& bytes) {
    if (write(CHILD_OUTPUT, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
}

/// Runs an action in a child process of its own, without a terminal; what it returns is the exit code. Made for output
/// that fits into a pipe.
template <class Action>
ChildResult RunChild(Action&& action) {
    int output[2];
    int errors[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0) std::abort();
    std::fflush(nullptr);  // what this process has not printed yet must not come twice
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        dup2(errors[1], STDERR_FILENO);
        _exit(std::forward<Action>(action)());
    }
    close(output[1]);
    close(errors[1]);
    ChildResult result{-1, ReadDescriptor(output[0]), ReadDescriptor(errors[0])};
    close(output[0]);
    close(errors[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    return result;
}

/// Runs one disabled test of this program in a new process, with further arguments.
/// @return what the test has written with WriteChildOutput
inline ChildResult RunProgram(const std::string& test, const std::vector<std::string>& arguments) {
    return RunChild([&] {
        const std::string filter = "--gtest_filter=" + test;
        std::vector<std::string> all{"veltrane_tests", filter, "--gtest_also_run_disabled_tests"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        for (std::string& argument : all) pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        dup2(STDOUT_FILENO, CHILD_OUTPUT);
        dup2(STDERR_FILENO, STDOUT_FILENO);  // what the test frame reports
        execv("/proc/self/exe", pointers.data());
        return 127;
    });
}
