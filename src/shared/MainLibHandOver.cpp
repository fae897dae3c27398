// The parts database travels between the site and the workstation around the suite's write.
#include "shared/MainLibHandOver.h"
#include "shared/OperateVersionFile.h"

#include "base/FileSystem.h"
#include "host/SuiteInstallPaths.h"
#include "host/SuiteMainLib.h"

bool LockMainLib(CMyFtpConnection& ftp) {
    return ftp.ConfirmLockBreak(kMainLibPath) && ftp.TakeFileLock(kMainLibLock);
}

// The lock goes whatever the commit returned: a failed commit has told the
// user, and the next newer copy from the site replaces the local one.
void HandOverToMainLib(CMyFtpConnection& ftp, int nFtpMode, const STRUCT_MAIN_LIB_ENTRY& entry) {
    auto save = [&] {
        TzSaveHoleDataToEPartLib(entry.strCode, entry.strModel, entry.strName, entry.strFileName,
                                 entry.nFlag);
    };
    if (nFtpMode != 1) {
        save();
        return;
    }
    std::wstring strRoot = GetQuillmLocalInstallPath();
    std::wstring strLocal = JoinPath(strRoot, kMainLibPath);
    bool bMainLibChanged = false;
    if (ftp.CheckServerUpdate(bMainLibChanged) && bMainLibChanged)
        ftp.CheckOutFile(strLocal, L"Data\\", L"TzMainLib.mdb");
    if (!LockMainLib(ftp))
        return;
    save();
    std::wstring strCopy = JoinPath(strRoot, L"Temp\\TzMainLib.mdb");
    if (!IsDirExist(GetParentPath(strCopy)))
        CreateDirPath(GetParentPath(strCopy));
    FsCopyFile(strLocal, strCopy, false);
    ftp.CommitFile(strCopy, kMainLibPath);
    FsDeleteFile(strCopy);
    ftp.DeleteRemoteFile(JoinPath(L"Data\\", L"TzMainLib.mdb.bak"));
    if (entry.nFlag == 0)
        ftp.ReleaseFileLock(entry.strDrawing, entry.strLibDir);
}
