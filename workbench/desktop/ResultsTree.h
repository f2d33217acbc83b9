#pragma once

#include "workbench/desktop/QtWidgets.h"
#include "workbench/desktop/ShownResult.h"

#include <functional>
#include <optional>

namespace workbench::desktop {

/// The results of a document: analyses, cases, steps and their components. The components of a step are
/// listed when it is opened.
class ResultsTree final : public QTreeWidget {
  public:
    explicit ResultsTree(QWidget* parent = nullptr);

    /// Lists the results anew; null: none. What was open and chosen stays so where it still is.
    void show(Document* document, Language language);
    /// Marks a component as chosen, without telling anybody.
    void choose(const ResultPlace& place);
    std::function<void(const ResultPlace&)> chosen;

  private:
    void addComponents(QTreeWidgetItem& step);
    QTreeWidgetItem* itemOf(const ResultPlace& place);

    Document* document_ = nullptr;
    Language language_ = Language::English;
    std::optional<ResultPlace> current_;
    bool listing_ = false;
};

} // namespace workbench::desktop
