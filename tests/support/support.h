#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "support/environment.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/platform/process/messagebox.h"

using namespace std::string_literals;

inline void PrintTo(const CString& text, std::ostream* out) {
    *out << '"' << ToUtf8(text) << '"';
}

/// The error that an action throws, as the base type; the test fails when it throws none or another exception.
template <class Error = XException, class Action>
Error ErrorOf(Action&& action) {
    try {
        std::forward<Action>(action)();
    } catch (const Error& error) {
        return error;
    }
    throw std::logic_error("no error was thrown");
}

/// Catches the message boxes shown while it lives.
class BoxRecorder : Guard {
public:
    struct Box {
        CString text;
        unsigned style;
        unsigned helpId;
    };

    ~BoxRecorder() { SetMessageBoxHandler(std::move(m_Before)); }

    std::vector<Box> boxes;

private:
    MessageBoxHandler m_Before = SetMessageBoxHandler([this](const CString& text, unsigned style, unsigned helpId) {
        boxes.push_back({text, style, helpId});
        return 1;
    });
};
