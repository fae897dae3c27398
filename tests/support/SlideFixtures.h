// Drawings with known extents, slide bounds, and windowless views of the slide dialogs.
#pragma once

#include "library/DlgBatchSld.h"
#include "library/DlgZoomIn.h"

#include <functional>
#include <string>
#include <vector>

// A real drawing: a rectangle from (x, y) with width w and height h and its two diagonals.
void WriteRectDrawing(const std::wstring& strPath, double x, double y, double w, double h);

// The box around a slide's vectors, in slide pixels; bRead false when the file is no slide.
struct SLIDE_BOUNDS {
    bool bRead = false;
    int nHighX = 0, nHighY = 0;
    int nMinX = 0, nMinY = 0, nMaxX = 0, nMaxY = 0;
    size_t nVectors = 0;
};
SLIDE_BOUNDS ReadSlideBounds(const std::wstring& strPath);

// The preview without a window: records the slides it was opened on and
// closes itself with Enter, as a person looking at it would.
class CRecordingZoomInView : public IZoomInView {
public:
    int DoModal(CDlgZoomIn& dlg) override;
    void SetIcon(int nIconId) override { m_nIcon = nIconId; }
    void SetSlideFile(const std::wstring& strFile) override { m_strSlide = strFile; }
    void EndDialog(int nResult) override { m_nResult = nResult; }

    static inline std::vector<std::wstring> s_shown; // every slide shown, in order
    int m_nIcon = 0;
    int m_nResult = 0;
    std::wstring m_strSlide;
};
// Installs the recording preview for every dialog made until the scope ends.
class CRecordingZoomInScope {
public:
    CRecordingZoomInScope();
    ~CRecordingZoomInScope();
};

// The batch progress without a window; m_onPump runs at each pump with the presenter.
class CRecordingBatchView : public IBatchSldView {
public:
    bool Create(CDlgBatchSld& dlg, const std::wstring& strTitle) override;
    void SetProgress(int, int, const std::wstring&) override {}
    void EnableCancel(bool bEnable) override { s_bCancelEnabled = bEnable; }
    void Pump() override;
    void Destroy() override { ++s_nDestroyed; }

    static inline std::function<void(CDlgBatchSld&)> s_onPump;
    static inline bool s_bCancelEnabled = true;
    static inline int s_nDestroyed = 0;

private:
    CDlgBatchSld* m_pDlg = nullptr;
};
class CRecordingBatchScope {
public:
    CRecordingBatchScope();
    ~CRecordingBatchScope();
};
