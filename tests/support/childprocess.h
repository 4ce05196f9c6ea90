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

/// Runs the tests' own child program (support/child.cpp) with arguments.
inline ChildResult RunTestChild(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "child");
    return RunChild([&] {
        std::vector<char*> pointers;
        for (std::string& argument : arguments) pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        execv(VELTRANE_TEST_CHILD, pointers.data());
        return 127;
    });
}
