#include "veltrane/platform/sources/optionlayer.h"

namespace veltrane {

const wchar_t* LayerName(OptionLayer layer) noexcept {
    return OPTION_LAYERS[static_cast<std::size_t>(layer)].word;
}

}  // namespace veltrane
