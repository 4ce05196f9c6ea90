#include "shelltext.h"

#include <algorithm>
#include <cctype>

namespace veltrane::detail {

namespace {

bool NeedsQuotes(std::string_view text) {
    constexpr std::string_view harmless = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    return text.empty() || text.find_first_not_of(harmless) != std::string_view::npos;
}

}  // namespace

std::string ShellQuoted(std::string_view text) {
    return '\'' + Replaced(std::string{text}, "'", "'\\''") + '\'';
}

std::string FishQuoted(std::string_view text) {
    return '\'' + Replaced(Replaced(std::string{text}, "\\", "\\\\"), "'", "\\'") + '\'';
}

std::string ShellWord(std::string_view text) {
    return NeedsQuotes(text) ? ShellQuoted(text) : std::string{text};
}

std::string FishWord(std::string_view text) {
    return NeedsQuotes(text) ? FishQuoted(text) : std::string{text};
}

std::string FunctionName(std::string_view text) {
    std::string name;
    for (const char byte : text) name += std::isalnum(static_cast<unsigned char>(byte)) ? byte : '_';
    return name;
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
    for (const enumCfgSection section : GetOptionSections()) {
        const std::string title = SectionTitle(section);
        if (title.find('<') == std::string::npos) fixed.append(fixed.empty() ? "" : "\\|").append(title);
    }
    return "1s/^\\xEF\\xBB\\xBF//; s/^[ \\t]*\\[[ \\t]*//; t name; d; :name; s/\\].*//; s/[ \\t\\r]*$//; "
           "/\\\\/d; /^$/d; /^\\(" +
           fixed + "\\)$/Id; p";
}

std::string FilledWithNames(std::string script) {
    using enum ValueKind;
    return Filled(std::move(script), {{"@MADE@", MADE_FROM},
                                      {"@FILTER@", ShellQuoted(DatabaseFilter())},
                                      {"@FLAGS@", NamesOf({Flag}, " | ")},
                                      {"@TRISTATES@", NamesOf({TriState}, " | ")},
                                      {"@FOLDERS@", NamesOf({Folder}, " | ")},
                                      {"@FILES@", NamesOf({File}, " | ")},
                                      {"@TEXTS@", NamesOf({Text, None}, " | ")}});
}

}  // namespace veltrane::detail
