#include "lspoverlay.h"

#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

LspOverlay::LspOverlay(const LspDocuments& documents) {
    for (const auto& [uri, document] : documents.All()) {
        if (!document.path.empty()) m_Texts.emplace_back(FromUtf8(document.path), document.text.Bytes());
    }
}

}  // namespace veltrane::config
