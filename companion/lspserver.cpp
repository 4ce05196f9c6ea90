#include <algorithm>
#include <deque>

#include "lsp.h"
#include "lsptalk.h"

namespace veltrane::config {

namespace {

class Server {
public:
    Server(const LspTool& tool, const std::vector<CString>& arguments, std::streambuf& input, std::ostream& output)
        : m_Reader(input), m_Client(output), m_Talk(tool, arguments, m_Client) {}

    /// Messages that have arrived are handled before findings are sent: of a burst of changes only the last text is
    /// checked, and a request that is cancelled meanwhile is not answered.
    int Run() {
        while (!m_Talk.IsOver()) {
            bool isMore = Receive(m_Reader.Next());
            while (isMore && m_Reader.IsReady() && m_nWaiting < MessageReader::MAX_SIZE)
                isMore = Receive(m_Reader.Next());
            HandleWaiting();
            if (!isMore) m_Talk.End();
            m_Talk.Publish();
        }
        return m_Talk.IsShutDown() ? 0 : 1;
    }

private:
    /// @return whether more may come
    bool Receive(Incoming incoming) {
        if (incoming.IsEnd()) return false;
        if (!incoming.message) {
            m_Client.Send(FaultReply({}, {incoming.error, incoming.errorText}));
            return true;
        }
        const LspJson cancelled = CancelledBy(*incoming.message);
        if (!cancelled.is_null()) Cancel(cancelled);
        m_nWaiting += incoming.size;
        m_Waiting.push_back(std::move(*incoming.message));
        return true;
    }

    // The id of the request that a message cancels; null for any other message.
    static LspJson CancelledBy(const LspJson& message) {
        const bool isCancelling = message.is_object() && message.value("method", LspJson{}) == "$/cancelRequest";
        return isCancelling ? IdOf(message.value("params", LspJson{})) : LspJson{};
    }

    void Cancel(const LspJson& id) {
        const auto found = std::ranges::find_if(m_Waiting, [&](const LspJson& message) { return IdOf(message) == id; });
        if (found == m_Waiting.end()) return;
        m_Waiting.erase(found);
        m_Client.Send(FaultReply(id, {LspError::Cancelled, "the request was cancelled"}));
    }

    void HandleWaiting() {
        for (; !m_Waiting.empty() && !m_Talk.IsOver(); m_Waiting.pop_front()) m_Talk.Handle(m_Waiting.front());
        m_nWaiting = 0;
    }

    MessageReader m_Reader;
    LspClient m_Client;
    LspTalk m_Talk;
    std::deque<LspJson> m_Waiting;
    std::size_t m_nWaiting = 0;  // bytes of them
};

}  // namespace

int ServeEditor(const LspTool& tool, const std::vector<CString>& arguments, std::streambuf& input,
                std::ostream& output) {
    return Server{tool, arguments, input, output}.Run();
}

}  // namespace veltrane::config
