// The reference host's editor: command lookup, system variables, the LISP subset, the plugin.
#include "editor/EditorHost.h"
#include "PluginLoader.h"
#include "editor/LispReader.h"

#include "TestHost.h"

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
                return false;
            s = lines.front();
            lines.pop_front();
            return true;
        },
        true);
    editor.RunLoop();
    EXPECT_NE(ui.m_strPrinted.find(L"未知命令“NOSUCH”。按 F1 查看帮助。"), std::wstring::npos);
    EXPECT_NE(ui.m_strPrinted.find(L"变量“CMDNAMES”是只读的。"), std::wstring::npos);
    EXPECT_EQ(editor.m_docs.documentCount(), 0);
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
