#include "host/QMPostManager.h"
#include "host/TitleCtrlView.h"
#include "tests/support/MemoryHost.h"

#include <gtest/gtest.h>

namespace {

class View : public CQMViewBase {
  public:
    explicit View(CQMDocBase& doc)
        : doc_(doc) {}
    CQMDocBase* GetDocument() const override { return &doc_; }

  private:
    CQMDocBase& doc_;
};

TEST(HostServices, WithoutAViewThereIsNoTitleAndNoDisplay) {
    support::MemoryHost host;
    support::MemoryDocument doc;
    doc.path = L"bracket";
    View view(doc);
    auto& result =
        doc.results.addAnalysis(1, L"a").addCase(2, L"c").addStep(3, L"s").add(101, ResultLocation::Node, {});
    CQMPostManager::DisplayPostResult(nullptr, &result);
    EXPECT_TRUE(host.displayed.empty());
    CQMPostManager::DisplayPostResult(&view, &result);
    CQMPostManager::DisplayPostResult(&view, nullptr);
    EXPECT_EQ(host.displayed, (std::vector<CVResult*>{&result, nullptr}));
    EXPECT_EQ(CTitleCtrlView::GetWindowTitleName(nullptr), L"");
    EXPECT_EQ(CTitleCtrlView::GetWindowTitleName(&view), L"bracket");
}

TEST(UnitControl, ValuesGoOutInTheCurrentUnits) {
    support::MemoryHost host;
    host.unitFactors[UnitKind::Stress] = 1e3;
    host.forceUnit = 2;
    host.lengthUnit = 4;
    EXPECT_EQ(CQMUnitCtrl::ConvertUnitDataOut(2, UnitKind::Stress), 2e3);
    EXPECT_EQ(CQMUnitCtrl::ConvertUnitDataOut(2, UnitKind::Length), 2);
    EXPECT_EQ(CQMUnitCtrl::GetUnitSystemForce(), 2);
    EXPECT_EQ(CQMUnitCtrl::GetUnitSystemLength(), 4);
}

} // namespace
