#include "workbench/import/ImportProject.h"

#include "host/ElementTypes.h"
#include "workbench/document/Publication.h"
#include "workbench/import/InpReader.h"
#include "workbench/import/MeshResults.h"
#include "workbench/import/ModelBuilder.h"
#include "workbench/import/ProjectReferences.h"
#include "workbench/import/SolverLog.h"
#include "workbench/meshfile/MeshFileKind.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>

namespace workbench {
namespace {

class ProjectImport {
  public:
    ProjectImport(const std::filesystem::path& modelPath, const ImportProgress& progress)
        : modelPath_(modelPath)
        , progress_(progress)
        , publication_(modelPath) {}

    Result<ImportReport> run(const std::filesystem::path& deckPath) {
        auto deck = readProjectDeck(deckPath);
        if (!deck) return deck.error();
        deck_ = std::move(*deck);
        for (auto step : {&ProjectImport::readSolverDecks, &ProjectImport::buildModel,
                          &ProjectImport::writeResults, &ProjectImport::finishModel, &ProjectImport::saveAll})
            if (auto done = (this->*step)(); !done) return done.error();
        return std::move(report_);
    }

  private:
    void tell(const std::string& what, double fraction) const {
        if (progress_) progress_(what, fraction);
    }

    void warn(const std::vector<std::string>& warnings) {
        for (const std::string& warning : warnings)
            if (std::find(report_.warnings.begin(), report_.warnings.end(), warning) ==
                report_.warnings.end())
                report_.warnings.push_back(warning);
    }

    Result<void> readSolverDecks() {
        for (const DeckAnalysis& analysis : deck_.analyses) {
            tell("Reading " + analysis.deck.filename().string(), 0);
            auto solverDeck = readDeck(analysis);
            if (!solverDeck) return solverDeck.error();
            warn(solverDeck->warnings);
            warnOfAge(analysis);
            if (!solverDecks_.empty())
                if (auto same = requireSameModel(analysis, *solverDeck); !same) return same;
            solverDecks_.push_back(std::move(*solverDeck));
        }
        if (solverDecks_.front().elementNumbers.empty())
            return Error{deck_.analyses.front().deck.string() +
                         " has no elements of a type that is read; nothing can be shown or computed"};
        completeMaterials(deck_, solverDecks_.front());
        DeckErrors errors(deck_.fileName);
        resolveCases(deck_, solverDecks_, errors);
        checkReferences(deck_, solverDecks_.front(), errors);
        return errors.empty() ? Result<void>() : Result<void>(errors.toError());
    }

    Result<SolverDeck> readDeck(const DeckAnalysis& analysis) {
        meshFiles_.push_back(nullptr);
        if (!isMeshFile(analysis.deck)) return readInp(analysis.deck);
        auto model = readMeshModel(analysis.deck, analysis.planar);
        if (!model) return model.error();
        SolverDeck deck = std::move(model->deck);
        if (analysis.results != analysis.deck) {
            model = readMeshModel(analysis.results, analysis.planar);
            if (!model) return model.error();
            if (const std::string difference = meshDifference(deck, model->deck); !difference.empty())
                return Error{analysis.results.string() + ": its mesh is not that of " +
                             analysis.deck.string() + " (" + difference + ")"};
            deck.warnings.insert(deck.warnings.end(), model->deck.warnings.begin(),
                                 model->deck.warnings.end());
        }
        model->deck = {};
        meshFiles_.back() = std::make_unique<MeshModel>(std::move(*model));
        return deck;
    }

    void warnOfAge(const DeckAnalysis& analysis) {
        std::error_code code;
        const auto deckTime = std::filesystem::last_write_time(analysis.deck, code);
        if (code) return;
        const auto resultTime = std::filesystem::last_write_time(analysis.results, code);
        if (!code && resultTime + std::chrono::seconds(1) < deckTime)
            report_.warnings.push_back(analysis.results.string() + " is older than " +
                                       analysis.deck.string() +
                                       "; solve again if the deck has changed since");
    }

    /// All analyses of a document share its mesh. Of the later ones only the steps are kept.
    Result<void> requireSameModel(const DeckAnalysis& analysis, SolverDeck& other) {
        const SolverDeck& first = solverDecks_.front();
        if (const std::string difference = meshDifference(first, other); !difference.empty())
            return Error{analysis.deck.string() + ": its mesh is not that of " +
                         deck_.analyses.front().deck.string() + " (" + difference +
                         "); analyses of one document share one mesh"};
        if (!sameMaterials(first, other))
            report_.warnings.push_back(analysis.deck.string() +
                                       ": its materials or sections differ from those of " +
                                       deck_.analyses.front().deck.string() + ", which the document holds");
        SolverDeck kept;
        kept.steps = std::move(other.steps);
        other = std::move(kept);
        return {};
    }

    Result<void> buildModel() {
        database_.beginTransaction(L"Import");
        if (database_.setUnits({deck_.forceUnit, deck_.lengthUnit}) == 0)
            return Error{"the document does not take the units " + deck_.forceUnit + " and " +
                         deck_.lengthUnit};
        std::vector<std::string> warnings;
        if (auto added = addModel(solverDecks_.front(), database_, warnings); !added) return added;
        warn(warnings);
        for (const std::uint8_t type : database_.mesh().elementTypes)
            cornerCounts_.push_back(elementNodeCount(type));
        report_.nodeCount = database_.mesh().nodeCount();
        report_.elementCount = database_.mesh().elementCount();
        return {};
    }

