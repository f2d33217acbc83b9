#include "workbench/import/InpMeshCards.h"

#include "workbench/import/Names.h"

namespace workbench {

constexpr std::array<InpMeshCards::Row, 4> InpMeshCards::kCards = {
    {{"NODE", &InpMeshCards::startNode},
     {"ELEMENT", &InpMeshCards::startElement},
     {"NSET", &InpMeshCards::startNodeSet},
     {"ELSET", &InpMeshCards::startElementSet}}};

bool InpMeshCards::startNode() {
    context_.noteParametersBut({"NSET"});
    currentSet_ = setOfParameter("NSET", raw_.nodeSets, nodeSetIndex_);
    handler_ = &InpMeshCards::nodeLine;
    return true;
}

bool InpMeshCards::nodeLine(std::string_view line) {
    InpFields fields(line);
    int number = 0;
    if (!context_.numberField(fields, "node number", number)) return false;
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
            return fail("'" + std::string(field) + "' is no coordinate of node " + std::to_string(number));
        position[axis] = *value;
    }
    raw_.nodeNumbers.push_back(number);
    raw_.nodePositions.push_back(position);
    raw_.nodePlaces.push_back(place_);
    if (currentSet_ != kNoSet) raw_.nodeSets[currentSet_].addNumber(number, true);
    return true;
}

bool InpMeshCards::startElement() {
    context_.noteParametersBut({"TYPE", "ELSET"});
    const std::string* type = card_.find("TYPE");
    if (!type) return fail("*ELEMENT has no TYPE");
    const std::string name = upperCase(*type);
    currentSet_ = setOfParameter("ELSET", raw_.elementSets, elementSetIndex_);
    if (const auto known = elementCard(name)) {
        elementType_ = known->type;
        elementFamily_ = known->family;
        handler_ = &InpMeshCards::elementLine;
        return true;
    }
    leftOutType_ = name;
    leftOutContinues_ = false;
    handler_ = &InpMeshCards::leftOutElementLine;
    return true;
}

bool InpMeshCards::elementLine(std::string_view line) {
    InpFields fields(line);
    std::string_view field;
    if (pendingNodes_ == 0) {
        int number = 0;
        if (!context_.numberField(fields, "element number", number)) return false;
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

bool InpMeshCards::leftOutElementLine(std::string_view line) {
    if (!leftOutContinues_) {
        InpFields fields(line);
        int number = 0;
        if (!context_.numberField(fields, "element number", number)) return false;
        raw_.leftOutElements.push_back(number);
        deck_.solverAddsItems = true;
        note("TYPE " + leftOutType_, "elements of type " + leftOutType_ + " are not read and left out",
             " elements");
    }
    leftOutContinues_ = line.back() == ',';
    return true;
}

bool InpMeshCards::endElementCard() {
    if (pendingNodes_ == 0) return true;
    return fail("element " + std::to_string(raw_.elementNumbers.back()) + " lacks " +
                std::to_string(pendingNodes_) + " of its " +
                std::to_string(elementNodeCount(raw_.elementTypes.back())) + " nodes");
}

std::size_t InpMeshCards::setNamed(const std::string& name, std::vector<InpRawSet>& sets, SetIndex& index) {
    const auto [found, isNew] = index.try_emplace(upperCase(name), sets.size());
    if (isNew) {
        sets.emplace_back();
        sets.back().name = name;
        sets.back().place = context_.cardPlace;
    }
    return found->second;
}

std::size_t InpMeshCards::setOfParameter(std::string_view parameter, std::vector<InpRawSet>& sets,
                                         SetIndex& index) {
    const std::string* name = card_.find(parameter);
    return name && !name->empty() ? setNamed(*name, sets, index) : kNoSet;
}

bool InpMeshCards::startNodeSet() {
    return startSet("NSET", raw_.nodeSets, nodeSetIndex_);
}

bool InpMeshCards::startElementSet() {
    return startSet("ELSET", raw_.elementSets, elementSetIndex_);
}

bool InpMeshCards::startSet(std::string_view parameter, std::vector<InpRawSet>& sets, SetIndex& index) {
    context_.noteParametersBut({parameter, "GENERATE", "UNSORTED"});
    currentSet_ = setOfParameter(parameter, sets, index);
    if (currentSet_ == kNoSet)
        return fail("*" + card_.title + " has no name (" + std::string(parameter) + "=...)");
    currentSets_ = &sets;
    handler_ = card_.has("GENERATE") ? &InpMeshCards::generateLine : &InpMeshCards::setLine;
    return true;
}

bool InpMeshCards::setLine(std::string_view line) {
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

bool InpMeshCards::generateLine(std::string_view line) {
    InpFields fields(line);
    int first = 0;
    if (!context_.numberField(fields, "first number of a range", first)) return false;
    int last = first, step = 1;
    std::string_view field;
    if (fields.next(field) && !field.empty() && !context_.numberOf(field, "last number of a range", last))
        return false;
    if (fields.next(field) && !field.empty() && !context_.numberOf(field, "step of a range", step))
        return false;
    if (last < first) return fail("the range ends before it begins");
    (*currentSets_)[currentSet_].ranges.push_back({first, last, step, false});
    return true;
}

} // namespace workbench
