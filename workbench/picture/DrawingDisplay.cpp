#include "workbench/picture/DrawingDisplay.h"

#include "workbench/picture/VirtualServer.h"

#include <unistd.h>

#include <cstdlib>
#include <optional>

namespace workbench {
namespace {

/// What has been found out in this process.
struct Known {
    std::optional<std::string> triedDisplay; ///< the value of DISPLAY that was tried
    bool triedWorks = false;
    std::unique_ptr<VirtualServer> server;
    pid_t owner = ::getpid();

    ~Known() {
        // A forked copy of this process does not end the server of the original.
        if (::getpid() != owner) static_cast<void>(server.release());
    }
};

} // namespace

Result<std::string> drawingDisplay(bool (*canDraw)(const std::string& display)) {
    static Known known;
    const char* variable = std::getenv("DISPLAY");
    const std::string display = variable ? variable : "";
    if (known.triedDisplay != display) {
        known.triedWorks = !display.empty() && canDraw(display);
        known.triedDisplay = display;
    }
    if (known.triedWorks) return display;
    if (known.server && known.server->alive()) return known.server->display();
    known.server.reset();
    auto started = VirtualServer::start();
    if (!started) return started.error();
    if (!canDraw((*started)->display()))
        return Error{"the virtual display for the picture cannot draw with OpenGL: install the package "
                     "libgl1-mesa-dri"};
    known.server = std::move(*started);
    return known.server->display();
}

} // namespace workbench
