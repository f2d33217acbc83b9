#include "workbench/session/SafetyField.h"

#include "framework/text/CodePage.h"
#include "module/stability/StrengthLookup.h"
#include "resultfile/ResultFile.h"
#include "workbench/document/DocumentFolder.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultSet.h"
#include "workbench/session/StressStates.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace workbench {
namespace {

using stability::RateMode;

class SafetyField {
  public:
    SafetyField(Document& document, const SafetyRequest& request)
        : document_(document)
        , mesh_(document.database().mesh())
        , step_(*request.step)
        , request_(request)
        , best_(mesh_.nodeCount()) {
        report_.mode =
            request.mode.value_or(stability::rateModeOf(document, step_.GetCase()->GetAnalysis()->GetKey()));
    }

    Result<SafetyReport> run() {
        auto set = findResultSet(document_.database(), document_.results(), document_.path().parent_path(),
                                 kSafetyPrefix, request_.name);
        if (!set) return set.error();
        report_.file = set->file;
        report_.isNewSet = !set->registered;
        const auto states = stressStates(document_, step_);
        if (!states) return states.error();
        if (auto evaluated = evaluate(*states); !evaluated) return evaluated.error();
        if (auto written = write(*set); !written) return written.error();
        const ItrKey model = step_.GetCase()->GetAnalysis()->GetKey();
        if (auto done =
                registerResultSet(document_.database(), document_.results(), *set, model, 2, L"Local safety");
            !done)
            return done.error();
        return std::move(report_);
    }

  private:
    Result<void> evaluate(const std::map<ItrKey, StressStates>& all) {
        bool anyStrength = false;
        std::vector<double> rates;
        for (const auto& [property, states] : all) {
            const auto found = stability::materialOf(document_, property);
            if (!found) continue;
            const auto kind = stability::rateOf(found->material);
            if (kind == stability::RateOf::Refused) continue;
            const bool hasStrength = kind == stability::RateOf::Strength;
            anyStrength = anyStrength || hasStrength;
            const stability::Strength strength = stability::strengthOf(found->material);
            rates.assign(states.nodes.size(), 0);
            if (hasStrength)
                stability::safetyRates(strength, report_.mode, states.major, states.minor, rates);
            for (std::size_t i = 0; i < rates.size(); ++i)
                take({states.nodes[i], rates[i], hasStrength ? strength.cohesion : 0,
                      hasStrength ? strength.frictionAngle : 0, states.major[i], states.minor[i],
                      hasStrength});
            report_.states += rates.size();
        }
        if (!anyStrength)
            return Error{
                "no material of the stresses has a strength; give it cohesion and friction_angle in the "
                "[[material]] of the project deck and make the document anew"};
        collect();
        return {};
    }

    void take(const NodeSafety& state) {
        auto& best = best_[state.node];
        if (!best || isLessSafe(state, *best, report_.mode)) best = state;
    }

    void collect() {
        std::size_t left = 0;
        for (const auto& state : best_) {
            if (!state) continue;
            if (std::isfinite(static_cast<float>(state->rate)))
                report_.nodes.push_back(*state);
            else
                ++left;
        }
        if (left)
            report_.warnings.push_back(
                "left out: " + std::to_string(left) +
                " nodes whose rate is not finite, where the mean stress uses the whole "
                "strength up");
    }

    Result<void> write(const ResultSet& set) {
        auto writer = resultfile::Writer::create(set.file, set.name, "vexa local safety");
        if (!writer) return writer.error();
        std::vector<std::int32_t> corners(mesh_.elementCount());
        for (std::size_t e = 0; e < corners.size(); ++e)
            corners[e] = static_cast<std::int32_t>(mesh_.nodesOf(e).size());
        if (auto done = writer->setMesh({mesh_.nodeNumbers, mesh_.elementNumbers, corners}); !done)
            return done;
        std::string items;
        if (report_.nodes.size() != mesh_.nodeCount()) {
            items = "safety";
            std::vector<std::uint32_t> positions;
            for (const NodeSafety& node : report_.nodes)
                positions.push_back(node.node);
            if (auto done = writer->addItems(items, resultfile::Location::Node, positions); !done)
                return done;
        }
        if (auto done = writer->beginCase(framework::toUtf8(step_.GetCase()->GetName())); !done) return done;
        if (auto done = writer->beginStep(framework::toUtf8(step_.GetName()), step_.GetStepValue()); !done)
            return done;
        const bool isRatio = report_.mode == RateMode::StressRatio;
        const std::pair<unsigned, double NodeSafety::*> tables[] = {
            {isRatio ? safety::kStressRatio : safety::kFactor, &NodeSafety::rate},
            {safety::kCohesion, &NodeSafety::cohesion},
            {safety::kFrictionAngle, &NodeSafety::frictionAngle},
            {safety::kMajorStress, &NodeSafety::major},
            {safety::kMinorStress, &NodeSafety::minor},
        };
        std::vector<float> values(report_.nodes.size());
        for (const auto& [id, member] : tables) {
            std::ranges::transform(report_.nodes, values.begin(), [member](const NodeSafety& node) {
                return static_cast<float>(node.*member);
            });
            if (auto done = writer->writeTable(id, resultfile::Location::Node, values, items); !done)
                return done;
        }
        return writer->commit();
    }

    Document& document_;
    const T_QM_MESH_D mesh_;
    CPOHVCase& step_;
    const SafetyRequest& request_;
    std::vector<std::optional<NodeSafety>> best_; ///< by node
    SafetyReport report_;
};

/// How safe a rate is, the more the safer.
double safetyOf(const NodeSafety& state, RateMode mode) {
    constexpr double kMost = std::numeric_limits<double>::infinity();
    if (!state.hasStrength) return kMost;
    if (std::isnan(state.rate)) return -kMost; // where there is nothing that could bear it
    if (mode == RateMode::StressRatio)         // negative beyond the apex, also without a radius
        return std::signbit(state.rate) ? -kMost : -state.rate;
    if (state.rate == stability::kUndefinedRate) return std::numeric_limits<double>::max();
    return state.rate == stability::kApexRate ? 0 : state.rate;
}

} // namespace

bool isLessSafe(const NodeSafety& a, const NodeSafety& b, RateMode mode) {
    return safetyOf(a, mode) < safetyOf(b, mode);
}

Result<SafetyReport> computeSafety(Document& document, const SafetyRequest& request) {
    return SafetyField(document, request).run();
}

} // namespace workbench
