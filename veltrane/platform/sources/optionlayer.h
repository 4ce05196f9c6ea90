#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

#include "veltrane/platform/export.h"

namespace veltrane {

/// What a value can come from, the strongest first. Only the command line overrides a fact of the host.
enum class OptionLayer : std::uint8_t { Host, StartUp, CommandLine, Registry, UserFile, BasicFile, Environment };

/// The word for a layer: "host", "start-up", "command line", "registry", "user file", "basic file", "environment".
VELTRANE_API const wchar_t* LayerName(OptionLayer layer) noexcept;

/// A layer and its properties. A new one is a row of the table and an answer in XOptionSources.
struct OptionLayerRow {
    const wchar_t* word;
    OptionLayer layer;
    bool isFile;      ///< an INI file: also holds families, and is asked as soon as it is open
    bool isRootOnly;  ///< asked only for options of ROOT, and only when no other has a text
};

// clang-format off
inline constexpr OptionLayerRow OPTION_LAYERS[] = {
    // word            layer                     file   ROOT only
    {L"host",         OptionLayer::Host,        false, false},
    {L"start-up",     OptionLayer::StartUp,     false, false},
    {L"command line", OptionLayer::CommandLine, false, false},
    {L"registry",     OptionLayer::Registry,    false, false},
    {L"user file",    OptionLayer::UserFile,    true,  false},
    {L"basic file",   OptionLayer::BasicFile,   true,  false},
    {L"environment",  OptionLayer::Environment, false, true},
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
