// Input: a line with the capacity as a character ('0' is 0), a line with the section and one with the key ("*" is
// null), then the file. Every answer is compared with that of a reader that goes over the whole file, character by
// character, and so are the answers to the names of the file while a snapshot keeps it. A line is marked as answering
// exactly when a question finds it.
#include <algorithm>
#include <optional>
#include <span>
#include <vector>

#include "fuzz_input.h"
#include "fuzz_text.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/linenumbers.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/sources/profile.h"
#include "veltrane/platform/sources/sourcelines.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

struct Entry {
    Text key;
    Text value;
};

struct Section {
    Text name;
    std::vector<Entry> entries;
};

Text Cleaned(const Text& text) {
    return Trimmed(text.substr(0, text.find(L'\0')));
}

Text Unquoted(const Text& text) {
    const bool isQuoted = text.size() > 1 && text.front() == text.back() && (text[0] == L'"' || text[0] == L'\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

void ReadLine(std::vector<Section>& sections, const Text& line) {
    const std::size_t equals = line.find(L'=');
    if (line.empty() || line[0] == L';') return;
    if (line[0] == L'[') {
        sections.push_back({Cleaned(line.substr(1, std::min(line.find(L']'), line.size()) - 1)), {}});
    } else if (!sections.empty() && equals != line.npos && !Cleaned(line.substr(0, equals)).empty()) {
        sections.back().entries.push_back(
            {Cleaned(line.substr(0, equals)), Unquoted(Cleaned(line.substr(equals + 1)))});
    }
}

std::vector<Section> Sections(const Text& text) {
    std::vector<Section> sections;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(L"\r\n", at), text.size());
        ReadLine(sections, Trimmed(text.substr(at, end - at)));
        at = end + 1;
    }
    return sections;
}

/// The whole answer, each name of a list with its NUL.
Text Expected(const std::vector<Section>& sections, const wchar_t* section, const wchar_t* key) {
    Text list;
    if (!section) {
        for (const Section& each : sections) {
            if (!each.name.empty()) list += each.name + L'\0';
        }
        return list;
    }
    const auto isAsked = [&](const Section& each) { return Folded(each.name) == Folded(Trimmed(section, L" ")); };
    const auto found = std::ranges::find_if(sections, isAsked);
    const std::vector<Entry> entries = found == sections.end() ? std::vector<Entry>{} : found->entries;
    for (const Entry& entry : entries) {
        if (!key) {
            list += entry.key + L'\0';
        } else if (Folded(entry.key) == Folded(Trimmed(key, L" "))) {
            return entry.value;
        }
    }
    return key ? L" default" : list;
}

/// A buffer of '#' with the part of an answer that fits.
Text Placed(const Text& answer, bool isList, std::size_t capacity, std::size_t room, unsigned& count) {
    Text buffer(room, L'#');
    const bool fits = answer.size() < capacity;
    const std::size_t kept = fits ? answer.size() : capacity - std::min<std::size_t>(capacity, isList ? 2 : 1);
    count = static_cast<unsigned>(kept);
    std::copy_n(answer.begin(), kept, buffer.begin());
    if (capacity > 0) buffer[kept] = L'\0';
    if (isList && (kept == 0 || !fits) && kept + 1 < capacity) buffer[kept + 1] = L'\0';
    return buffer;
}

std::optional<CString> Question(std::string_view line) {
    return line == "*" ? std::nullopt : std::optional{FromUtf8(line)};
}

}  // namespace

void RequireAnswer(const MemoryFile& file, const wchar_t* section, const wchar_t* key, const Text& expected,
                   std::size_t capacity) {
    unsigned expectedCount = 0;
    const std::size_t room = std::max(capacity, expected.size()) + 2;
    const Text placed = Placed(expected, !section || !key, capacity, room, expectedCount);
    Text buffer(room, L'#');
    const unsigned count = GetPrivateProfileStringW(section, key, L" default ", buffer.data(),
                                                    static_cast<unsigned>(capacity), file.Name().GetString());
    REQUIRE(count == expectedCount);
    REQUIRE(buffer == placed);
}

