// Writing an item back: its record with the marker and the parts database, and the save routine.
#pragma once

#include "shared/fileops/FileOps.h"

#include <string>

class AcDbDatabase;
class IAcadDocument;
class CMyFtpConnection;
struct CLibState;

// The three fields of a hole item's entry and save dialogs.
struct ITEM_RECORD {
    std::wstring strName;
    std::wstring strModel;
    std::wstring strCode;
};

// "推荐名称", name, "推荐型号", model, "推荐编码", code; an empty model
// becomes the file's name without ".dwg".
CStringArray ItemRecordPairs(const ITEM_RECORD& record, const std::wstring& strFile);

// The record and the invisible marker on the item's database (made the
// working one meanwhile), then the parts database: directly, or in mode 1
// under its lock on the site. nFlag 0 for a new item, whose check-out lock
// goes with the hand-over, 1 for a save.
void WriteItemRecord(CLibState& state, CMyFtpConnection* pFtp, AcDbDatabase* pDb,
                     const ITEM_RECORD& record, const std::wstring& strFile, int nFlag);

// The save formats of a document save: "36" unless the user chose 8, 12, 24
// or 36; the editor's version word of each.
bool IsDocumentSaveFormat(const std::wstring& strFormat);
std::wstring VersionWordOfFormat(const std::wstring& strFormat);

// The zoom to the extents enlarged by half their larger side, so that the
// drawing is saved with a margin.
std::wstring ZoomWithMarginLine(AcDbDatabase* pDb);

// ISAVEBAK switched on for a save, and put back after it with the .bak removed.
class CSaveBakBracket {
public:
    explicit CSaveBakBracket(bool bActive = true);
    void Restore(const std::wstring& strPath);

private:
    int m_nOld = 1;
    bool m_bActive;
};

// The save routine of an edited or new item: the document made current, the
// slide, the zoom with margin, "SaveAs" in the user's format, the document
// closed; in a shared mode the slide and the drawing committed and the lock
// marker removed. False when the file has no database or cannot be opened.
bool SaveItemDrawing(CLibState& state, CMyFtpConnection* pFtp, const std::wstring& strPath,
                     bool bSave, bool bSlide);
