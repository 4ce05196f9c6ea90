#include "veltrane/platform/sources/detail/registryindex.h"

#include <algorithm>

#include "veltrane/platform/text/internal/decoding.h"

namespace veltrane::detail {

namespace {

/// How the path of a line relates to a folded path.
enum class Relation { Same, Above, Below, Other };

Relation Compare(FileText path, std::wstring_view folded) noexcept {
    const bool isRoot = path.bytes.empty() || folded.empty();
    while (!path.bytes.empty() && !folded.empty()) {
        if (CutFolded(path) != folded[0]) return Relation::Other;
        folded.remove_prefix(1);
    }
    if (path.bytes.empty() && folded.empty()) return Relation::Same;
    if (path.bytes.empty()) return isRoot || folded[0] == L'\\' ? Relation::Above : Relation::Other;
    return isRoot || path.bytes[0] == '\\' ? Relation::Below : Relation::Other;
}

/// Whether a path begins with the first bytes of another and a separator after them.
bool SharesParent(std::string_view path, std::string_view other, std::size_t size) noexcept {
    return path.size() > size && path[size] == '\\' && path.substr(0, size) == other.substr(0, size);
}

}  // namespace

int ApplyValue(RegistryLine& read, const CString& name, RegistryValues& values) {
    if (read.kind == RegistryLine::Kind::RemovedValue) {
        const auto removed = values.extract(name);
        return removed ? removed.mapped().line : 0;
    }
    RegistryValue& value = values[name];
    const int before = value.line;
    value = {read.type, std::move(read.data), read.number};
    return before;
}

bool IsRemovedBy(FileText removed, std::wstring_view folded) noexcept {
    const Relation relation = Compare(removed, folded);
    return relation == Relation::Same || relation == Relation::Above;
}

RegistryIndex::RegistryIndex(FileText text) : m_Text(text) {
    RegistryWalk walk{text};
    RegistryLine read;
    m_HasKeys = walk.ReadHeader(read) && read.kind == RegistryLine::Kind::Header;
    m_IsOld = walk.IsOld();
    while (m_HasKeys && walk.NextKey(read)) Add(read);
    m_Paths.Link();
}

void RegistryIndex::Add(const RegistryLine& read) {
    using enum RegistryLine::Kind;
    const bool isPath = read.kind == Key || read.kind == RemovedKey;
    if (!isPath && (m_KeyLines.empty() || m_KeyLines.back().kind != Key)) return;  // there are no values to end
    const std::string_view path = isPath ? read.path : read.line;
    m_KeyLines.push_back({PlaceOf(read.line.data()), PlaceOf(read.line.data() + read.line.size()), PlaceOf(path.data()),
                          static_cast<std::uint32_t>(path.size()), read.number, read.kind});
    if (read.kind == Key) AddPath(path, m_KeyLines.size() - 1);
    if (read.kind != RemovedKey) return;
    m_Removals.push_back(m_KeyLines.size() - 1);
    m_LastPath = {};
    m_LastParents.clear();
}

// The line also creates all keys above its own. Those that it shares with the path before it, as in most lines of an
// export, are in the table already.
void RegistryIndex::AddPath(std::string_view path, std::size_t number) {
    while (!m_LastParents.empty() && !SharesParent(path, m_LastPath, m_LastParents.back().first)) {
        m_LastParents.pop_back();
    }
    const auto [known, hashOfKnown] =
        m_LastParents.empty() ? std::pair{std::size_t{0}, NameHash{}} : m_LastParents.back();
    NameHash hash = hashOfKnown;
    if (!m_LastPath.data() && !path.empty()) m_Paths.Add(hash, number);  // the root
    for (FileText rest = m_Text.Piece(path.substr(known)); !rest.bytes.empty();) {
        const std::size_t size = path.size() - rest.bytes.size();
        if (rest.bytes[0] == '\\' && size > known) {
            m_Paths.Add(hash, number);
            m_LastParents.emplace_back(size, hash);
        }
        hash.Add(CutFolded(rest));
    }
    m_Paths.Add(hash, number);
    m_LastPath = path;
}

std::shared_ptr<const RegistryValues> RegistryIndex::Find(const CString& path) {
    if (!m_HasKeys) return nullptr;
    const auto known = m_Read.find(path);
    if (known != m_Read.end()) return known->second;
    return m_Read.emplace(path, Read(path.View())).first->second;
}

std::shared_ptr<const RegistryValues> RegistryIndex::Read(std::wstring_view path) const {
    const std::size_t from = AfterRemoval(path);
    bool exists = path.empty() && from == 0;
    auto values = std::make_shared<RegistryValues>();
    m_Paths.Find(NameHash{}.AddFolded(path), [&](std::size_t number) {
        if (number < from) return false;
        const Relation relation = Compare(PathOf(m_KeyLines[number]), path);
        exists = exists || relation == Relation::Same || relation == Relation::Below;
        if (relation == Relation::Same) ReadValues(number, *values);
        return false;
    });
    return exists ? values : nullptr;
}

/// Number of the first key line after the last one that removes a path.
std::size_t RegistryIndex::AfterRemoval(std::wstring_view path) const noexcept {
    const auto removes = [&](std::size_t number) { return IsRemovedBy(PathOf(m_KeyLines[number]), path); };
    const auto last = std::find_if(m_Removals.rbegin(), m_Removals.rend(), removes);
    return last == m_Removals.rend() ? 0 : *last + 1;
}

void RegistryIndex::ReadValues(std::size_t number, RegistryValues& values) const {
    const KeyLine& line = m_KeyLines[number];
    const std::size_t end = number + 1 < m_KeyLines.size() ? m_KeyLines[number + 1].place : m_Text.bytes.size();
    RegistryWalk walk{m_Text.Piece(m_Text.bytes.substr(line.end, end - line.end)), line.number};
    walk.SetOld(m_IsOld);
    for (RegistryLine read; walk.Next(read);) {
        using enum RegistryLine::Kind;
        if (read.kind != Value && read.kind != RemovedValue) continue;
        ApplyValue(read, CString{DecodeFileText(m_Text.Piece(read.name))}.MakeLower(), values);
    }
}

}  // namespace veltrane::detail
