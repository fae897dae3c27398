// Allocation, copying and classification of result-buffer chains.
#include "host/db/ResBuf.h"

#include <cstring>
#include <cwchar>

namespace {

wchar_t* CopyText(const std::wstring& text) {
    auto* p = new wchar_t[text.size() + 1];
    std::wmemcpy(p, text.c_str(), text.size() + 1);
    return p;
}

} // namespace

int acdbGroupCodeToType(int n) {
    if ((n >= 0 && n <= 9) || n == 100 || n == 102 || n == 105 || (n >= 300 && n <= 369) ||
        (n >= 390 && n <= 399) || (n >= 410 && n <= 419) || (n >= 430 && n <= 439) ||
        (n >= 470 && n <= 481) || n == 999 || (n >= 1000 && n <= 1009))
        return RTSTR;
    if ((n >= 10 && n <= 39) || (n >= 1010 && n <= 1039))
        return RT3DPOINT;
    if ((n >= 40 && n <= 59) || (n >= 110 && n <= 149) || (n >= 210 && n <= 239) ||
        (n >= 460 && n <= 469) || (n >= 1040 && n <= 1059))
        return RTREAL;
    if ((n >= 60 && n <= 79) || (n >= 170 && n <= 179) || (n >= 270 && n <= 289) ||
        (n >= 370 && n <= 389) || (n >= 400 && n <= 409) || (n >= 1060 && n <= 1070) ||
        (n >= 280 && n <= 289))
        return RTSHORT;
    if ((n >= 90 && n <= 99) || (n >= 420 && n <= 429) || (n >= 440 && n <= 459) || n == 1071)
        return RTLONG;
    return RTNONE;
}

resbuf* acutNewRb(int nGroupCode) {
    auto* rb = new resbuf;
    std::memset(rb, 0, sizeof(resbuf));
    rb->restype = static_cast<short>(nGroupCode);
    if (acdbGroupCodeToType(nGroupCode) == RTSTR)
        rb->resval.rstring = CopyText(L"");
    return rb;
}

int acutRelRb(resbuf* p) {
    while (p) {
        resbuf* next = p->rbnext;
        if (acdbGroupCodeToType(p->restype) == RTSTR)
            delete[] p->resval.rstring;
        delete p;
        p = next;
    }
    return RTNORM;
}

resbuf* acutNewStringRb(int nGroupCode, const std::wstring& text) {
    resbuf* rb = acutNewRb(nGroupCode);
    acutSetRbString(rb, text);
    return rb;
}

resbuf* acutNewRealRb(int nGroupCode, double value) {
    resbuf* rb = acutNewRb(nGroupCode);
    rb->resval.rreal = value;
    return rb;
}

resbuf* acutNewPointRb(int nGroupCode, double x, double y, double z) {
    resbuf* rb = acutNewRb(nGroupCode);
    rb->resval.rpoint[0] = x;
    rb->resval.rpoint[1] = y;
    rb->resval.rpoint[2] = z;
    return rb;
}

resbuf* acutNewShortRb(int nGroupCode, short value) {
    resbuf* rb = acutNewRb(nGroupCode);
    rb->resval.rint = value;
    return rb;
}

resbuf* acutNewLongRb(int nGroupCode, int value) {
    resbuf* rb = acutNewRb(nGroupCode);
    rb->resval.rlong = value;
    return rb;
}

void acutSetRbString(resbuf* p, const std::wstring& text) {
    if (!p || acdbGroupCodeToType(p->restype) != RTSTR)
        return;
    delete[] p->resval.rstring;
    p->resval.rstring = CopyText(text);
}

resbuf* acutDuplicateChain(const resbuf* p) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (; p; p = p->rbnext) {
        resbuf* rb = acutNewRb(p->restype);
        if (acdbGroupCodeToType(p->restype) == RTSTR)
            acutSetRbString(rb, p->resval.rstring ? p->resval.rstring : L"");
        else
            rb->resval = p->resval;
        *tail = rb;
        tail = &rb->rbnext;
    }
    return head;
}

resbuf* acutLastRb(resbuf* p) {
    while (p && p->rbnext)
        p = p->rbnext;
    return p;
}

bool acutChainsEqual(const resbuf* a, const resbuf* b) {
    for (; a && b; a = a->rbnext, b = b->rbnext) {
        if (a->restype != b->restype)
            return false;
        switch (acdbGroupCodeToType(a->restype)) {
        case RTSTR:
            if (std::wcscmp(a->resval.rstring, b->resval.rstring) != 0)
                return false;
            break;
        case RT3DPOINT:
            for (int i = 0; i < 3; ++i)
                if (a->resval.rpoint[i] != b->resval.rpoint[i])
                    return false;
            break;
        case RTREAL:
            if (a->resval.rreal != b->resval.rreal)
                return false;
            break;
        case RTSHORT:
            if (a->resval.rint != b->resval.rint)
                return false;
            break;
        default:
            if (a->resval.rlong != b->resval.rlong)
                return false;
        }
    }
    return !a && !b;
}
