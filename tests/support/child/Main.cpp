// A program for tests to start: it does what the lines of the file beside it say, whose name is its own with
// ".do" behind it. Each line is a word and what belongs to it:
//   exit N           ends with that code
//   crash            ends by a fault
//   signal N         ends by that signal (where there are signals)
//   sleep MS         waits
//   put ENDING TEXT  writes TEXT and a line feed to the result named in the interface file, ENDING behind it
//   count ENDING     likewise the number of arguments
//   seen FILE        writes "COUNT|FIRST|" of its arguments to FILE
//   print            prints its folder to the output and "error" to the error output
//   unseen FILE      writes to FILE how its first window is to be shown (where a start says so)
//   handle           ends with 1 when the handle of the first argument is open and with 2 when there is input
#include "tests/support/child/System.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

namespace {

namespace fs = std::filesystem;

fs::path pathOf(const std::string& utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

/// The name field of the interface file: behind the four bytes of its length, up to a zero byte.
std::string resultStem(const std::string& interfaceFile) {
    std::ifstream in(pathOf(interfaceFile), std::ios::binary);
    std::string field(4 + 1024, '\0');
    in.read(field.data(), static_cast<std::streamsize>(field.size()));
    return field.c_str() + 4;
}

class Child {
  public:
    explicit Child(std::vector<std::string> arguments)
        : arguments_(std::move(arguments)) {}

    int run() {
        std::ifstream in(pathOf(arguments_.at(0) + ".do"), std::ios::binary);
        for (std::string line; std::getline(in, line);)
            perform(line);
        return 0;
    }

  private:
    void perform(const std::string& line) {
        std::istringstream in(line);
        std::string word, rest;
        in >> word >> std::ws;
        std::getline(in, rest);
        if (word == "exit") std::_Exit(std::stoi(rest));
        if (word == "crash") childsystem::crash();
        if (word == "signal") std::raise(std::stoi(rest));
        if (word == "sleep") std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(rest)));
        if (word == "put") {
            const auto blank = rest.find(' ');
            put(rest.substr(0, blank), rest.substr(blank + 1));
        }
        if (word == "count") put(rest, std::to_string(arguments_.size() - 1));
        if (word == "seen")
            std::ofstream(pathOf(rest), std::ios::binary)
                << arguments_.size() - 1 << '|' << (arguments_.size() > 1 ? arguments_[1] : "") << '|';
        if (word == "unseen") std::ofstream(pathOf(rest), std::ios::binary) << childsystem::startedAs();
        if (word == "print") {
            std::cout << fs::current_path().string() << std::endl;
            std::cerr << "error" << std::endl;
        }
        if (word == "handle") {
            if (childsystem::isOpen(std::stoll(arguments_.at(1)))) std::_Exit(1);
            if (std::cin.get() != std::char_traits<char>::eof()) std::_Exit(2);
        }
    }

    void put(const std::string& ending, const std::string& text) {
        std::ofstream(pathOf(resultStem(arguments_.at(1)) + ending), std::ios::binary) << text << '\n';
    }

    std::vector<std::string> arguments_; ///< the first one is the program
};

} // namespace

int main(int count, char** values) {
    return Child(childsystem::arguments(count, values)).run();
}
