// The host's geometry kernel on OpenCASCADE: bodies kept as OCCT's text B-rep, measured, moved,
// built (box, extrusion), cut, meshed and seen with hidden lines removed.
#pragma once

#include "host/db/AcDb.h"
#include "view/DisplayList.h"

#include <memory>
#include <string>
#include <vector>

// One piece of a closed profile in the XY plane at the profile's elevation:
// a line from a to b, or an arc from a to b around centre.
struct PROFILE_SEGMENT {
    AcGePoint3d a, b;
    bool bArc = false;
    AcGePoint3d centre;
    bool bCounterClockwise = true;
};

struct MASS_PROPS {
    double dVolume = 0.0;
    AcGePoint3d centroid;
};

class COcctModeler : public IAcDbSolidModeler, public ISolidViewGeometry {
public:
    COcctModeler();
    ~COcctModeler() override;

    bool GetExtents(const std::vector<std::string>& body, AcDbExtents& ext) override;
    bool Transform(std::vector<std::string>& body, const AcGeMatrix3d& m) override;
    bool MakeBox(double dx, double dy, double dz, std::vector<std::string>& body) override;
    bool Mesh(const std::vector<std::string>& body, std::vector<DL_TRIANGLE>& triangles) override;
    bool VisibleEdges(const std::vector<std::string>& body, const AcGeVector3d& direction,
                      std::vector<DL_LINE>& edges) override;

    // A prism of the closed profile along Z by dHeight (negative goes down).
    bool Extrude(const std::vector<PROFILE_SEGMENT>& profile, double dHeight,
                 std::vector<std::string>& body);
    // The first body less all the others in one boolean operation. False, the
    // body untouched, when the kernel fails or the result is no valid solid;
    // strError then says why.
    bool Subtract(std::vector<std::string>& body,
                  const std::vector<const std::vector<std::string>*>& tools, std::string& strError);
    bool MassProperties(const std::vector<std::string>& body, MASS_PROPS& props);

private:
    struct CImpl;
    std::unique_ptr<CImpl> m_p;
};

// The modeler the host registers at start.
COcctModeler& GetOcctModeler();
