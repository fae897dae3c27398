// The drawing as the view shows it: the display list of the working database, kept until it
// changes, projected and painted with QPainter.
#pragma once

#include "view/DisplayList.h"
#include "view/ViewProjection.h"

#include <functional>

class QColor;
class QPainter;

class CDisplayScene {
public:
    using DatabaseGetter = std::function<AcDbDatabase*()>;
    CDisplayScene(DatabaseGetter getDatabase, ISolidViewGeometry* pSolids)
        : m_getDatabase(std::move(getDatabase)), m_pSolids(pSolids) {}

    AcDbDatabase* Database() const { return m_getDatabase(); }
    // The drawing changed (or another one is shown): build the list anew when next asked.
    void Invalidate() { m_bValid = false; }
    // The list for the view; rebuilt when invalid, when the shade mode
    // changed, or (for solids' visible edges) when the direction did and
    // bKeepEdges is false (an orbit in progress keeps the old edges).
    const CDisplayList& List(const VIEW_STATE& view, bool bKeepEdges = false);
    void Paint(QPainter& painter, const VIEW_STATE& view, int nWidth, int nHeight,
               bool bKeepEdges = false);
    // The entity drawn nearest to the pixel, within the tolerance in pixels.
    bool HitTest(const VIEW_STATE& view, int nWidth, int nHeight, double sx, double sy,
                 double dTolerance, AcDbObjectId& id);
    // Entities moved by a transform, as a drag shows them.
    void PaintMoved(QPainter& painter, const VIEW_STATE& view, int nWidth, int nHeight,
                    const AcDbObjectIdArray& ids, const AcGeMatrix3d& xform);

private:
    // The list's lines in view-plane coordinates for one direction: a pan or
    // a zoom then only scales and shifts them, without going through 3D.
    // Floats from an origin in the drawing's middle: small and exact enough.
    struct PLANE_LINE {
        float u0, v0, u1, v1;
        float fWidth;
        short nColour;
    };
    void PreparePlaneLines(const VIEW_STATE& view);
    void BuildCoarseLines(double dDrawingSize);
    void DrawPlaneLines(QPainter& painter, const VIEW_STATE& view, int nWidth, int nHeight) const;

    DatabaseGetter m_getDatabase;
    ISolidViewGeometry* m_pSolids;
    CDisplayList m_list;
    CDisplayList m_texts;  // the list's texts alone
    CDisplayList m_facets; // its facets alone
    std::vector<PLANE_LINE> m_planeLines;
    std::vector<PLANE_LINE> m_coarseLines; // the same with short runs joined
    double m_dCoarseSize = 0;              // the longest run joined, drawing units
    bool m_bPlaneValid = false;
    AcGeVector3d m_planeDirection;
    double m_dPlaneU = 0, m_dPlaneV = 0; // the origin of the floats
    bool m_bValid = false;
    bool m_bHasSolidEdges = false;
    AcDbDatabase* m_pBuiltFor = nullptr;
    VIEW_STATE m_builtView;
};

// Paints projected primitives: facets far to near with their light, then
// lines (grouped by colour and width), then texts.
void DrawProjectedView(QPainter& painter, const CProjectedView& view);
void DrawFacets(QPainter& painter, const CProjectedView& view);
void DrawTexts(QPainter& painter, const CProjectedView& view);
// An index colour as the view paints it on its dark background.
QColor IndexColour(short nColour);
