// A session with one client. Comes in: messages. Goes out: answers and events.
//
// Everything is done in one thread. While the program runs, it is interrupted all the time to look
// whether a message has come; most of them are answered without stopping it.

#include "tools/debug/adapter.hpp"

#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "tools/debug/session.hpp"
#include "tools/protocol/framing.hpp"

namespace krel::Debug {

namespace {

class Adapter {
public:
    Adapter(const std::string& path, Debugger::Rules allowed, int input, int itsOutput)
        : reader(input),
          output(itsOutput),
          session(
              path, allowed,
              [this](const char* event, Json body) { sendEvent(event, std::move(body)); },
              [this] { pollWhileRunning(); }) {}

    End run() {
        while (!session.isDone() && takeNext()) {
            session.proceed();
        }
        return session.isDone() ? End::Orderly : End::Early;
    }

private:
    /// Waits for a message and answers it. False when the client has gone.
    bool takeNext() {
        const std::optional<std::string> body = reader.next();
        if (!body) {
            hasGone = true;
            session.interrupt();
            return false;
        }
        const Json message = Json::parse(*body, nullptr, false);
        if (message.is_discarded() || !message.is_object()) {
            complain("a message is no JSON object");
        } else if (message.value("type", Json{}) == "request") {
            take(message);
        } else if (message.value("type", Json{}) != "response") {
            complain("a message is no request");
        }
        return true;
    }

    void pollWhileRunning() {
        while (!hasGone && !session.isDone() && reader.hasMore() && takeNext()) {
            // Answered.
        }
    }

    void take(const Json& message) {
        const Json command = message.value("command", Json{});
        const Json number = message.value("seq", Json{});
        if (!command.is_string() || !number.is_number_integer()) {
            complain("a request has no command or no number");
            return;
        }
        Json arguments = message.value("arguments", Json::object());
        if (!arguments.is_object()) {
            arguments = Json::object();
        }
        Json answer = {{"type", "response"}, {"request_seq", number}, {"command", command}};
        try {
            answer["body"] = session.answer(command.get_ref<const std::string&>(), arguments);
            answer["success"] = true;
        } catch (const std::exception& fault) {
            const std::string what = fault.what();
            answer["success"] = false;
            answer["message"] = what;
            Json error = {{"id", 1}, {"format", "{what}"}, {"variables", {{"what", what}}}};
            answer["body"] = {{"error", std::move(error)}};
        }
        send(std::move(answer));
    }

    void complain(const char* what) {
        sendEvent("output", {{"category", "important"}, {"output", std::string{what} + "\n"}});
    }

    void sendEvent(const char* event, Json body) {
        send({{"type", "event"}, {"event", event}, {"body", std::move(body)}});
    }

    /// Programs may print what is no UTF-8.
    void send(Json message) {
        message["seq"] = ++lastNumber;
        Protocol::writeMessage(output,
                               message.dump(-1, ' ', false, Json::error_handler_t::replace));
    }

    Protocol::MessageReader reader;
    const int output;
    int lastNumber = 0;
    bool hasGone = false;
    Session session;
};

}  // namespace

End serve(const std::string& path, Debugger::Rules allowed, int input, int output) {
    return Adapter{path, allowed, input, output}.run();
}

}  // namespace krel::Debug
