// The enlarged preview of one slide: a modal dialog whose slide control fills it.
#pragma once

#include <functional>
#include <memory>
#include <string>

class CDlgZoomIn;

// What the enlarged preview asks of its window.
class IZoomInView {
public:
    virtual ~IZoomInView() = default;
    // Runs the window modally until the presenter ends it; returns that result.
    virtual int DoModal(CDlgZoomIn& dlg) = 0;
    virtual void SetIcon(int nIconId) = 0;
    virtual void SetSlideFile(const std::wstring& strFile) = 0;
    virtual void EndDialog(int nResult) = 0;
};

using ZoomInViewFactory = std::function<std::unique_ptr<IZoomInView>()>;
// The windows come from here; without a factory the preview shows nothing.
void SetZoomInViewFactory(ZoomInViewFactory factory);

// Messages the dialog looks at before its controls do.
enum class ZOOMIN_MESSAGE { KeyEnter, RButtonDown, Other };

class CDlgZoomIn {
public:
    enum : int { IDD = 306, IDC_SLIDE = 522, IDI_ICON = 637 };

    explicit CDlgZoomIn(std::unique_ptr<IZoomInView> pView = nullptr);
    // Opens the window modally with the module's resources pushed; IDOK or IDCANCEL.
    int DoModal();

    bool OnInitDialog();
    // Enter and the right button close the dialog as OK does; true swallows the message.
    bool PreTranslateMessage(ZOOMIN_MESSAGE message);
    void OnOK();
    void OnCancel(); // the frame's close box

    std::wstring m_strSldFile;

private:
    std::unique_ptr<IZoomInView> m_pView;
};

// Opens the preview on a slide, as the commands and the browser do.
int ShowSlideZoomIn(const std::wstring& strSlide);
