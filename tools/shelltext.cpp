#include "shelltext.h"

#include <algorithm>

namespace veltrane::detail {

std::string ShellQuoted(std::string_view text) {
    return '\'' + Replaced(std::string{text}, "'", "'\\''") + '\'';
}

std::string NamesOf(std::initializer_list<ValueKind> kinds, std::string_view separator) {
    std::string names;
    const auto add = [&](const std::string& name) {
        if (!name.empty()) names.append(names.empty() ? "" : separator).append(name);
    };
    for (const OptionText& option : GetOptionTexts()) {
        if (std::ranges::find(kinds, option.kind) == kinds.end()) continue;
        add(option.shortOption);
        add(option.longOption);
    }
    return names;
}

std::string DatabaseFilter() {
    std::string fixed;
    for (const std::string& section : GetFixedSections()) fixed.append(fixed.empty() ? "" : "\\|").append(section);
    return "1s/^\\xEF\\xBB\\xBF//; s/^[ \\t]*\\[[ \\t]*//; t name; d; :name; s/\\].*//; s/[ \\t\\r]*$//; /\\\\/d; "
           "/^$/d; "
           "/^\\(" +
           fixed + "\\)$/Id; p";
}

}  // namespace veltrane::detail
