#pragma once

#include <utility>
#include <vector>

#include "veltrane/platform/process/process.h"

using namespace veltrane;
using namespace veltrane::detail;

/// Gives the process other arguments behind its program name while it lives.
class ArgumentsGuard {
public:
    explicit ArgumentsGuard(std::vector<CString> arguments) : m_Before(GetArguments()) {
        arguments.insert(arguments.begin(), L"veltrane");
        SetArguments(std::move(arguments));
    }
    ArgumentsGuard(const ArgumentsGuard&) = delete;
    ArgumentsGuard& operator=(const ArgumentsGuard&) = delete;
    ~ArgumentsGuard() { SetArguments(std::move(m_Before)); }

private:
    std::vector<CString> m_Before;
};
