#pragma once

#include "support/environment.h"
#include "veltrane/platform/process/process.h"

/// Gives the process other arguments after its program name while it lives.
class ArgumentsGuard : Guard {
public:
    explicit ArgumentsGuard(std::vector<CString> arguments) {
        arguments.insert(arguments.begin(), L"veltrane");
        SetArguments(std::move(arguments));
    }
    ~ArgumentsGuard() { SetArguments(std::move(m_Before)); }

private:
    std::vector<CString> m_Before = GetArguments();
};
