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

// The two calls posted into the application context.
void OpenDocumentProc(void* pData);
void NewDocumentProc(void* pData);
