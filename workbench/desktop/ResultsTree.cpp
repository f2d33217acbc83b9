#include "workbench/desktop/ResultsTree.h"

#include "framework/text/CodePage.h"
#include "workbench/desktop/ControlView.h"
#include "workbench/results/Catalogue.h"

namespace workbench::desktop {
namespace {

enum Kind { kAnalysis = QTreeWidgetItem::UserType, kCase, kStep, kComponent };
constexpr int kRowHeight = 18;
constexpr int kKey = Qt::UserRole; ///< key of an analysis, position of a case or step, id of a component

ResultPlace placeOfItem(const QTreeWidgetItem& item) {
    ResultPlace place;
    for (const QTreeWidgetItem* at = &item; at; at = at->parent()) {
        const auto value = at->data(0, kKey).toULongLong();
        switch (at->type()) {
        case kAnalysis:
            place.analysis = value;
            break;
        case kCase:
            place.resultCase = value;
            break;
        case kStep:
            place.step = value;
            break;
        default:
            place.component = static_cast<unsigned>(value);
        }
    }
    return place;
}

QTreeWidgetItem* add(QTreeWidgetItem& parent, Kind kind, const QString& text, qulonglong key) {
    auto* item = new QTreeWidgetItem(&parent, kind);
    item->setText(0, text);
    item->setToolTip(0, text);
    item->setSizeHint(0, {0, kRowHeight});
    item->setData(0, kKey, key);
    return item;
}

QTreeWidgetItem* childOf(QTreeWidgetItem* parent, qulonglong key) {
    for (int i = 0; parent && i < parent->childCount(); ++i)
        if (parent->child(i)->data(0, kKey).toULongLong() == key) return parent->child(i);
    return nullptr;
}

} // namespace

ResultsTree::ResultsTree(QWidget* parent)
    : QTreeWidget(parent) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
        if (item->type() == kStep) addComponents(*item);
    });
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (listing_ || !item || item->type() != kComponent) return;
        current_ = placeOfItem(*item);
        if (chosen) chosen(*current_);
    });
}

void ResultsTree::show(Document* document, Language language) {
    listing_ = true;
    std::vector<ResultPlace> open;
    std::vector<int> kinds;
    for (QTreeWidgetItemIterator it(this); *it; ++it)
        if ((*it)->isExpanded()) {
            open.push_back(placeOfItem(**it));
            kinds.push_back((*it)->type());
        }
    clear();
    document_ = document;
    language_ = language;
    if (document)
        for (CPOHAnalysis* analysis : document->results().GetChildList()) {
            QTreeWidgetItem* top =
                add(*invisibleRootItem(), kAnalysis, qText(analysis->GetName()), analysis->GetKey());
            qulonglong number = 0;
            for (CPOHCase* resultCase : analysis->GetChildList()) {
                QTreeWidgetItem* item = add(*top, kCase, qText(resultCase->GetName()), number++);
                qulonglong position = 0;
                for (CPOHVCase* step : resultCase->GetVCaseList())
                    add(*item, kStep, qText(step->GetName()), position++)
                        ->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
            }
        }
    for (std::size_t i = 0; i < open.size(); ++i) {
        QTreeWidgetItem* item = childOf(invisibleRootItem(), open[i].analysis);
        if (item && kinds[i] != kAnalysis) item = childOf(item, open[i].resultCase);
        if (item && kinds[i] == kStep) item = childOf(item, open[i].step);
        if (item) item->setExpanded(true);
    }
    if (topLevelItemCount() == 1) topLevelItem(0)->setExpanded(true);
    listing_ = false;
    if (current_) choose(*current_);
}

void ResultsTree::addComponents(QTreeWidgetItem& step) {
    const ResultPlace place = placeOfItem(step);
    if (!document_ || step.childCount() > 0) return;
    CPOHAnalysis* analysis = document_->results().GetChild(place.analysis);
    if (!analysis || place.resultCase >= analysis->GetChildList().size()) return;
    const auto& steps = analysis->GetChildList()[place.resultCase]->GetVCaseList();
    if (place.step >= steps.size()) return;
    for (const unsigned id : steps[place.step]->GetResultIds())
        if (sourceOfAlias(id) == 0) // the same values by another number
            add(step, kComponent, QString::fromStdString(componentName(id, language_)), id);
}

QTreeWidgetItem* ResultsTree::itemOf(const ResultPlace& place) {
    QTreeWidgetItem* step =
        childOf(childOf(childOf(invisibleRootItem(), place.analysis), place.resultCase), place.step);
    if (!step) return nullptr;
    addComponents(*step);
    return childOf(step, place.component);
}

void ResultsTree::choose(const ResultPlace& place) {
    current_ = place;
    QTreeWidgetItem* item = itemOf(place);
    if (!item) return;
    listing_ = true;
    setCurrentItem(item);
    scrollToItem(item);
    listing_ = false;
}

} // namespace workbench::desktop
