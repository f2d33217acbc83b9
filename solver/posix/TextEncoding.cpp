#include "solver/TextEncoding.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>

namespace solver {
namespace {

std::string encodingName(const std::string& codePage) {
    if (codePage.empty() || codePage == "65001") return "UTF-8";
    const bool digits =
        std::all_of(codePage.begin(), codePage.end(), [](char c) { return c >= '0' && c <= '9'; });
    return digits ? "CP" + codePage : codePage;
}

class Converter {
  public:
    explicit Converter(const std::string& from)
        : handle_(::iconv_open("UTF-8", from.c_str())) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (valid()) ::iconv_close(handle_);
    }
    bool valid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    /// False when some bytes are not text, or half a character is left at the end.
    bool convert(std::string text, std::string& out) {
        char* from = text.data();
        std::size_t left = text.size();
        while (left > 0) {
            char piece[256];
            char* to = piece;
            std::size_t room = sizeof piece;
            const std::size_t status = ::iconv(handle_, &from, &left, &to, &room);
            out.append(piece, to);
            if (status == static_cast<std::size_t>(-1) && errno != E2BIG) return false;
        }
        return true;
    }

  private:
    iconv_t handle_;
};

} // namespace

Result<std::string> toUtf8(std::string_view text, const std::string& codePage) {
    const std::string name = encodingName(codePage);
    Converter converter(name);
    if (!converter.valid())
        return Error{"the code page \"" + codePage +
                     "\" is not known; set VEXA_CODE_PAGE to one such as 65001 or 949"};
    std::string out;
    if (!converter.convert(std::string(text), out))
        return Error{"the result file name is not text in the code page " + name +
                     "; set VEXA_CODE_PAGE to the one that the file was written in"};
    return out;
}

} // namespace solver
