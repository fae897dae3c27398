// The host's maker of drawing previews (the thumbnail saved inside a DWG file).
#pragma once

class AcDbDatabase;

class IDrawingPreview {
public:
    virtual ~IDrawingPreview() = default;
    // Makes the preview of the database's drawing; 0 on success, an error
    // status of the host otherwise. nFlags is passed as the module gets it.
    virtual int MakeDrawingPreview(AcDbDatabase* pDb, int nFlags) = 0;
};
