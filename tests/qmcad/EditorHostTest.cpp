// The reference host's editor: command lookup, system variables, the LISP subset, the plugin.
#include "editor/EditorHost.h"
#include "PluginLoader.h"
#include "editor/LispReader.h"

#include "EditorTestHost.h"
#include "base/Format.h"
#include "host/HostInput.h"
#include "host/db/AcDb.h"
#include "host/db/GrReadValue.h"

#include <gtest/gtest.h>

TEST(EditorHost, CommandStackFindsByNameWithoutCaseAndRemovesByGroup) {
    CCommandStack stack;
    static int s_nRuns = 0;
    EXPECT_TRUE(
        stack.AddCommand(L"G", L"DrawingManage", L"DrawingManage", 0x200000, [] { ++s_nRuns; }));
    EXPECT_FALSE(stack.AddCommand(L"g", L"DRAWINGMANAGE", L"x", 0, [] {}));
    ASSERT_NE(stack.Find(L"_drawingmanage"), nullptr);
    stack.Find(L".DrawingManage")->function();
    EXPECT_EQ(s_nRuns, 1);
    EXPECT_TRUE(stack.RemoveGroup(L"G"));
    EXPECT_FALSE(stack.RemoveGroup(L"G"));
    EXPECT_EQ(stack.Find(L"DrawingManage"), nullptr);
}

TEST(EditorHost, SystemVariablesAreTypedAndSomeReadOnly) {
    CTestHost ui;
    CEditorHost editor(ui);
    SYSVAR_VALUE value;
    EXPECT_EQ(editor.GetVar(L"cmdecho", value), RTNORM);
    EXPECT_EQ(value.nType, RTSHORT);
    EXPECT_EQ(editor.SetVar(L"CMDECHO", SYSVAR_VALUE::Text(L"1")), RTERROR);
    EXPECT_EQ(editor.SetVar(L"DWGNAME", SYSVAR_VALUE::Text(L"x.dwg")), RTERROR);
    EXPECT_EQ(editor.GetVar(L"NOSUCH", value), RTERROR);
    editor.m_docs.NewDocument();
    ASSERT_EQ(editor.GetVar(L"DWGNAME", value), RTNORM);
    EXPECT_EQ(value.strText, L"Drawing1.dwg");
    ASSERT_EQ(editor.GetVar(L"DWGTITLED", value), RTNORM);
    EXPECT_EQ(value.nShort, 0);
    std::wstring strFormat;
    EXPECT_EQ(editor.GetEnv(L"DefaultFormatForSave", strFormat), RTNORM);
    for (const wchar_t* name : {L"SDI", L"FILEDIA", L"ISAVEBAK", L"GRIDMODE", L"ORTHOMODE",
                                L"SNAPMODE", L"INSBASE", L"DWGPREFIX", L"CMDNAMES"})
        EXPECT_EQ(editor.GetVar(name, value), RTNORM) << name;
}

TEST(EditorHost, LispSubsetOfPostedStrings) {
    EXPECT_TRUE(ReadLispForm(L"(Command)").bCancel);
    EXPECT_TRUE(ReadLispForm(L"(command)").bCancel);
    LISP_FORM form = ReadLispForm(L"(Command \"_.-view\" \"_top\" 1.5 nil \"a\\\"b\")");
    ASSERT_TRUE(form.bOk);
    EXPECT_EQ(form.words, (std::vector<std::wstring>{L"_.-view", L"_top", L"1.5", L"", L"a\"b"}));
    for (const wchar_t* bad : {L"(setq a 1)", L"(command \"x\"", L"(command foo)",
                               L"(command \"unterminated)", L"()", L"command"})
        EXPECT_FALSE(ReadLispForm(bad).bOk) << bad;
}

