#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

/// The path that a text in UTF-8 names on every platform.
inline std::filesystem::path pathOf(std::string_view utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

/// A folder of the test's own that goes with the object.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::random_device random;
        const std::filesystem::path parent = std::filesystem::temp_directory_path();
        do
            path_ = parent / ("vexa-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(path_)); // throws where nothing can be made
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
    std::filesystem::path operator/(const char* utf8) const { return path_ / pathOf(utf8); }
    std::filesystem::path operator/(const std::string& utf8) const { return path_ / pathOf(utf8); }

  private:
    std::filesystem::path path_;
};

inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void writeBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + path.string());
}
