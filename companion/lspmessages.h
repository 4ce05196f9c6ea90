#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <streambuf>
#include <string>

#include <nlohmann/json.hpp>

#include "json.h"

// Messages of the Language Server Protocol on streams of bytes: a header with the length, then JSON.

namespace veltrane::config {

/// Why a request has no answer; the numbers are those of the protocol.
enum class LspError {
    Parse = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    Internal = -32603,
    NotInitialized = -32002,
    Cancelled = -32800,
};

/// What was read: a message, or why it is not one; neither at the end of the input.
struct Incoming {
    std::optional<LspJson> message = {};
    LspError error = LspError::Parse;
    std::string errorText = {};
    std::size_t size = 0;  ///< of the message, in bytes

    bool IsEnd() const { return !message && errorText.empty(); }
};

/// Reads messages one by one. After a broken one it continues at the next header that it finds.
class MessageReader {
public:
    static constexpr std::size_t MAX_SIZE = std::size_t{64} << 20;  ///< of a body, in bytes; a longer one is skipped
    static constexpr int MAX_DEPTH = 128;                           ///< of JSON; no message of the protocol comes near
    static constexpr int MAX_VALUES = 1'000'000;  ///< each takes some ten times the room that it has in a body

    /// @param input  must outlive the reader
    explicit MessageReader(std::streambuf& input) : m_Input(input) {}

    /// Waits for a message.
    Incoming Next();
    /// Whether some of the next message is there.
    bool IsReady() { return m_Input.in_avail() > 0; }

private:
    bool ReadLine(std::string& line);
    Incoming ReadBody(std::size_t length);

    std::streambuf& m_Input;
    std::optional<std::uint64_t> m_Length = {};  // of the body, from the header so far
    bool m_HasFields = false;                    // whether a header has begun
    bool m_IsLost = false;                       // after a broken header, until the next one
};

/// Writes a message, at once.
void WriteMessage(std::ostream& output, const LspJson& message);

}  // namespace veltrane::config
