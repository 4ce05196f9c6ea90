#include "lspmessages.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <ostream>

#include "veltrane/platform/text/characters.h"

namespace veltrane::config {

using namespace detail;

namespace {

constexpr std::size_t LONGEST_LINE = 4096;  // of a header; of a longer one the end is looked at
constexpr std::size_t CHUNK = 65'536;
constexpr std::string_view LENGTH_FIELD = "content-length:";

// A header may follow the rest of a broken message on the same line.
std::optional<std::uint64_t> LengthIn(std::string_view line, bool isLost) {
    const auto isSame = [](char left, char right) { return LowerAscii(left) == right; };
    const auto begin = std::search(line.begin(), line.end(), LENGTH_FIELD.begin(), LENGTH_FIELD.end(), isSame);
    if (begin == line.end() || (begin != line.begin() && !isLost)) return {};
    std::string_view digits = line.substr(static_cast<std::size_t>(begin - line.begin()) + LENGTH_FIELD.size());
    digits.remove_prefix(std::min(digits.find_first_not_of(' '), digits.size()));
    digits = digits.substr(0, digits.find_last_not_of(' ') + 1);
    std::uint64_t length = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
    const bool isNumber = failure == std::errc{} && end == digits.data() + digits.size();
    return isNumber ? std::optional{length} : std::nullopt;
}

// Whether a line is a field of a header other than the length.
bool IsOtherField(std::string_view line) {
    const bool isLength = std::ranges::equal(line.substr(0, LENGTH_FIELD.size()), LENGTH_FIELD, {}, LowerAscii<char>);
    const std::size_t colon = line.find(':');
    return !isLength && colon != line.npos && line.substr(0, colon).find_first_of(" {\"") == line.npos;
}

/// Checks JSON before it is read: its depth and its number of values.
class Shape {
public:
    explicit Shape(std::string_view text) {
        for (const char byte : text) {
            if (m_IsText) {
                LookInText(byte);
            } else {
                Look(byte);
            }
        }
    }
    bool IsBearable() const { return m_Deepest <= MessageReader::MAX_DEPTH && m_nValues < MessageReader::MAX_VALUES; }

private:
    void LookInText(char byte) {
        m_IsText = byte != '"' || m_IsEscaped;
        m_IsEscaped = byte == '\\' && !m_IsEscaped;
    }
    void Look(char byte) {
        m_IsText = byte == '"';
        if (byte == '[' || byte == '{') m_Deepest = std::max(m_Deepest, ++m_Depth);
        if (byte == ']' || byte == '}') --m_Depth;
        if (byte == ',' || byte == '[' || byte == '{') ++m_nValues;
    }

    int m_Depth = 0;
    int m_Deepest = 0;
    int m_nValues = 0;
    bool m_IsText = false;
    bool m_IsEscaped = false;
};

Incoming Parsed(const std::string& body) {
    if (!Shape{body}.IsBearable())
        return {{}, LspError::InvalidRequest, "the message has too many values, or they are nested too deeply"};
    LspJson message = LspJson::parse(body, nullptr, /*allow_exceptions*/ false);
    if (message.is_discarded()) return {{}, LspError::Parse, "the message is not JSON"};
    return {std::move(message), {}, {}, body.size()};
}

}  // namespace

// A broken line is reported once; the next header may be at its end.
Incoming MessageReader::Next() {
    for (std::string line; ReadLine(line);) {
        if (line.empty() && m_Length) {
            m_IsLost = m_HasFields = false;
            return ReadBody(static_cast<std::size_t>(*std::exchange(m_Length, std::nullopt)));
        }
        const bool isGood = line.empty() ? !std::exchange(m_HasFields, false) : IsOtherField(line);
        const std::optional<std::uint64_t> found = LengthIn(line, /*isLost*/ m_IsLost || !isGood);
        if (found) m_Length = found;
        m_HasFields = !line.empty();
        const bool isHeader = LengthIn(line, /*isLost*/ false).has_value();
        if (isGood || isHeader) continue;
        if (!found) m_Length.reset();
        if (!std::exchange(m_IsLost, true))
            return {{}, LspError::Parse, "the header of a message is malformed; expected 'Content-Length: NUMBER'"};
    }
    return {};
}

bool MessageReader::ReadLine(std::string& line) {
    line.clear();
    for (int byte; (byte = m_Input.sbumpc()) != std::streambuf::traits_type::eof();) {
        if (byte == '\n') {
            if (line.ends_with('\r')) line.pop_back();
            return true;
        }
        if (line.size() >= LONGEST_LINE) line.erase(0, LONGEST_LINE / 2);
        line += static_cast<char>(byte);
    }
    return false;
}

Incoming MessageReader::ReadBody(std::size_t length) {
    std::string body;
    std::string chunk;
    for (std::size_t left = length; left > 0; left -= chunk.size()) {
        chunk.resize(std::min(left, CHUNK));
        chunk.resize(static_cast<std::size_t>(
            std::max(m_Input.sgetn(chunk.data(), static_cast<std::streamsize>(chunk.size())), std::streamsize{0})));
        if (chunk.empty()) return {};
        if (length <= MAX_SIZE) body += chunk;
    }
    if (length > MAX_SIZE) return {{}, LspError::InvalidRequest, "the message is larger than 64 MiB"};
    return Parsed(body);
}

void WriteMessage(std::ostream& output, const LspJson& message) {
    const std::string body = message.dump(-1, ' ', /*ensure_ascii*/ false, LspJson::error_handler_t::replace);
    output << "Content-Length: " << body.size() << "\r\n\r\n" << body << std::flush;
}

}  // namespace veltrane::config
