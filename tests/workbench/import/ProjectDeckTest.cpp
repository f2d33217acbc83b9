#include "workbench/import/ProjectDeck.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace workbench;

const std::string kDeck = R"(title = "Bracket" # Träger [

[units]
force = "kN"
length = "m"

[[analysis]]
name = "Static"
deck = "a.inp"
cases = ["Tension", "Bending"]

[[material]]
name = "STEEL"
yield = 355
ultimate = 510.0

[[sn_curve]]
name = "Class 71"
points = [[1e4, 329.0], [2e6, 71.0]]

[[load_function]]
name = "Pull"
points = [[0, 0], [1, 1], [2.5, -0.2]]

[[load_function]]
name = "Push"
number = 1
points = [[0, 0]]

[[fatigue]]
name = "Service"
type = "Stress-Life cases"
measure = "signed von Mises"
mean_stress = ["none", "Soderberg"]
outputs = ["life", "equivalent amplitude"]
cycles = 20
infinite_life = 1e9
quick_rainflow = 5

  [[fatigue.material]]
  material = "STEEL"
  curve = "Class 71"
  ultimate = 600

  [[fatigue.load]]
  case = "Tension"
  factor = -2
  function = "Push"

[[fatigue]]
name = "Strain"
result = "Strain life"
type = "strain-life steps"
mean_stress = ["SWT"]

  [[fatigue.material]]
  material = "STEEL"
  fatigue_strength_coefficient = 900
  fatigue_strength_exponent = -0.1
  fatigue_ductility_coefficient = 0.3
  fatigue_ductility_exponent = -0.6
  cyclic_hardening_exponent = 0.2

  [[fatigue.load]]
  case = "Bending"
  step = "Time 2"
)";

Result<ProjectDeck> readText(const std::string& text) {
    return readProjectDeckText(text, "p.toml", "/base");
}

TEST(ProjectDeck, HoldsWhatItsAuthorWrote) {
    const auto deck = readText(kDeck);
    ASSERT_TRUE(deck) << deck.error().message;
    EXPECT_EQ(deck->forceUnit, "kN");
    ASSERT_EQ(deck->analyses.size(), 1u);
    EXPECT_EQ(deck->analyses[0].deck, "/base/a.inp");
    EXPECT_EQ(deck->analyses[0].results, "/base/a.frd");
    EXPECT_EQ(deck->analyses[0].typeCode, 101);
    EXPECT_EQ(deck->materials[0].yield, 355);
    EXPECT_EQ(deck->functions[0].number, 2) << "1 is taken by the function that asks for it";
    ASSERT_EQ(deck->fatigue.size(), 2u);
    const DeckFatigue& stress = deck->fatigue[0];
    EXPECT_EQ(stress.analysis, "Static");
    EXPECT_EQ(stress.result, "Service");
    EXPECT_EQ(stress.type, 0);
    EXPECT_EQ(stress.measure, 1);
    EXPECT_EQ(stress.meanStress, (std::vector<int>{0, 3}));
    EXPECT_EQ(stress.outputs, (std::vector<int>{1, 2}));
    EXPECT_EQ(stress.cycles, 20);
    EXPECT_EQ(stress.quickRainflow, 5);
    EXPECT_EQ(stress.materials[0].ultimate, 600);
    EXPECT_EQ(stress.loads[0].factor, -2);
    const DeckFatigue& strain = deck->fatigue[1];
    EXPECT_EQ(strain.meanStress, (std::vector<int>{2}));
    EXPECT_EQ(strain.materials[0].strainLife.deriveCyclicHardeningExponent, 0);
    EXPECT_EQ(strain.materials[0].strainLife.cyclicHardeningExponent, 0.2);
    EXPECT_EQ(strain.materials[0].strainLife.deriveCyclicStrengthCoefficient, 1);
    EXPECT_EQ(strain.materials[0].strainLife.fatigueDuctilityExponent, -0.6);
    EXPECT_EQ(strain.loads[0].step, "Time 2");
}

TEST(ProjectDeck, KeepsALetterBeyondAsciiThatContinuesALine) {
    std::string text = kDeck;
    text.replace(text.find("\"Strain life\""), 13, "\"\"\"\\\n  \u00e4lteste\"\"\"");
    const auto deck = readText(text);
    ASSERT_TRUE(deck) << deck.error().message;
    EXPECT_EQ(deck->fatigue[1].result, "\u00e4lteste");
}

/// One edit of the good deck and what its author is told. The line is that of the edit, where `line` is 0.
struct Edit {
    const char* from;
    const char* to;
    const char* words;
    int line = 0;
};

