#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "lspmessages.h"
#include "lspworld.h"

namespace veltrane::config {

/// Why a request is not answered.
struct LspFault {
    LspError code;
    std::string text;
};

LspJson FaultReply(const LspJson& id, const LspFault& fault);

/// The id of a request; null for anything else, whatever it looks like.
LspJson IdOf(const LspJson& message);

/// The talk with a client: what it may say when, and who answers.
class LspTalk {
public:
    /// @param client  must outlive the talk
    LspTalk(const LspTool& tool, const std::vector<CString>& arguments, LspClient& client)
        : m_Client(client), m_World(tool, arguments, client) {}

    bool IsOver() const { return m_State == State::Over; }
    bool IsShutDown() const { return m_IsShutDown; }
    void End() { m_State = State::Over; }

    /// Answers one message, or several in an array.
    void Handle(const LspJson& message);
    /// Sends the findings for the texts as they are now.
    void Publish();

private:
    enum class State { New, Serving, ShutDown, Over };

    LspJson ReplyTo(const LspJson& message);
    LspJson Handled(const LspJson& message, const LspJson& id);
    LspJson Answer(const std::string& method, const LspJson& params);
    void Note(const std::string& method, const LspJson& params);

    LspClient& m_Client;
    LspWorld m_World;
    State m_State = State::New;
    bool m_IsShutDown = false;
};

}  // namespace veltrane::config
