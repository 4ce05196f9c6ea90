#include "lspuri.h"

#include <algorithm>
#include <climits>

#include "veltrane/platform/text/characters.h"

namespace veltrane::config {

using namespace detail;

namespace {

constexpr std::string_view SCHEME = "file://";
constexpr std::string_view HEX = "0123456789ABCDEF";
constexpr std::string_view PLAIN = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";

// The byte that two hexadecimal digits stand for; a percent sign without them stands for itself.
std::optional<char> EscapedByte(std::string_view digits) {
    if (digits.size() < 2) return {};
    const std::size_t high = HEX.find(UpperAscii(digits[0]));
    const std::size_t low = HEX.find(UpperAscii(digits[1]));
    if (high == HEX.npos || low == HEX.npos) return {};
    return static_cast<char>(high * 16 + low);
}

std::string Unescaped(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::optional<char> byte = text[at] == '%' ? EscapedByte(text.substr(at + 1, 2)) : std::nullopt;
        bytes += byte.value_or(text[at]);
        if (byte) at += 2;
    }
    return bytes;
}

}  // namespace

std::optional<std::string> PathOfUri(std::string_view uri) {
    if (!std::ranges::equal(uri.substr(0, SCHEME.size()), SCHEME, {}, LowerAscii<char>)) return {};
    uri.remove_prefix(SCHEME.size());
    if (uri.starts_with("localhost/")) uri.remove_prefix(uri.find('/'));
    std::string path = Unescaped(uri.substr(0, uri.find_first_of("?#")));
    const bool isPath = path.starts_with('/') && path.find('\0') == path.npos && path.size() < PATH_MAX;
    return isPath ? std::optional{std::move(path)} : std::nullopt;
}

std::string UriOfPath(std::string_view path) {
    return std::string{SCHEME} + PathInUri(path);
}

std::string PathInUri(std::string_view path) {
    return PercentEncoded(path, [](char byte) { return PLAIN.find(byte) == PLAIN.npos; });
}

std::string PercentEncoded(std::string_view text, bool (*isEncoded)(char byte)) {
    std::string encoded;
    for (const char byte : text) {
        const auto number = static_cast<unsigned char>(byte);
        if (isEncoded(byte)) encoded += {'%', HEX[number / 16], HEX[number % 16]};
        if (!isEncoded(byte)) encoded += byte;
    }
    return encoded;
}

}  // namespace veltrane::config