TEST(EditorHost, CommandLineSurvivesAnyInput) {
    CTestHost ui;
    CEditorHost editor(ui);
    editor.m_docs.NewDocument();
    std::deque<std::wstring> lines{
        L"",  L"   ",  L"nosuch", L"(((",   L"(command \"nosuch\")", L"SETVAR", L"CMDNAMES",
        L"x", L"ZOOM", L"CLOSE",  L"CLOSE", L"OPEN /no/such.dwg"};
    editor.SetSource(
        [&](std::wstring& s) {
            if (lines.empty())
                return CEditorHost::LINE_READ::End;
            s = lines.front();
            lines.pop_front();
            return CEditorHost::LINE_READ::Line;
        },
        true);
    editor.RunLoop();
    EXPECT_NE(ui.m_strPrinted.find(L"未知命令“NOSUCH”。按 F1 查看帮助。"), std::wstring::npos);
    EXPECT_NE(ui.m_strPrinted.find(L"变量“CMDNAMES”是只读的。"), std::wstring::npos);
    EXPECT_EQ(editor.m_docs.documentCount(), 0);
}

// What escapes a command body or a posted call ends only that command: one
// line, the documents as they were, and the loop goes on.
TEST(EditorHost, ExceptionsEndTheCommandAndNeverTheEditor) {
    CTestHost ui;
    CEditorHost editor(ui);
    editor.m_docs.NewDocument();
    static int s_nAfter = 0;
    static CDocManager* s_pDocs = nullptr;
    s_nAfter = 0;
    s_pDocs = &editor.m_docs;
    editor.m_commands.AddCommand(L"T", L"OOM", L"OOM", 0, [] { throw std::bad_alloc(); });
    editor.m_commands.AddCommand(L"T", L"BAD", L"BAD", ACRX_CMD_SESSION,
                                 [] { throw std::runtime_error("disk gone"); });
    editor.m_commands.AddCommand(L"T", L"POSTS", L"POSTS", 0, [] {
        s_pDocs->executeInApplicationContext([](void*) { throw 7; }, nullptr);
        s_pDocs->executeInApplicationContext([](void*) { ++s_nAfter; }, nullptr);
    });
    std::deque<std::wstring> lines{L"OOM", L"BAD", L"POSTS", L"CMDNAMES"};
    editor.SetSource(
        [&](std::wstring& s) {
            if (lines.empty())
                return CEditorHost::LINE_READ::End;
            s = lines.front();
            lines.pop_front();
            return CEditorHost::LINE_READ::Line;
        },
        true);
    editor.RunLoop();
    EXPECT_NE(ui.m_strPrinted.find(L"; 错误: 命令 OOM 异常中止（内存不足）\n"), std::wstring::npos)
        << ui.m_strPrinted;
    EXPECT_NE(ui.m_strPrinted.find(L"; 错误: 命令 BAD 异常中止（disk gone）\n"),
              std::wstring::npos);
    EXPECT_NE(ui.m_strPrinted.find(L"异常中止（未知异常）\n"), std::wstring::npos);
    EXPECT_EQ(s_nAfter, 1);
    EXPECT_EQ(editor.m_docs.documentCount(), 1);
    EXPECT_FALSE(editor.m_docs.isApplicationContext());
    SYSVAR_VALUE value;
    ASSERT_EQ(editor.GetVar(L"CMDNAMES", value), RTNORM);
    EXPECT_EQ(value.strText, L"");
}

TEST(EditorHost, LoadsTheModuleThroughItsEntryPoint) {
    CTestHost ui;
    CEditorHost editor(ui);
    HOST_SERVICES services = editor.Services();
    CPluginLoader loader;
    EXPECT_FALSE(loader.Load("/no/such/module.so", services));
    EXPECT_FALSE(loader.LastError().empty());
    ASSERT_TRUE(loader.Load(QM_MODULE_PATH, services)) << loader.LastError();
    EXPECT_NE(editor.m_commands.Find(L"DrawingManage"), nullptr);
    loader.Unload();
    EXPECT_EQ(editor.m_commands.Find(L"DrawingManage"), nullptr);
}

