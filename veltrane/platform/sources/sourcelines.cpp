#include "veltrane/platform/sources/sourcelines.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/sources/detail/profilescan.h"
#include "veltrane/platform/sources/detail/registryindex.h"
#include "veltrane/platform/sources/detail/registrywalk.h"
#include "veltrane/platform/sources/detail/sourcefile.h"
#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/encoding.h"
#include "veltrane/platform/text/internal/decoding.h"
#include "veltrane/platform/text/internal/utf16.h"
#include "veltrane/platform/text/internal/utf8.h"

namespace veltrane {

using namespace detail;

namespace {

using Kind = SourceLine::Kind;
using Reason = SourceLine::Reason;

bool HasWindows1252(const SourceFile& file) noexcept {
    FileText rest = file.Text();
    while (!rest.bytes.empty()) {
        const bool isAscii = static_cast<unsigned char>(rest.bytes[0]) < 0x80;
        const std::size_t length = isAscii ? 1 : ReadUtf8(rest.bytes, rest.withSurrogates).length;
        if (length == 0) return true;
        rest.bytes.remove_prefix(length);
    }
    return false;
}

SourceFileLines DescribeFile(const CString& path, const SourceFile& file) {
    SourceFileLines described;
    described.path = FromUtf8(MapPath(path));
    described.reading = file.Result();
    described.encoding = file.Encoding();
    described.hasWindows1252 = HasWindows1252(file);
    return described;
}

CString Decoded(const SourceFile& file, std::string_view bytes) {
    return CString{DecodeFileText(file.Text().Piece(bytes))};
}

// A value loses only blanks and its quotes.
bool IsQuoted(const ProfileLine& line) {
    const std::string_view value = line.Value();
    if (value.data() == line.right.data()) return false;
    const char before = line.right[static_cast<std::size_t>(value.data() - line.right.data()) - 1];
    return before == '"' || before == '\'';
}

/// Where the value of an entry is; an empty one without quotes is after the blanks.
std::string_view PlaceOfValue(const ProfileLine& line) {
    const std::string_view value = line.Value();
    return value.empty() && !IsQuoted(line) ? WithoutLeadingBlanks(line.right).substr(0, 0) : value;
}

/// Turns pieces of a text into their places in the file that it was read from. UTF-16 is counted from the last place
/// on, so pieces that come in order, and one inside another, cost one pass.
class FilePlaces {
public:
    explicit FilePlaces(const SourceFile& file)
        : m_Text(file.Text()), m_Encoding(file.Encoding()), m_nAt(MarkLength(m_Encoding)) {}

    SourceRange PlaceOf(std::string_view piece) {
        const auto start = static_cast<std::size_t>(piece.data() - m_Text.bytes.data());
        m_nAt += LengthOf(m_Text.bytes.substr(m_nCounted, start - m_nCounted));
        m_nCounted = start;
        return {m_nAt, LengthOf(piece)};
    }
    /// The line after those that are known, with its number and its place.
    SourceLine Begin(std::string_view line, const std::vector<SourceLine>& known) {
        const auto end = static_cast<std::size_t>(line.data() - m_Text.bytes.data()) + line.size();
        const std::size_t endLength = m_Text.bytes.substr(end, 2) == "\r\n" ? 2 : 1;
        return {.number = static_cast<int>(known.size()) + 1,
                .place = PlaceOf(line),
                .endLength = LengthOf(m_Text.bytes.substr(end, endLength))};
    }

private:
    static std::uint32_t MarkLength(SourceEncoding encoding) {
        return encoding == SourceEncoding::Utf8 ? 0 : encoding == SourceEncoding::Utf8WithMark ? 3 : 2;
    }
    std::uint32_t LengthOf(std::string_view piece) const {
        if (!m_Text.withSurrogates) return static_cast<std::uint32_t>(piece.size());
        std::uint32_t units = 0;
        for (const char byte : piece) {  // one for each character, two for one that takes four bytes
            const auto value = static_cast<unsigned char>(byte);
            units += (value & 0xC0) != 0x80 ? 1U : 0U;
            units += value >= 0xF0 ? 1U : 0U;
        }
        return 2 * units;
    }

    FileText m_Text;
    SourceEncoding m_Encoding;
    std::size_t m_nCounted = 0;  // of the text
    std::uint32_t m_nAt;         // of the file
};

/// Tells what each line of an INI file is as the lines come.
class ProfileLines {
public:
    ProfileLines(const SourceFile& file, SourceFileLines& result) : m_File(file), m_Result(result), m_Places(file) {}

