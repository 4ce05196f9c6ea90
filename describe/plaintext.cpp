#include "plaintext.h"

#include <algorithm>

#include "veltrane/platform/text/characters.h"

namespace veltrane::detail {

std::string Replaced(std::string text, std::string_view word, std::string_view replacement) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + replacement.size())) {
        text.replace(at, word.size(), replacement);
    }
    return text;
}

std::string Filled(std::string text, std::initializer_list<std::pair<std::string_view, std::string>> marks) {
    for (const auto& [mark, part] : marks) text = Replaced(std::move(text), mark, part);
    return text;
}

std::string Capitals(std::string text) {
    std::ranges::transform(text, text.begin(), UpperAscii<char>);
    return text;
}

}  // namespace veltrane::detail
