// A whole import by the program, of a brick of hexahedra with one stress and one displacement result: its
// peak memory beside the size of what it stores. Arguments: nodes along an edge of the brick (default 100).

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

/// A file that is written line by line.
class Text {
  public:
    explicit Text(const fs::path& path)
        : file_(std::fopen(path.string().c_str(), "wb")) {
        if (!file_) {
            std::fprintf(stderr, "cannot write %s\n", path.string().c_str());
            std::exit(1);
        }
    }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { std::fclose(file_); }

    template <class... Values>
    void line(const char* format, Values... values) {
        std::fprintf(file_, format, values...);
    }

  private:
    std::FILE* file_;
};

void writeDeck(const fs::path& path, int edge) {
    Text deck(path);
    deck.line("*NODE\n");
    for (int k = 0, node = 0; k < edge; ++k)
        for (int j = 0; j < edge; ++j)
            for (int i = 0; i < edge; ++i)
                deck.line("%d,%.5g,%.5g,%.5g\n", ++node, 1.37 * i, 1.21 * j, 0.93 * k);
    deck.line("*ELEMENT,TYPE=C3D8,ELSET=E\n");
    for (int k = 0, element = 0; k + 1 < edge; ++k)
        for (int j = 0; j + 1 < edge; ++j)
            for (int i = 0; i + 1 < edge; ++i) {
                const int a = 1 + i + edge * (j + edge * k), b = a + edge, up = edge * edge;
                deck.line("%d,%d,%d,%d,%d,%d,%d,%d,%d\n", ++element, a, a + 1, b + 1, b, a + up, a + 1 + up,
                          b + 1 + up, b + up);
            }
    deck.line("*MATERIAL,NAME=M\n*ELASTIC\n210000,0.3\n*SOLID SECTION,ELSET=E,MATERIAL=M\n"
              "*STEP\n*STATIC\n*NODE FILE\nU\n*EL FILE\nS\n*END STEP\n");
}

void writeBlock(Text& results, const char* name, std::initializer_list<const char*> components, int nodes) {
    const int count = static_cast<int>(components.size());
    results.line("    1PSTEP                         1           1           1\n"
                 "  100CL  101 1.000000000%12d                     0    1           1\n -4  %-8s%5d    1\n",
                 nodes, name, count);
    for (const char* component : components)
        results.line(" -5  %-8s    1    2    1    0\n", component);
    unsigned state = 1;
    for (int node = 1; node <= nodes; ++node) {
        results.line(" -1%10d", node);
        for (int c = 0; c < count; ++c) {
            state = state * 1664525u + 1013904223u;
            results.line("%12.5E", 1e-4 * (static_cast<int>(state >> 8) - (1 << 23)));
        }
        results.line("\n");
    }
    results.line(" -3\n");
}

/// Runs the command in the folder; its peak memory in bytes, 0 when it fails.
double peakOf(const fs::path& program, const fs::path& folder) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::chdir(folder.c_str()) == 0) ::execl(program.c_str(), program.c_str(), "new", "a.toml", nullptr);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) return 0;
    return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

} // namespace

int main(int argc, char** argv) {
    const int edge = argc > 1 ? std::atoi(argv[1]) : 100;
    const fs::path folder = fs::temp_directory_path() / ("vexa-bench-memory-" + std::to_string(::getpid()));
    fs::create_directory(folder);
    writeDeck(folder / "a.inp", edge);
    {
        Text results(folder / "a.frd");
        results.line("    1C\n");
        writeBlock(results, "DISP", {"D1", "D2", "D3"}, edge * edge * edge);
        writeBlock(results, "STRESS", {"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"}, edge * edge * edge);
        results.line(" 9999\n");
        Text project(folder / "a.toml");
        project.line("title = \"Brick\"\n[units]\nforce = \"N\"\nlength = \"mm\"\n"
                     "[[analysis]]\nname = \"Run\"\ndeck = \"a.inp\"\n");
    }
    const auto start = std::chrono::steady_clock::now();
    const double peak = peakOf(fs::read_symlink("/proc/self/exe").parent_path() / "vexa", folder);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    double stored = 0;
    for (const char* name : {"a.wkm", "a_Run.lmop"})
        if (fs::exists(folder / name)) stored += static_cast<double>(fs::file_size(folder / name));
    fs::remove_all(folder);
    if (peak == 0 || stored == 0) {
        std::puts("the import failed");
        return 1;
    }
    constexpr double kMiB = 1024 * 1024;
    std::printf("import by the program: %d nodes, %.2f s, stores %.0f MiB\n", edge * edge * edge, seconds,
                stored / kMiB);
    std::printf("  peak memory %.0f MiB, %.2f of 1.2 x stored + 64 MiB (limit 1)\n", peak / kMiB,
                peak / (1.2 * stored + 64 * kMiB));
    return 0;
}