    void Read() {
        LineWalk walk{m_File.Text().bytes};
        for (std::string_view line; walk.Next(line);) {
            if (walk.IsInsidePair()) continue;
            SourceLine read = m_Places.Begin(line, m_Result.lines);
            read.section = m_Section;
            Describe(ReadProfileLine(line), read);
            m_Result.lines.push_back(std::move(read));
        }
    }

private:
    void Describe(const ProfileLine& line, SourceLine& read) {
        using enum ProfileLine::Kind;
        if (line.kind == Comment) read.kind = Kind::Comment;
        if (line.kind == Comment || line.kind == NoEquals) DescribeKey(WithoutBlanks(line.line), read);
        if (line.kind == Header) DescribeSection(line, read);
        if (line.kind == Entry) DescribeEntry(line, read);
        if (line.kind == NoEquals) Ignore(read, Reason::NoEquals);
        if (line.kind == NoKey) Ignore(read, Reason::EmptyKey);
    }

    void Ignore(SourceLine& read, Reason reason) const {
        read.kind = Kind::Ignored;
        read.reason = m_Sections.empty() ? Reason::BeforeFirstSection : reason;
    }

    void DescribeKey(std::string_view key, SourceLine& read) {
        read.key = Decoded(m_File, key);
        read.namePlace = m_Places.PlaceOf(key);
    }

    void DescribeSection(const ProfileLine& line, SourceLine& read) {
        m_Section = Decoded(m_File, line.name);
        read.namePlace = m_Places.PlaceOf(line.name);
        m_IsFirst = m_Sections.insert(CString{m_Section}.MakeLower()).second;
        m_Keys.clear();
        if (!m_Section.IsEmpty()) m_Result.sectionListLength += m_Section.GetLength() + 1;
        read.kind = Kind::Section;
        read.section = m_Section;
        read.answers = m_IsFirst;
        if (line.right.empty()) read.reason = Reason::HeaderWithoutBracket;
        if (!m_IsFirst) read.reason = Reason::DuplicateSection;
    }

    void DescribeEntry(const ProfileLine& line, SourceLine& read) {
        DescribeKey(line.name, read);
        read.value = Decoded(m_File, line.Value());
        read.valuePlace = m_Places.PlaceOf(PlaceOfValue(line));
        read.isQuoted = IsQuoted(line);
        if (m_Sections.empty()) return Ignore(read, Reason::None);
        read.kind = Kind::Entry;
        const bool isFirstKey = m_Keys.insert(CString{read.key}.MakeLower()).second;
        read.answers = m_IsFirst && isFirstKey;
        if (!isFirstKey) read.reason = Reason::DuplicateKey;
        if (!m_IsFirst) read.reason = Reason::DuplicateSection;
    }

    const SourceFile& m_File;
    SourceFileLines& m_Result;
    FilePlaces m_Places;
    CString m_Section;
    bool m_IsFirst = false;
    std::set<CString> m_Sections;  // folded, as are the keys
    std::set<CString> m_Keys;      // of the section
};

/// Tells what each line of a registry file is; a line stops answering when a later one replaces or removes it.
class RegistryLines {
public:
    RegistryLines(const SourceFile& file, std::vector<SourceLine>& lines) : m_File(file), m_Lines(lines) {}

    void Read() {
        ReadBlanksAndComments();
        RegistryWalk walk{m_File.Text()};
        RegistryLine line;
        if (!walk.ReadHeader(line)) return;
        if (line.kind == RegistryLine::Kind::BadHeader) return RefuseAll();
        At(line.number).kind = Kind::Header;
        while (walk.Next(line)) {
            SourceLine& read = At(line.number);
            for (int number = line.number + 1; number <= line.last; ++number) {
                if (At(number).kind == Kind::Ignored) Set(At(number), Kind::Continuation, Reason::None);
            }
            read.section = m_Path;
            Describe(line, read);
        }
    }

private:
    /// What holds for the values of a key and for the lines that name it.
    struct Key {
        std::vector<int> lines;
        RegistryValues values;
    };
    /// Places each path directly before those below it.
    struct PathOrder {
        static std::int64_t Rank(wchar_t element) noexcept { return element == L'\\' ? -1 : std::int64_t{element}; }
        bool operator()(const CString& left, const CString& right) const noexcept {
            return std::ranges::lexicographical_compare(left.View(), right.View(), {}, Rank, Rank);
        }
    };
    using Keys = std::map<CString, Key, PathOrder>;  // by folded path

    SourceLine& At(int number) { return m_Lines[static_cast<std::size_t>(number) - 1]; }
    static void Set(SourceLine& line, Kind kind, Reason reason) {
        line.kind = kind;
        line.reason = reason;
    }
    void Revoke(int number, Reason reason) {
        At(number).answers = false;
        At(number).reason = reason;
    }

