#pragma once

#include "workbench/import/InpContext.h"

#include <optional>
#include <string_view>

namespace workbench {

/// A reader of a group of cards that belong together.
class InpCards {
  public:
    explicit InpCards(InpContext& context)
        : context_(context)
        , deck_(context.deck)
        , raw_(context.raw)
        , card_(context.card)
        , place_(context.place) {}
    virtual ~InpCards() = default;
    InpCards(const InpCards&) = delete;
    InpCards& operator=(const InpCards&) = delete;

    /// Begins the context's card; nothing when it belongs to another group, false when the deck is broken.
    virtual std::optional<bool> start() = 0;
    /// Reads a data line of the card; false when the deck is broken.
    virtual bool line(std::string_view line) = 0;

  protected:
    bool fail(const std::string& message) { return context_.fail(message); }
    void note(const std::string& key, const std::string& text, const char* unit = " times") {
        context_.note(key, text, unit);
    }

    InpContext& context_;
    SolverDeck& deck_;
    InpRaw& raw_;
    const InpCard& card_;
    const InpPlace& place_;
};

/// A group whose cards stand in the table Group::kCards, in which each has the member that begins it; that
/// one sets the member that takes the card's data lines.
template <class Group>
class InpCardGroup : public InpCards {
  public:
    using InpCards::InpCards;

    std::optional<bool> start() override {
        handler_ = nullptr;
        for (const auto& row : Group::kCards)
            if (row.keyword == card_.keyword) return (static_cast<Group*>(this)->*row.start)();
        return std::nullopt;
    }
    bool line(std::string_view line) override {
        return handler_ ? (static_cast<Group*>(this)->*handler_)(line) : true;
    }

  protected:
    struct Row {
        std::string_view keyword; ///< as cards compare it, without blanks
        bool (Group::*start)();
    };
    bool (Group::*handler_)(std::string_view line) = nullptr;
};

} // namespace workbench