TEST(EditorHost, AutomationSendCommandRunsNowAndCloseDiscards) {
    CTestHost ui;
    CEditorHost editor(ui);
    IAcadApplication& app = editor.m_automation;
    EXPECT_EQ(app.ActiveDocument(), nullptr);
    IAcadDocument* pDoc = app.Documents()->Add(L"");
    ASSERT_NE(pDoc, nullptr);
    editor.m_docs.Current()->m_posted.push_back({L"MoveLater", true});
    // The native answer lines follow the command; the later post waits behind the text.
    ASSERT_TRUE(pDoc->SendCommand(L"SetVar\nCMDECHO\n0\n(Command \"ZOOM\" \"E\")\n"));
    EXPECT_EQ(editor.m_vars.Short(L"CMDECHO"), 0);
    ASSERT_EQ(editor.m_docs.Current()->m_posted.size(), 1u);
    EXPECT_EQ(app.Documents()->Count(), 1);
    EXPECT_EQ(app.Documents()->Item(L"drawing1.DWG"), pDoc);
    EXPECT_TRUE(pDoc->Close(false, L""));
    EXPECT_FALSE(pDoc->SendCommand(L"ZOOM\nE\n")); // closed: refused, nothing runs
    EXPECT_EQ(app.Documents()->Open(L"/no/such.dwg"), nullptr);
}

TEST(EditorHost, InputFunctionsAnswerFromTheCommandLine) {
    CEditorTestHost host;
    AcDbDatabase* pDb = host.m_editor.m_docs.Current()->database();
    AcDbBlockTableRecord* pSpace = nullptr;
    ASSERT_EQ(acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForWrite), Acad::eOk);
    AcDbObjectId circleId, lineId;
    auto* pCircle = new AcDbCircle(AcGePoint3d(0, 0, 0), 5);
    auto* pLine = new AcDbLine(AcGePoint3d(100, 0, 0), AcGePoint3d(110, 10, 0));
    pSpace->appendAcDbEntity(circleId, pCircle);
    pSpace->appendAcDbEntity(lineId, pLine);
    pCircle->close();
    pLine->close();
    pSpace->close();
    std::wstring strLineHandle = Format(L"%X", static_cast<int>(lineId.handle().value()));

    host.Feed({L"oops", L"10,20", L"@5,5", L"", L"*Cancel*", L"1,1", L"200,200", strLineHandle,
               L"1,1", L"1,1", L"", L"50,60", L"~3,4", L"k"});
    AcGePoint3d pt, base(1, 2, 3);
    EXPECT_EQ(acedGetPoint(nullptr, L"点: ", pt), RTNORM); // "oops" is asked again
    EXPECT_EQ(pt, AcGePoint3d(10, 20, 0));
    EXPECT_EQ(acedGetPoint(&base, L"点: ", pt), RTNORM);
    EXPECT_EQ(pt, AcGePoint3d(6, 7, 3));
    EXPECT_EQ(acedGetPoint(nullptr, L"点: ", pt), RTNONE);
    EXPECT_EQ(acedGetPoint(nullptr, L"点: ", pt), RTCAN);
    AcDbObjectId id;
    EXPECT_EQ(acedEntSel(L"选择: ", id, pt), RTNORM);
    EXPECT_EQ(id, circleId);
    EXPECT_EQ(acedEntSel(L"选择: ", id, pt), RTERROR); // nothing there
    AcDbObjectIdArray ids;
    EXPECT_EQ(acedSSGet(L"", ids), RTNORM); // handle, point, the same point again, Enter
    EXPECT_EQ(ids, (AcDbObjectIdArray{lineId, circleId}));
    EXPECT_EQ(acedDragGen(
                  {circleId}, L"位置: ",
                  [](const AcGePoint3d& p, AcGeMatrix3d& m) {
                      m = AcGeMatrix3d::translation(p - AcGePoint3d());
                      return true;
                  },
                  pt),
              RTNORM);
    AcDbCircle* pMoved = nullptr;
    ASSERT_EQ(acdbOpenObject(pMoved, circleId, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pMoved->center(), AcGePoint3d(50, 60, 0));
    pMoved->close();
    int nType = 0;
    GRREAD_VALUE value;
    ASSERT_EQ(acedGrRead(7, nType, value), RTNORM);
    EXPECT_EQ(nType, 5);
    ASSERT_EQ(acedGrRead(7, nType, value), RTNORM);
    EXPECT_EQ(nType, 2);
    EXPECT_EQ(value.nKey, L'k');
    EXPECT_EQ(acedGrRead(7, nType, value), RTCAN); // input ended
    EXPECT_EQ(acedSSGet(L"X", ids), RTNORM);
    EXPECT_EQ(ids.size(), 2u);

    // Selection by two corners, nothing asked: the moved circle spans 45..55.
    const AcGePoint3d a(40, 40, 0), b(52, 70, 0);
    EXPECT_EQ(acedSSGet(L"W", a, b, ids), RTERROR); // it is not inside
    EXPECT_EQ(acedSSGet(L"C", a, b, ids), RTNORM);  // but it crosses
    EXPECT_EQ(ids, (AcDbObjectIdArray{circleId}));
    EXPECT_EQ(acedSSGet(L"_C", AcGePoint3d(0, 0, 0), AcGePoint3d(200, 200, 0), ids), RTNORM);
    EXPECT_EQ(ids.size(), 2u);
    EXPECT_EQ(acedSSGet(L"X", a, b, ids), RTERROR); // no window mode
    EXPECT_TRUE(ids.empty());
}

