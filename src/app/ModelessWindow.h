// The protocol of the module's modeless windows: one per kind, raised, created and destroyed alike.
#pragma once

#include <functional>
#include <string>

// A modeless window as the frame handles it; the browser and dialog classes implement it.
class IModelessWindow {
public:
    virtual ~IModelessWindow() = default;
    // Creates the window from its template; false leaves nothing on the screen.
    virtual bool Create() = 0;
    virtual void Show() = 0;
    virtual void Activate() = 0;
    virtual bool IsIconic() = 0;
    virtual void Restore() = 0;
    virtual void DestroyWindow() = 0;
};

// A library browser also reloads its list and selects an item by name.
class ILibraryBrowser : public IModelessWindow {
public:
    virtual void ReloadList() = 0;
    // Selects the list item equal to the name without regard to case, deselects the others.
    virtual void SelectListItem(const std::wstring& strName) = 0;
};

// Makes the window object of one kind, or null when it cannot be allocated.
using ModelessFactory = std::function<IModelessWindow*()>;

// Shows, activates and restores an existing window, or creates one; the
// English failure lines go to the command line and leave the pointer null.
void RaiseModelessWindow(IModelessWindow*& pWindow, const ModelessFactory& factory,
                         const wchar_t* pszClassName);
// Destroys the window, frees it and nulls the pointer.
void DestroyModelessWindow(IModelessWindow*& pWindow);
