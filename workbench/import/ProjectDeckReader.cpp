#include "workbench/import/DeckTable.h"
#include "workbench/import/Names.h"
#include "workbench/import/ProjectDeck.h"
#include "workbench/import/ProjectDeckChecks.h"
#include "workbench/import/TextWindow.h"
#include "workbench/import/TomlText.h"
#include "workbench/meshfile/MeshFileKind.h"
#include "workbench/results/Catalogue.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

using Texts = std::vector<std::string>;

const Texts kForces{"N", "kN", "MN", "kgf", "tonf", "lbf", "kips"};
const Texts kLengths{"mm", "cm", "m", "in", "ft"};

/// Names of the analysis-type codes that fatigue runs accept, in the order of kAnalysisCodes.
const Texts kAnalysisTypes{
    "static", "nonlinear static",      "direct transient", "modal transient", "nonlinear transient",
    "staged", "nonlinear time history"};
constexpr std::int32_t kAnalysisCodes[] = {101, 106, 109, 112, 129, 210, 239};

/// In the order of FatigueType, of tagTFatg::stressOption, of the record's flags.
const Texts kFatigueTypes{"stress-life cases", "strain-life cases", "stress-life steps", "strain-life steps",
                          "stress and strain steps"};
const Texts kMeasures{"absolute maximum principal", "signed von Mises", "signed Tresca", "critical plane"};
const Texts kStressCorrections{"none", "Goodman", "Gerber", "Soderberg", "Morrow", "SWT"};
const Texts kStrainCorrections{"none", "Morrow", "SWT", "Manson-Halford"};
const Texts kOutputs{"damage", "life", "equivalent amplitude"};

/// What the planar elements of a mesh file are, in the order of kPlanarFamilies.
const Texts kPlanarKinds{"shell", "membrane", "plane stress", "plane strain", "axisymmetric"};
constexpr ElementFamily kPlanarFamilies[] = {ElementFamily::Plate, ElementFamily::Membrane,
                                             ElementFamily::PlaneStress, ElementFamily::PlaneStrain,
                                             ElementFamily::Axisymmetric};

class Reader {
  public:
    Reader(ProjectDeck& deck, DeckErrors& errors, std::filesystem::path folder)
        : deck_(deck)
        , errors_(errors)
        , folder_(std::move(folder)) {}

    void read(const toml::table& root) {
        DeckTable table(root, "the project deck", errors_);
        deck_.title = table.text("title").value_or("");
        if (const toml::table* units = table.subTable("units")) readUnits(*units);
        table.forEachTable("analysis", [&](const toml::table& entry) { readAnalysis(entry); });
        table.forEachTable("material", [&](const toml::table& entry) { readMaterial(entry); });
        table.forEachTable("sn_curve", [&](const toml::table& entry) { readCurve(entry); });
        table.forEachTable("load_function", [&](const toml::table& entry) { readFunction(entry); });
        table.forEachTable("fatigue", [&](const toml::table& entry) { readFatigue(entry); });
    }

  private:
    /// "material 'STEEL'", or "material 3" where it has no name.
    static std::string title(const char* kind, const std::string& name, std::size_t position) {
        return std::string(kind) + " " + (name.empty() ? std::to_string(position + 1) : "'" + name + "'");
    }

    void readUnits(const toml::table& entry) {
        DeckTable table(entry, "units", errors_);
        if (const auto force = table.choice("force", kForces)) deck_.forceUnit = kForces[std::size_t(*force)];
        if (const auto length = table.choice("length", kLengths))
            deck_.lengthUnit = kLengths[std::size_t(*length)];
    }