/// Asks for the first names of a file, each key also in the other sections.
void RequireAllAnswers(const MemoryFile& file, const std::vector<Section>& sections) {
    const auto require = [&](const wchar_t* section, const wchar_t* key) {
        const Text expected = Expected(sections, section, key);
        RequireAnswer(file, section, key, expected, expected.size() + 2);
    };
    const std::size_t most = 12;
    const SourceSnapshot snapshot;
    for (int twice = 0; twice < 2; ++twice) require(nullptr, nullptr);  // read, then kept
    for (const Section& section : std::span{sections}.first(std::min(most, sections.size()))) {
        require(section.name.c_str(), nullptr);
        for (const Section& other : std::span{sections}.first(std::min(most, sections.size()))) {
            for (const Entry& entry : std::span{other.entries}.first(std::min(most, other.entries.size()))) {
                require(Folded(section.name).c_str(), entry.key.c_str());
            }
        }
    }
}

/// A line is marked as answering exactly when a question finds it.
void RequireSameLines(const MemoryFile& file, std::span<const SourceLine> lines) {
    wchar_t buffer[512];
    for (const SourceLine& line : lines) {
        if (line.kind != SourceLine::Kind::Entry) continue;
        int found = 0;
        const unsigned count = GetProfileStringAndLine(line.section.GetString(), line.key.GetString(), L"", buffer, 512,
                                                       file.Name().GetString(), found);
        REQUIRE((found == line.number) == line.answers);
        REQUIRE(!line.answers || (CString{std::wstring_view{buffer, count}} == line.value.Left(511)));
    }
}

/// The lines follow one another through all bytes of a file, and names and values are at their stated places.
void RequirePlaces(const SourceFileLines& view, std::string_view bytes) {
    std::size_t at = view.lines.empty() ? 0 : view.lines[0].place.start;
    const auto textOf = [&](const SourceRange& place) { return DecodeSource(place.In(bytes), view.encoding); };
    for (const SourceLine& line : view.lines) {
        using enum SourceLine::Kind;
        REQUIRE(line.place.start == at);
        at = line.place.End() + line.endLength;
        REQUIRE(textOf({line.place.End(), line.endLength}).Trim(L"\r\n").IsEmpty());
        REQUIRE((line.endLength == 0) <= (&line == &view.lines.back()));
        REQUIRE(textOf(line.valuePlace) == line.value);
        REQUIRE(line.kind != Blank ? textOf(line.namePlace) == (line.kind == Section ? line.section : line.key)
                                   : line.namePlace.length == 0);
    }
    REQUIRE(bytes.size() - at < 2 || view.lines.empty());  // a last odd byte of UTF-16 is dropped
}

void RequireLines(const MemoryFile& file, const Text& text, std::string_view bytes) {
    const SourceReplacement given{L"/missing", std::string{bytes}};
    const auto view = ReadProfileLines(L"/missing");
    RequirePlaces(view, bytes);
    REQUIRE(view.lines.size() == ReadProfileLines(file.Name()).lines.size());
    REQUIRE(view.reading == SourceReading::Done);
    REQUIRE(static_cast<std::size_t>(view.sectionListLength) == Expected(Sections(text), nullptr, nullptr).size());
    const auto lines = std::span{view.lines}.first(std::min<std::size_t>(50, view.lines.size()));
    RequireSameLines(file, lines);
    const SourceSnapshot snapshot;  // from the second question on by its index
    RequireSameLines(file, lines);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile file;
    std::string_view input = InputText(data, size);
    const std::string_view first = NextLine(input);
    const std::optional<CString> section = Question(NextLine(input));
    const std::optional<CString> key = Question(NextLine(input));
    const wchar_t* const sectionText = section ? section->GetString() : nullptr;
    const wchar_t* const keyText = key ? key->GetString() : nullptr;
    file.Write(input);

    const std::vector<Section> sections = Sections(Decoded(input));
    const Text expected = Expected(sections, sectionText, keyText);
    const std::size_t small = first.empty() ? 0 : static_cast<std::uint8_t>(first[0] - '0');
    for (const std::size_t capacity : {small, expected.size() + 1, expected.size() + 2}) {
        RequireAnswer(file, sectionText, keyText, expected, capacity);
    }
    {
        const SourceSnapshot snapshot;
        for (int i = 0; i < 3; ++i) RequireAnswer(file, sectionText, keyText, expected, expected.size() + 2);
    }
    RequireAllAnswers(file, sections);
    RequireLines(file, Decoded(input), input);
    return 0;
}
