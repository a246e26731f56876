#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/debug/history.hpp"
#include "tools/machine/machine.hpp"

namespace krel::Debug {

/// A run of a program in which one can go to any step, forward and back. Going back is to restore
/// an earlier snapshot and to run on from there; what the user has changed is changed once more
/// then. What the program prints is handed on once, however often it is printed.
class Timeline {
public:
    /// A value that the user has given to a slot.
    struct Edit {
        std::uint64_t step = 0;
        std::size_t frame = 0;  // its number, counted from main on
        std::int32_t slot = 0;
        std::uint64_t bits = 0;
        Execution::Tag tag = 0;
        std::optional<std::string> text;  // of a string that is no literal, which is made anew
    };

    /// How a stretch of a run has ended.
    struct End {
        Execution::Stop stop;
        bool isPaused = false;  // there is no reason but that somebody wants to have a look
    };

    using Output = std::function<void(std::string_view text)>;
    using Pause = std::function<bool()>;

    /// `pause` is asked again and again while the program runs. The code must outlive the timeline.
    Timeline(const Execution::Code& code, const Execution::Settings& settings, Output output,
             Pause itsPause);

    Execution::Machine& machine() { return runner; }
    const Execution::Machine& machine() const { return runner; }
    std::uint64_t now() const { return runner.stepsDone(); }

    /// Calls main, and stands at its first line.
    Execution::Stop start();
    /// Goes on to a watched line, or until so many steps are done since the start.
    End run(std::uint64_t untilStep = Execution::Machine::noLimit);
    /// Goes to a step that has been done, watching nothing, and whoever wants a pause has to wait.
    void goTo(std::uint64_t step);

    /// Calls `visit` at each watched line that the run has come by before the step `end`, from the
    /// snapshot on that is the last before `end`. Returns the step of that snapshot; nothing when
    /// there is none, or somebody wants a pause. The machine is anywhere then.
    std::optional<std::uint64_t> revisit(std::uint64_t end, const std::function<void()>& visit);

    /// Changes a slot now. All that has come behind is forgotten.
    void change(Edit edit);

private:
    class FreshOutput final : public Execution::Sink {
    public:
        explicit FreshOutput(Output itsOutput) : output(std::move(itsOutput)) {}
        void print(std::uint64_t position, std::string_view text) override;
        /// What comes behind is new, although its places are not.
        void renewFrom(std::uint64_t position) { shown = position; }

    private:
        Output output;
        std::uint64_t shown = 0;
    };

    void restore(const History::Entry& entry);
    void remember();
    std::uint64_t nextSnapshot() const;
    std::size_t usedWords() const;
    bool applyEdits();
    void apply(const Edit& edit);

    FreshOutput fresh;
    Pause pause;
    Execution::Machine runner;
    History history;
    std::vector<Edit> edits;    // in the order of their steps
    std::size_t editsDone = 0;  // of the state at hand
};

}  // namespace krel::Debug
