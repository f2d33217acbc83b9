#include "workbench/import/InpReader.h"

#include "workbench/import/ElementCards.h"
#include "workbench/import/InpCard.h"
#include "workbench/import/InpRaw.h"
#include "workbench/import/Names.h"
#include "workbench/import/TextWindow.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <optional>
#include <span>
#include <unordered_map>

namespace workbench {
namespace {

// Keywords stand here as cards compare them, without blanks.

constexpr std::string_view kProcedures[] = {"STATIC",
                                            "FREQUENCY",
                                            "BUCKLE",
                                            "DYNAMIC",
                                            "MODALDYNAMIC",
                                            "STEADYSTATEDYNAMICS",
                                            "COMPLEXFREQUENCY",
                                            "HEATTRANSFER",
                                            "COUPLEDTEMPERATURE-DISPLACEMENT",
                                            "UNCOUPLEDTEMPERATURE-DISPLACEMENT",
                                            "VISCO",
                                            "ELECTROMAGNETICS",
                                            "SENSITIVITY",
                                            "FEASIBLEDIRECTION",
                                            "ROBUSTDESIGN",
                                            "GREEN",
                                            "CFD",
                                            "NOANALYSIS",
                                            "SUBSTRUCTUREGENERATE",
                                            "CRACKPROPAGATION"};

/// Requests for the result file, and those for other files.
constexpr std::string_view kResultRequests[] = {"NODEFILE",      "ELFILE",      "NODEOUTPUT",
                                                "ELEMENTOUTPUT", "CONTACTFILE", "CONTACTOUTPUT"};
constexpr std::string_view kPrintRequests[] = {"NODEPRINT",    "ELPRINT", "CONTACTPRINT",
                                               "SECTIONPRINT", "OUTPUT",  "RESTART"};

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

/// Laws in place of linear elasticity, and other data of materials.
constexpr std::string_view kOtherLaws[] = {"HYPERELASTIC", "HYPERFOAM", "USERMATERIAL"};
constexpr std::string_view kMaterialData[] = {"PLASTIC",
                                              "CYCLICHARDENING",
                                              "CREEP",
                                              "DEFORMATIONPLASTICITY",
                                              "EXPANSION",
                                              "CONDUCTIVITY",
                                              "SPECIFICHEAT",
                                              "DAMPING",
                                              "DEPVAR",
                                              "MOHRCOULOMB",
                                              "FLUIDCONSTANTS",
                                              "SPECIFICGASCONSTANT",
                                              "MAGNETICPERMEABILITY",
                                              "ELECTRICALCONDUCTIVITY",
                                              "MOHRCOULOMBHARDENING"};

/// Cards for which the solver adds nodes and elements of its own to its results.
constexpr std::string_view kAddItems[] = {"CYCLICSYMMETRYMODEL", "PRE-TENSIONSECTION"};

bool isOneOf(std::string_view keyword, std::span<const std::string_view> list) {
    return std::find(list.begin(), list.end(), keyword) != list.end();
}

class InpParser {
  public:
    explicit InpParser(std::filesystem::path folder)
        : folder_(std::move(folder)) {}

