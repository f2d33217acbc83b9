/// vexa-read-mesh FILE: reads a mesh file and writes what it holds to descriptor 3, see MeshStream.h. It is a
/// program of its own so that a file on which a library breaks off does not end vexa.

#include "workbench/meshfile/GmshMesh.h"
#include "workbench/meshfile/MeshFileKind.h"
#include "workbench/meshfile/MeshReaderLimits.h"
#include "workbench/meshfile/VtkMesh.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>

namespace {

using namespace workbench;

void limit(int resource, std::uint64_t most) {
    rlimit current{};
    if (::getrlimit(static_cast<__rlimit_resource>(resource), &current) != 0) return;
    const rlimit wanted{std::min<rlim_t>(most, current.rlim_max), current.rlim_max};
    ::setrlimit(static_cast<__rlimit_resource>(resource), &wanted);
}

void limitMyself(std::uint64_t fileBytes) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, meshMemoryLimit(fileBytes));
    // The address sanitizer reserves more addresses than any limit allows.
#if !defined(__SANITIZE_ADDRESS__)
    limit(RLIMIT_AS, meshMemoryLimit(fileBytes));
#endif
}

Result<void> read(const std::string& path, MeshStreamWriter& out) {
    const auto kind = meshFileKind(path);
    if (!kind) return Error{"its name does not end in .vtu, .vtk or .msh"};
    if (*kind == MeshFileKind::Gmsh) return readGmshMesh(path, out);
    return readVtkMesh(path, *kind == MeshFileKind::VtkXml, out);
}

/// Ends at once: what the libraries have to tidy up is nobody's any more, and they may fail at it.
[[noreturn]] void end(bool good) {
    std::_Exit(good ? 0 : 1);
}

} // namespace

#if defined(__SANITIZE_ADDRESS__)
/// gmsh deletes arrays as single objects, and leaves memory behind.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
    return "alloc_dealloc_mismatch=0:detect_leaks=0";
}
#endif

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string path = argv[1];
    std::FILE* file = ::fdopen(kMeshOutput, "wb");
    if (!file) return 2;
    MeshStreamWriter out(file);
    std::error_code code;
    limitMyself(std::filesystem::file_size(path, code));
    try {
        const auto done = read(path, out);
        if (!done) end(out.fail(done.error().message));
        end(out.finish());
    } catch (const std::bad_alloc&) {
        end(out.fail("there is not enough memory to read it, or the file is damaged"));
    } catch (const std::exception& error) {
        end(out.fail(std::string("it cannot be read: ") + error.what()));
    } catch (...) {
        end(out.fail("it cannot be read; the file is damaged"));
    }
}
