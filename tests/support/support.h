#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "veltrane/foundation/xexception.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/text/cstring.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

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
    ADD_FAILURE() << "no error was thrown";
    if constexpr (std::is_default_constructible_v<Error>) {
        return {};
    } else {
        return Error{L""};
    }
}

/// Catches the message boxes shown while it lives.
class BoxRecorder {
public:
    struct Box {
        CString text;
        unsigned style;
        unsigned helpId;
    };

    BoxRecorder()
        : m_Before(SetMessageBoxHandler([this](const CString& text, unsigned style, unsigned helpId) {
              boxes.push_back({text, style, helpId});
              return 1;
          })) {}
    BoxRecorder(const BoxRecorder&) = delete;
    BoxRecorder& operator=(const BoxRecorder&) = delete;
    ~BoxRecorder() { SetMessageBoxHandler(std::move(m_Before)); }

    std::vector<Box> boxes;

private:
    MessageBoxHandler m_Before;
};
