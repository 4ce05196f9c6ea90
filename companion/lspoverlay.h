#pragma once

#include <list>

#include "lspdocuments.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/snapshot.h"

namespace veltrane::config {

/// While one lives, the files of open documents are what the client has of them, and all files stay as they are.
class LspOverlay {
public:
    /// @param documents  must not change during its lifetime
    explicit LspOverlay(const LspDocuments& documents);

private:
    std::list<detail::SourceReplacement> m_Texts;
    detail::SourceSnapshot m_Snapshot;
};

}  // namespace veltrane::config
