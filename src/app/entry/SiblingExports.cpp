// The four exports for sibling modules; nothing thrown inside reaches the caller.
#include "app/entry/SiblingExports.h"

#include "app/entry/SiblingSelect.h"

#define QM_EXPORT __attribute__((visibility("default")))

extern "C" {

QM_EXPORT void TzGetInstallHoleDwgFile(QWidget* pOwner, std::wstring strCurName) {
    try {
        SelectHoleDwgFile(pOwner, strCurName);
    } catch (...) {
    }
}

QM_EXPORT void TzGetLSDwgFile(QWidget* pOwner, std::wstring strCurName) {
    try {
        SelectLayoutDwgFile(pOwner, strCurName);
    } catch (...) {
    }
}

QM_EXPORT void TzGetSelectHoleFileName(std::wstring& strName) {
    GetPickedHoleName(strName);
}

QM_EXPORT void TzGetSelectLSName(std::wstring& strName) {
    GetPickedLayoutName(strName);
}

} // extern "C"
