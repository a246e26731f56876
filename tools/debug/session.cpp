// A session: what the client asks for, and how the program goes on. Comes in: requests. Goes out:
// bodies of answers, and events. Looking at the program is in inspection.cpp.

#include "tools/debug/session.hpp"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "tools/files/sourceFiles.hpp"
#include "tools/machine/report.hpp"

namespace krel::Debug {

namespace {

using Reason = Standing::Reason;

/// The exit status of a program that has failed.
constexpr int failedStatus = 134;

std::string textAt(const Json& arguments, const char* key) {
    return arguments.value(key, std::string{});
}

Json capabilities() {
    Json able = Json::object();
    for (const char* ability :
         {"supportsConfigurationDoneRequest", "supportsFunctionBreakpoints",
          "supportsConditionalBreakpoints", "supportsHitConditionalBreakpoints",
          "supportsEvaluateForHovers", "supportsStepBack", "supportsSetVariable",
          "supportsSetExpression", "supportsRestartRequest", "supportsCompletionsRequest",
          "supportsExceptionInfoRequest", "supportsLogPoints", "supportsTerminateRequest",
          "supportsDisassembleRequest", "supportsSteppingGranularity",
          "supportsInstructionBreakpoints", "supportsLoadedSourcesRequest",
          "supportsBreakpointLocationsRequest", "supportsDelayedStackTraceLoading"}) {
        able[ability] = true;
    }
    able["exceptionBreakpointFilters"] = {
        {{"filter", "faults"}, {"label", "Faults of the program"}, {"default", true}}};
    return able;
}

/// How many bytes of a text make up whole characters of UTF-8.
std::size_t wholeCharacters(std::string_view text) {
    constexpr std::size_t longest = 4;
    for (std::size_t back = 1; back <= std::min(longest, text.size()); ++back) {
        const auto byte = static_cast<unsigned char>(text[text.size() - back]);
        if ((byte & 0xC0U) == 0x80U) {
            continue;
        }
        const std::size_t length = byte >= 0xF0U ? 4 : byte >= 0xE0U ? 3 : byte >= 0xC0U ? 2 : 1;
        return length > back ? text.size() - back : text.size();
    }
    return text.size();
}

}  // namespace

Session::Session(std::string itsPath, Debugger::Rules itsAllowed, SendEvent itsSend, Poll itsPoll)
    : path(std::move(itsPath)),
      allowed(itsAllowed),
      send(std::move(itsSend)),
      poll(std::move(itsPoll)) {}

const std::vector<Session::Row>& Session::rows() {
    using Needs = Row::Needs;
    static const std::vector<Row> table = {
        {"initialize", &Session::initialize, Needs::Nothing},
        {"launch", &Session::launch, Needs::Nothing},
        {"setBreakpoints", &Session::setBreakpoints, Needs::Program},
        {"setFunctionBreakpoints", &Session::setFunctionBreakpoints, Needs::Program},
        {"setInstructionBreakpoints", &Session::setInstructionBreakpoints, Needs::Program},
        {"setExceptionBreakpoints", &Session::setExceptionBreakpoints, Needs::Nothing},
        {"breakpointLocations", &Session::breakpointLocations, Needs::Program},
        {"configurationDone", &Session::configurationDone, Needs::Program},
        {"threads", &Session::threads, Needs::Nothing},
        {"stackTrace", &Session::stackTrace, Needs::Stopped},
        {"scopes", &Session::scopes, Needs::Stopped},
        {"variables", &Session::variables, Needs::Stopped},
        {"setVariable", &Session::setVariable, Needs::Stopped},
        {"evaluate", &Session::evaluate, Needs::Stopped},
        {"setExpression", &Session::setExpression, Needs::Stopped},
        {"completions", &Session::completions, Needs::Stopped},
        {"exceptionInfo", &Session::exceptionInfo, Needs::Stopped},
        {"disassemble", &Session::disassemble, Needs::Program},
        {"source", &Session::sourceText, Needs::Program},
        {"loadedSources", &Session::loadedSources, Needs::Program},
        {"continue", &Session::go<Motion::Continue, Motion::Continue>, Needs::Stopped},
        {"next", &Session::go<Motion::Over, Motion::InstructionOver>, Needs::Stopped},
        {"stepIn", &Session::go<Motion::In, Motion::InstructionIn>, Needs::Stopped},
        {"stepOut", &Session::go<Motion::Out, Motion::Out>, Needs::Stopped},
        {"stepBack", &Session::go<Motion::BackOver, Motion::BackInstruction>, Needs::Stopped},
        {"reverseContinue", &Session::go<Motion::BackContinue, Motion::BackContinue>,
         Needs::Stopped},
        {"pause", &Session::pause, Needs::Program},
        {"restart", &Session::restart, Needs::Program},
        {"terminate", &Session::terminate, Needs::Nothing},
        {"disconnect", &Session::disconnect, Needs::Nothing},
    };
    return table;
}

Json Session::answer(const std::string& command, const Json& arguments) {
    const auto row = std::ranges::find(rows(), command, &Row::command);
    if (row == rows().end()) {
        throw RequestError("there is no request " + command);
    }
    if (row->needs != Row::Needs::Nothing && !program) {
        throw RequestError("no program is launched");
    }
    if (row->needs == Row::Needs::Stopped && !isStopped) {
        throw RequestError(isFinished ? "the program has ended" : "the program is not stopped");
    }
    return (this->*row->handler)(arguments);
}

// Beginning and end.

Json Session::initialize(const Json& arguments) {
    firstLine = arguments.value("linesStartAt1", true) ? 1 : 0;
    firstColumn = arguments.value("columnsStartAt1", true) ? 1 : 0;
    return capabilities();
}

void Session::load(const std::string& file) {
    try {
        auto loaded = Debug::load(readSource(file), file);
        auto fresh = std::make_unique<Debugger>(*loaded, allowed, *this);
        if (debugger) {
            fresh->takeBreakpointsOf(*debugger);
        }
        listing = std::make_unique<Listing>(*loaded);
        debugger = std::move(fresh);
        program = std::move(loaded);
    } catch (const NotAProgram& fault) {
        throw RequestError(file + " cannot be run:\n" + fault.what());
    }
}

Json Session::launch(const Json& arguments) {
    if (program) {
        throw RequestError("a program is launched already");
    }
    path = arguments.value("program", path);
    if (path.empty()) {
        throw RequestError("the launch names no program");
    }
    stopsOnEntry = arguments.value("stopOnEntry", false);
    stopsOnExit = arguments.value("stopOnExit", false);
    ignoresBreakpoints = arguments.value("noDebug", false);
    for (const Json& name : arguments.value("allow", Json::array())) {
        const auto rule = Execution::ruleNamed(name.get<std::string>());
        if (!rule && name != "all") {
            throw RequestError("there is no rule '" + name.get<std::string>() +
                               "' of a checked run");
        }
        rule ? allowed.add(*rule) : allowed.addAll();
    }
    load(path);
    send("initialized", Json::object());
    return Json::object();
}

Json Session::configurationDone(const Json& /*arguments*/) {
    startsNext = !isStopped && !isRunning && !isFinished;
    return Json::object();
}

/// The program is read anew, once it does not run any more.
Json Session::restart(const Json& /*arguments*/) {
    startsNext = true;
    wantsStop = true;
    return Json::object();
}

Json Session::terminate(const Json& /*arguments*/) {
    wantsStop = true;
    if (!isFinished) {
        isFinished = true;
        isStopped = false;
        send("terminated", Json::object());
    }
    return Json::object();
}

Json Session::disconnect(const Json& /*arguments*/) {
    wantsStop = true;
    isDisconnected = true;
    return Json::object();
}

// Going on.

Json Session::pause(const Json& /*arguments*/) {
    wantsPauseSoon = !isStopped && !isFinished;
    return Json::object();
}

template <Motion byLine, Motion byInstruction>
Json Session::go(const Json& arguments) {
    static constexpr Motion motions[] = {byLine, byInstruction};
    next = motions[textAt(arguments, "granularity") == "instruction" ? 1 : 0];
    isStopped = false;
    return {{"allThreadsContinued", true}};
}

void Session::proceed() {
    while (startsNext || next) {
        wantsStop = false;
        isStopped = false;
        containers.clear();
        if (startsNext) {
            begin();
            continue;
        }
        const Motion motion = *std::exchange(next, std::nullopt);
        if (motion < Motion::BackContinue && !debugger->canGoOn()) {
            sayEnd(last);
            return;
        }
        isRunning = true;
        const Standing standing = debugger->move(motion);
        isRunning = false;
        stand(standing);
    }
}

void Session::begin() {
    startsNext = false;
    next.reset();
    isFinished = false;
    if (debugger->hasStarted()) {
        try {
            load(path);
        } catch (const std::exception& fault) {
            output("stderr", std::string{fault.what()} + "\n");
            isFinished = true;
            send("terminated", Json::object());
            return;
        }
        for (const auto& point : debugger->breakpoints()) {
            send("breakpoint", {{"reason", "changed"}, {"breakpoint", describe(*point)}});
        }
    }
    isRunning = true;
    const Standing standing =
        stopsOnEntry && !ignoresBreakpoints ? debugger->start() : debugger->runFromStart();
    isRunning = false;
    stand(standing);
}

/// Tells where the program stands, unless it was ended or began anew meanwhile.
void Session::stand(const Standing& standing) {
    flush(true);
    if (isDisconnected || isFinished || startsNext) {
        return;
    }
    wantsPauseSoon = false;
    const bool isFault = standing.reason == Reason::Fault;
    const bool hasEnded = standing.reason == Reason::Ended;
    const bool showsEnd = hasEnded && stopsOnExit && last.reason != Reason::Ended;
    last = standing;
    if ((hasEnded && !showsEnd) || (isFault && (!stopsAtFaults || ignoresBreakpoints))) {
        sayEnd(standing);
        return;
    }
    if (showsEnd) {
        debugger->move(Motion::BackInstruction);
    }
    static constexpr std::pair<Reason, const char*> reasons[] = {
        {Reason::Step, "step"},   {Reason::Beginning, "entry"}, {Reason::Breakpoint, "breakpoint"},
        {Reason::Pause, "pause"}, {Reason::Fault, "exception"}, {Reason::Ended, "exit"}};
    const auto* const reason =
        std::ranges::find(reasons, standing.reason, [](const auto& each) { return each.first; });
    Json body = {{"reason", reason->second}, {"threadId", 1}, {"allThreadsStopped", true}};
    if (!standing.text.empty()) {
        body["text"] = standing.text;
    }
    if (!standing.breakpoints.empty()) {
        body["hitBreakpointIds"] = standing.breakpoints;
    }
    if (isFault) {
        body["description"] = "the program has a fault: " + standing.rule;
    } else if (hasEnded) {
        body["description"] = "the program ends here";
    }
    isStopped = true;
    send("stopped", std::move(body));
}

void Session::sayEnd(const Standing& standing) {
    if (standing.reason == Reason::Fault) {
        const bool hasReport =
            debugger->machine().fault().rule == Execution::ruleNamed(standing.rule);
        output("stderr", hasReport ? reportOf(*program->compilation, program->path,
                                              debugger->machine(), false)
                                   : "the program has failed: " + standing.text + "\n");
    }
    isFinished = true;
    const int status = standing.reason == Reason::Fault ? failedStatus : standing.status;
    send("exited", {{"exitCode", status}});
    send("terminated", Json::object());
}

// What the program says.

void Session::output(const char* category, std::string text) {
    send("output", {{"category", category}, {"output", std::move(text)}});
}

void Session::print(std::string_view text) {
    constexpr std::size_t enough = 8192;
    printed += text;
    if (printed.size() > enough) {
        flush(false);
    }
}

/// A character whose bytes have not all been printed waits for the rest, unless all is wanted.
void Session::flush(bool all) {
    const std::size_t length = all ? printed.size() : wholeCharacters(printed);
    if (length > 0) {
        output("stdout", printed.substr(0, length));
        printed.erase(0, length);
    }
}

void Session::log(std::string_view line) {
    flush(true);
    output("console", std::string{line} + "\n");
}

bool Session::wantsPause() {
    flush(false);
    poll();
    return wantsStop || wantsPauseSoon;
}

// Breakpoints.

bool Session::isOurs(const Json& source) const {
    const std::string file = textAt(source, "path");
    std::error_code ignored;
    return file == path || std::filesystem::equivalent(file, path, ignored);
}

Json Session::setBreakpoints(const Json& arguments) {
    const Json wanted = arguments.value("breakpoints", Json::array());
    if (!isOurs(arguments.value("source", Json::object()))) {
        const Json answer = {{"verified", false}, {"message", "this is not the program"}};
        return {{"breakpoints", std::vector<Json>(wanted.size(), answer)}};
    }
    std::vector<Wish> wishes;
    for (const Json& each : wanted) {
        Wish wish;
        wish.place = each.at("line").get<int>() - firstLine + 1;
        wish.condition = textAt(each, "condition");
        wish.hits = textAt(each, "hitCondition");
        wish.message = textAt(each, "logMessage");
        wishes.push_back(std::move(wish));
    }
    return replaceBreakpoints(Group::Line, wishes);
}

Json Session::setFunctionBreakpoints(const Json& arguments) {
    std::vector<Wish> wishes;
    for (const Json& each : arguments.at("breakpoints")) {
        Wish wish;
        wish.place = each.at("name").get<std::string>();
        wish.condition = textAt(each, "condition");
        wish.hits = textAt(each, "hitCondition");
        wishes.push_back(std::move(wish));
    }
    return replaceBreakpoints(Group::Function, wishes);
}

Json Session::setInstructionBreakpoints(const Json& arguments) {
    std::vector<Wish> wishes;
    for (const Json& each : arguments.at("breakpoints")) {
        Wish wish;
        const std::size_t row = rowAt(each, "instructionReference");
        if (row >= listing->rows().size()) {
            throw RequestError("there is no code at this address");
        }
        wish.place = Wish::Instruction{listing->rows()[row].irLine};
        wish.condition = textAt(each, "condition");
        wish.hits = textAt(each, "hitCondition");
        wishes.push_back(std::move(wish));
    }
    return replaceBreakpoints(Group::Instruction, wishes);
}

Json Session::replaceBreakpoints(Group group, const std::vector<Wish>& wishes) {
    std::vector<int>& numbers = groups[static_cast<std::size_t>(group)];
    for (const int number : numbers) {
        debugger->removeBreakpoint(number);
    }
    numbers.clear();
    Json answers = Json::array();
    for (const Wish& wish : wishes) {
        if (ignoresBreakpoints) {
            answers.push_back({{"verified", false}});
            continue;
        }
        const Breakpoint& point = debugger->addBreakpoint(wish);
        numbers.push_back(point.id());
        answers.push_back(describe(point));
    }
    return {{"breakpoints", std::move(answers)}};
}

Json Session::describe(const Breakpoint& point) const {
    Json answer = {{"id", point.id()}, {"verified", point.hasPlace()}};
    if (point.hasPlace()) {
        answer["line"] = point.line() + firstLine - 1;
        answer["source"] = sourceJson();
        answer["instructionReference"] = addressOf(listing->rowOf(point.places().front()));
    } else {
        answer["message"] = point.problem();
    }
    return answer;
}

Json Session::setExceptionBreakpoints(const Json& arguments) {
    const Json filters = arguments.value("filters", Json::array());
    stopsAtFaults = std::ranges::find(filters, Json("faults")) != filters.end();
    return Json::object();
}

Json Session::breakpointLocations(const Json& arguments) {
    Json found = Json::array();
    if (isOurs(arguments.value("source", Json::object()))) {
        int line = arguments.at("line").get<int>();
        const int end = arguments.value("endLine", line) - firstLine + 1;
        line = program->lines.lineWithCodeFrom(line - firstLine + 1);
        while (line != 0 && line <= end) {
            found.push_back({{"line", line + firstLine - 1}});
            line = program->lines.lineWithCodeFrom(line + 1);
        }
    }
    return {{"breakpoints", std::move(found)}};
}

}  // namespace krel::Debug