const Edit kEdits[] = {
    {"title = \"Bracket\"", "title = 3", "title is 3; it must be a text"},
    {"title = \"Bracket\"", "titel = \"B\"", "the key 'titel' is not known, did you mean 'title'?"},
    {"title = \"Bracket\"", "title = \"B", "this is not TOML"},
    {"title = \"Bracket\"", "[[= 1]]", "the name of a table is missing"},
    {"title = \"Bracket\"", "title = 1\"é\"", "a quote stands inside a word"},
    {"title = \"Bracket\"", "title = [}", "'}' closes nothing that is open"},
    {"title = \"Bracket\"", "größe = 1", "a character beyond ASCII stands outside of quotes"},
    {"force = \"kN\"", "force = \"kip\"",
     "force is 'kip', did you mean 'kips'?; accepted are 'N', 'kN', 'MN'"},
    {"length = \"m\"", "width = 1",
     "units: the key 'width' is not known; known keys are 'force' and 'length'"},
    {"name = \"Static\"", "nam = \"Static\"", "name is missing", 7},
    {"name = \"Static\"", "name = \"Sta/tic\"", "holds '/'; it becomes part of a file name"},
    {"name = \"Static\"", "name = \"Static.\"", "begins or ends with a blank or ends with a point"},
    {"name = \"Static\"", "name = \"\"", "name is empty"},
    {"name = \"Static\"", "name = \"1234567890123456789012345678901234567890123456789012345678901234\"",
     "longer than 63 characters"},
    {"deck = \"a.inp\"", "", "deck is missing", 7},
    {"deck = \"a.inp\"", "deck = \"a.inp\"\ntype = \"modal\"", "type is 'modal'; accepted are 'static'", 10},
    {"[\"Tension\", \"Bending\"]", "[\"Tension\", \"Tension\"]", "cases names 'Tension' twice"},
    {"[\"Tension\", \"Bending\"]", "[\"Tension\", 2]", "cases is a list; it must be a list of names"},
    {"[\"Tension\", \"Bending\"]", "\"Tension\"", "cases is 'Tension'; it must be a list of names"},
    {"yield = 355", "yield = 0", "material 'STEEL': yield is 0; it must be greater than 0"},
    {"yield = 355", "yield = -355.5", "yield is -355.5; it must be greater than 0"},
    {"yield = 355", "yield = nan", "yield is nan; it must be a finite number"},
    {"yield = 355", "yield = \"355\"", "yield is '355'; it must be a finite number"},
    {"yield = 355", "yield = true", "yield is true; it must be a finite number"},
    {"yield = 355", "yeild = 355", "did you mean 'yield'?"},
    {"[[1e4, 329.0], [2e6, 71.0]]", "[[1e4, 329.0]]", "a curve needs at least two points"},
    {"[[1e4, 329.0], [2e6, 71.0]]", "[[1e4, 329.0], [1e4, 71.0]]", "the cycles of point 2 do not ascend"},
    {"[[1e4, 329.0], [2e6, 71.0]]", "[[1e4, 71.0], [2e6, 329.0]]", "the amplitude of point 2 rises"},
    {"[[1e4, 329.0], [2e6, 71.0]]", "[[0, 329.0], [2e6, 71.0]]", "point 1 of the curve is not positive"},
    {"[[1e4, 329.0], [2e6, 71.0]]", "[[1e4, 329.0], [2e6, inf]]",
     "entry 2 of points is no pair of finite numbers"},
    {"[[1e4, 329.0], [2e6, 71.0]]", "[[1e4, 329.0, 1], [2e6, 71.0]]", "entry 1 of points is no pair"},
    {"[[0, 0], [1, 1], [2.5, -0.2]]", "[[0, 0], [1, 1], [1.0000000005, 0]]",
     "the time of point 3 does not ascend"},
    {"[[0, 0], [1, 1], [2.5, -0.2]]", "[]", "points is a list; it must be a list of [time, value]"},
    {"name = \"Push\"", "name = \"pull\"", "load function 'pull' was given before, at line 21", 25},
    {"number = 1", "number = 0", "number is 0; it must be a whole number from 1"},
    {"points = [[0, 0], [1, 1], [2.5, -0.2]]", "points = [[0, 0]]\nnumber = 1", "has the number 1 of 'Pull'",
     26},
    {"name = \"Service\"", "name = \"Static\"", "has its own source 'Static' as result analysis", 30},
    {"name = \"Service\"", "name = \"strain life\"",
     "would overwrite that of the fatigue definition 'strain life'", 50},
    {"result = \"Strain life\"", "result = \"STATIC\"", "has its own source", 50},
    {"result = \"Strain life\"", "result = \"Service_Fatigue\"",
     "would overwrite that of the fatigue definition 'Strain'", 30},
    {"name = \"Strain\"", "name = \"Service\"", "fatigue definition 'Service' was given before, at line 30",
     50},
    {"type = \"Stress-Life cases\"", "", "type is missing; accepted are 'stress-life cases'", 30},
    {"type = \"Stress-Life cases\"", "type = \"stress-life case\"", "did you mean 'stress-life cases'?"},
    {"type = \"Stress-Life cases\"", "type = 0", "type is 0; accepted are"},
    {"\"signed von Mises\"", "\"von Mises\"", "measure is 'von Mises'"},
    {"[\"none\", \"Soderberg\"]", "[\"none\", \"Walker\"]",
     "mean_stress is 'Walker'; accepted are 'none', 'Goodman'"},
    {"[\"none\", \"Soderberg\"]", "[\"none\", \"None\"]", "mean_stress lists 'None' twice"},
    {"[\"none\", \"Soderberg\"]", "[]", "it must be a list of at least one of"},
    {"yield = 355\n", "", "the mean-stress correction needs the yield strength", 39},
    {"[\"SWT\"]", "[\"Goodman\"]", "accepted are 'none', 'Morrow', 'SWT' and 'Manson-Halford'"},
    {"cycles = 20", "cycles = 0", "cycles is 0; it must be a whole number from 1"},
    {"cycles = 20", "cycles = 1.5", "cycles is 1.5; it must be a whole number"},
    {"infinite_life = 1e9", "infinite_life = -1", "infinite_life is -1; it must be greater than 0"},
    {"quick_rainflow = 5", "quick_rainflow = 101",
     "quick_rainflow is 101; it must be a whole number from 0 to 100"},
    {"curve = \"Class 71\"", "curve = \"Class 72\"",
     "the S-N curve 'Class 72' is not in the deck, did you mean 'Class 71'?", 40},
    {"curve = \"Class 71\"", "",
     "it needs either curve, the name of an S-N curve, or coefficient and exponent", 40},
    {"curve = \"Class 71\"", "curve = \"Class 71\"\ncoefficient = 5", "it needs either curve", 43},
    {"curve = \"Class 71\"", "coefficient = 5", "coefficient and exponent belong together"},
    {"curve = \"Class 71\"", "coefficient = 5\nexponent = 0.1", "exponent must be less than 0", 43},
    {"  ultimate = 600\n", "  [[fatigue.material]]\n  material = \"Steel\"\n  curve = \"Class 71\"\n",
     "lists the material 'Steel' twice, here and at line 40", 43},
    {"function = \"Push\"", "function = \"Pusch\"",
     "the load function 'Pusch' is not in the deck, did you mean 'Push'?", 45},
    {"function = \"Push\"", "", "function is missing", 45},
    {"factor = -2", "factor = inf", "factor is inf; it must be a finite number"},
    {"step = \"Time 2\"", "factor = 2", "factor has no effect in a definition over steps"},
    {"step = \"Time 2\"", "function = \"Push\"", "function has no effect in a definition over steps"},
    {"  [[fatigue.load]]\n  case = \"Bending\"\n  step = \"Time 2\"\n", "", "it has no [[fatigue.load]]", 50},
    {"fatigue_strength_exponent = -0.1", "", "fatigue_strength_exponent is missing", 56},
    {"fatigue_strength_exponent = -0.1", "coefficient = 3", "the key 'coefficient' is not known"},
    {"name = \"Strain\"", "name = \"Strain\"\nanalysis = \"Dynamic\"",
     "the analysis 'Dynamic' is not in the deck; it has 'Static'", 50},
};

