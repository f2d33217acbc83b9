#pragma once

#include "framework/containers/Array.h"
#include "framework/windows/Wnd.h"
#include "module/Export.h"
#include "module/graphs/GraphCanvus.h"
#include "module/graphs/GraphMapping.h"

/// What a click on a graph gives its owner, to move the mark.
class VEXA_GPS_API IGrahpWndPos {
  public:
    /// Moves the mark to the point nearest to `x`; zero when there are none.
    virtual int SetPosByXValue(double x) = 0;

  protected:
    ~IGrahpWndPos() = default;
};

/// A line graph of points (x, y) in the place of a control of a dialog: a curve, or two, around a horizontal
/// axis y = 0, a mark at one x, a line that follows the mouse, and a replay of the curve. Init first, then
/// SetData. Points ascend by x. Operations that answer int say 1, or 0 for failure.
class VEXA_GPS_API CGraphWnd : public CWnd, public IGrahpWndPos {
  public:
    using LButtonDownFunc = void (*)(CWnd* parent, double x, IGrahpWndPos* pos);

    CGraphWnd() = default;
    ~CGraphWnd() override;

    /// Takes over the control of that id. 0, and nothing changed, when there is none, or either side is
    /// attached already.
    int Init(CWnd* parent, UINT controlId);
    int InitFont();
    /// Copies the points in place of those that were there, and draws. The range of y is symmetric about 0.
    int SetData(CArray<T_GRPH_D, T_GRPH_D&>& points);
    /// A second curve, which widens the ranges; drawn only while the first one has points.
    int SetAddedData(CArray<T_GRPH_D, T_GRPH_D&>& points);
    /// Makes the graph as large as the client area of `sizeSource`; for the owner's WM_SIZE, after it moved
    /// the control. 0 before Init.
    int CallOnSize(CWnd* sizeSource);

    /// Called with the window given to Init for a click in the graph; null: nobody.
    int SetLButtonDownFunc(LButtonDownFunc function);
    int SetDrawingGraphType(int type); ///< 1: a line, 2: dots; anything else draws no points
    int SetDrawPosMark(int draw);
    int SetLButtonDown(const int& enabled);
    int SetMouseMove(const int& enabled);

    virtual void DrawGraphData();
    /// `segments` of the line; CInvalidArgException beyond the last point.
    virtual void DrawFunction(CDC* dc, CRect& rect, int segments, COLORREF color);
    virtual void DrawBackGround(COLORREF color);
    virtual void DrawAxis(CDC* dc, CRect& rect, COLORREF color);
    virtual void DrawPosMark(CDC* dc, CPoint point);
    virtual void DrawPosMark(CDC* dc);
    void DrawSimulationData();
    void DrawSliding(CDC* dc);
    void DrawSliding(CDC* dc, CRect& rect, CPoint point);
    /// Draws the graph at (left, top) of any context, as large as it is in its window and without its
    /// background, with a label for point `index`, or none where that is the number of points or more.
    /// CInvalidArgException for a negative index.
    void CallDrawing(CDC* dc, int left, int top, int index);

    /// From values to pixels and back; ranges are {minimum, maximum}. 0, and zeros, when all x are equal.
    int ConvertL2W(int& px, int& py, double x, double y, CRect& rect, double xRange[2], double yRange[2]);
    int ConvertW2L(int px, int py, double& x, double& y, CRect& rect, double xRange[2], double yRange[2]);
    /// The point whose x is nearest; 0, and `index` as it was, when there are none.
    int BiSearch(double x, int& index);
    int SetPosMark(int index); ///< 0 for an index that is not there
    int SetPosMarkByValue(double x);
    int SetPosByXValue(double x) override;
    int SetPosByXValueNoSnap(double x);
    int GetPosByXValue(double x); ///< index of the nearest point; 0 also when there are none

    /// A replay: Simulation draws part of the curve over a grey one until the next paint.
    void StartSimulation();
    void Simulation(double time);
    void Simulation(int step);
    void EndSimulation();
    void DrawSimulationFunction(double time, CDC* dc, CRect& rect, int segments, COLORREF color);
    void DrawSimulationFunction(int step, CDC* dc, CRect& rect, int segments, COLORREF color);

  protected:
    int OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;

    void OnPaint();
    void OnMouseMove(UINT keys, CPoint point);
    void OnLButtonDown(UINT keys, CPoint point);
    void OnDestroy();
    void OnSize(UINT type, int width, int height);
    DECLARE_MESSAGE_MAP()

  private:
    using Points = CArray<T_GRPH_D, T_GRPH_D&>;

    void BuildCanvas(const CWnd& sizeSource);
    void TakePoints(Points& kept, const Points& points);
    void DrawPicture(COLORREF curve);
    int MoveMark(CPoint point);
    int LastSegment() const { return static_cast<int>(m_aData.GetSize()) - 1; }

    CPoint m_ptSliding;
    CPoint m_ptMark; ///< only its x is drawn
    int m_bSlidingVisible = 0;
    CGraphCanvus m_canvas;
    int m_bHasData = 0;
    double m_dXRange[2] = {};
    double m_dYRange[2] = {};
    Points m_aData;
    Points m_aAddedData;
    LOGFONT m_logFont;
    LButtonDownFunc m_pLButtonDown = nullptr;
    CWnd* m_pParent = nullptr;
    int m_bInitialised = 0;
    int m_bSimulating = 0;
    int m_bDrawPosMark = 1;
    double m_dSimulationTime = 0;
    int m_nGraphType = 1;
    int m_bLButtonDown = 1;
    int m_bMouseMove = 1;
};
