#include "module/graphs/GraphWnd.h"

#include "framework/text/Format.h"
#include "framework/windows/PaintDC.h"
#include "host/MSGFunction.h"
#include "module/graphs/GraphCurve.h"

#include <algorithm>
#include <span>

namespace {

constexpr COLORREF kBackground = RGB(0, 0, 0);
constexpr COLORREF kCurve = RGB(255, 0, 0);
constexpr COLORREF kPreview = RGB(125, 125, 125);
constexpr COLORREF kAddedCurve = RGB(0, 255, 0);
constexpr COLORREF kAxis = RGB(255, 255, 0);
constexpr COLORREF kMark = RGB(255, 255, 255);
constexpr COLORREF kGuide = RGB(175, 175, 175);

constexpr int kLine = 1, kDots = 2; // drawing types

} // namespace

BEGIN_MESSAGE_MAP(CGraphWnd, CWnd)
ON_WM_PAINT()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONDOWN()
ON_WM_DESTROY()
ON_WM_SIZE()
END_MESSAGE_MAP()

CGraphWnd::~CGraphWnd() {
    m_canvas.Release();
}

int CGraphWnd::Init(CWnd* parent, UINT controlId) {
    CWnd* control = parent ? parent->GetDlgItem(static_cast<int>(controlId)) : nullptr;
    if (!SubclassWindow(control ? control->m_hWnd : nullptr)) return 0;
    m_canvas.Release();
    ModifyStyle(0, WS_CLIPCHILDREN);
    BuildCanvas(*this);
    InitFont();
    m_pParent = parent;
    m_bInitialised = 1;
    return 1;
}

void CGraphWnd::BuildCanvas(const CWnd& sizeSource) {
    CPaintDC dc(this);
    m_canvas.Build(dc, sizeSource);
}

int CGraphWnd::InitFont() {
    constexpr int kTenthsOfPoint = 80;
    m_logFont = {};
    m_logFont.lfHeight = kTenthsOfPoint;
    m_logFont.lfWeight = FW_NORMAL;
    m_logFont.lfCharSet = DEFAULT_CHARSET;
    m_logFont.lfOutPrecision = OUT_CHARACTER_PRECIS;
    m_logFont.lfClipPrecision = CLIP_CHARACTER_PRECIS;
    framework::setFaceName(m_logFont, CMSGFunction::GetValue(L"IDS_UTIL_FONT_ARIAL"));
    return 1;
}

void CGraphWnd::TakePoints(Points& kept, const Points& points) {
    m_ptMark = CPoint();
    kept.SetSize(points.GetSize());
    // Copied and looked at in blocks that the processor keeps at hand.
    constexpr std::size_t kBlock = 2048;
    for (std::size_t first = 0; first < kept.GetSize(); first += kBlock) {
        const std::span block(points.GetData() + first, std::min(kBlock, kept.GetSize() - first));
        std::ranges::copy(block, kept.GetData() + first);
        graphs::widenRanges(block, m_dXRange, m_dYRange);
    }
    graphs::makeSymmetric(m_dYRange);
}

int CGraphWnd::SetData(CArray<T_GRPH_D, T_GRPH_D&>& points) {
    graphs::setEmptyRange(m_dXRange);
    graphs::setEmptyRange(m_dYRange);
    TakePoints(m_aData, points);
    m_bHasData = !m_aData.IsEmpty();
    DrawGraphData();
    return 1;
}

int CGraphWnd::SetAddedData(CArray<T_GRPH_D, T_GRPH_D&>& points) {
    TakePoints(m_aAddedData, points);
    DrawGraphData();
    return 1;
}

int CGraphWnd::CallOnSize(CWnd* sizeSource) {
    if (!m_bInitialised || !sizeSource) return 0;
    m_canvas.Release();
    BuildCanvas(*sizeSource);
    DrawGraphData();
    return 1;
}

int CGraphWnd::SetLButtonDownFunc(LButtonDownFunc function) {
    m_pLButtonDown = function;
    return 1;
}

int CGraphWnd::SetDrawingGraphType(int type) {
    m_nGraphType = type;
    return 1;
}

int CGraphWnd::SetDrawPosMark(int draw) {
    m_bDrawPosMark = draw;
    return 1;
}

int CGraphWnd::SetLButtonDown(const int& enabled) {
    m_bLButtonDown = enabled;
    return 1;
}

int CGraphWnd::SetMouseMove(const int& enabled) {
    m_bMouseMove = enabled;
    return 1;
}

void CGraphWnd::DrawGraphData() {
    DrawPicture(kCurve);
}

void CGraphWnd::DrawSimulationData() {
    DrawPicture(kPreview);
}

/// All that the canvas holds.
void CGraphWnd::DrawPicture(COLORREF curve) {
    DrawBackGround(kBackground);
    DrawFunction(&m_canvas.m_dc, m_canvas.m_rcClient, LastSegment(), curve);
    DrawAxis(&m_canvas.m_dc, m_canvas.m_rcClient, kAxis);
    InvalidateRect(nullptr, 1);
}

