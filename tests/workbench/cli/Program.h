#pragma once

#include <filesystem>
#include <map>
#include <string>

/// How a program ended and what it printed.
struct ProgramEnd {
    int exitCode = -1; ///< -1 when a signal ended it
    std::string output;
    std::string errors;
};

/// A folder of the test's own, emptied before and removed after.
class TestFolder {
  public:
    explicit TestFolder(const std::string& name);
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& path() const { return path_; }
    void write(const std::string& name, const std::string& text) const;
    std::string read(const std::string& name) const;
    /// A shell script under that name, executable.
    void writeScript(const std::string& name, const std::string& body) const;

  private:
    std::filesystem::path path_;
};

/// Runs a shell command in a folder; `vexa` in it is the program under test.
ProgramEnd runShell(const TestFolder& folder, const std::string& command);

/// The columns of a CSV text: the key is all but the last field, the value the last one.
std::map<std::string, double> parseCsv(const std::string& text);

/// A cube of eight nodes with one stress state in each case, as a deck (cube.inp) and its results (cube.frd).
struct CubeStress {
    const char* name;
    double stress[6]; ///< xx yy zz xy yz zx
};
void writeCube(const TestFolder& folder, const CubeStress (&cases)[2]);
inline constexpr CubeStress kCubeStresses[2] = {{"Pull", {200, 0, 0, 0, 0, 0}},
                                                {"Shear", {0, 0, 0, 50, 0, 0}}};

/// A project deck over that cube with one fatigue definition; `extra` is appended to the definition.
std::string cubeDeck(const std::string& extra = "",
                     const std::string& loadPoints = "[[0, 1], [1, -1], [2, 1]]");
