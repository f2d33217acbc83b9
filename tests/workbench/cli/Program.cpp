#include "tests/workbench/cli/Program.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

TestFolder::TestFolder(const std::string& name)
    : path_(fs::path(testing::TempDir()) / ("vexa-" + std::to_string(::getpid()) + "-" + name)) {
    fs::remove_all(path_);
    fs::create_directories(path_);
}

TestFolder::~TestFolder() {
    fs::remove_all(path_);
}

void TestFolder::write(const std::string& name, const std::string& text) const {
    fs::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << text;
}

std::string TestFolder::read(const std::string& name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void TestFolder::writeScript(const std::string& name, const std::string& body) const {
    write(name, "#!/bin/sh\n" + body + "\n");
    fs::permissions(path_ / name, fs::perms::owner_all);
}

ProgramEnd runShell(const TestFolder& folder, const std::string& command) {
    const std::string line = "cd '" + folder.path().string() +
                             "' && PATH='" VEXA_BIN_DIR "':\"$PATH\" && { " + command +
                             "\n} >.out 2>.err </dev/null";
    const int status = std::system(line.c_str());
    ProgramEnd end;
    if (WIFEXITED(status)) end.exitCode = WEXITSTATUS(status);
    end.output = folder.read(".out");
    end.errors = folder.read(".err");
    return end;
}

std::map<std::string, double> parseCsv(const std::string& text) {
    std::map<std::string, double> rows;
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        const auto comma = line.rfind(',');
        if (comma != std::string::npos)
            rows[line.substr(0, comma)] = std::strtod(line.c_str() + comma + 1, nullptr);
    }
    return rows;
}

void writeCube(const TestFolder& folder, const CubeStress (&cases)[2]) {
    constexpr const char* nodes[] = {"0., 0., 0.", "1., 0., 0.", "1., 1., 0.", "0., 1., 0.",
                                     "0., 0., 1.", "1., 0., 1.", "1., 1., 1.", "0., 1., 1."};
    std::string deck = "*NODE\n";
    for (int i = 0; i < 8; ++i)
        deck += std::to_string(i + 1) + ", " + nodes[i] + "\n";
    deck += "*ELEMENT, TYPE=C3D8, ELSET=CUBE\n1, 1, 2, 3, 4, 5, 6, 7, 8\n"
            "*MATERIAL, NAME=STEEL\n*ELASTIC\n210000., 0.3\n*SOLID SECTION, ELSET=CUBE, MATERIAL=STEEL\n";
    std::string results =
        "    1C\n    2C                             8                                     1\n";
    char row[256];
    for (int i = 0; i < 8; ++i) {
        double x = 0, y = 0, z = 0;
        std::sscanf(nodes[i], "%lf, %lf, %lf", &x, &y, &z);
        std::snprintf(row, sizeof row, " -1%10d%12.5E%12.5E%12.5E\n", i + 1, x, y, z);
        results += row;
    }
    results += " -3\n    3C                             1                                     1\n"
               " -1         1    1    0    1\n -2         1         2         3         4         5         "
               "6         7"
               "         8\n -3\n";
    int step = 0;
    for (const CubeStress& load : cases) {
        ++step;
        deck += "*STEP\n*STATIC\n*EL FILE\nS\n*END STEP\n";
        std::snprintf(row, sizeof row, "    1PSTEP%26d%12d%12d\n", step, 1, step);
        results += row;
        std::snprintf(row, sizeof row, "  100CL  %3d%12.9f%12d%20s%2d%5d%10s%2d\n -4  STRESS      6    1\n",
                      100 + step, double(step), 8, "", 0, step, "", 1);
        results += row;
        constexpr const char* names[] = {"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"};
        constexpr int indices[][2] = {{1, 1}, {2, 2}, {3, 3}, {1, 2}, {2, 3}, {3, 1}};
        for (int c = 0; c < 6; ++c) {
            std::snprintf(row, sizeof row, " -5  %-8s%5d%5d%5d%5d\n", names[c], 1, 4, indices[c][0],
                          indices[c][1]);
            results += row;
        }
        for (int i = 0; i < 8; ++i) {
            std::snprintf(row, sizeof row, " -1%10d%12.5E%12.5E%12.5E%12.5E%12.5E%12.5E\n", i + 1,
                          load.stress[0], load.stress[1], load.stress[2], load.stress[3], load.stress[4],
                          load.stress[5]);
            results += row;
        }
        results += " -3\n";
    }
    folder.write("cube.inp", deck);
    folder.write("cube.frd", results + " 9999\n");
}

std::string cubeDeck(const std::string& extra, const std::string& loadPoints) {
    return R"([units]
force = "N"
length = "mm"
[[analysis]]
name = "Static"
deck = "cube.inp"
results = "cube.frd"
cases = ["Pull", "Shear"]
[[material]]
name = "STEEL"
yield = 355.0
ultimate = 510.0
[[load_function]]
name = "Swing"
points = )" +
           loadPoints + R"(
[[fatigue]]
name = "Service"
analysis = "Static"
result = "Life"
type = "stress-life cases"
measure = "absolute maximum principal"
mean_stress = ["None", "Goodman"]
outputs = ["damage", "life"]
cycles = 1000
infinite_life = 1e12
)" + extra +
           R"([[fatigue.material]]
material = "STEEL"
coefficient = 1000.0
exponent = -0.12
[[fatigue.load]]
case = "Pull"
factor = 1.0
function = "Swing"
)";
}
