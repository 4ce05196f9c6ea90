#include "lsptalk.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "lspparams.h"
#include "lsprequests.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/snapshot.h"

namespace veltrane::config {

namespace {

using enum LspError;

/// While one lives, the files of open documents are what the client has of them, and all files stay as they are.
class Overlay {
public:
    /// @param documents  must not change during its lifetime
    explicit Overlay(const LspDocuments& documents) {
        for (const auto& [uri, document] : documents.All()) {
            if (!document.path.empty()) m_Texts.emplace_back(FromUtf8(document.path), document.text.Bytes());
        }
    }

private:
    std::list<SourceReplacement> m_Texts;
    SourceSnapshot m_Snapshot;
};

struct RequestRow {
    std::string_view method;
    LspJson (*answer)(LspWorld& world, const LspView& view, const LspJson& params);
};

struct NoteRow {
    std::string_view method;
    void (*take)(LspWorld& world, const LspJson& params);
};

// clang-format off
constexpr RequestRow REQUESTS[] = {
    {"textDocument/hover",               Hover},
    {"textDocument/completion",          Complete},
    {"textDocument/definition",          GoToDefinition},
    {"textDocument/references",          FindReferences},
    {"textDocument/documentSymbol",      ListSymbols},
    {"textDocument/foldingRange",        ListFoldings},
    {"textDocument/codeAction",          ListActions},
    {"textDocument/semanticTokens/full", ListTokens},
};

constexpr NoteRow NOTES[] = {
    {"initialized",                      OnInitialized},
    {"textDocument/didOpen",             OnOpened},
    {"textDocument/didChange",           OnChanged},
    {"textDocument/didSave",             OnFilesChanged},
    {"textDocument/didClose",            OnClosed},
    {"workspace/didChangeWatchedFiles",  OnFilesChanged},
};
// clang-format on

bool IsReply(const LspJson& message) {
    return message.is_object() && !message.contains("method") &&
           (message.contains("result") || message.contains("error"));
}

}  // namespace

LspJson FaultReply(const LspJson& id, const LspFault& fault) {
    return {
        {"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", static_cast<int>(fault.code)}, {"message", fault.text}}}};
}

LspJson IdOf(const LspJson& message) {
    const LspJson id = message.is_object() ? message.value("id", LspJson{}) : LspJson{};
    return id.is_string() || id.is_number() ? id : LspJson{};
}

void LspTalk::Handle(const LspJson& message) {
    LspJson reply;
    if (message.is_array() && !message.empty()) {
        for (const LspJson& each : message) {
            LspJson one = ReplyTo(each);
            if (!one.is_null()) reply.push_back(std::move(one));
        }
    } else {
        reply = ReplyTo(message);
    }
    if (!reply.is_null()) m_Client.Send(reply);
}

void LspTalk::Publish() {
    if (m_State == State::Serving && m_World.HasNews()) {
        const Overlay overlay{m_World.documents};
        m_World.Publish();
    }
}

// Null for a message without a reply.
LspJson LspTalk::ReplyTo(const LspJson& message) {
    const LspJson id = IdOf(message);
    const auto reply = [&](LspError code, const std::string& text) { return FaultReply(id, {code, text}); };
    try {
        return Handled(message, id);
    } catch (const LspFault& fault) {
        return FaultReply(id, fault);
    } catch (const LspJson::exception&) {
        return id.is_null() ? LspJson{} : reply(InvalidParams, "the parameters do not fit the request");
    } catch (const Refusal& refusal) {
        return id.is_null() ? LspJson{} : reply(Internal, ToUtf8(refusal.text));
    } catch (const XException& error) {
        return id.is_null() ? LspJson{} : reply(Internal, ToUtf8(error.GetMessage()));
    } catch (const std::exception& failure) {
        return id.is_null() ? LspJson{} : reply(Internal, failure.what());
    }
}

LspJson LspTalk::Handled(const LspJson& message, const LspJson& id) {
    if (IsReply(message)) return {};  // to what the client was asked
    if (!message.is_object() || !message.contains("method") || !message["method"].is_string())
        throw LspFault{InvalidRequest, "the message is not a request"};
    const auto& method = message["method"].get_ref<const std::string&>();
    const LspJson params = message.value("params", LspJson{});
    const bool isNote = !message.contains("id");
    if (!isNote && id.is_null()) throw LspFault{InvalidRequest, "the id of a request must be a number or a text"};
    if (!isNote) return {{"jsonrpc", "2.0"}, {"id", id}, {"result", Answer(method, params)}};
    Note(method, params);
    return {};
}

LspJson LspTalk::Answer(const std::string& method, const LspJson& params) {
    const bool isStart = method == "initialize";
    if (m_State == State::New && !isStart) throw LspFault{NotInitialized, "'initialize' must come first"};
    if (m_State != State::New && isStart) throw LspFault{InvalidRequest, "'initialize' may come only once"};
    if (m_State == State::ShutDown) throw LspFault{InvalidRequest, "only 'exit' may come after 'shutdown'"};
    if (isStart) {
        m_State = State::Serving;
        return Initialize(m_World, params);
    }
    if (method == "shutdown") {
        m_State = State::ShutDown;
        m_IsShutDown = true;
        return {};
    }
    const auto* const row = std::ranges::find(REQUESTS, method, &RequestRow::method);
    if (row == std::end(REQUESTS)) throw LspFault{MethodNotFound, "'" + method.substr(0, 100) + "' is not known"};
    const Overlay overlay{m_World.documents};
    const std::optional<LspView> view = m_World.Look(UriIn(params));
    return view ? row->answer(m_World, *view, params) : LspJson{};
}

// A notification that is unknown, or comes at the wrong time, is ignored, as the protocol requires.
void LspTalk::Note(const std::string& method, const LspJson& params) {
    if (method == "exit") End();
    if (m_State != State::Serving) return;
    const auto* const row = std::ranges::find(NOTES, method, &NoteRow::method);
    if (row != std::end(NOTES)) row->take(m_World, params);
}

}  // namespace veltrane::config
