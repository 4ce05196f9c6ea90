#include "veltrane/options/xoptionorigin.h"

#include <cstddef>
#include <iterator>

namespace veltrane {

namespace {

// By layer.
constexpr const wchar_t* LAYER_NAMES[] = {
    L"host", L"start-up", L"command line", L"registry", L"user file", L"basic file", L"environment",
};
static_assert(std::size(LAYER_NAMES) == static_cast<std::size_t>(OptionLayer::Environment) + 1);

}  // namespace

const wchar_t* LayerName(OptionLayer layer) noexcept {
    return LAYER_NAMES[static_cast<std::size_t>(layer)];
}

}  // namespace veltrane
