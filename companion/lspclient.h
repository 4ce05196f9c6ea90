#pragma once

#include <iosfwd>

#include "json.h"
#include "lintcodes.h"
#include "lsptext.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::config {

/// The client at the other end: its capabilities, and the messages to it.
class LspClient {
public:
    /// @param output  must outlive the client
    explicit LspClient(std::ostream& output) : m_Output(output) {}

    /// Reads the client's capabilities, which may have any form.
    void Meet(const LspJson& capabilities);
    ColumnUnit Unit() const { return m_Unit; }
    bool ShowsMarkdown() const { return m_ShowsMarkdown; }
    bool KnowsSymbolTrees() const { return m_KnowsSymbolTrees; }
    bool CanWatch() const { return m_CanWatch; }

    void Send(const LspJson& message);
    void Notify(const char* method, LspJson params);
    /// Sends the client a request and does not wait for its reply.
    void Ask(const char* method, LspJson params);
    /// Shows a text to the user; a note goes into the log of the client.
    void Show(Severity severity, const CString& text);

private:
    std::ostream& m_Output;
    int m_nAsked = 0;
    ColumnUnit m_Unit = ColumnUnit::Utf16;
    bool m_ShowsMarkdown = false;
    bool m_KnowsSymbolTrees = false;
    bool m_CanWatch = false;
};

}  // namespace veltrane::config
