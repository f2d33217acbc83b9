#include "workbench/import/InpReader.h"

#include "workbench/import/InpMaterialCards.h"
#include "workbench/import/InpMeshCards.h"
#include "workbench/import/InpSectionCards.h"
#include "workbench/import/InpStepCards.h"
#include "workbench/import/Names.h"
#include "workbench/import/TextWindow.h"

#include <algorithm>
#include <initializer_list>
#include <span>

namespace workbench {
namespace {

// Keywords stand here as cards compare them, without blanks.

constexpr std::string_view kLoads[] = {"BOUNDARY",
                                       "CLOAD",
                                       "DLOAD",
                                       "DSLOAD",
                                       "TEMPERATURE",
                                       "CFLUX",
                                       "DFLUX",
                                       "FILM",
                                       "RADIATE",
                                       "BASEMOTION",
                                       "EQUATION",
                                       "MPC",
                                       "AMPLITUDE",
                                       "COUPLING",
                                       "INITIALCONDITIONS",
                                       "TIE",
                                       "CONTACTPAIR",
                                       "SURFACE",
                                       "SURFACEBEHAVIOR",
                                       "FRICTION",
                                       "SURFACEINTERACTION",
                                       "RIGIDBODY",
                                       "KINEMATIC",
                                       "DISTRIBUTING",
                                       "CYCLICSYMMETRYMODEL",
                                       "PRE-TENSIONSECTION",
                                       "GAPCONDUCTANCE"};

/// Cards for which the solver adds nodes and elements of its own to its results.
constexpr std::string_view kAddItems[] = {"CYCLICSYMMETRYMODEL", "PRE-TENSIONSECTION"};

bool isOneOf(std::string_view keyword, std::span<const std::string_view> list) {
    return std::find(list.begin(), list.end(), keyword) != list.end();
}

/// Reads the lines of a deck and of the files that it includes, and hands each card to the group it belongs
/// to.
class InpParser {
  public:
    explicit InpParser(std::filesystem::path folder)
        : folder_(std::move(folder)) {}

    Result<SolverDeck> run(TextWindow& window) {
        if (!readWindow(window) || !mesh_.endElementCard()) return Error{context_.error};
        if (context_.card.keyword.empty())
            return Error{window.name() + ": no line begins with a keyword; is this a solver deck?"};
        if (auto assembled = assembleMesh(context_.raw, context_.deck); !assembled) return assembled.error();
        sections_.checkSections();
        applySections(context_.deck);
        context_.collectNotes();
        return std::move(context_.deck);
    }

    /// Files that are being read; a file that includes itself is found by them.
    bool enterFile(const std::filesystem::path& path) {
        std::error_code code;
        std::filesystem::path resolved = std::filesystem::weakly_canonical(path, code);
        if (code) resolved = path;
        if (std::find(openFiles_.begin(), openFiles_.end(), resolved) != openFiles_.end()) return false;
        openFiles_.push_back(std::move(resolved));
        return true;
    }

  private:
    bool readWindow(TextWindow& window) {
        const InpPlace outer = context_.place;
        context_.raw.files.push_back(window.name());
        context_.place.file = static_cast<std::uint32_t>(context_.raw.files.size() - 1);
        std::string_view line;
        while (nextLine(window, line)) {
            if (line.starts_with("**")) continue;
            const std::string_view text = trimmed(line);
            if (text.empty() || text.starts_with("**")) continue;
            const bool good = text.front() == '*' ? readCard(window, text) : readData(text);
            if (!good) return false;
        }
        if (!window.failure().empty()) {
            context_.error = window.failure();
            return false;
        }
        context_.place = outer;
        return true;
    }

    bool nextLine(TextWindow& window, std::string_view& line) {
        if (!window.nextLine(line)) return false;
        context_.place.line =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(window.lineNumber(), 0xFFFFFFFFu));
        return true;
    }

    bool readCard(TextWindow& window, std::string_view line) {
        std::string text(line);
        const InpPlace start = context_.place;
        std::string_view more;
        while (text.ends_with(',') && nextLine(window, more))
            if (!trimmed(more).starts_with("**")) text += trimmed(more);
        context_.place.line = start.line; // messages name the line on which the card begins
        InpCard card = parseCard(text);
        if (card.keyword == "INCLUDE") return include(card);
        if (!mesh_.endElementCard()) return false;
        context_.card = std::move(card);
        context_.cardPlace = context_.place;
        return startCard();
    }

    bool readData(std::string_view line) {
        if (context_.card.keyword.empty()) {
            context_.note("before", "data stands before the first keyword and is left out", " lines");
            return true;
        }
        return group_ ? group_->line(line) : true;
    }

    bool startCard() {
        for (InpCards* group : std::initializer_list<InpCards*>{&mesh_, &materials_, &sections_, &steps_}) {
            group_ = group;
            if (const std::optional<bool> good = group->start()) return *good;
        }
        group_ = nullptr;
        noteOtherCard();
        return true;
    }

    /// Cards that the model keeps nothing of.
    void noteOtherCard() {
        const InpCard& card = context_.card;
        if (isOneOf(card.keyword, kAddItems)) context_.deck.solverAddsItems = true;
        if (card.keyword == "TRANSFORM") return; // of loads, and of displacements with GLOBAL=NO
        if (card.keyword == "NODALTHICKNESS")
            context_.note("thickness", "*NODAL THICKNESS: the thickness of the section is kept");
        else if (isOneOf(card.keyword, kLoads))
            context_.note("loads", "*" + card.title + ": loads, supports and links are not kept in the model",
                          " cards");
        else
            context_.note("*" + card.keyword, "*" + card.title + " is not read");
    }

    /// The file's lines stand in place of the card, so a card that is open goes on in it.
    bool include(const InpCard& card) {
        const std::string* input = card.find("INPUT");
        if (!input || input->empty()) return context_.fail("*INCLUDE has no INPUT");
        const std::filesystem::path path = folder_ / *input;
        if (openFiles_.size() >= 64) return context_.fail("files include each other more than 64 deep");
        std::error_code code;
        if (!std::filesystem::is_regular_file(path, code))
            return context_.fail("the included file " + path.string() + " is not there");
        if (!enterFile(path)) return context_.fail(path.string() + " includes itself");
        auto window = TextWindow::openFile(path);
        if (!window) return context_.fail(window.error().message);
        const bool good = readWindow(*window);
        openFiles_.pop_back();
        return good;
    }

    std::filesystem::path folder_;
    std::vector<std::filesystem::path> openFiles_;
    InpContext context_;
    InpMeshCards mesh_{context_};
    InpMaterialCards materials_{context_};
    InpSectionCards sections_{context_};
    InpStepCards steps_{context_};
    InpCards* group_ = nullptr; ///< whose card is open; null for cards of no group
};

} // namespace

Result<SolverDeck> readInp(const std::filesystem::path& path) {
    auto window = TextWindow::openFile(path);
    if (!window) return window.error();
    InpParser parser(path.parent_path());
    parser.enterFile(path);
    return parser.run(*window);
}

Result<SolverDeck> readInpText(std::string_view bytes, const std::string& name,
                               const std::filesystem::path& folder) {
    TextWindow window = TextWindow::overMemory(bytes, name);
    return InpParser(folder).run(window);
}

} // namespace workbench