void CGraphWnd::DrawBackGround(COLORREF color) {
    m_canvas.m_dc.FillSolidRect(0, 0, m_canvas.m_rcClient.Width(), m_canvas.m_rcClient.Height(), color);
}

void CGraphWnd::DrawAxis(CDC* dc, CRect& rect, COLORREF color) {
    const graphs::SelectedPen pen(*dc, 1, color);
    const int middle = rect.top + (rect.bottom - rect.top) / 2;
    dc->MoveTo(rect.left, middle);
    dc->LineTo(rect.right, middle);
}

void CGraphWnd::DrawFunction(CDC* dc, CRect& rect, int segments, COLORREF color) {
    if (!m_bHasData) return;
    const graphs::PixelMapping mapping(rect, m_dXRange, m_dYRange);
    if (!m_aAddedData.IsEmpty()) {
        const graphs::SelectedPen pen(*dc, 1, kAddedCurve);
        graphs::drawCurve(*dc, m_aAddedData, static_cast<int>(m_aAddedData.GetSize()) - 1, mapping);
    }
    if (m_nGraphType == kLine) {
        const graphs::SelectedPen pen(*dc, 1, color);
        graphs::drawCurve(*dc, m_aData, segments, mapping);
    } else if (m_nGraphType == kDots) {
        constexpr int kDotsPerHeight = 25;
        graphs::drawDots(*dc, m_aData, rect.Height() / kDotsPerHeight, color, mapping);
    }
}

void CGraphWnd::DrawPosMark(CDC* dc) {
    DrawPosMark(dc, m_ptMark);
}

void CGraphWnd::DrawPosMark(CDC* dc, CPoint point) {
    const graphs::SelectedPen pen(*dc, 2, kMark);
    const CRect& rect = m_canvas.m_rcClient;
    const int middle = (rect.top + rect.bottom) / 2;
    const int reach = (rect.bottom - rect.top) / 16;
    dc->MoveTo(point.x, middle - reach);
    dc->LineTo(point.x, middle + reach);
}

void CGraphWnd::DrawSliding(CDC* dc) {
    DrawSliding(dc, m_canvas.m_rcClient, m_ptSliding);
}

void CGraphWnd::DrawSliding(CDC* dc, CRect& rect, CPoint point) {
    const graphs::SelectedPen pen(*dc, 1, kGuide);
    dc->MoveTo(point.x, rect.top);
    dc->LineTo(point.x, rect.bottom);
}

void CGraphWnd::CallDrawing(CDC* dc, int left, int top, int index) {
    CRect rect(CPoint(left, top), m_canvas.m_rcClient.Size());
    DrawAxis(dc, rect, kGuide);
    DrawFunction(dc, rect, LastSegment(), kCurve);
    if (index < static_cast<int>(m_aData.GetSize())) {
        const T_GRPH_D& chosen = m_aData.GetAt(static_cast<std::size_t>(index));
        CPoint point;
        if (ConvertL2W(point.x, point.y, chosen.x, chosen.y, rect, m_dXRange, m_dYRange)) {
            DrawSliding(dc, rect, point);
            CFont font;
            font.CreatePointFontIndirect(&m_logFont, dc);
            CFont* before = dc->SelectObject(&font);
            dc->SetTextAlign(TA_LEFT | TA_TOP);
            dc->SetTextColor(kCurve);
            dc->SetBkMode(TRANSPARENT);
            dc->TextOut(rect.left, rect.bottom, framework::formatWide(L"**Time Step : %g", chosen.x));
            dc->SelectObject(before);
        }
    }
    const graphs::SelectedPen pen(*dc, 1, kGuide);
    dc->MoveTo(rect.left, rect.top);
    dc->LineTo(rect.right, rect.top);
    dc->LineTo(rect.right, rect.bottom);
    dc->LineTo(rect.left, rect.bottom);
    dc->LineTo(rect.left, rect.top);
}

int CGraphWnd::ConvertL2W(int& px, int& py, double x, double y, CRect& rect, double xRange[2],
                          double yRange[2]) {
    const graphs::PixelMapping mapping(rect, xRange, yRange);
    const CPoint pixel = mapping.at(x, y);
    px = pixel.x;
    py = pixel.y;
    return mapping.isValid();
}

int CGraphWnd::ConvertW2L(int px, int py, double& x, double& y, CRect& rect, double xRange[2],
                          double yRange[2]) {
    const auto value = graphs::valueAt({px, py}, rect, xRange, yRange);
    const T_GRPH_D found = value.value_or(T_GRPH_D{});
    x = found.x;
    y = found.y;
    return value.has_value();
}

int CGraphWnd::BiSearch(double x, int& index) {
    const auto found = graphs::nearestPoint({m_aData.GetData(), m_aData.GetSize()}, x);
    if (!found) return 0;
    index = *found;
    return 1;
}

