// Result-buffer chains: the editor's linked lists of group-coded values.
#pragma once

#include "host/ResultCodes.h"

#include <string>

union ads_u_val {
    double rreal;
    double rpoint[3];
    short rint;
    int rlong;
    wchar_t* rstring; // owned by the node
};

// One node. Chains are made with acutNewRb and freed with acutRelRb by
// whoever asked for them.
struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};

// The value kind of a group code, as the editor classifies it (RTSTR for
// text and handles, RT3DPOINT, RTREAL, RTSHORT, RTLONG); RTNONE when unknown.
int acdbGroupCodeToType(int nGroupCode);

resbuf* acutNewRb(int nGroupCode); // zeroed node; strings start empty
int acutRelRb(resbuf* pChain);     // frees the whole chain; RTNORM

// Builders for single nodes with a value.
resbuf* acutNewStringRb(int nGroupCode, const std::wstring& text);
resbuf* acutNewRealRb(int nGroupCode, double value);
resbuf* acutNewPointRb(int nGroupCode, double x, double y, double z);
resbuf* acutNewShortRb(int nGroupCode, short value);
resbuf* acutNewLongRb(int nGroupCode, int value);

// Replaces the text of a string node.
void acutSetRbString(resbuf* pNode, const std::wstring& text);
// A deep copy of a chain (null for null).
resbuf* acutDuplicateChain(const resbuf* pChain);
resbuf* acutLastRb(resbuf* pChain);
// True when both chains hold the same codes and values.
bool acutChainsEqual(const resbuf* a, const resbuf* b);
