#include "solver/Program.h"

#include "solver/Check.h"
#include "solver/Explain.h"
#include "solver/FatigueRun.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string_view>
#include <thread>

namespace solver {
namespace {

constexpr std::string_view kHelp = R"(FatigueSolver: damage and life from a fatigue interface file

  FatigueSolver.exe [--threads N] FILE
      Counts the cycles of each node in FILE and writes damage, life and equivalent amplitude into the result
      file that FILE names (NAME_Fatigue.lmop).
  FatigueSolver.exe --check FILE
      Reads FILE to its last byte, says what it holds, and computes nothing.
  FatigueSolver.exe --explain NODE [-o STEM] FILE
      Shows how the result of one node comes about: prints its worst cycles and writes STEM_cycles.csv (every
      counted cycle with its damage), STEM_history.svg (the history and its turning points) and
      STEM_matrix.svg (the rainflow matrix).

  --threads N   evaluate up to N batches of nodes at a time, 1 to 256 (default: one for each core);
                the result is the same for any N
  -o STEM       start of the names of the files of --explain (default: node_NODE in the folder of FILE)
  --version     print the version and end
  --help        print this text and end

A terminal on the standard error output shows the progress. The environment value VEXA_CODE_PAGE names the
code page of the text in FILE (default 65001, UTF-8).

Exit codes: 0 done; 1 FILE is missing, broken or asks for what is not supported, or has no such node;
2 wrong arguments; 3 a file cannot be written, or memory or threads are lacking. Failures print one sentence
and leave earlier files as they were.

Examples:
  FatigueSolver.exe FATIGUE.76
  FatigueSolver.exe --check FATIGUE.76 && FatigueSolver.exe --threads 4 FATIGUE.76
  FatigueSolver.exe --explain 1204 -o report/notch FATIGUE.76
)";

constexpr unsigned kMostThreads = 256;

enum class Task { Evaluate, Check, Explain, Help, Version };

struct Request {
    Task task = Task::Evaluate;
    RunSettings settings;
    std::int32_t node = 0;                     ///< to explain
    std::optional<std::filesystem::path> stem; ///< of the files that explain it
};

/// The whole of `text` as an integer.
template <class Integer>
std::optional<Integer> parseInteger(std::string_view text) {
    Integer value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// Reads the arguments from left to right into a request.
class ArgumentReader {
  public:
    explicit ArgumentReader(std::span<const std::string> arguments)
        : arguments_(arguments) {
        request_.settings.threads = std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads);
    }

    Result<Request> read() {
        while (next_ < arguments_.size())
            if (const auto taken = takeOne(); !taken) return taken.error();
        if (request_.task == Task::Help || request_.task == Task::Version) return request_;
        if (!haveFile_) return Error{"an interface file is expected; see --help"};
        if (request_.stem && request_.task != Task::Explain)
            return Error{"-o belongs to --explain; the interface file names the result file itself"};
        return request_;
    }

  private:
    Result<void> takeOne() {
        const std::string& argument = arguments_[next_++];
        if (argument == "--help") return takeTask(Task::Help, argument);
        if (argument == "--version") return takeTask(Task::Version, argument);
        if (argument == "--check") return takeTask(Task::Check, argument);
        if (argument == "--explain") return takeNode(argument);
        if (argument == "--threads") return takeThreads();
        if (argument == "-o") return takeStem();
        if (argument.starts_with("-")) return Error{"the option " + argument + " is not known; see --help"};
        if (haveFile_)
            return Error{"one interface file is expected, but \"" + argument + "\" follows a first one"};
        request_.settings.interfaceFile = argument;
        haveFile_ = true;
        return {};
    }

    /// The value behind an option; empty at the end.
    std::string takeValue() { return next_ < arguments_.size() ? arguments_[next_++] : ""; }

    Result<void> takeTask(Task task, const std::string& argument) {
        if (request_.task == Task::Help) return {};
        if (task != Task::Help && request_.task != Task::Evaluate && request_.task != task)
            return Error{argument + " stands beside another task; ask for one of them"};
        request_.task = task;
        return {};
    }

    Result<void> takeNode(const std::string& argument) {
        const std::string text = takeValue();
        const auto node = parseInteger<std::int32_t>(text);
        if (!node) return Error{"--explain needs the number of a node, not \"" + text + "\""};
        request_.node = *node;
        return takeTask(Task::Explain, argument);
    }

    Result<void> takeThreads() {
        const std::string text = takeValue();
        const auto threads = parseInteger<unsigned>(text);
        if (!threads || *threads < 1 || *threads > kMostThreads)
            return Error{"--threads needs a number from 1 to " + std::to_string(kMostThreads) + ", not \"" +
                         text + "\""};
        request_.settings.threads = *threads;
        return {};
    }

    Result<void> takeStem() {
        const std::string text = takeValue();
        if (text.empty()) return Error{"-o needs the start of the names of the files"};
        request_.stem = text;
        return {};
    }

    std::span<const std::string> arguments_;
    std::size_t next_ = 0;
    Request request_;
    bool haveFile_ = false;
};

std::optional<RunFailure> perform(const Request& request, std::ostream& out) {
    switch (request.task) {
    case Task::Help:
        out << kHelp;
        return std::nullopt;
    case Task::Version:
        out << "FatigueSolver " VEXA_VERSION "\n";
        return std::nullopt;
    case Task::Check:
        return checkInterfaceFile(request.settings, out);
    case Task::Explain:
        return explainNode(request.settings, request.node, request.stem, out);
    default:
        return runFatigue(request.settings, out);
    }
}

int fail(std::ostream& err, ExitCode code, const std::string& message) {
    err << "FatigueSolver: " << message << '\n';
    return code;
}

} // namespace

int run(std::span<const std::string> arguments, const std::string& codePage, std::ostream& out,
        std::ostream& err, std::ostream* terminal) {
    try {
        auto request = ArgumentReader(arguments).read();
        if (!request) return fail(err, kBadUsage, request.error().message);
        request->settings.codePage = codePage;
        request->settings.terminal = terminal;
        if (const auto failure = perform(*request, out))
            return fail(err, failure->code, failure->error.message);
        return kDone;
    } catch (const std::exception& failure) {
        return fail(err, kCannotWrite, std::string("the system cannot go on: ") + failure.what());
    }
}

} // namespace solver
