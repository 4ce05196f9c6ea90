#include "veltrane/platform/text/internal/decoding.h"

namespace veltrane::detail {

std::wstring DecodeFileText(FileText text) {
    std::wstring decoded;
    decoded.reserve(text.bytes.size());
    while (!text.bytes.empty()) decoded += CutFileCharacter(text);
    return decoded;
}

}  // namespace veltrane::detail
