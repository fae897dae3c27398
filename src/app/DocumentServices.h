// Document services between the browsers and the host's document manager, single-document aware.
#pragma once

#include <string>

class AcApDocument;
class AcDbDatabase;

// The default template of a new drawing.
extern const wchar_t* const g_szDefaultTemplate;

int GetDocumentCount();
bool IsDocumentOpen(const std::wstring& strPath);
bool LockCurrentDocument();
bool UnlockCurrentDocument();
void ActivateDocument(const std::wstring& strPath);
void OpenDocumentPosted(const std::wstring& strPath);
void OpenDocumentDirect(const std::wstring& strPath);
bool OpenOrActivate(const std::wstring& strPath, bool bFullPath);
void NewDefaultDocument();
bool IsOpenInOtherDocument(const std::wstring& strPath, bool bFullPath, AcApDocument*& pDoc);

// The database of a file: true when it was read anew and the caller owns it
// (delete after use); false when it belongs to an open document (the
// receiver holds it) or the file could not be read (the receiver is null).
bool GetDatabaseOfFile(const std::wstring& strPath, AcDbDatabase*& pDb);
bool GetDatabaseOfFileEx(const std::wstring& strPath, bool bFullPath, AcDbDatabase*& pDb);

// The two calls posted into the application context.
void OpenDocumentProc(void* pData);
void NewDocumentProc(void* pData);
