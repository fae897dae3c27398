// The headless editor test host.
#include "EditorTestHost.h"

#include "dxf/DxfCodec.h"

CEditorTestHost::CEditorTestHost() : m_editor(*this) {
    acdbSetFileCodec(&GetDxfCodec());
    HOST_SERVICES services = m_editor.Services();
    services.pInstallPaths = this;
    SetHostServices(services);
    m_editor.m_docs.NewDocument();
}

void CEditorTestHost::Run(std::deque<std::wstring> lines) {
    Feed(std::move(lines));
    m_editor.RunLoop();
}

void CEditorTestHost::Feed(std::deque<std::wstring> lines) {
    auto pLines = std::make_shared<std::deque<std::wstring>>(std::move(lines));
    m_editor.SetSource(
        [pLines](std::wstring& strLine) {
            if (pLines->empty())
                return CEditorHost::LINE_READ::End;
            strLine = pLines->front();
            pLines->pop_front();
            return CEditorHost::LINE_READ::Line;
        },
        true);
}

void WriteEmptyDrawing(const std::wstring& strPath) {
    acdbSetFileCodec(&GetDxfCodec());
    AcDbDatabase db(true);
    db.saveAs(strPath.c_str());
}