    Result<SolverDeck> run(TextWindow& window) {
        if (!readWindow(window)) return Error{error_};
        if (!endElementCard()) return Error{error_};
        if (card_.keyword.empty())
            return Error{window.name() + ": no line begins with a keyword; is this a solver deck?"};
        if (auto assembled = assembleMesh(raw_, deck_); !assembled) return assembled.error();
        checkSections();
        applySections(deck_);
        collectNotes();
        return std::move(deck_);
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
    using LineHandler = bool (InpParser::*)(std::string_view line);

    bool fail(const std::string& message) {
        if (error_.empty()) error_ = raw_.text(place_) + ": " + message;
        return false;
    }

    bool readWindow(TextWindow& window) {
        const InpPlace outer = place_;
        raw_.files.push_back(window.name());
        place_.file = static_cast<std::uint32_t>(raw_.files.size() - 1);
        std::string_view line;
        while (nextLine(window, line)) {
            if (line.starts_with("**")) continue;
            const std::string_view text = trimmed(line);
            if (text.empty() || text.starts_with("**")) continue;
            const bool good = text.front() == '*' ? readCard(window, text) : readData(text);
            if (!good) return false;
        }
        if (!window.failure().empty()) {
            error_ = window.failure();
            return false;
        }
        place_ = outer;
        return true;
    }

    bool nextLine(TextWindow& window, std::string_view& line) {
        if (!window.nextLine(line)) return false;
        place_.line = static_cast<std::uint32_t>(std::min<std::uint64_t>(window.lineNumber(), 0xFFFFFFFFu));
        return true;
    }

    bool readCard(TextWindow& window, std::string_view line) {
        std::string text(line);
        const InpPlace start = place_;
        std::string_view more;
        while (text.ends_with(',') && nextLine(window, more))
            if (!trimmed(more).starts_with("**")) text += trimmed(more);
        place_.line = start.line; // messages name the line on which the card begins
        InpCard card = parseCard(text);
        if (card.keyword == "INCLUDE") return include(card);
        if (!endElementCard()) return false;
        card_ = std::move(card);
        cardPlace_ = place_;
        handler_ = nullptr;
        return startCard();
    }

    bool readData(std::string_view line) {
        if (card_.keyword.empty()) {
            note("before", "data stands before the first keyword and is left out", " lines");
            return true;
        }
        return handler_ ? (this->*handler_)(line) : true;
    }

    bool startCard() {
        const std::string& keyword = card_.keyword;
        struct Row {
            std::string_view keyword;
            bool (InpParser::*start)();
        };
        static constexpr Row kRows[] = {{"NODE", &InpParser::startNode},
                                        {"ELEMENT", &InpParser::startElement},
                                        {"NSET", &InpParser::startNodeSet},
                                        {"ELSET", &InpParser::startElementSet},
                                        {"MATERIAL", &InpParser::startMaterial},
                                        {"ELASTIC", &InpParser::startElastic},
                                        {"DENSITY", &InpParser::startDensity},
                                        {"ORIENTATION", &InpParser::startOrientation},
                                        {"SOLIDSECTION", &InpParser::startSection},
                                        {"SHELLSECTION", &InpParser::startSection},
                                        {"MEMBRANESECTION", &InpParser::startSection},
                                        {"BEAMSECTION", &InpParser::startBeamSection},
                                        {"BEAMGENERALSECTION", &InpParser::startBeamSection},
                                        {"SPRING", &InpParser::startConnectorSection},
                                        {"DASHPOT", &InpParser::startConnectorSection},
                                        {"GAP", &InpParser::startConnectorSection},
                                        {"MASS", &InpParser::startConnectorSection},
                                        {"DISTRIBUTINGCOUPLING", &InpParser::startConnectorSection},
                                        {"STEP", &InpParser::startStep},
                                        {"ENDSTEP", &InpParser::endStep},
                                        {"HEADING", &InpParser::startHeading}};
        for (const Row& row : kRows)
            if (row.keyword == keyword) return (this->*row.start)();
        if (isOneOf(keyword, kProcedures)) return procedure();
        if (isOneOf(keyword, kResultRequests)) return resultRequest();
        if (isOneOf(keyword, kPrintRequests)) return true;
        if (keyword == "NODALTHICKNESS") {
            note("thickness", "*NODAL THICKNESS: the thickness of the section is kept");
            return true;
        }
        if (isOneOf(keyword, kAddItems)) deck_.solverAddsItems = true;
        if (keyword == "TRANSFORM") return true; // of loads, and of displacements with GLOBAL=NO
        if (isOneOf(keyword, kOtherLaws)) return otherLaw();
        if (isOneOf(keyword, kMaterialData))
            note("material data",
                 "*" + card_.title +
                     " and other data of materials beyond linear elasticity and density are not kept",
                 " cards");
        else if (isOneOf(keyword, kLoads))
            note("loads", "*" + card_.title + ": loads, supports and links are not kept in the model",
                 " cards");
        else
            note("*" + keyword, "*" + card_.title + " is not read");
        return true;
    }

    // ---- nodes and elements ----

    bool startNode() {
        noteParametersBut({"NSET"});
        currentSet_ = setOfParameter("NSET", raw_.nodeSets, nodeSetIndex_);
        handler_ = &InpParser::nodeLine;
        return true;
    }

    bool nodeLine(std::string_view line) {
        InpFields fields(line);
        int number = 0;
        if (!numberField(fields, "node number", number)) return false;
        std::array<double, 3> position{};
        std::string_view field;
        for (std::size_t axis = 0; fields.next(field); ++axis) {
            if (axis == 3) {
                note("coordinates", "node " + std::to_string(number) + " has more than three coordinates",
                     " nodes");
                break;
            }
            const auto value = parseReal(field);
            if (!value)
                return fail("'" + std::string(field) + "' is no coordinate of node " +
                            std::to_string(number));
            position[axis] = *value;
        }
        raw_.nodeNumbers.push_back(number);
        raw_.nodePositions.push_back(position);
        raw_.nodePlaces.push_back(place_);
        if (currentSet_ != kNoSet) raw_.nodeSets[currentSet_].addNumber(number, true);
        return true;
    }

    bool startElement() {
        noteParametersBut({"TYPE", "ELSET"});
        const std::string* type = card_.find("TYPE");
        if (!type) return fail("*ELEMENT has no TYPE");
        const std::string name = upperCase(*type);
        currentSet_ = setOfParameter("ELSET", raw_.elementSets, elementSetIndex_);
        if (const auto known = elementCard(name)) {
            elementType_ = known->type;
            elementFamily_ = known->family;
            handler_ = &InpParser::elementLine;
            return true;
        }
        leftOutType_ = name;
        leftOutContinues_ = false;
        handler_ = &InpParser::leftOutElementLine;
        return true;
    }

    /// Nodes of an element go on over as many lines as it takes.
    bool elementLine(std::string_view line) {
        InpFields fields(line);
        std::string_view field;
        if (pendingNodes_ == 0) {
            int number = 0;
            if (!numberField(fields, "element number", number)) return false;
            raw_.elementNumbers.push_back(number);
            raw_.elementTypes.push_back(static_cast<std::uint8_t>(elementType_));
            raw_.elementFamilies.push_back(elementFamily_);
            raw_.elementPlaces.push_back(place_);
            pendingNodes_ = elementNodeCount(static_cast<std::uint8_t>(elementType_));
            if (currentSet_ != kNoSet) raw_.elementSets[currentSet_].addNumber(number, true);
        }
        while (fields.next(field)) {
            if (pendingNodes_ == 0) {
                note("nodes",
                     "element " + std::to_string(raw_.elementNumbers.back()) + " has more than the " +
                         std::to_string(elementNodeCount(raw_.elementTypes.back())) +
                         " nodes of its type; those behind are left out",
                     " elements");
                break;
            }
            const auto node = parseInteger(field);
            if (!node || *node < 1)
                return fail("'" + std::string(field) + "' is no node number of element " +
                            std::to_string(raw_.elementNumbers.back()));
            raw_.elementNodes.push_back(*node);
            --pendingNodes_;
        }
        if (pendingNodes_ == 0)
            raw_.elementNodeOffsets.push_back(static_cast<std::uint32_t>(raw_.elementNodes.size()));
        return true;
    }

    /// Elements of other types are counted, so that sets and results that name them are understood.
    bool leftOutElementLine(std::string_view line) {
        if (!leftOutContinues_) {
            InpFields fields(line);
            int number = 0;
            if (!numberField(fields, "element number", number)) return false;
            raw_.leftOutElements.push_back(number);
            deck_.solverAddsItems = true;
            note("TYPE " + leftOutType_, "elements of type " + leftOutType_ + " are not read and left out",
                 " elements");
        }
        leftOutContinues_ = line.back() == ',';
        return true;
    }

    bool endElementCard() {
        if (pendingNodes_ == 0) return true;
        return fail("element " + std::to_string(raw_.elementNumbers.back()) + " lacks " +
                    std::to_string(pendingNodes_) + " of its " +
                    std::to_string(elementNodeCount(raw_.elementTypes.back())) + " nodes");
    }

    // ---- sets ----

    static constexpr std::size_t kNoSet = std::numeric_limits<std::size_t>::max();
    using SetIndex = std::unordered_map<std::string, std::size_t>;

    std::size_t setNamed(const std::string& name, std::vector<InpRawSet>& sets, SetIndex& index) {
        const auto [found, isNew] = index.try_emplace(upperCase(name), sets.size());
        if (isNew) {
            sets.emplace_back();
            sets.back().name = name;
            sets.back().place = cardPlace_;
        }
        return found->second;
    }

    std::size_t setOfParameter(std::string_view parameter, std::vector<InpRawSet>& sets, SetIndex& index) {
        const std::string* name = card_.find(parameter);
        return name && !name->empty() ? setNamed(*name, sets, index) : kNoSet;
    }

    bool startNodeSet() { return startSet("NSET", raw_.nodeSets, nodeSetIndex_); }
    bool startElementSet() { return startSet("ELSET", raw_.elementSets, elementSetIndex_); }

    bool startSet(std::string_view parameter, std::vector<InpRawSet>& sets, SetIndex& index) {
        noteParametersBut({parameter, "GENERATE", "UNSORTED"});
        currentSet_ = setOfParameter(parameter, sets, index);
        if (currentSet_ == kNoSet)
            return fail("*" + card_.title + " has no name (" + std::string(parameter) + "=...)");
        currentSets_ = &sets;
        handler_ = card_.has("GENERATE") ? &InpParser::generateLine : &InpParser::setLine;
        return true;
    }

    bool setLine(std::string_view line) {
        InpRawSet& set = (*currentSets_)[currentSet_];
        InpFields fields(line);
        std::string_view field;
        while (fields.next(field)) {
            if (field.empty()) continue;
            if (const auto number = parseInteger(field)) {
                if (*number < 1) return fail("'" + std::string(field) + "' is no number of a set member");
                set.addNumber(*number, true);
            } else {
                if (field.size() >= 2 && field.front() == '"') field = field.substr(1, field.size() - 2);
                set.references.push_back({std::string(field), place_});
            }
        }
        return true;
    }

    bool generateLine(std::string_view line) {
        InpFields fields(line);
        int first = 0;
        if (!numberField(fields, "first number of a range", first)) return false;
        int last = first, step = 1;
        std::string_view field;
        if (fields.next(field) && !field.empty() && !numberOf(field, "last number of a range", last))
            return false;
        if (fields.next(field) && !field.empty() && !numberOf(field, "step of a range", step)) return false;
        if (last < first) return fail("the range ends before it begins");
        (*currentSets_)[currentSet_].ranges.push_back({first, last, step, false});
        return true;
    }

    // ---- materials and sections ----

    bool startMaterial() {
        noteParametersBut({"NAME"});
        const std::string* name = card_.find("NAME");
        if (!name || name->empty()) return fail("*MATERIAL has no NAME");
        const auto known =
            std::find_if(deck_.materials.begin(), deck_.materials.end(),
                         [&](const auto& other) { return equalIgnoringCase(other.name, *name); });
        if (known != deck_.materials.end()) {
            note("MATERIAL " + upperCase(*name),
                 "material '" + *name + "' was given before, at " + known->place + "; the first is kept");
            ignoredMaterial_ = {};
            material_ = kIgnoredMaterial;
            return true;
        }
        material_ = deck_.materials.size();
        deck_.materials.emplace_back();
        deck_.materials.back().name = *name;
        deck_.materials.back().place = raw_.text(place_);
        return true;
    }

    static constexpr std::size_t kNoMaterial = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t kIgnoredMaterial = kNoMaterial - 1;

    SolverMaterial& material() {
        return material_ == kIgnoredMaterial ? ignoredMaterial_ : deck_.materials[material_];
    }

    bool insideMaterial() {
        return material_ != kNoMaterial || fail("*" + card_.title + " stands before any *MATERIAL");
    }

    bool otherLaw() {
        if (!insideMaterial()) return false;
        note("law " + material().name, "*" + card_.title + ": material '" + material().name +
                                           "' keeps no elastic modulus and no Poisson's ratio");
        return true;
    }

    bool startElastic() {
        if (!insideMaterial()) return false;
        const std::string* type = card_.find("TYPE");
        if (type && !type->empty() && !equalIgnoringCase(*type, "ISO") &&
            !equalIgnoringCase(*type, "ISOTROPIC")) {
            note("law " + material().name, "*ELASTIC of type " + upperCase(*type) + ": material '" +
                                               material().name +
                                               "' keeps no elastic modulus and no Poisson's ratio");
            return true;
        }
        constantsLines_ = 0;
        handler_ = &InpParser::elasticLine;
        return true;
    }

    bool elasticLine(std::string_view line) {
        if (constantsLines_++ > 0) return noteTemperatures();
        InpFields fields(line);
        if (!realField(fields, "elastic modulus", material().elasticModulus)) return false;
        if (!realField(fields, "Poisson's ratio", material().poissonRatio)) return false;
        if (material().elasticModulus <= 0) {
            note("modulus " + material().name,
                 "the elastic modulus of material '" + material().name + "' is not positive and not kept");
            material().elasticModulus = 0;
        }
        return true;
    }

    bool startDensity() {
        if (!insideMaterial()) return false;
        constantsLines_ = 0;
        handler_ = &InpParser::densityLine;
        return true;
    }

    bool densityLine(std::string_view line) {
        if (constantsLines_++ > 0) return noteTemperatures();
        InpFields fields(line);
        return realField(fields, "density", material().density);
    }

    bool noteTemperatures() {
        note("TEMPERATURES " + card_.keyword,
             "*" + card_.title + " depends on the temperature; the first values are taken", " further lines");
        return true;
    }

    bool startSection() {
        noteParametersBut({"ELSET", "MATERIAL", "OFFSET", "ORIENTATION", "COMPOSITE", "NODALTHICKNESS"});
        if (!beginSection("MATERIAL")) return false;
        if (const std::string* name = card_.find("ORIENTATION"); name && section_)
            deck_.sections[*section_].orientation = *name;
        if (card_.has("NODALTHICKNESS"))
            note("NODALTHICKNESS",
                 "*" + card_.title + ": the thickness varies from node to node; that of the section is kept");
        sectionLines_ = 0;
        handler_ = card_.has("COMPOSITE") ? &InpParser::layerLine : &InpParser::thicknessLine;
        return true;
    }

    bool startOrientation() {
        const std::string* name = card_.find("NAME");
        if (!name || name->empty() || deck_.orientations.size() >= kMostOrientations) {
            note("ORIENTATION", "*ORIENTATION without NAME, or too many of them, is left out");
            return true;
        }
        deck_.orientations.emplace_back();
        SolverOrientation& orientation = deck_.orientations.back();
        orientation.name = *name;
        const std::string* system = card_.find("SYSTEM");
        orientation.isCylindrical = system && upperCase(*system).starts_with("C");
        orientationLines_ = 0;
        handler_ = &InpParser::orientationLine;
        return true;
    }

    /// Two points; a further line turns the axes about one of them, which is not followed.
    bool orientationLine(std::string_view line) {
        SolverOrientation& orientation = deck_.orientations.back();
        InpFields fields(line);
        std::string_view field;
        orientation.isKnown = orientationLines_++ == 0;
        for (std::size_t i = 0; i < 6 && orientation.isKnown && fields.next(field); ++i) {
            const auto value = parseReal(field);
            orientation.isKnown = value.has_value();
            (i < 3 ? orientation.first : orientation.second)[i % 3] = value.value_or(0);
        }
        return true;
    }

    static constexpr std::size_t kMostOrientations = 65534;

    bool startBeamSection() { return beginSection("MATERIAL"); }
    bool startConnectorSection() { return beginSection(""); }

    /// A section without material where `materialParameter` is empty or the card has none.
    bool beginSection(std::string_view materialParameter) {
        const std::string* set = card_.find("ELSET");
        if (!set || set->empty()) {
            note("ELSET " + card_.keyword,
                 "*" + card_.title + " names no element set (ELSET) and is left out");
            section_.reset();
            return true;
        }
        section_ = deck_.sections.size();
        deck_.sections.emplace_back();
        deck_.sections.back().elementSet = *set;
        deck_.sections.back().place = raw_.text(place_);
        if (const std::string* material = card_.find(materialParameter)) addSectionMaterial(*material);
        return true;
    }

    void addSectionMaterial(const std::string& name) {
        auto& materials = deck_.sections[*section_].materials;
        const bool known = std::any_of(materials.begin(), materials.end(),
                                       [&](const auto& other) { return equalIgnoringCase(other, name); });
        if (!known && !name.empty()) materials.push_back(name);
    }

    bool thicknessLine(std::string_view line) {
        if (sectionLines_++ > 0 || !section_) return true;
        InpFields fields(line);
        return realField(fields, "thickness", deck_.sections[*section_].thickness);
    }

    static constexpr int kMostLayers = 65535;

    /// A layer of a composite shell: thickness, an unused field, material, orientation.
    bool layerLine(std::string_view line) {
        if (!section_) return true;
        InpFields fields(line);
        double thickness = 0;
        if (!realField(fields, "thickness of a layer", thickness)) return false;
        SolverSection& section = deck_.sections[*section_];
        section.thickness += thickness;
        section.layers = std::min(section.layers + 1, kMostLayers);
        std::string_view field;
        if (fields.next(field) && fields.next(field)) addSectionMaterial(std::string(field));
        return true;
    }

    /// Sections of sets that are not there are left out, and materials that are not there forgotten.
    void checkSections() {
        const auto has = [](const auto& records, const std::string& name) {
            return std::any_of(records.begin(), records.end(),
                               [&](const auto& record) { return equalIgnoringCase(record.name, name); });
        };
        const auto warn = [&](const SolverSection& section, const std::string& what, const auto& records) {
            std::vector<std::string> names;
            for (const auto& record : records)
                names.push_back(record.name);
            deck_.warnings.push_back(section.place + ": " + what + " is not in the deck; it has " +
                                     listNames(names));
        };
        std::erase_if(deck_.sections, [&](const SolverSection& section) {
            if (has(deck_.elementSets, section.elementSet)) return false;
            warn(section, "element set '" + section.elementSet + "'", deck_.elementSets);
            return true;
        });
        for (SolverSection& section : deck_.sections)
            std::erase_if(section.materials, [&](const std::string& name) {
                if (has(deck_.materials, name)) return false;
                warn(section, "material '" + name + "'", deck_.materials);
                return true;
            });
    }

    // ---- steps ----

    bool startHeading() {
        handler_ = &InpParser::headingLine;
        return true;
    }

    bool headingLine(std::string_view line) {
        if (deck_.title.empty()) deck_.title = line;
        return true;
    }

    bool startStep() {
        SolverStep step;
        step.place = raw_.text(place_);
        step.requestsResults = false;
        if (const std::string* name = card_.find("NAME")) step.title = *name;
        deck_.steps.push_back(std::move(step));
        insideStep_ = true;
        handler_ = &InpParser::stepTitleLine;
        return true;
    }

    bool stepTitleLine(std::string_view line) {
        if (deck_.steps.back().title.empty()) deck_.steps.back().title = line;
        return true;
    }

    bool endStep() {
        insideStep_ = false;
        return true;
    }

    bool procedure() {
        if (!insideStep_) {
            note("outside " + card_.keyword,
                 "*" + card_.title + " stands outside of a *STEP and is left out");
            return true;
        }
        deck_.steps.back().procedure = card_.keyword;
        return true;
    }

    bool resultRequest() {
        if (insideStep_) deck_.steps.back().requestsResults = true;
        const std::string* global = card_.find("GLOBAL");
        if (!global || !equalIgnoringCase(*global, "NO")) return true;
        if (card_.keyword == "ELFILE" || card_.keyword == "ELEMENTOUTPUT")
            deck_.hasLocalResults = true;
        else
            note("GLOBAL",
                 "*" + card_.title + " asks for results in local systems; they are stored as they stand");
        return true;
    }

    // ---- included files ----

    /// The file's lines stand in place of the card, so a card that is open goes on in it.
    bool include(const InpCard& card) {
        const std::string* input = card.find("INPUT");
        if (!input || input->empty()) return fail("*INCLUDE has no INPUT");
        const std::filesystem::path path = folder_ / *input;
        if (openFiles_.size() >= 64) return fail("files include each other more than 64 deep");
        std::error_code code;
        if (!std::filesystem::is_regular_file(path, code))
            return fail("the included file " + path.string() + " is not there");
        if (!enterFile(path)) return fail(path.string() + " includes itself");
        auto window = TextWindow::openFile(path);
        if (!window) return fail(window.error().message);
        const bool good = readWindow(*window);
        openFiles_.pop_back();
        return good;
    }

    // ---- fields and warnings ----

    bool numberOf(std::string_view field, const char* what, int& number) {
        const auto value = parseInteger(field);
        if (!value || *value < 1)
            return fail("'" + std::string(field) + "' is no " + what + " (1 to 2147483647)");
        number = *value;
        return true;
    }

    bool numberField(InpFields& fields, const char* what, int& number) {
        std::string_view field;
        if (!fields.next(field)) return fail(std::string("the ") + what + " is missing");
        return numberOf(field, what, number);
    }

    bool realField(InpFields& fields, const char* what, double& number) {
        std::string_view field;
        if (!fields.next(field)) return true;
        const auto value = parseReal(field);
        if (!value) return fail("'" + std::string(field) + "' is no " + what);
        number = *value;
        return true;
    }

    /// Remembers a warning; later ones of the same key are only counted.
    void note(const std::string& key, const std::string& text, const char* unit = " times") {
        const auto [found, isNew] = noteIndex_.try_emplace(key, notes_.size());
        if (isNew) notes_.push_back({raw_.text(place_) + ": " + text, unit, 0});
        ++notes_[found->second].count;
    }

    void noteParametersBut(std::initializer_list<std::string_view> known) {
        for (const InpCard::Parameter& parameter : card_.parameters)
            if (std::find(known.begin(), known.end(), parameter.name) == known.end())
                note(card_.keyword + "," + parameter.name,
                     "*" + card_.title + ": the parameter " + parameter.name + " is not read");
    }

    void collectNotes() {
        std::vector<std::string> texts;
        for (const Note& entry : notes_)
            texts.push_back(entry.text + (entry.count > 1
                                              ? " (" + std::to_string(entry.count) + entry.unit + ")"
                                              : std::string()));
        deck_.warnings.insert(deck_.warnings.begin(), texts.begin(), texts.end());
    }

    struct Note {
        std::string text;
        const char* unit;
        std::uint64_t count;
    };

    std::filesystem::path folder_;
    std::vector<std::filesystem::path> openFiles_;
    SolverDeck deck_;
    InpRaw raw_;
    std::string error_;
    InpPlace place_;
    InpPlace cardPlace_;

    InpCard card_;
    LineHandler handler_ = nullptr;
    std::vector<InpRawSet>* currentSets_ = nullptr;
    std::size_t currentSet_ = kNoSet;
    SetIndex nodeSetIndex_;
    SetIndex elementSetIndex_;
    ElementType elementType_ = ElementType::Point;
    ElementFamily elementFamily_ = ElementFamily::Solid;
    int pendingNodes_ = 0;
    std::string leftOutType_;
    bool leftOutContinues_ = false;
    std::size_t material_ = kNoMaterial; ///< that cards of constants belong to
    SolverMaterial ignoredMaterial_;
    int constantsLines_ = 0;
    std::optional<std::size_t> section_;
    int sectionLines_ = 0;
    int orientationLines_ = 0;
    bool insideStep_ = false;

    std::vector<Note> notes_;
    std::unordered_map<std::string, std::size_t> noteIndex_;
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
