// A session with one client. Comes in: messages. Goes out: answers, and diagnostics.
//
// Everything is done in one thread. Before a message is handled, all that have arrived are read. So
// a request can be cancelled while it waits, and the diagnostics of a document are only made when
// nothing more has been typed in the meantime.

#include "tools/lsp/server.hpp"

#include <algorithm>
#include <deque>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tools/lsp/features.hpp"
#include "tools/lsp/session.hpp"
#include "tools/protocol/framing.hpp"

namespace krel::Lsp {

namespace {

using NotificationHandler = void (*)(Session& session, const Json& parameters);

const std::unordered_map<std::string_view, RequestHandler>& requestHandlers() {
    static const std::unordered_map<std::string_view, RequestHandler> handlers = {
        {"textDocument/codeAction", codeActions},
        {"textDocument/completion", completion},
        {"textDocument/definition", definition},
        {"textDocument/documentHighlight", highlights},
        {"textDocument/documentSymbol", documentSymbols},
        {"textDocument/foldingRange", foldingRanges},
        {"textDocument/formatting", formatDocument},
        {"textDocument/hover", hover},
        {"textDocument/inlayHint", inlayHints},
        {"textDocument/onTypeFormatting", formatOnType},
        {"textDocument/prepareRename", prepareRename},
        {"textDocument/rangeFormatting", formatRange},
        {"textDocument/references", references},
        {"textDocument/rename", rename},
        {"textDocument/selectionRange", selectionRanges},
        {"textDocument/semanticTokens/full", semanticTokens},
        {"textDocument/semanticTokens/range", semanticTokensOfRange},
        {"textDocument/signatureHelp", signatureHelp},
        {"workspace/symbol", workspaceSymbols},
    };
    return handlers;
}

const std::unordered_map<std::string_view, NotificationHandler>& notificationHandlers() {
    static const std::unordered_map<std::string_view, NotificationHandler> handlers = {
        {"textDocument/didChange", changeDocument},
        {"textDocument/didClose", closeDocument},
        {"textDocument/didOpen", openDocument},
    };
    return handlers;
}

/// No more than this is read ahead, in messages and in bytes.
constexpr std::size_t mostWaiting = 1000;
constexpr std::size_t mostBytesWaiting = std::size_t{16} << 20U;

struct Message {
    Json json;
    std::size_t size = 0;
};

class Server {
public:
    Server(int input, int itsOutput) : reader(input), output(itsOutput) {}

    End run() {
        while (!end) {
            receive();
            if (waiting.empty()) {
                return End::Early;
            }
            const Message message = std::move(waiting.front());
            waiting.pop_front();
            bytesWaiting -= message.size;
            handle(message.json);
            if (!end) {
                publishWhileIdle();
            }
        }
        return *end;
    }

private:
    // Messages

    void receive() {
        while (!inputEnded && (waiting.empty() || mayReadAhead())) {
            std::optional<std::string> body = next();
            if (!body) {
                inputEnded = true;
                return;
            }
            take(*body);
        }
    }

    bool mayReadAhead() const {
        return waiting.size() < mostWaiting && bytesWaiting < mostBytesWaiting && reader.hasMore();
    }

    /// After headers that make no sense nothing more can be understood: the client is told.
    std::optional<std::string> next() {
        try {
            return reader.next();
        } catch (const std::runtime_error& fault) {
            fail(nullptr, ErrorCode::ParseError, fault.what());
            throw;
        }
    }

    void take(const std::string& body) {
        Json json = Json::parse(body, nullptr, false);
        if (json.is_discarded()) {
            fail(nullptr, ErrorCode::ParseError, "the message is no JSON");
        } else if (!json.is_object()) {
            fail(nullptr, ErrorCode::InvalidRequest, "the message is no object");
        } else if (!cancels(json)) {
            bytesWaiting += body.size();
            waiting.push_back({std::move(json), body.size()});
        }
    }

    /// Whether the message takes back a request; the one that waits, if any, is answered at once.
    bool cancels(const Json& json) {
        if (json.value("method", Json{}) != "$/cancelRequest") {
            return false;
        }
        const Json parameters = json.value("params", Json{});
        const Json id = parameters.is_object() ? parameters.value("id", Json{}) : Json{};
        const auto found =
            std::find_if(waiting.begin(), waiting.end(), [&id](const Message& message) {
                return !id.is_null() && message.json.contains("method") &&
                       message.json.value("id", Json{}) == id;
            });
        if (found != waiting.end()) {
            bytesWaiting -= found->size;
            waiting.erase(found);
            fail(id, ErrorCode::RequestCancelled, "the request was cancelled");
        }
        return true;
    }

