#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lsptext.h"

namespace veltrane::config {

/// A text that the client edits.
struct OpenDocument {
    std::string uri;   ///< as the client spells it
    std::string path;  ///< links followed; empty for a URI that is not a file of this machine
    std::int64_t version;
    DocumentText text;
};

/// One change of a text; without a range it is the whole text.
struct TextChange {
    std::optional<TextRange> range;
    std::string text;
};

/// The path of a file by which it is known: whole, links followed. The file may not exist.
std::string KnownPath(const std::string& path);

/// The texts that the client edits, by URI. A change that would be too large, or is for none of them, is ignored.
class LspDocuments {
public:
    static constexpr std::size_t MAX_SIZE = std::size_t{256} << 20;  ///< of all texts, in bytes

    /// Opens a text, in place of one that is open already.
    bool Open(const std::string& uri, std::int64_t version, std::string text);
    /// Changes a text, one change after the other. Changes to an older version than the text has are ignored.
    bool Change(const std::string& uri, std::optional<std::int64_t> version, const std::vector<TextChange>& changes,
                ColumnUnit unit);
    bool Close(const std::string& uri);

    const OpenDocument* Find(const std::string& uri) const;
    /// The one of a file; null for a file that is not open.
    const OpenDocument* FindPath(const std::string& path) const;
    const std::map<std::string, OpenDocument>& All() const { return m_All; }

private:
    bool HasRoom(std::size_t more) const;

    std::map<std::string, OpenDocument> m_All;
};

}  // namespace veltrane::config
