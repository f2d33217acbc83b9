#include "workbench/import/InpStepCards.h"

#include "workbench/import/Names.h"

namespace workbench {

constexpr std::array<InpStepCards::Row, 35> InpStepCards::kCards = {
    {{"HEADING", &InpStepCards::startHeading},
     {"STEP", &InpStepCards::startStep},
     {"ENDSTEP", &InpStepCards::endStep},
     {"STATIC", &InpStepCards::procedure},
     {"FREQUENCY", &InpStepCards::procedure},
     {"BUCKLE", &InpStepCards::procedure},
     {"DYNAMIC", &InpStepCards::procedure},
     {"MODALDYNAMIC", &InpStepCards::procedure},
     {"STEADYSTATEDYNAMICS", &InpStepCards::procedure},
     {"COMPLEXFREQUENCY", &InpStepCards::procedure},
     {"HEATTRANSFER", &InpStepCards::procedure},
     {"COUPLEDTEMPERATURE-DISPLACEMENT", &InpStepCards::procedure},
     {"UNCOUPLEDTEMPERATURE-DISPLACEMENT", &InpStepCards::procedure},
     {"VISCO", &InpStepCards::procedure},
     {"ELECTROMAGNETICS", &InpStepCards::procedure},
     {"SENSITIVITY", &InpStepCards::procedure},
     {"FEASIBLEDIRECTION", &InpStepCards::procedure},
     {"ROBUSTDESIGN", &InpStepCards::procedure},
     {"GREEN", &InpStepCards::procedure},
     {"CFD", &InpStepCards::procedure},
     {"NOANALYSIS", &InpStepCards::procedure},
     {"SUBSTRUCTUREGENERATE", &InpStepCards::procedure},
     {"CRACKPROPAGATION", &InpStepCards::procedure},
     {"NODEFILE", &InpStepCards::resultRequest},
     {"ELFILE", &InpStepCards::resultRequest},
     {"NODEOUTPUT", &InpStepCards::resultRequest},
     {"ELEMENTOUTPUT", &InpStepCards::resultRequest},
     {"CONTACTFILE", &InpStepCards::resultRequest},
     {"CONTACTOUTPUT", &InpStepCards::resultRequest},
     {"NODEPRINT", &InpStepCards::otherRequest},
     {"ELPRINT", &InpStepCards::otherRequest},
     {"CONTACTPRINT", &InpStepCards::otherRequest},
     {"SECTIONPRINT", &InpStepCards::otherRequest},
     {"OUTPUT", &InpStepCards::otherRequest},
     {"RESTART", &InpStepCards::otherRequest}}};

bool InpStepCards::startHeading() {
    handler_ = &InpStepCards::headingLine;
    return true;
}

bool InpStepCards::headingLine(std::string_view line) {
    if (deck_.title.empty()) deck_.title = line;
    return true;
}

bool InpStepCards::startStep() {
    SolverStep step;
    step.place = raw_.text(place_);
    step.requestsResults = false;
    if (const std::string* name = card_.find("NAME")) step.title = *name;
    deck_.steps.push_back(std::move(step));
    insideStep_ = true;
    handler_ = &InpStepCards::stepTitleLine;
    return true;
}

bool InpStepCards::stepTitleLine(std::string_view line) {
    if (deck_.steps.back().title.empty()) deck_.steps.back().title = line;
    return true;
}

bool InpStepCards::endStep() {
    insideStep_ = false;
    return true;
}

bool InpStepCards::procedure() {
    if (!insideStep_) {
        note("outside " + card_.keyword, "*" + card_.title + " stands outside of a *STEP and is left out");
        return true;
    }
    deck_.steps.back().procedure = card_.keyword;
    return true;
}

bool InpStepCards::resultRequest() {
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

} // namespace workbench