    void readAnalysis(const toml::table& entry) {
        DeckAnalysis analysis;
        DeckTable table(entry, "an analysis", errors_);
        analysis.line = table.line();
        analysis.name = table.requiredName("name");
        table.rename(title("analysis", analysis.name, deck_.analyses.size()));
        if (const std::string fault = analysisNameFault(analysis.name);
            !analysis.name.empty() && !fault.empty())
            table.fail("name", fault);
        if (!table.has("deck")) table.fail("deck", "deck is missing; it names the solver's input file");
        const std::string deck = table.text("deck").value_or("");
        analysis.deck = resolve(deck);
        const auto results = table.text("results");
        analysis.results = results ? resolve(*results)
                           : isMeshFile(analysis.deck)
                               ? analysis.deck
                               : std::filesystem::path(analysis.deck).replace_extension(".frd");
        readMeshKeys(table, analysis);
        analysis.typeCode = analysisType(table);
        analysis.cases = table.names("cases").value_or(Texts());
        analysis.casesLine = table.line("cases");
        deck_.analyses.push_back(std::move(analysis));
    }

    /// The keys that only mesh files have.
    void readMeshKeys(DeckTable& table, DeckAnalysis& analysis) {
        const bool isMesh = isMeshFile(analysis.deck);
        if (isMesh != isMeshFile(analysis.results))
            table.fail("results", "deck and results are of different kinds; results of a mesh file (.vtu, "
                                  ".vtk, .msh) are one, too, and those of a solver deck are not");
        const toml::table* fields = table.subTable("fields");
        if (const auto planar = table.choice("planar", kPlanarKinds))
            analysis.planar = kPlanarFamilies[*planar];
        if (fields)
            for (const auto& [array, value] : *fields)
                readField(std::string(array.str()), value, table, analysis);
        for (const char* key : {"planar", "fields"})
            if (!isMesh && table.has(key))
                table.fail(key,
                           std::string(key) + " is for mesh files (.vtu, .vtk, .msh) only; leave it out");
    }

    void readField(std::string array, const toml::node& value, const DeckTable& table,
                   DeckAnalysis& analysis) {
        const int line = DeckTable::lineOf(value);
        const auto refuse = [&](const std::string& found) {
            errors_.add(line, table.what() + ", fields: the array '" + array + "' cannot become " + found +
                                  "; accepted are " + listNames(fieldTargetNames()) +
                                  " and numbers of the result catalogue");
        };
        std::optional<FieldTarget> target;
        if (const auto word = value.value_exact<std::string>()) {
            target = fieldTarget(*word);
            if (!target) return refuse("'" + *word + "'");
        } else if (const auto id = value.value_exact<std::int64_t>()) {
            if (*id < 1 || *id > kLargestInteger || !findComponent(static_cast<unsigned>(*id)))
                return refuse(std::to_string(*id));
            target = FieldTarget{FieldTarget::Scalar, static_cast<unsigned>(*id)};
        } else {
            return refuse("this");
        }
        analysis.fields.push_back({line, std::move(array), *target});
    }

    std::int32_t analysisType(DeckTable& table) {
        const auto type = table.choice("type", kAnalysisTypes);
        return kAnalysisCodes[type.value_or(0)];
    }

    std::filesystem::path resolve(const std::string& file) const {
        return folder_ / std::filesystem::path(std::u8string(file.begin(), file.end()));
    }

    void readMaterial(const toml::table& entry) {
        DeckMaterial material;
        DeckTable table(entry, "a material", errors_);
        material.line = table.line();
        material.name = table.requiredName("name");
        table.rename(title("material", material.name, deck_.materials.size()));
        material.yield = table.positive("yield");
        material.ultimate = table.positive("ultimate");
        material.elasticModulus = table.positive("elastic_modulus");
        material.poissonRatio = table.number("poisson_ratio");
        if (material.poissonRatio && !(*material.poissonRatio > -1 && *material.poissonRatio < 0.5))
            table.fail("poisson_ratio", "poisson_ratio must lie between -1 and 0.5");
        material.density = table.positive("density");
        material.strength = readStrength(table);
        deck_.materials.push_back(std::move(material));
    }