    void send(const Json& json) {
        // Messages about odd characters may hold single bytes of them.
        Protocol::writeMessage(output, json.dump(-1, ' ', false, Json::error_handler_t::replace));
    }

    void fail(const Json& id, ErrorCode code, const std::string& message) {
        send({{"jsonrpc", "2.0"},
              {"id", id},
              {"error", {{"code", static_cast<int>(code)}, {"message", message}}}});
    }

    void notify(const char* method, Json parameters) {
        send({{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(parameters)}});
    }

    // Dispatch

    void handle(const Json& message) {
        const Json method = message.value("method", Json{});
        const bool hasId = message.contains("id");
        const Json id = message.value("id", Json{});
        const Json parameters = message.value("params", Json::object());
        const bool isAnswer = !message.contains("method") &&
                              (message.contains("result") || message.contains("error"));
        if (isAnswer) {
            return;
        }
        if (!method.is_string() || (hasId && !id.is_string() && !id.is_number_integer())) {
            fail(nullptr, ErrorCode::InvalidRequest, "the message is no request");
        } else if (hasId) {
            answer(id, method.get_ref<const std::string&>(), parameters);
        } else {
            take(method.get_ref<const std::string&>(), parameters);
        }
    }

    void answer(const Json& id, const std::string& method, const Json& parameters) {
        Json result;
        try {
            result = resultOf(method, parameters);
        } catch (const RequestError& fault) {
            fail(id, fault.code, fault.what());
            return;
        } catch (const Json::exception& fault) {
            fail(id, ErrorCode::InvalidParams, fault.what());
            return;
        } catch (const std::exception& fault) {
            fail(id, ErrorCode::InternalError, fault.what());
            return;
        }
        send({{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}});
    }

    Json resultOf(const std::string& method, const Json& parameters) {
        if (isShutDown) {
            throw RequestError(ErrorCode::InvalidRequest, "the server is shut down");
        }
        if (method == "initialize") {
            if (isInitialized) {
                throw RequestError(ErrorCode::InvalidRequest, "initialize was sent before");
            }
            Json result = initialize(session, parameters);
            isInitialized = true;
            return result;
        }
        if (!isInitialized) {
            throw RequestError(ErrorCode::ServerNotInitialized, "initialize has to come first");
        }
        if (method == "shutdown") {
            isShutDown = true;
            return nullptr;
        }
        const auto found = requestHandlers().find(method);
        if (found == requestHandlers().end()) {
            throw RequestError(ErrorCode::MethodNotFound, "there is no method " + method);
        }
        return found->second(session, parameters);
    }

    /// A notification. Unknown ones need no answer.
    void take(const std::string& method, const Json& parameters) {
        if (method == "exit") {
            end = isShutDown ? End::Orderly : End::Early;
            return;
        }
        const auto found = notificationHandlers().find(method);
        if (!isInitialized || isShutDown || found == notificationHandlers().end()) {
            return;
        }
        try {
            found->second(session, parameters);
        } catch (const std::exception& fault) {
            log(method + ": " + fault.what());
        }
    }

    void log(const std::string& message) {
        constexpr int errorMessage = 1;
        notify("window/logMessage", {{"type", errorMessage}, {"message", message}});
    }

    // Diagnostics

    void publishWhileIdle() {
        while (!session.changed.empty() && waiting.empty() && (inputEnded || !reader.hasMore())) {
            const std::string uri = *session.changed.begin();
            session.changed.erase(uri);
            publish(uri);
        }
    }

    void publish(const std::string& uri) {
        const auto document = session.documents.find(uri);
        if (document == session.documents.end()) {
            notify("textDocument/publishDiagnostics",
                   {{"uri", uri}, {"diagnostics", Json::array()}});
            return;
        }
        Json diagnostics;
        try {
            diagnostics = diagnosticsOf(*document->second);
        } catch (const std::exception& fault) {
            log(uri + ": " + fault.what());
            return;
        }
        notify("textDocument/publishDiagnostics", std::move(diagnostics));
    }

    Protocol::MessageReader reader;
    int output;
    Session session;
    std::deque<Message> waiting;
    std::size_t bytesWaiting = 0;
    bool inputEnded = false;
    bool isInitialized = false;
    bool isShutDown = false;
    std::optional<End> end;
};

}  // namespace

End serve(int input, int output) {
    return Server{input, output}.run();
}

}  // namespace krel::Lsp
