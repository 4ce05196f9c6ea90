#include "lspdocuments.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "lspuri.h"

namespace veltrane::config {

std::string KnownPath(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path known = std::filesystem::weakly_canonical(path, failure);
    return failure ? path : known.string();
}

bool LspDocuments::Open(const std::string& uri, std::int64_t version, std::string text) {
    if (!HasRoom(text.size())) return false;
    const std::optional<std::string> path = PathOfUri(uri);
    m_All.insert_or_assign(
        uri, OpenDocument{uri, path ? KnownPath(*path) : std::string{}, version, DocumentText{std::move(text)}});
    return true;
}

bool LspDocuments::Change(const std::string& uri, std::optional<std::int64_t> version,
                          const std::vector<TextChange>& changes, ColumnUnit unit) {
    const auto found = m_All.find(uri);
    if (found == m_All.end() || version.value_or(INT64_MAX) < found->second.version) return false;
    OpenDocument& document = found->second;
    for (const auto& [range, text] : changes) {
        if (!HasRoom(text.size())) return false;
        if (range) document.text.Replace(*range, unit, text);
        if (!range) document.text = DocumentText{text};
    }
    document.version = version.value_or(document.version);
    return true;
}

bool LspDocuments::Close(const std::string& uri) {
    return m_All.erase(uri) > 0;
}

const OpenDocument* LspDocuments::Find(const std::string& uri) const {
    const auto found = m_All.find(uri);
    return found == m_All.end() ? nullptr : &found->second;
}

const OpenDocument* LspDocuments::FindPath(const std::string& path) const {
    const auto found = std::ranges::find_if(m_All, [&](const auto& entry) { return entry.second.path == path; });
    return path.empty() || found == m_All.end() ? nullptr : &found->second;
}

bool LspDocuments::HasRoom(std::size_t more) const {
    for (const auto& [uri, document] : m_All) more += document.text.Bytes().size();
    return more <= MAX_SIZE;
}

}  // namespace veltrane::config
