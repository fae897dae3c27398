// Documents of the reference host. Single-document mode (SDI not 0) keeps one drawing.
#include "editor/DocManager.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "editor/SysVars.h"

CHostDocument::CHostDocument(std::wstring strFileName, std::unique_ptr<AcDbDatabase> pDb,
                             int nLockFd)
    : m_strFileName(std::move(strFileName)), m_pDb(std::move(pDb)), m_nLockFd(nLockFd),
      m_pUndo(std::make_unique<CUndoLog>(*m_pDb)) {}

void CHostDocument::Rename(const std::wstring& strFileName) {
    // A save replaces the file: the lock moves to the new one even under the same name.
    FsCloseHandle(m_nLockFd);
    m_nLockFd = FsOpenLocked(strFileName);
    m_strFileName = strFileName;
}

CHostDocument::~CHostDocument() {
    if (acdbHostApplicationServices()->workingDatabase() == m_pDb.get())
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    FsCloseHandle(m_nLockFd);
}

void CDocManager::SyncWorkingDatabase() {
    acdbHostApplicationServices()->setWorkingDatabase(m_pCur ? m_pCur->database() : nullptr);
}

CHostDocument* CDocManager::Find(const AcApDocument* pDoc) {
    for (auto& doc : m_docs)
        if (doc.get() == pDoc)
            return doc.get();
    return nullptr;
}

bool CDocManager::lockDocument(AcApDocument* pDoc) {
    CHostDocument* pHostDoc = Find(pDoc);
    if (!pHostDoc)
        return false;
    ++pHostDoc->m_nWriteLocks;
    return true;
}

bool CDocManager::unlockDocument(AcApDocument* pDoc) {
    CHostDocument* pHostDoc = Find(pDoc);
    if (!pHostDoc || pHostDoc->m_nWriteLocks == 0)
        return false;
    --pHostDoc->m_nWriteLocks;
    return true;
}

std::vector<AcApDocument*> CDocManager::documents() {
    std::vector<AcApDocument*> docs;
    for (auto& doc : m_docs)
        docs.push_back(doc.get());
    return docs;
}

bool CDocManager::activateDocument(AcApDocument* pDoc) {
    CHostDocument* pHostDoc = Find(pDoc);
    if (!pHostDoc)
        return false;
    m_pActive = m_pCur = pHostDoc;
    SyncWorkingDatabase();
    return true;
}

bool CDocManager::setCurDocument(AcApDocument* pDoc) {
    CHostDocument* pHostDoc = Find(pDoc);
    if (!pHostDoc)
        return false;
    m_pCur = pHostDoc;
    SyncWorkingDatabase();
    return true;
}

bool CDocManager::appContextNewDocument(const std::wstring&) {
    return isApplicationContext() && NewDocument() != nullptr;
}

bool CDocManager::appContextOpenDocument(const std::wstring& strPath) {
    return isApplicationContext() && OpenDocument(strPath) != nullptr;
}

void CDocManager::executeInApplicationContext(AcApContextFunction pFunction, void* pData) {
    if (!pFunction)
        return;
    m_appQueue.emplace_back(pFunction, pData);
    if (m_onPosted)
        m_onPosted();
}

bool CDocManager::sendStringToExecute(AcApDocument* pDoc, const std::wstring& strText, bool, bool,
                                      bool bEcho) {
    CHostDocument* pHostDoc = Find(pDoc);
    if (!pHostDoc || strText.empty())
        return false;
    // Lines run one by one when the loop comes back.
    size_t start = 0;
    while (start < strText.size()) {
        size_t nl = strText.find(L'\n', start);
        std::wstring line = strText.substr(start, nl == std::wstring::npos ? nl : nl - start);
        pHostDoc->m_posted.push_back({line, bEcho});
        if (nl == std::wstring::npos)
            break;
        start = nl + 1;
    }
    if (m_onPosted)
        m_onPosted();
    return true;
}

CHostDocument* CDocManager::Adopt(std::unique_ptr<CHostDocument> pDoc) {
    if (m_vars.Short(L"SDI") != 0 && m_pCur)
        CloseDocument(m_pCur);
    m_docs.push_back(std::move(pDoc));
    m_pActive = m_pCur = m_docs.back().get();
    SyncWorkingDatabase();
    return m_pCur;
}

CHostDocument* CDocManager::NewDocument() {
    return Adopt(std::make_unique<CHostDocument>(Format(L"Drawing%d.dwg", ++m_nUntitled),
                                                 std::make_unique<AcDbDatabase>(true)));
}

CHostDocument* CDocManager::OpenDocument(const std::wstring& strPath) {
    for (auto& doc : m_docs)
        if (EqualsNoCase(doc->fileName(), strPath)) {
            activateDocument(doc.get());
            return doc.get();
        }
    if (!FsExists(strPath) || FsIsDirectory(strPath))
        return nullptr;
    auto pDb = std::make_unique<AcDbDatabase>(false, false);
    if (pDb->readDwgFile(strPath.c_str()) != Acad::eOk)
        return nullptr;
    return Adopt(std::make_unique<CHostDocument>(strPath, std::move(pDb), FsOpenLocked(strPath)));
}

bool CDocManager::CloseDocument(AcApDocument* pDoc) {
    for (auto it = m_docs.begin(); it != m_docs.end(); ++it) {
        if (it->get() != pDoc)
            continue;
        m_docs.erase(it);
        CHostDocument* pNext = m_docs.empty() ? nullptr : m_docs.back().get();
        if (m_pCur == pDoc)
            m_pCur = pNext;
        if (m_pActive == pDoc)
            m_pActive = pNext;
        SyncWorkingDatabase();
        if (m_onClosed)
            m_onClosed();
        return true;
    }
    return false;
}

bool CDocManager::RunApplicationContextQueue() {
    if (m_appQueue.empty())
        return false;
    auto queue = std::move(m_appQueue);
    m_appQueue.clear();
    EnterApplicationContext();
    for (auto& [pFunction, pData] : queue) {
        auto call = [pFunction = pFunction, pData = pData] { pFunction(pData); };
        if (m_runGuarded)
            m_runGuarded(call);
        else
            call();
    }
    LeaveApplicationContext();
    return true;
}
