#include "veltrane/platform/text/decoding.h"

namespace veltrane::detail {

std::wstring DecodeFileText(std::string_view bytes, bool withSurrogates) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) text += TakeFileCharacter(bytes, withSurrogates);
    return text;
}

}  // namespace veltrane::detail