    std::optional<MohrCoulombStrength> readStrength(DeckTable& table) {
        const auto cohesion = table.number("cohesion");
        const auto angle = table.number("friction_angle");
        const auto tension = table.number("tensile_strength");
        if (!cohesion && !angle && !tension) return std::nullopt;
        if (!cohesion) table.fail("cohesion", "cohesion is missing; it goes with friction_angle, 0 for none");
        if (!angle)
            table.fail("friction_angle", "friction_angle is missing; 0 degrees is undrained strength");
        if (cohesion && !(*cohesion >= 0)) table.fail("cohesion", "cohesion must not be negative");
        if (angle && !(*angle >= 0 && *angle < 90))
            table.fail("friction_angle", "friction_angle must lie from 0 to below 90 degrees");
        if (tension && !(*tension >= 0))
            table.fail("tensile_strength", "tensile_strength must not be negative");
        return MohrCoulombStrength{cohesion.value_or(0), angle.value_or(0), tension};
    }

    void readCurve(const toml::table& entry) {
        DeckCurve curve;
        DeckTable table(entry, "an S-N curve", errors_);
        curve.line = table.line();
        curve.name = table.requiredName("name");
        table.rename(title("S-N curve", curve.name, deck_.curves.size()));
        curve.points = table.requiredPairs("points", "[cycles, stress amplitude]");
        checkCurvePoints(curve.points, table);
        deck_.curves.push_back(std::move(curve));
    }

    static void checkCurvePoints(const std::vector<std::array<double, 2>>& points, DeckTable& table) {
        if (points.size() == 1) table.fail("points", "a curve needs at least two points");
        for (std::size_t i = 0; i < points.size(); ++i) {
            const std::string point = "point " + std::to_string(i + 1);
            if (!(points[i][0] > 0 && points[i][1] > 0))
                return table.fail("points",
                                  point + " of the curve is not positive; cycles and amplitudes must be");
            if (i > 0 && !(points[i][0] > points[i - 1][0]))
                return table.fail("points", "the cycles of " + point + " do not ascend");
            if (i > 0 && !(points[i][1] <= points[i - 1][1]))
                return table.fail("points",
                                  "the amplitude of " + point + " rises; a curve must fall or stay level");
        }
    }

    void readFunction(const toml::table& entry) {
        DeckLoadFunction function;
        DeckTable table(entry, "a load function", errors_);
        function.line = table.line();
        function.name = table.requiredName("name");
        table.rename(title("load function", function.name, deck_.functions.size()));
        function.number = static_cast<std::int32_t>(
            table.integer("number", 1, kLargestInteger).value_or(0)); // 0: numbered when all are known
        function.points = table.requiredPairs("points", "[time, value]");
        for (std::size_t i = 1; i < function.points.size(); ++i)
            if (!(function.points[i][0] - function.points[i - 1][0] > kTimeTolerance)) {
                table.fail("points", "the time of point " + std::to_string(i + 1) +
                                         " does not ascend; times must lie more than 1e-9 apart");
                break;
            }
        deck_.functions.push_back(std::move(function));
    }

    void readFatigue(const toml::table& entry) {
        DeckFatigue fatigue;
        DeckTable table(entry, "a fatigue definition", errors_);
        fatigue.line = table.line();
        fatigue.name = table.requiredName("name");
        table.rename(title("fatigue definition", fatigue.name, deck_.fatigue.size()));
        fatigue.analysis = table.name("analysis").value_or("");
        if (fatigue.analysis.empty() && !table.has("analysis")) {
            if (deck_.analyses.size() == 1)
                fatigue.analysis = deck_.analyses.front().name;
            else
                table.fail("analysis", "analysis is missing; it names the analysis whose results are used");
        }
        fatigue.result = table.name("result").value_or(fatigue.name);
        if (const std::string fault = analysisNameFault(fatigue.result);
            !fatigue.result.empty() && !fault.empty())
            table.fail(table.has("result") ? "result" : "name", fault);
        readOptions(table, fatigue);
        const std::string what = table.what();
        table.forEachTable("material",
                           [&](const toml::table& sub) { readFatigueMaterial(sub, what, fatigue); });
        table.forEachTable("load", [&](const toml::table& sub) { readFatigueLoad(sub, what, fatigue); });
        if (fatigue.materials.empty()) table.fail("material", "it has no [[fatigue.material]]");
        if (fatigue.loads.empty()) table.fail("load", "it has no [[fatigue.load]]");
        deck_.fatigue.push_back(std::move(fatigue));
    }

