#include "solver/Program.h"

#include "solver/FatigueRun.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <optional>
#include <string_view>
#include <thread>

namespace solver {
namespace {

constexpr std::string_view kHelp = R"(FatigueSolver [--threads N] FILE

Reads the fatigue interface file FILE, counts the stress cycles of its nodes and writes damage, life and
equivalent amplitude beside the model, into the result file that FILE names (NAME_Fatigue.lmop).

  --threads N   evaluate up to N batches of nodes at a time (default: one for each core);
                the result is the same for any N
  --version     print the version and end
  --help        print this text and end

The environment value VEXA_CODE_PAGE names the code page of the text in FILE (default 65001, UTF-8).

Exit codes: 0 done; 1 FILE is missing, broken or asks for what is not supported; 2 wrong arguments;
3 the result cannot be written, or memory or threads are lacking. Failures print one sentence.
)";

constexpr unsigned kMostThreads = 256;

struct Request {
    bool help = false;
    bool version = false;
    RunSettings settings;
};

Result<unsigned> parseThreads(std::string_view text) {
    unsigned threads = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), threads);
    if (error == std::errc() && end == text.data() + text.size() && threads >= 1 && threads <= kMostThreads)
        return threads;
    return Error{"--threads needs a number from 1 to " + std::to_string(kMostThreads) + ", not \"" +
                 std::string(text) + "\""};
}

Result<Request> parse(std::span<const std::string> arguments) {
    Request request;
    request.settings.threads = std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads);
    bool haveFile = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--help") {
            request.help = true;
        } else if (argument == "--version") {
            request.version = true;
        } else if (argument == "--threads") {
            const auto threads = parseThreads(i + 1 < arguments.size() ? arguments[++i] : "");
            if (!threads) return threads.error();
            request.settings.threads = *threads;
        } else if (argument.starts_with("--")) {
            return Error{"the option " + argument + " is not known; see --help"};
        } else if (haveFile) {
            return Error{"one interface file is expected, but \"" + argument + "\" follows a first one"};
        } else {
            request.settings.interfaceFile = argument;
            haveFile = true;
        }
    }
    if (!haveFile && !request.help && !request.version)
        return Error{"an interface file is expected; see --help"};
    return request;
}

int fail(std::ostream& err, ExitCode code, const std::string& message) {
    err << "FatigueSolver: " << message << '\n';
    return code;
}

} // namespace

int run(std::span<const std::string> arguments, const std::string& codePage, std::ostream& out,
        std::ostream& err, std::ostream* terminal) {
    try {
        auto request = parse(arguments);
        if (!request) return fail(err, kBadUsage, request.error().message);
        if (request->help || request->version) {
            out << (request->help ? kHelp : "FatigueSolver " VEXA_VERSION "\n");
            return kDone;
        }
        request->settings.codePage = codePage;
        request->settings.terminal = terminal;
        if (const auto failure = runFatigue(request->settings, out))
            return fail(err, failure->code, failure->error.message);
        return kDone;
    } catch (const std::exception& failure) {
        return fail(err, kCannotWrite, std::string("the system cannot go on: ") + failure.what());
    }
}

} // namespace solver
