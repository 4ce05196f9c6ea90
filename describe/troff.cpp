#include "troff.h"

#include <algorithm>
#include <iterator>

#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/format.h"

namespace veltrane::detail {

namespace {

/// The characters that troff would read as a command or print differently.
struct {
    wchar_t character;
    std::string_view escape;
} constexpr ESCAPES[] = {{L'\\', "\\e"},  {L'-', "\\-"},   {L'"', "\\(dq"}, {L'\'', "\\(aq"},
                         {L'`', "\\(ga"}, {L'^', "\\(ha"}, {L'~', "\\(ti"}};

}  // namespace

std::string Troff(std::string_view text) {
    std::string source = text.starts_with('.') ? "\\&" : "";  // a dot at the front of a line is a request
    const CString wide = FromUtf8(text);
    for (const wchar_t c : wide.View()) {
        const auto* const row = std::ranges::find(ESCAPES, c, [](const auto& known) { return known.character; });
        if (row != std::end(ESCAPES)) {
            source += row->escape;
        } else if (c < 0x80) {
            source += static_cast<char>(c);
        } else {
            source += ToUtf8(FormatText(L"\\[u%04X]", static_cast<unsigned>(c)));
        }
    }
    return source;
}

std::string Bold(std::string_view text) {
    return "\\fB" + Troff(text) + "\\fR";
}

std::string Italic(std::string_view text) {
    return "\\fI" + Troff(text) + "\\fR";
}

std::string Entry(std::string_view head, std::string_view body) {
    return std::string{".TP\n"}.append(head).append("\n").append(body).append("\n");
}

}  // namespace veltrane::detail
