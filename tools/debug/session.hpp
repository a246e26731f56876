#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/debug/debugger.hpp"
#include "tools/debug/listing.hpp"
#include "tools/debug/protocol.hpp"

namespace krel::Debug {

/// What one client of the Debug Adapter Protocol has asked for, and the program that it debugs.
/// Names in messages are those of the protocol. Requests are answered by their members; the way to
/// go on that some of them begin is gone when the answer has been sent.
class Session final : public Listener {
public:
    using SendEvent = std::function<void(const char* event, Json body)>;
    using Poll = std::function<void()>;

    /// `path` and `allowed` are those of `serve`. `send` sends an event; `poll` answers what the
    /// client has sent meanwhile.
    Session(std::string path, Debugger::Rules allowed, SendEvent itsSend, Poll itsPoll);

    /// The body of the answer to a request. Throws RequestError, BadExpression and Json::exception.
    Json answer(const std::string& command, const Json& arguments);
    /// After the answer: what the request has begun. Nothing most of the time.
    void proceed();
    /// Stops the program that runs, if any.
    void interrupt() { wantsStop = true; }
    bool isDone() const { return isDisconnected; }

    void print(std::string_view text) override;
    void log(std::string_view line) override;
    bool wantsPause() override;

private:
    using Handler = Json (Session::*)(const Json& arguments);
    struct Row {
        std::string_view command;
        Handler handler;
        enum class Needs { Nothing, Program, Stopped } needs;
    };
    static const std::vector<Row>& rows();

    /// Something whose parts the client can ask for, until the program goes on.
    struct Container {
        enum class Kind { Variables, Changes, Temporaries, Array };

        Kind kind = Kind::Variables;
        std::size_t call = 0;
        const Execution::Variable* array = nullptr;
    };

    // Requests.
    Json initialize(const Json& arguments);
    Json launch(const Json& arguments);
    Json setBreakpoints(const Json& arguments);
    Json setFunctionBreakpoints(const Json& arguments);
    Json setInstructionBreakpoints(const Json& arguments);
    Json setExceptionBreakpoints(const Json& arguments);
    Json breakpointLocations(const Json& arguments);
    Json configurationDone(const Json& arguments);
    Json threads(const Json& arguments);
    Json stackTrace(const Json& arguments);
    Json scopes(const Json& arguments);
    Json variables(const Json& arguments);
    Json setVariable(const Json& arguments);
    Json evaluate(const Json& arguments);
    Json setExpression(const Json& arguments);
    Json completions(const Json& arguments);
    Json exceptionInfo(const Json& arguments);
    Json disassemble(const Json& arguments);
    Json sourceText(const Json& arguments);
    Json loadedSources(const Json& arguments);
    Json pause(const Json& arguments);
    Json restart(const Json& arguments);
    Json terminate(const Json& arguments);
    Json disconnect(const Json& arguments);
    template <Motion byLine, Motion byInstruction>
    Json go(const Json& arguments);

    // What happens behind them.
    void begin();
    void stand(const Standing& standing);
    void sayEnd(const Standing& standing);
    void flush(bool all);
    void output(const char* category, std::string text);

    // Breakpoints.
    enum class Group { Line, Function, Instruction };
    Json replaceBreakpoints(Group group, const std::vector<Wish>& wishes);
    Json describe(const Breakpoint& point) const;
    bool isOurs(const Json& source) const;

    // Pieces of answers.
    std::size_t callOf(const Json& arguments) const;
    int refer(Container container);
    Json describe(const std::string& name, const Value& value, std::size_t call,
                  const std::string& expression);
    Json variableOf(std::size_t call, const Execution::Variable& variable);
    Json elementOf(std::size_t call, const Execution::Variable& array, std::int32_t index);
    Json changesIn(std::size_t call);
    static void mark(Json& variables, const std::vector<Changes::Change>& changes);
    Json assign(std::size_t call, const std::string& target, const std::string& value);
    Json elementsOf(const Container& container, const Json& arguments);
    void addPlace(Json& target, SourceRange range, bool withEnd) const;
    int columnOf(std::uint32_t offset) const;
    Json sourceJson() const;
    std::string addressOf(std::size_t row) const;
    std::size_t rowAt(const Json& arguments, const char* key) const;

    void load(const std::string& file);

    // As the client has told.
    std::string path;
    Debugger::Rules allowed;
    const SendEvent send;
    const Poll poll;
    int firstLine = 1;
    int firstColumn = 1;
    bool stopsOnEntry = false;
    bool stopsOnExit = false;
    bool stopsAtFaults = true;
    bool ignoresBreakpoints = false;

    std::unique_ptr<const Program> program;
    std::unique_ptr<Listing> listing;
    std::unique_ptr<Debugger> debugger;
    std::vector<int> groups[3];  // the numbers of the breakpoints of each group
    std::vector<Container> containers;
    Standing last;
    std::optional<Motion> next;
    std::string printed;  // and not yet sent
    bool startsNext = false;
    bool isStopped = false;
    bool isRunning = false;
    bool isFinished = false;
    bool isDisconnected = false;
    bool wantsStop = false;       // because something else is to be done
    bool wantsPauseSoon = false;  // because the client has asked for it
};

}  // namespace krel::Debug
