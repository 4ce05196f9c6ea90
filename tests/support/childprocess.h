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
    int exitCode = -1;  ///< -1 if a signal ended it
    std::string output;
    std::string errors;
};

/// What a child writes into a pipe; closes both of its ends.
inline std::string ReadPipe(const int (&ends)[2]) {
    close(ends[1]);
    std::string bytes;
    char buffer[4096];
    for (ssize_t count; (count = read(ends[0], buffer, sizeof buffer)) > 0;) bytes.append(buffer, std::size_t(count));
    close(ends[0]);
    return bytes;
}

/// Runs an action in a child process of its own, without a terminal; what it returns is the exit code. Made for errors
/// that fit into a pipe.
template <class Action>
ChildResult RunChild(Action&& action) {
    int output[2];
    int errors[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0) std::abort();
    std::fflush(nullptr);  // otherwise what this process has not printed yet comes twice
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        dup2(errors[1], STDERR_FILENO);
        _exit(std::forward<Action>(action)());
    }
    ChildResult result{-1, ReadPipe(output), ReadPipe(errors)};
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    return result;
}

/// Becomes another program; the first word is its name. @return the exit code of a child that cannot
inline int Execute(const char* program, std::vector<std::string>& words) {
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return execv(program, pointers.data());
}

/// Runs the tests' own child program (support/child.cpp) with arguments.
inline ChildResult RunTestChild(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{"child"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return RunChild([&] { return Execute(VELTRANE_TEST_CHILD, words); });
}
