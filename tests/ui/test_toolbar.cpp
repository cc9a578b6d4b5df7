// SPDX-License-Identifier: GPL-3.0-or-later
// The toolbar.

#include "platform/textfile.h"
#include "shell/ui/bandbar.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <memory>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QSlider>
#include <QToolBar>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

constexpr const char16_t *ButtonKeys[] = {
    u"new",   u"open",   u"save",    u"-",    u"cut",       u"copy", u"paste",    u"comment", u"find",
    u"undo",  u"redo",   u"-",       u"back", u"next",      u"-",    u"fontsize", u"-",       u"orchestra",
    u"score", u"browse", u"related", u"-",    u"runcsound", u"code", u"slider",   u"-",       u"cshelp",
};

} // namespace

class ToolbarTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ToolbarHasItsButtons();
    void FiveButtonsDropDownTwoCommands();
    void ToolbarLabels();
    void ButtonsFollowTheirRows();
    void SaveButtonAndCaptionFollowTheText();
    void CommandsStartInTheStateThatFits_data();
    void CommandsStartInTheStateThatFits();
    void PasteFollowsTheClipboard();
};

void ToolbarTest::ToolbarHasItsButtons()
{
    EditorWindow editor;
    editor.Open();
    QStringList keys;
    for (const QAction *action : editor.Find<QToolBar>(u"Toolbar1"_s).actions()) {
        if (action->isSeparator()) {
            keys.append(u"-"_s);
            continue;
        }
        keys.append(action->property("key").toString());
        QVERIFY2(!action->icon().isNull(), qPrintable(action->objectName()));
        QVERIFY2(!action->toolTip().isEmpty(), qPrintable(action->objectName()));
    }
    QStringList expected;
    for (const char16_t *key : ButtonKeys)
        expected.append(QString::fromUtf16(key));
    QCOMPARE(keys, expected);
    QCOMPARE(ToolbarButton(editor, u"new"_s)->toolTip(), u"New (Ctrl+N)"_s);
    QCOMPARE(ToolbarButton(editor, u"cut"_s)->toolTip(), u"Cut (Ctrl+X)"_s);
    QCOMPARE(ToolbarButton(editor, u"fontsize"_s)->toolTip(), u"Increase font size (Ctrl+NumPad +)"_s);
    QCOMPARE(ToolbarButton(editor, u"back"_s)->toolTip(), u"Back"_s);
    QCOMPARE(editor.Find<QAction>(u"tbPlayer_play"_s).toolTip(), u"Play/Restart (F9)"_s);
    for (const QString &key : {u"play"_s, u"pause"_s, u"stop"_s, u"loop"_s})
        QVERIFY(!editor.Find<QAction>(u"tbPlayer_"_s + key).icon().isNull());
    QVERIFY(!editor.Find<QSlider>(u"SliderTime"_s).isEnabled());
    QCOMPARE(editor.Find<QLabel>(u"lblPos"_s).toolTip(), u"Elapsed Time"_s);
}

void ToolbarTest::FiveButtonsDropDownTwoCommands()
{
    EditorWindow editor;
    editor.Open();
    QStringList found;
    for (const QAction *action : editor.Find<QToolBar>(u"Toolbar1"_s).actions()) {
        // The lists of the history are empty at the start.
        if (!action->menu() || action->menu()->isEmpty())
            continue;
        QStringList captions;
        for (const QAction *entry : action->menu()->actions())
            captions.append(entry->text());
        found.append(action->property("key").toString() + u": "_s + captions.join(u'/'));
    }
    QCOMPARE(found, QStringList({u"comment: Comment/Uncomment"_s, u"find: Find.../Replace..."_s,
                                 u"fontsize: Increase font size/Decrease font size"_s,
                                 u"code: Code Repository.../Add to Code Repository..."_s,
                                 u"slider: i statement gui.../Instrument Properties..."_s}));
    const double before = editor.Text().CurrentFont().points;
    editor.Find<QAction>(u"Toolbar1_fontsize_menu_1"_s).trigger();
    QVERIFY(editor.Text().CurrentFont().points < before);
    ToolbarButton(editor, u"fontsize"_s)->trigger();
    QCOMPARE(editor.Text().CurrentFont().points, before);
}

