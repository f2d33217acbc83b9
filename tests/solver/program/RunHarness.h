#pragma once

#include "resultfile/FatigueComponents.h"
#include "resultfile/ResultFile.h"
#include "solver/Program.h"
#include "tests/solver/InterfaceFileBytes.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

/// The program with its files in a folder of the test's own.
class SolverRun {
  public:
    /// Writes the file for `content` (its name moved into the folder) and runs the program on it.
    int run(interfacefile::Content content, const std::vector<std::string>& options = {}) {
        content.name = (folder_ / content.name).string();
        return runBytes(interfacefile::build(content).bytes, options);
    }
    int runBytes(const std::string& bytes, const std::vector<std::string>& options = {}) {
        writeBytes(interfaceFile(), bytes);
        std::vector<std::string> arguments = options;
        arguments.push_back(interfaceFile().string());
        return call(arguments);
    }
    int call(const std::vector<std::string>& arguments) {
        std::ostringstream outText, errText;
        const int code = solver::run(arguments, codePage, outText, errText);
        out = outText.str();
        err = errText.str();
        return code;
    }

    std::filesystem::path interfaceFile() const { return folder_ / "FATIGUE.76"; }
    std::filesystem::path resultFile() const { return folder_ / "model_Fatigue_Fatigue.lmop"; }
    std::filesystem::path path(const std::string& name) const { return folder_ / name; }
    /// Names in the folder but the interface file, sorted.
    std::string leftBehind() const {
        std::map<std::string, int> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            if (entry.path() != interfaceFile()) names[entry.path().filename().string()] = 1;
        std::string text;
        for (const auto& [name, one] : names)
            text += name + " ";
        return text;
    }

    /// The values of a component of the result, in node order; empty and a failure when it is not there.
    std::vector<float> values(unsigned baseId, unsigned correction = 0) const {
        auto reader = resultfile::Reader::open(resultFile());
        if (!reader) {
            ADD_FAILURE() << reader.error().message << "; the solver said: " << err;
            return {};
        }
        auto found = reader->values(0, 0, resultfile::fatigue::componentId(baseId, correction));
        if (!found) {
            ADD_FAILURE() << found.error().message;
            return {};
        }
        return *found;
    }

    std::string codePage;
    std::string out;
    std::string err;

  private:
    TemporaryFolder folder_;
};
