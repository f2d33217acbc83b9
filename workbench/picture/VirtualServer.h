#pragma once

#include "base/Result.h"

#include <memory>
#include <string>

namespace workbench {

/// A virtual X server (Xvfb) of this process on a free display number. It is ended and waited for when the
/// object goes, and by the system when the process dies without that.
class VirtualServer {
  public:
    /// Fails with a sentence that names the package to install when there is no Xvfb.
    static Result<std::unique_ptr<VirtualServer>> start();
    ~VirtualServer();
    VirtualServer(const VirtualServer&) = delete;
    VirtualServer& operator=(const VirtualServer&) = delete;

    const std::string& display() const { return display_; }
    bool alive() const;

  private:
    struct Child;
    explicit VirtualServer(std::shared_ptr<Child> child);

    std::shared_ptr<Child> child_; ///< shared with the thread that waits for it
    std::string display_;
};

} // namespace workbench
