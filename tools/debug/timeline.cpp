// A run that can go back. Comes in: steps to go to. Goes out: the machine in the state of that
// step. Everything that runs the machine is here, so that snapshots are taken in time, changes by
// the user stay where they are, and nobody waits long for a pause.

#include "tools/debug/timeline.hpp"

#include <algorithm>
#include <utility>

namespace krel::Debug {

namespace {

using Execution::Stop;

/// Snapshots are at least so many steps apart: a few dozen microseconds.
constexpr std::uint64_t shortestInterval = 16384;
constexpr std::size_t mostSnapshots = 96;
constexpr std::size_t mostBytes = std::size_t{256} << 20;

}  // namespace

void Timeline::FreshOutput::print(std::uint64_t position, std::string_view text) {
    const std::uint64_t end = position + text.size();
    if (end <= shown) {
        return;
    }
    text.remove_prefix(static_cast<std::size_t>(std::max(shown, position) - position));
    shown = end;
    output(text);
}

Timeline::Timeline(const Execution::Code& code, const Execution::Settings& settings, Output output,
                   Pause itsPause)
    : fresh(std::move(output)),
      pause(std::move(itsPause)),
      runner(code, settings, fresh),
      history(mostSnapshots, mostBytes) {}

Stop Timeline::start() {
    const Stop stop = runner.run(0);
    if (stop.canGoOn()) {
        remember();
    }
    return stop;
}

/// A line at which a stretch ends by the number of its steps may be a watched one.
Timeline::End Timeline::run(std::uint64_t untilStep) {
    while (true) {
        applyEdits();
        std::uint64_t end = std::min(untilStep, nextSnapshot());
        if (editsDone < edits.size()) {
            end = std::min(end, edits[editsDone].step);
        }
        const std::uint64_t before = now();
        const Stop stop = runner.run(end);
        if (stop.reason != Stop::Reason::Steps) {
            applyEdits();
            return {stop, false};
        }
        if (now() >= nextSnapshot()) {
            remember();
        }
        applyEdits();
        if (now() != before && runner.isWatched(runner.line())) {
            return {{Stop::Reason::Watched}, false};
        }
        if (now() >= untilStep) {
            return {stop, false};
        }
        if (pause()) {
            return {stop, true};
        }
    }
}

void Timeline::goTo(std::uint64_t step) {
    runner.watchAll(false);
    restore(*history.upTo(step));
    while (now() < step && run(step).isPaused) {
        // Only there is a place to stop at.
    }
}

std::optional<std::uint64_t> Timeline::revisit(std::uint64_t end,
                                               const std::function<void()>& visit) {
    const History::Entry* const entry = end == 0 ? nullptr : history.upTo(end - 1);
    if (entry == nullptr) {
        return std::nullopt;
    }
    const std::uint64_t from = entry->step;
    restore(*entry);
    if (runner.isWatched(runner.line())) {
        visit();
    }
    while (now() < end) {
        const End stretch = run(end);
        if (stretch.isPaused) {
            return std::nullopt;
        }
        if (stretch.stop.reason != Stop::Reason::Watched || now() >= end) {
            break;
        }
        visit();
    }
    return from;
}

void Timeline::change(Edit edit) {
    edit.step = now();
    while (edits.size() > editsDone) {
        edits.pop_back();
    }
    history.forgetAfter(edit.step);
    fresh.renewFrom(runner.bytesPrinted());
    edits.push_back(std::move(edit));
    applyEdits();
}

/// What the user has changed at this step. True if there was something.
bool Timeline::applyEdits() {
    const std::size_t before = editsDone;
    while (editsDone < edits.size() && edits[editsDone].step <= now()) {
        apply(edits[editsDone++]);
    }
    return editsDone != before;
}

void Timeline::apply(const Edit& edit) {
    const Execution::CallFrame call = runner.call(runner.depth() - 1 - edit.frame);
    runner.setValue(call, edit.slot, edit.text ? runner.makeText(*edit.text) : edit.bits, edit.tag);
}

void Timeline::restore(const History::Entry& entry) {
    runner.restore(*entry.snapshot);
    editsDone = entry.edits;
    applyEdits();
}

void Timeline::remember() {
    constexpr std::size_t bytesOfWord = 9;  // with its tag
    history.add({now(), editsDone, usedWords() * bytesOfWord, runner.snapshot()});
}

/// Copying the stack must stay a small part of the work.
std::uint64_t Timeline::nextSnapshot() const {
    const History::Entry* const last = history.upTo(now());
    return last == nullptr
               ? 0
               : last->step + std::max<std::uint64_t>(shortestInterval, 2 * usedWords());
}

std::size_t Timeline::usedWords() const {
    if (runner.depth() == 0) {
        return 0;
    }
    const Execution::CallFrame innermost = runner.call(0);
    const std::uint64_t* const outermost = runner.call(runner.depth() - 1).frame;
    return static_cast<std::size_t>(outermost - innermost.frame +
                                    runner.program().functions[innermost.function].slots);
}

}  // namespace krel::Debug
