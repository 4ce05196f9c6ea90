#pragma once

#include <algorithm>
#include <span>

#include "veltrane/options/detail/optionlookup.h"

namespace veltrane::detail {

/// A folder that start-up determines before a file is open, and its default below the folder that holds it.
struct StartupFolder {
    XOptionDefinition& option;
    const wchar_t* defaultFolder;
};

inline constexpr StartupFolder STARTUP_FOLDERS[] = {
    {LibraryRow(eOptionMetadata), L".metadata"},
    {LibraryRow(eOptionConfig), L"configuration"},
    {LibraryRow(eOptionChangefileRoot), L"changefile"},
    {LibraryRow(eOptionLogging), L"log"},
};

/// Below the executable; the others below the folder "data", in the order in which they are resolved.
inline constexpr const StartupFolder& METADATA_FOLDER = STARTUP_FOLDERS[0];
inline constexpr std::span<const StartupFolder> USER_FOLDERS = std::span{STARTUP_FOLDERS}.subspan(1);

inline bool IsStartupFolder(const XOptionDefinition& definition) {
    return std::ranges::any_of(
        STARTUP_FOLDERS, [&](const StartupFolder& folder) { return folder.option.eOption == definition.eOption; });
}

}  // namespace veltrane::detail
