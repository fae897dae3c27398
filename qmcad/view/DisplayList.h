// The display list: what a drawing's model space shows, as world-space primitives every painter
// (window, slide, PNG) draws from.
#pragma once

#include "host/db/AcDb.h"
#include "view/ViewState.h"

#include <string>
#include <vector>

// A straight piece of a curve; dWidth in drawing units, 0 for a thin line.
struct DL_LINE {
    AcGePoint3d a, b;
    short nColour = 7; // the editor's colour index, resolved (1..255)
    double dWidth = 0.0;
};

// One line of text, placed: origin at the left end of the baseline, xDir
// along the baseline and yDir up the characters (both unit length, world).
struct DL_TEXT {
    AcGePoint3d origin;
    AcGeVector3d xDir{1, 0, 0}, yDir{0, 1, 0};
    double dHeight = 2.5;
    double dWidthFactor = 1.0;
    double dAdvance = 0.0; // estimated length of the line along xDir
    std::wstring strText;  // plain text, format codes removed
    std::wstring strStyle; // the text style's name
    std::wstring strFont;  // its font file ("txt", "gbcbig.shx", "simsun.ttf")
    short nColour = 7;
};

// A flat facet of a solid's surface, normal pointing out of the body.
struct DL_TRIANGLE {
    AcGePoint3d p[3];
    AcGeVector3d normal{0, 0, 1};
    short nColour = 7;
};

class CDisplayList {
public:
    std::vector<DL_LINE> m_lines;
    std::vector<DL_TEXT> m_texts;
    std::vector<DL_TRIANGLE> m_triangles;

    bool IsEmpty() const { return m_lines.empty() && m_texts.empty() && m_triangles.empty(); }
    void Clear();
    // The box around every primitive in world space.
    AcDbExtents Extents() const;
};

// What the display list asks of the solid modeler: a mesh of the body and
// the edges that the eye sees from a direction (hidden lines removed).
class ISolidViewGeometry {
public:
    virtual ~ISolidViewGeometry() = default;
    virtual bool Mesh(const std::vector<std::string>& body,
                      std::vector<DL_TRIANGLE>& triangles) = 0;
    virtual bool VisibleEdges(const std::vector<std::string>& body, const AcGeVector3d& direction,
                              std::vector<DL_LINE>& edges) = 0;
};

// Fills the list from the database's model space for the view: entities on
// layers that are off or frozen are left out, colours by layer and by block
// resolved, block references expanded, curves cut into lines, dimensions
// drawn from their graphics block. Solids give their visible edges in the
// wireframe mode and facets in the shaded one; without solid geometry they
// show the edges of their extents box.
void BuildDisplayList(AcDbDatabase& db, const VIEW_STATE& view, ISolidViewGeometry* pSolids,
                      CDisplayList& list);

// Lines approximating an arc (angles in radians, counter-clockwise), at
// most 5 degrees a piece; a full circle for a0 == a1 - 2 pi.
void AppendArcLines(const AcGePoint3d& c, double r, double a0, double a1, short nColour,
                    double dWidth, std::vector<DL_LINE>& lines);

// Where one entity's primitives begin in a list of several.
struct DL_STARTS {
    size_t nLine = 0, nText = 0;
};
// The list of some entities only, moved by a matrix: the image of a drag, or
// the shapes a pick is measured against. pStarts, if given, gets where each
// id's primitives begin.
void BuildEntitiesDisplayList(AcDbDatabase& db, const VIEW_STATE& view, ISolidViewGeometry* pSolids,
                              const AcDbObjectIdArray& ids, const AcGeMatrix3d& m,
                              CDisplayList& list, std::vector<DL_STARTS>* pStarts = nullptr);