TEST(ProjectDeck, TellsItsAuthorWhatIsWrong) {
    for (const Edit& edit : kEdits) {
        std::string text = kDeck;
        const std::size_t at = text.find(edit.from);
        ASSERT_NE(at, std::string::npos) << edit.from;
        text.replace(at, std::string(edit.from).size(), edit.to);
        const int line =
            edit.line > 0 ? edit.line : 1 + int(std::count(kDeck.begin(), kDeck.begin() + long(at), '\n'));
        const auto deck = readText(text);
        ASSERT_FALSE(deck) << edit.to;
        const std::string place = "p.toml:" + std::to_string(line) + ": ";
        bool found = false;
        for (std::size_t begin = 0; begin < deck.error().message.size();) {
            const std::size_t end =
                std::min(deck.error().message.find('\n', begin), deck.error().message.size());
            const std::string one = deck.error().message.substr(begin, end - begin);
            found |= one.starts_with(place) && one.find(edit.words) != std::string::npos;
            begin = end + 1;
        }
        EXPECT_TRUE(found) << edit.from << " -> " << edit.to << "\ngave:\n"
                           << deck.error().message << "\nnot: " << place << edit.words;
    }
}

TEST(ProjectDeck, TakesTheDocumentedExample) {
    const std::string page = bytesOf(VEXA_SOURCE_DIR "/docs/project-deck.md");
    const std::size_t begin = page.find("```toml\n") + 8;
    const auto deck = readText(page.substr(begin, page.find("```", begin) - begin));
    ASSERT_TRUE(deck) << deck.error().message;
    EXPECT_EQ(deck->fatigue.size(), 2u);
}

TEST(ProjectDeck, ReportsAllFaultsAtOnce) {
    std::string text = kDeck + "[[material]]\n[[material]]\nyield = 0\n[[load_function]]\n";
    for (int i = 0; i < 30; ++i)
        text += "[[sn_curve]]\n";
    const auto deck = readText(text);
    ASSERT_FALSE(deck);
    const std::string& message = deck.error().message;
    EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 20);
    EXPECT_NE(message.find("yield is 0"), std::string::npos) << message;
    EXPECT_NE(message.find("more faults"), std::string::npos) << message;
    EXPECT_FALSE(readText(""));
}

} // namespace