    void ReadBlanksAndComments() {
        LineWalk walk{m_File.Text().bytes};
        FilePlaces places{m_File};
        for (std::string_view line; walk.Next(line);) {
            if (walk.IsInsidePair()) continue;
            SourceLine read = places.Begin(line, m_Lines);
            line = WithoutBlanks(line);
            if (!line.empty()) read.kind = line[0] == ';' ? Kind::Comment : Kind::Ignored;
            if (read.kind == Kind::Comment) read.key = Decoded(m_File, line);
            m_Lines.push_back(std::move(read));
        }
    }

    void RefuseAll() {
        for (SourceLine& line : m_Lines) {
            if (line.kind != Kind::Blank) Set(line, Kind::Ignored, Reason::BadHeader);
        }
    }

    void Describe(RegistryLine& line, SourceLine& read) {
        using enum RegistryLine::Kind;
        if (line.kind == Key) return DescribeKey(line, read);
        if (line.kind == RemovedKey) return RemoveKey(line, read);
        if (line.kind == MalformedKey) return LeaveKey(read, Reason::MalformedKey, {});
        if (line.kind == OtherRoot) return LeaveKey(read, Reason::OtherRoot, Decoded(m_File, line.path));
        if (line.kind == Value || line.kind == RemovedValue) return DescribeValue(line, read);
        Set(read, Kind::Ignored, line.kind == MalformedValue ? Reason::MalformedValue : Reason::Other);
    }

    void LeaveKey(SourceLine& read, Reason reason, const CString& path) {
        m_Current = nullptr;
        m_Path = {};
        read.section = path;
        Set(read, Kind::Ignored, reason);
    }

    void DescribeKey(const RegistryLine& line, SourceLine& read) {
        read.section = m_Path = Decoded(m_File, line.path);
        m_IsAskable = m_Path.Find(L'\0') < 0;
        Answer(read, Kind::Section, m_IsAskable);
        m_Current = &m_Keys[CString{m_Path}.MakeLower()];
        m_Current->lines.push_back(line.number);
    }

    static void Answer(SourceLine& read, Kind kind, bool isAskable) {
        Set(read, kind, isAskable ? Reason::None : Reason::UnaskableName);
        read.answers = isAskable;
    }

    void RemoveKey(const RegistryLine& line, SourceLine& read) {
        const CString path = Decoded(m_File, line.path);
        LeaveKey(read, Reason::None, path);
        read.kind = Kind::Removal;
        const FileText removed = m_File.Text().Piece(line.path);
        for (auto key = m_Keys.lower_bound(CString{path}.MakeLower());
             key != m_Keys.end() && IsRemovedBy(removed, key->first.View());) {
            key = Remove(key);
        }
    }

    Keys::iterator Remove(Keys::iterator key) {
        for (const int number : key->second.lines) Revoke(number, Reason::RemovedLater);
        for (const auto& [name, value] : key->second.values) Revoke(value.line, Reason::RemovedLater);
        return m_Keys.erase(key);
    }

    void DescribeValue(RegistryLine& line, SourceLine& read) {
        const bool isRemoved = line.kind == RegistryLine::Kind::RemovedValue;
        read.key = Decoded(m_File, line.name);
        if (!m_Current) return Set(read, Kind::Ignored, Reason::NoCurrentKey);
        read.value = RegistryText(reinterpret_cast<const unsigned char*>(line.data.data()),
                                  static_cast<std::uint32_t>(line.data.size()));
        const int before = ApplyValue(line, CString{read.key}.MakeLower(), m_Current->values);
        if (before != 0) Revoke(before, isRemoved ? Reason::RemovedLater : Reason::ReplacedLater);
        if (isRemoved) return Set(read, Kind::Removal, Reason::None);
        Answer(read, Kind::Entry, m_IsAskable && read.key.Find(L'\0') < 0);
    }

    const SourceFile& m_File;
    std::vector<SourceLine>& m_Lines;
    Keys m_Keys;
    Key* m_Current = nullptr;
    CString m_Path;
    bool m_IsAskable = false;
};

}  // namespace

SourceFileLines ReadProfileLines(const CString& path) {
    AskedFile asked{path};
    SourceFileLines result = DescribeFile(path, asked.File());
    ProfileLines{asked.File(), result}.Read();
    return result;
}

SourceFileLines ReadRegistryLines(const CString& path) {
    AskedFile asked{path};
    SourceFileLines result = DescribeFile(path, asked.File());
    RegistryLines{asked.File(), result.lines}.Read();
    return result;
}

CString DecodeSource(std::string_view bytes, SourceEncoding encoding) {
    using enum SourceEncoding;
    if (encoding == Utf8 || encoding == Utf8WithMark) return CString{DecodeFileText({bytes})};
    std::wstring text;
    const Utf16Order order = encoding == Utf16LittleEndian ? Utf16Order::LittleEndian : Utf16Order::BigEndian;
    for (Utf16Reader reader{bytes, order}; reader.More();) text += static_cast<wchar_t>(reader.Next());
    return CString{std::move(text)};
}

}  // namespace veltrane
