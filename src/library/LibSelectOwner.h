// The window of a sibling module that waits for a browser in select mode to pick a drawing.
#pragma once

// Posted to the owner with both parameters 0: the user picked (call the
// getter now), or closed the window or pressed Cancel.
enum : unsigned {
    WM_LIB_PICKED = 0x0400 + 105,    // 1129
    WM_LIB_CANCELLED = 0x0400 + 106, // 1130
};

class ILibSelectOwner {
public:
    virtual ~ILibSelectOwner() = default;
    // False once the caller has destroyed its window.
    virtual bool IsWindow() const = 0;
    virtual void PostMessage(unsigned nMsg) = 0;
};
