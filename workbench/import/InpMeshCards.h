#pragma once

#include "workbench/import/ElementCards.h"
#include "workbench/import/InpCards.h"

#include <array>
#include <limits>
#include <unordered_map>

namespace workbench {

/// Reads nodes, elements and sets into the context's raw mesh.
class InpMeshCards final : public InpCardGroup<InpMeshCards> {
  public:
    using InpCardGroup::InpCardGroup;
    /// To be called when another card begins and at the end: false when an element lacks nodes.
    bool endElementCard();

  private:
    friend InpCardGroup;
    static const std::array<Row, 4> kCards;
    static constexpr std::size_t kNoSet = std::numeric_limits<std::size_t>::max();
    using SetIndex = std::unordered_map<std::string, std::size_t>; ///< by name in upper case

    bool startNode();
    bool nodeLine(std::string_view line);
    bool startElement();
    /// Nodes of an element go on over as many lines as it takes.
    bool elementLine(std::string_view line);
    /// Elements of other types are counted, so that sets and results that name them are understood.
    bool leftOutElementLine(std::string_view line);
    std::size_t setNamed(const std::string& name, std::vector<InpRawSet>& sets, SetIndex& index);
    std::size_t setOfParameter(std::string_view parameter, std::vector<InpRawSet>& sets, SetIndex& index);
    bool startNodeSet();
    bool startElementSet();
    bool startSet(std::string_view parameter, std::vector<InpRawSet>& sets, SetIndex& index);
    bool setLine(std::string_view line);
    bool generateLine(std::string_view line);

    std::vector<InpRawSet>* currentSets_ = nullptr;
    std::size_t currentSet_ = kNoSet;
    SetIndex nodeSetIndex_;
    SetIndex elementSetIndex_;
    ElementType elementType_ = ElementType::Point;
    ElementFamily elementFamily_ = ElementFamily::Solid;
    int pendingNodes_ = 0; ///< that the element still lacks
    std::string leftOutType_;
    bool leftOutContinues_ = false;
};

} // namespace workbench