int CGraphWnd::MoveMark(CPoint point) {
    m_ptMark = point;
    m_ptSliding = point;
    // The line shows only where the window is painted in between.
    m_bSlidingVisible = 1;
    InvalidateRect(nullptr, 1);
    m_bSlidingVisible = 0;
    return 1;
}

int CGraphWnd::SetPosMark(int index) {
    if (!m_bHasData || index < 0 || index > LastSegment()) return 0;
    const T_GRPH_D& chosen = m_aData.GetAt(static_cast<std::size_t>(index));
    CPoint point;
    ConvertL2W(point.x, point.y, chosen.x, chosen.y, m_canvas.m_rcClient, m_dXRange, m_dYRange);
    return MoveMark(point);
}

int CGraphWnd::SetPosMarkByValue(double x) {
    if (!m_bHasData) return 0;
    CPoint point;
    ConvertL2W(point.x, point.y, x, (m_dYRange[0] + m_dYRange[1]) * 0.5, m_canvas.m_rcClient, m_dXRange,
               m_dYRange);
    return MoveMark(point);
}

int CGraphWnd::SetPosByXValue(double x) {
    int index = 0;
    BiSearch(x, index);
    return SetPosMark(index);
}

int CGraphWnd::SetPosByXValueNoSnap(double x) {
    return SetPosMarkByValue(x);
}

int CGraphWnd::GetPosByXValue(double x) {
    int index = 0;
    BiSearch(x, index);
    return index;
}

void CGraphWnd::StartSimulation() {
    m_bSimulating = 1;
    DrawSimulationData();
    InvalidateRect(nullptr, 1);
}

void CGraphWnd::Simulation(double time) {
    m_dSimulationTime = time;
    CClientDC dc(this);
    DrawSimulationFunction(time, &dc, m_canvas.m_rcClient, LastSegment(), kCurve);
}

void CGraphWnd::Simulation(int step) {
    CClientDC dc(this);
    DrawSimulationFunction(step, &dc, m_canvas.m_rcClient, LastSegment(), kCurve);
}

void CGraphWnd::EndSimulation() {
    m_bSimulating = 0;
    DrawGraphData();
    InvalidateRect(nullptr, 1);
}

void CGraphWnd::DrawSimulationFunction(double time, CDC* dc, CRect& rect, int segments, COLORREF color) {
    const graphs::SelectedPen pen(*dc, 2, color);
    const int shown = graphs::segmentsUntil({m_aData.GetData(), m_aData.GetSize()}, time, segments);
    graphs::drawCurve(*dc, m_aData, shown, graphs::PixelMapping(rect, m_dXRange, m_dYRange));
}

void CGraphWnd::DrawSimulationFunction(int step, CDC* dc, CRect& rect, int segments, COLORREF color) {
    const graphs::SelectedPen pen(*dc, 2, color);
    graphs::drawCurve(*dc, m_aData, graphs::segmentsOfStep(step, segments),
                      graphs::PixelMapping(rect, m_dXRange, m_dYRange));
}

int CGraphWnd::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
    return CWnd::OnNotify(wParam, lParam, result);
}

void CGraphWnd::OnPaint() {
    CPaintDC dc(this);
    const CRect& client = m_canvas.m_rcClient;
    dc.BitBlt(client.left, client.top, client.Width(), client.Height(), &m_canvas.m_dc, 0, 0, SRCCOPY);
    if (m_bSimulating || !m_bDrawPosMark) return;
    DrawPosMark(&dc);
    if (m_bSlidingVisible) DrawSliding(&dc);
}

void CGraphWnd::OnMouseMove(UINT, CPoint point) {
    if (!m_bMouseMove) return;
    if (m_canvas.m_rcClient.PtInRect(point)) {
        m_ptSliding = point;
        m_bSlidingVisible = 1;
        InvalidateRect(nullptr, 1);
    } else {
        m_bSlidingVisible = 0;
    }
    Default();
}

void CGraphWnd::OnLButtonDown(UINT, CPoint point) {
    if (m_bSimulating || !m_bLButtonDown) return;
    if (m_canvas.m_rcClient.PtInRect(point)) {
        if (m_bHasData) {
            double x = 0, y = 0;
            ConvertW2L(point.x, point.y, x, y, m_canvas.m_rcClient, m_dXRange, m_dYRange);
            const HWND own = m_hWnd;
            if (m_pLButtonDown) m_pLButtonDown(m_pParent, x, this);
            // The owner may have closed the window, and this object with it.
            if (FromHandlePermanent(own) != this) return;
        }
        // Not where the owner put it meanwhile.
        m_ptMark = point;
        InvalidateRect(nullptr, 1);
    }
    Default();
}

void CGraphWnd::OnDestroy() {
    CWnd::OnDestroy();
    m_canvas.Release();
}

void CGraphWnd::OnSize(UINT, int, int) {
    CWnd::Default();
}