// A window's handler runs while the editor waits for a command: it may open
// drawings there, but not while a command's prompt waits.
TEST(EditorHost, WaitForACommandIsTheApplicationContext) {
    CTestHost ui;
    CEditorHost editor(ui);
    editor.m_docs.NewDocument();
    std::vector<bool> contexts;
    std::deque<std::wstring> typed{L"SETVAR", L"CMDECHO", L"1"};
    editor.SetSource(
        [&](std::wstring& s) {
            contexts.push_back(editor.m_docs.isApplicationContext());
            if (typed.empty())
                return CEditorHost::LINE_READ::End;
            s = typed.front();
            typed.pop_front();
            return CEditorHost::LINE_READ::Line;
        },
        false);
    editor.RunLoop();
    EXPECT_EQ(contexts, (std::vector<bool>{true, false, false, true}));
    EXPECT_FALSE(editor.m_docs.isApplicationContext());
}

TEST(EditorHost, WorkPostedDuringAWaitRunsBeforeTheNextTypedLine) {
    CTestHost ui;
    CEditorHost editor(ui);
    editor.m_docs.NewDocument();
    std::deque<std::wstring> typed{L"SETVAR", L"CMDECHO", L"1"};
    int nWaits = 0;
    editor.SetSource(
        [&](std::wstring& s) {
            // The first wait is ended by a window posting a command string.
            if (nWaits++ == 0) {
                editor.m_docs.sendStringToExecute(editor.m_docs.Current(), L"SETVAR\nCMDECHO\n0\n",
                                                  false, false, false);
                return CEditorHost::LINE_READ::Woken;
            }
            if (nWaits == 2)
                return CEditorHost::LINE_READ::Woken; // woken with nothing to run
            if (typed.empty())
                return CEditorHost::LINE_READ::End;
            s = typed.front();
            typed.pop_front();
            if (typed.empty()) {
                EXPECT_EQ(editor.m_vars.Short(L"CMDECHO"), 0); // the posted one ran first
            }
            return CEditorHost::LINE_READ::Line;
        },
        false);
    editor.RunLoop();
    EXPECT_EQ(editor.m_vars.Short(L"CMDECHO"), 1);
    // A prompt before the posted command, one after it (kept through the empty
    // wake), one after the typed command.
    size_t nPrompts = 0;
    for (size_t at = ui.m_strPrinted.find(L"命令: "); at != std::wstring::npos;
         at = ui.m_strPrinted.find(L"命令: ", at + 1))
        ++nPrompts;
    EXPECT_EQ(nPrompts, 3u);
}