void ToolbarTest::ToolbarLabels()
{
    EditorWindow editor;
    editor.Open();
    auto &toolbar = editor.Find<QToolBar>(u"Toolbar1"_s);
    const int before = editor.Find<BandBar>(u"CoolBar1"_s).height();
    QCOMPARE(toolbar.toolButtonStyle(), Qt::ToolButtonIconOnly);
    editor.Row(u"mnuLabels_0"_s).trigger();
    QVERIFY(editor.Row(u"mnuLabels_0"_s).isChecked());
    QCOMPARE(toolbar.toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
    QVERIFY(Eventually([&] { return editor.Find<BandBar>(u"CoolBar1"_s).height() > before; }));
    editor.Row(u"mnuLabels_0"_s).trigger();
    QVERIFY(!editor.Row(u"mnuLabels_0"_s).isChecked());
    QVERIFY(Eventually([&] { return editor.Find<BandBar>(u"CoolBar1"_s).height() == before; }));
}

void ToolbarTest::ButtonsFollowTheirRows()
{
    EditorWindow editor;
    Commands &commands = editor.Open().CommandTable();
    QVERIFY(!ToolbarButton(editor, u"orchestra"_s)->isEnabled());
    int runs = 0;
    commands.Bind(Cmd::mnuOrchestra, [&] { ++runs; });
    QVERIFY(!ToolbarButton(editor, u"orchestra"_s)->isEnabled());
    commands.SetEnabled(Cmd::mnuOrchestra, true);
    QVERIFY(ToolbarButton(editor, u"orchestra"_s)->isEnabled());
    ToolbarButton(editor, u"orchestra"_s)->trigger();
    QCOMPARE(runs, 1);
    QVERIFY(ToolbarButton(editor, u"browse"_s)->isChecked());
    ToolbarButton(editor, u"browse"_s)->trigger();
    QVERIFY(!ToolbarButton(editor, u"browse"_s)->isChecked());
    QVERIFY(!editor.Row(u"mnuBrowse"_s).isChecked());
    editor.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(ToolbarButton(editor, u"browse"_s)->isChecked());
}

void ToolbarTest::SaveButtonAndCaptionFollowTheText()
{
    EditorWindow editor;
    frmEditor &window = editor.Open();
    QCOMPARE(window.windowTitle(), u"Zelvane - Untitled ()"_s);
    QVERIFY(!ToolbarButton(editor, u"save"_s)->isEnabled());
    QVERIFY(editor.Row(u"mnuSave"_s).isEnabled());
    QTest::keyClick(&editor.Text(), Qt::Key_A);
    QCOMPARE(window.windowTitle(), u"Zelvane - Untitled* ()"_s);
    QVERIFY(ToolbarButton(editor, u"save"_s)->isEnabled());
    QVERIFY(window.Context().document.Modified);
    const QString file = editor.folder.filePath(u"a.orc"_s);
    FileDialogRequest request;
    request.filters = {{u"All files"_s, u"*.*"_s}};
    editor.desktop.ExpectSaveDialog(request, {file, 0});
    ToolbarButton(editor, u"save"_s)->trigger();
    QCOMPARE(window.windowTitle(), u"Zelvane - %1 (Orchestra)"_s.arg(file));
    QVERIFY(!ToolbarButton(editor, u"save"_s)->isEnabled());
    QCOMPARE(ReadTextFile(file), u"a"_s);
}

void ToolbarTest::CommandsStartInTheStateThatFits_data()
{
    QTest::addColumn<bool>("initialized");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("as it is built") << false << QStringList();
    QTest::newRow("untitled") << true << QStringList();
    QTest::newRow("new instance") << true << QStringList(u"/i"_s);
}

void ToolbarTest::CommandsStartInTheStateThatFits()
{
    QFETCH(bool, initialized);
    QFETCH(QStringList, arguments);
    EditorWindow editor;
    if (initialized)
        editor.Open(arguments);
    else
        editor.window = std::make_unique<frmEditor>(editor.settings, editor.desktop, CommandLine(arguments));
    for (const QString &key : {u"save"_s, u"cut"_s, u"copy"_s, u"paste"_s, u"undo"_s, u"redo"_s})
        QVERIFY2(!ToolbarButton(editor, key)->isEnabled(), qPrintable(key));
    QVERIFY(!editor.Row(u"mnuDelete"_s).isEnabled());
    QCOMPARE(editor.Find<QLabel>(u"lblLine"_s).text(), u"Line 1 Col 1"_s);
    for (const QString &key : {u"new"_s, u"open"_s, u"find"_s, u"comment"_s})
        QVERIFY2(ToolbarButton(editor, key)->isEnabled(), qPrintable(key));
}

void ToolbarTest::PasteFollowsTheClipboard()
{
    EditorWindow editor;
    editor.Open();
    const auto clipboard = [&editor](const QString &text) {
        editor.desktop.clipboard = text;
        QGuiApplication::clipboard()->setText(text);
    };
    QVERIFY(!ToolbarButton(editor, u"paste"_s)->isEnabled());
    clipboard(u"from elsewhere"_s);
    QVERIFY(Eventually([&] { return ToolbarButton(editor, u"paste"_s)->isEnabled(); }));
    QVERIFY(editor.Row(u"mnuEditItem_2"_s).isEnabled());
    clipboard({});
    QVERIFY(Eventually([&] { return !ToolbarButton(editor, u"paste"_s)->isEnabled(); }));
}

int main(int argc, char **argv)
{
    return RunUiTest<ToolbarTest>(argc, argv);
}

#include "test_toolbar.moc"