    static void readOptions(DeckTable& table, DeckFatigue& fatigue) {
        if (!table.has("type"))
            table.fail("type", "type is missing; accepted are " + listNames(kFatigueTypes));
        fatigue.type = table.choice("type", kFatigueTypes).value_or(0);
        fatigue.measure = table.choice("measure", kMeasures).value_or(0);
        const Texts& corrections = fatigue.isStressLife() ? kStressCorrections : kStrainCorrections;
        if (auto flags = table.choices("mean_stress", corrections)) fatigue.meanStress = std::move(*flags);
        if (auto flags = table.choices("outputs", kOutputs)) fatigue.outputs = std::move(*flags);
        fatigue.cycles = static_cast<std::int32_t>(table.integer("cycles", 1, kLargestInteger).value_or(1));
        fatigue.infiniteLife = table.positive("infinite_life").value_or(fatigue.infiniteLife);
        if (const auto gate = table.integer("quick_rainflow", 0, 100))
            fatigue.quickRainflow = static_cast<std::int32_t>(*gate);
    }

    void readFatigueMaterial(const toml::table& entry, const std::string& owner, DeckFatigue& fatigue) {
        DeckFatigueMaterial material;
        DeckTable table(entry, owner + ", a material", errors_);
        material.line = table.line();
        material.material = table.requiredName("material");
        table.rename(owner + ", " + title("material", material.material, fatigue.materials.size()));
        if (fatigue.isStressLife())
            readStressLife(table, material);
        else
            readStrainLife(table, material);
        fatigue.materials.push_back(std::move(material));
    }

    static void readStressLife(DeckTable& table, DeckFatigueMaterial& material) {
        const bool tabulated = table.has("curve");
        const auto coefficient = table.positive("coefficient");
        const auto exponent = negative(table, "exponent");
        const bool parametric = table.has("coefficient") || table.has("exponent");
        if (tabulated == parametric)
            table.fail(tabulated ? "coefficient" : "curve",
                       "it needs either curve, the name of an S-N curve, or coefficient and exponent");
        material.curve = table.name("curve").value_or("");
        if (parametric) {
            if (!table.has("coefficient") || !table.has("exponent"))
                table.fail("coefficient", "coefficient and exponent belong together");
            material.coefficient = coefficient.value_or(1);
            material.exponent = exponent.value_or(-1);
        }
        material.yield = table.positive("yield");
        material.ultimate = table.positive("ultimate");
    }

    static void readStrainLife(DeckTable& table, DeckFatigueMaterial& material) {
        T_FATG_STRAIN_LIFE_D& data = material.strainLife;
        const auto required = [&](const char* key, auto&& get) {
            if (!table.has(key)) table.fail(key, std::string(key) + " is missing");
            return get(key);
        };
        const auto positive = [&](const char* key) { return table.positive(key).value_or(1); };
        const auto negativeOf = [&](const char* key) { return negative(table, key).value_or(-1); };
        data.fatigueStrengthCoefficient = required("fatigue_strength_coefficient", positive);
        data.fatigueStrengthExponent = required("fatigue_strength_exponent", negativeOf);
        data.fatigueDuctilityCoefficient = required("fatigue_ductility_coefficient", positive);
        data.fatigueDuctilityExponent = required("fatigue_ductility_exponent", negativeOf);
        const auto hardening = table.positive("cyclic_hardening_exponent");
        const auto strength = table.positive("cyclic_strength_coefficient");
        data.deriveCyclicHardeningExponent = hardening ? 0 : 1;
        data.cyclicHardeningExponent = hardening.value_or(0);
        data.deriveCyclicStrengthCoefficient = strength ? 0 : 1;
        data.cyclicStrengthCoefficient = strength.value_or(0);
    }

