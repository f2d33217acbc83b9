#pragma once

#include "host/QMDocBase.h"
#include "host/dialogs/Listeners.h"

/// A dialog with the base Base that is told of the post-processing state of its document's active view and of
/// its units. A class overrides what it wants to hear.
template <class Base>
class PostListenerDialog : public Base, public IQMUnitListener, public IQMPostUIListener {
  public:
    using Base::Base;

    void OnPostUpdate(unsigned) override {}
    void OnChangeMode(int) override {}
    void OnUnitChanged() override {}
    CQMDocBase* GetUnitListenerDoc() override { return this->GetDocBase(); }
    CQMViewBase* GetPostListenerView() override {
        CQMDocBase* doc = this->GetDocBase();
        return doc ? doc->GetActiveView() : nullptr;
    }
};
