#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

#include "veltrane/platform/export.h"

namespace veltrane {

/// What a value can come from, the strongest first. A fact of the host gives way to the command line alone.
enum class OptionLayer : std::uint8_t { Host, StartUp, CommandLine, Registry, UserFile, BasicFile, Environment };

/// The word for a layer: "host", "start-up", "command line", "registry", "user file", "basic file", "environment".
VELTRANE_API const wchar_t* LayerName(OptionLayer layer) noexcept;

/// A layer and what tells it from the others. A new one is a row of the table and an answer in XOptionSources.
struct OptionLayerRow {
    OptionLayer layer;
    const wchar_t* word;
    bool isFile;      ///< an INI file: holds families, too, and is asked as soon as it is open
    bool isRootOnly;  ///< asked for options of ROOT alone, after all others have no text
};

// clang-format off
inline constexpr OptionLayerRow OPTION_LAYERS[] = {
    // layer                   word             file   ROOT only
    {OptionLayer::Host,        L"host",         false, false},
    {OptionLayer::StartUp,     L"start-up",     false, false},
    {OptionLayer::CommandLine, L"command line", false, false},
    {OptionLayer::Registry,    L"registry",     false, false},
    {OptionLayer::UserFile,    L"user file",    true,  false},
    {OptionLayer::BasicFile,   L"basic file",   true,  false},
    {OptionLayer::Environment, L"environment",  false, true},
};
// clang-format on

static_assert(std::ranges::is_sorted(OPTION_LAYERS, {}, &OptionLayerRow::layer) &&
              std::size(OPTION_LAYERS) == static_cast<std::size_t>(OptionLayer::Environment) + 1);

/// The layers that are asked, the strongest first; those before them give values of their own accord.
inline constexpr std::span<const OptionLayerRow> OPTION_SOURCES =
    std::span{OPTION_LAYERS}.subspan(static_cast<std::size_t>(OptionLayer::Registry));

constexpr bool IsSource(OptionLayer layer) {
    return layer >= OPTION_SOURCES.front().layer;
}

constexpr bool IsFile(OptionLayer layer) {
    return OPTION_LAYERS[static_cast<std::size_t>(layer)].isFile;
}

}  // namespace veltrane