    static std::optional<double> negative(DeckTable& table, std::string_view key) {
        const auto value = table.number(key);
        if (!value || *value < 0) return value;
        table.fail(key, std::string(key) + " must be less than 0, since amplitudes fall with the cycles");
        return std::nullopt;
    }

    void readFatigueLoad(const toml::table& entry, const std::string& owner, DeckFatigue& fatigue) {
        DeckFatigueLoad load;
        DeckTable table(entry, owner + ", load " + std::to_string(fatigue.loads.size() + 1), errors_);
        load.line = table.line();
        load.caseName = table.requiredName("case");
        load.step = table.name("step").value_or("");
        load.factor = table.number("factor").value_or(1);
        load.function = table.name("function").value_or("");
        if (fatigue.isOverSteps()) {
            for (const char* key : {"factor", "function"})
                if (table.has(key))
                    table.fail(key, std::string(key) +
                                        " has no effect in a definition over steps, which takes the "
                                        "results of the steps as they are; leave it out");
        } else if (!table.has("function")) {
            table.fail("function", "function is missing; it names the load function of the case");
        }
        fatigue.loads.push_back(std::move(load));
    }

    static constexpr std::int64_t kLargestInteger = std::numeric_limits<std::int32_t>::max();
    /// Times that lie closer are one point of the solver's time axis.
    static constexpr double kTimeTolerance = 1e-9;

    ProjectDeck& deck_;
    DeckErrors& errors_;
    std::filesystem::path folder_;
};

void numberFunctions(ProjectDeck& deck) {
    std::vector<std::int32_t> taken;
    for (const DeckLoadFunction& function : deck.functions)
        taken.push_back(function.number);
    std::int32_t next = 1;
    for (DeckLoadFunction& function : deck.functions) {
        if (function.number > 0) continue;
        while (std::find(taken.begin(), taken.end(), next) != taken.end())
            ++next;
        function.number = next++;
    }
}

Result<ProjectDeck> parse(std::string_view text, const std::string& name, const std::filesystem::path& folder,
                          bool filesMustExist) {
    ProjectDeck deck;
    deck.fileName = name;
    DeckErrors errors(name);
    if (const auto fault = findTomlFault(text)) {
        errors.add(fault->line, "this is not TOML: " + fault->message);
        return errors.toError();
    }
    try {
        const toml::table root = toml::parse(text, name);
        Reader(deck, errors, folder).read(root);
    } catch (const toml::parse_error& error) {
        errors.add(static_cast<int>(error.source().begin.line),
                   "this is not TOML: " + std::string(error.description()));
        return errors.toError();
    } catch (const TomlCheckFailed&) {
        errors.add(0, "this is not TOML");
        return errors.toError();
    }
    numberFunctions(deck);
    checkProjectDeck(deck, errors);
    if (filesMustExist) checkFilesExist(deck, errors);
    if (!errors.empty()) return errors.toError();
    return deck;
}

} // namespace

Result<ProjectDeck> readProjectDeckText(std::string_view text, const std::string& name,
                                        const std::filesystem::path& folder) {
    return parse(text, name, folder, false);
}

Result<ProjectDeck> readProjectDeck(const std::filesystem::path& path) {
    auto window = TextWindow::openFile(path);
    if (!window) return window.error();
    constexpr std::uint64_t kLargest = 64u << 20; // a person wrote it
    if (window->size() > kLargest) return Error{window->name() + " is too large for a project deck"};
    const std::string text(window->peek(kLargest));
    if (!window->failure().empty()) return Error{window->failure()};
    return parse(text, path.string(), path.parent_path(), true);
}

} // namespace workbench