    Result<void> writeResults() {
        for (std::size_t i = 0; i < deck_.analyses.size(); ++i)
            if (auto written = writeResultFile(i); !written) return written;
        return {};
    }

    std::filesystem::path resultFilePath(const DeckAnalysis& analysis) const {
        std::u8string name = modelPath_.stem().u8string() + u8"_";
        name.append(analysis.name.begin(), analysis.name.end());
        return modelPath_.parent_path() / std::filesystem::path(name + u8".lmop");
    }

    Result<void> writeResultFile(std::size_t index) {
        const DeckAnalysis& analysis = deck_.analyses[index];
        const T_QM_MESH_D& mesh = database_.mesh();
        auto writer = resultfile::Writer::create(resultFilePath(analysis), analysis.name, "vexa import");
        if (!writer) return writer.error();
        if (auto set = writer->setMesh({mesh.nodeNumbers, mesh.elementNumbers, cornerCounts_}); !set)
            return set;
        const ResultMesh resultMesh{mesh.nodeNumbers,
                                    mesh.nodePositions,
                                    mesh.elementNumbers,
                                    mesh.elementTypes,
                                    solverDecks_.front().elementFamilies,
                                    mesh.elementNodeOffsets,
                                    mesh.elementNodes,
                                    solverDecks_.front().leftOutElements,
                                    solverDecks_.front().elementLayers,
                                    solverDecks_.front().orientations,
                                    solverDecks_.front().elementOrientations,
                                    solverDecks_.front().solverAddsItems};
        const auto progress = [&](double part) {
            tell("Reading " + analysis.results.filename().string(),
                 (static_cast<double>(index) + part) / static_cast<double>(deck_.analyses.size()));
        };
        const auto kept = [&](const auto& import) {
            warn(import.warnings());
            report_.analyses.push_back({analysis.name, resultFilePath(analysis), import.cases()});
            writers_.push_back(std::move(*writer));
            return Result<void>();
        };
        if (meshFiles_[index]) {
            MeshResults import(*writer, resultMesh, *meshFiles_[index], analysis.fields,
                               analysis.results.string());
            const auto written = import.write(analysis.cases.front(), progress);
            return written ? kept(import) : written;
        }
        auto window = TextWindow::openFile(analysis.results);
        if (!window) return window.error();
        ResultImport import(*writer, resultMesh, solverDecks_[index].steps, analysis.cases,
                            analysis.results.string(), progress);
        auto read = readFrd(*window, import);
        if (read) read = import.finish();
        // What the solver said last explains results that end too early, and nothing else.
        if (!read && window->peek(1).empty())
            return Error{read.error().message + solverLastWords(analysis.results)};
        if (!read) return read;
        return kept(import);
    }

    Result<void> finishModel() {
        DeckErrors errors(deck_.fileName);
        checkSteps(deck_, report_.analyses, errors);
        if (!errors.empty()) return errors.toError();
        std::map<std::string, ItrKey> keys;
        for (std::size_t i = 0; i < deck_.analyses.size(); ++i) {
            const auto key = addAnalysis(deck_.analyses[i].name, deck_.analyses[i].typeCode, database_);
            if (!key) return key.error();
            keys[deck_.analyses[i].name] = *key;
            const ImportedAnalysis& imported = report_.analyses[i];
            std::size_t keyCount = imported.cases.size();
            for (const ImportedCase& one : imported.cases)
                keyCount += one.steps.size();
            const auto file = writers_[i].commitUnderFreeName();
            if (!file) return file.error();
            const std::u8string name = file->filename().u8string();
            const ItrKey registration = database_.addResultFile(*key, std::string(name.begin(), name.end()),
                                                                static_cast<std::uint32_t>(keyCount), true);
            publication_.add(registration, *file, imported.resultFile);
            if (registration == 0)
                return Error{"the document does not take the result file " + imported.resultFile.string()};
        }
        if (auto added = addFatigueRecords(deck_, keys, database_); !added) return added;
        for (const DeckFatigue& fatigue : deck_.fatigue)
            report_.fatigueNames.push_back(fatigue.name);
        if (database_.commitTransaction() == 0)
            return Error{"the document could not keep the imported model"};
        database_.ClearUndo();
        return {};
    }

    Result<void> saveAll() {
        tell("Saving " + modelPath_.filename().string(), 1);
        if (auto published = publication_.commit(database_); !published) return published;
        for (std::size_t i = 0; i < report_.analyses.size(); ++i)
            report_.analyses[i].resultFile = publication_.file(i);
        return {};
    }

    std::filesystem::path modelPath_;
    const ImportProgress& progress_;
    ProjectDeck deck_;
    std::vector<SolverDeck> solverDecks_;
    std::vector<std::unique_ptr<MeshModel>> meshFiles_; ///< one an analysis; null where it has a solver deck
    ModelDatabase database_;
    std::vector<std::int32_t> cornerCounts_;
    std::vector<resultfile::Writer> writers_; ///< one an analysis, which mark its file as worked on
    Publication publication_;
    ImportReport report_;
};

} // namespace

Result<ImportReport> importProject(const std::filesystem::path& deckPath,
                                   const std::filesystem::path& modelPath, const ImportProgress& progress) {
    return ProjectImport(modelPath, progress).run(deckPath);
}

} // namespace workbench
