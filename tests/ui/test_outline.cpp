// SPDX-License-Identifier: GPL-3.0-or-later
// The code outline in the real window.

#include "language/languagekeys.h"
#include "shell/ui/commands.h"
#include "support/editorwindow.h"
#include "support/outlinerows.h"
#include "support/uitest.h"

#include <QAbstractItemModel>
#include <QMenu>
#include <QSignalSpy>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const QByteArray Piece = "sr = 44100\n"
                         "#define TONE #440#\n"
                         "#include \"more.orc\"\n"
                         "instr 1 ; low\n"
                         "loop: a1 oscil 1, $TONE, 1\n"
                         "endin\n"
                         "instr 2\n"
                         "endin\n";

/// An editor over a piece, with its outline.
struct OutlineWindow : EditorWindow {
    explicit OutlineWindow(const QByteArray &piece = Piece, const QString &name = u"a.orc"_s)
    {
        const QString path = WriteFile(name, piece);
        Open({path});
        window->resize(900, 900);
        QCoreApplication::processEvents();
    }

    QTreeView &Tree() { return Find<QTreeView>(u"tvwBrowse"_s); }
    QModelIndex RowOf(const QString &key) { return RowOfKey(Tree(), key); }
    QString Caption(const QString &key) { return RowOf(key).data().toString(); }
    QString Status() { return window->Context().status.Text(); }

    void OpenAll() { window->CommandTable().Run(Cmd::mnuTV[TreeEntry::ExpandAll]); }
    void Click(const QString &key)
    {
        const QModelIndex row = RowOf(key);
        QVERIFY2(row.isValid(), qPrintable(key));
        Tree().scrollTo(row);
        QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(row).center());
    }
    /// Opens the context menu of a node and takes a row of it.
    void TakeMenuRow(const QString &key, const QString &row)
    {
        Tree().scrollTo(RowOf(key));
        const QPoint at = Tree().visualRect(RowOf(key)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, Tree().viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(Tree().viewport(), &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QAction &action = Row(row);
        QVERIFY2(menu->actions().contains(&action), qPrintable(row));
        menu->close();
        QVERIFY(action.isEnabled());
        action.trigger();
    }
};

class OutlineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheTreeHasTheNodesWithIconsAndBoldRoots();
    void ACommentedTagIsGrey();
    void WithoutElementsTheTreeSaysSo();
    void AnotherDocumentHasAnEmptyTree();
    void AClickBringsTheElementToTheTop();
    void AnEditMakesTheNextClickBuildAnew();
    void AClickOnAVanishedNodeDoesNothing();
    void TheKeyboardShowsANodeToo();
    void InstrumentsAreSelectedAndCopied();
    void ACutInstrumentComesBackByUndo();
    void ADeletedInstrumentComesBackByUndo();
    void AMenuWorksOnTheTextAsItIs();
    void AnInstrumentIsExported();
    void AnIncludeIsInserted();
    void AnIncludeIsOpened();
    void BranchesOpenAndClose();
    void ExpandBrowseOpensRootsAndTags();
    void InSingleSelectionOneBranchIsOpen();
    void RefreshBuildsAnew();
    void TheOutlineIsTurnedOffAndOn();
    void DeepTagsAreNoFailure();
};

} // namespace

void OutlineTest::TheTreeHasTheNodesWithIconsAndBoldRoots()
{
    OutlineWindow on;
    const std::pair<QString, QString> nodes[] = {
        {u"rootins"_s, u"Instruments"_s}, {u"ins1"_s, u"1 ; low"_s},
        {u"ins1lbl1"_s, u"loop:"_s},      {u"ins2"_s, u"2"_s},
        {u"rootmac"_s, u"Macros"_s},      {u"mac1"_s, u"TONE"_s},
        {u"mac1cal1"_s, u"TONE"_s},       {u"rootinc"_s, u"Include"_s},
        {u"inc1"_s, u"more.orc"_s}};
    for (const auto &[key, caption] : nodes) {
        QCOMPARE(on.Caption(key), caption);
        QVERIFY2(!on.RowOf(key).data(Qt::DecorationRole).value<QIcon>().isNull(), qPrintable(key));
        QCOMPARE(on.RowOf(key).data(Qt::FontRole).value<QFont>().bold(), key.startsWith(u"root"));
    }
    QCOMPARE(on.Tree().currentIndex(), on.RowOf(u"rootins"_s));
    QVERIFY(!on.Tree().isExpanded(on.RowOf(u"rootins"_s)));
    QVERIFY(!on.window->Context().document.Modified);
}

void OutlineTest::ACommentedTagIsGrey()
{
    OutlineWindow on(";<a>\n</a>\n<b>\n</b>\n", u"a.csd"_s);
    QVERIFY(on.RowOf(u"tag1"_s).data(Qt::ForegroundRole).isValid());
    QVERIFY(!on.RowOf(u"tag2"_s).data(Qt::ForegroundRole).isValid());
}

void OutlineTest::WithoutElementsTheTreeSaysSo()
{
    OutlineWindow on("sr = 44100\n");
    QAbstractItemModel &model = *on.Tree().model();
    QCOMPARE(model.rowCount(), 1);
    const QModelIndex row = model.index(0, 0);
    QCOMPARE(row.data().toString(), u"No elements found."_s);
    QVERIFY(row.data(Qt::ForegroundRole).isValid());
    QVERIFY(!on.Tree().currentIndex().isValid());
    QTest::mouseClick(on.Tree().viewport(), Qt::LeftButton, {}, on.Tree().visualRect(row).center());
    QCOMPARE(model.rowCount(), 1);
}

void OutlineTest::AnotherDocumentHasAnEmptyTree()
{
    OutlineWindow on("instr 1\nendin\n", u"a.txt"_s);
    QCOMPARE(on.Tree().model()->rowCount(), 0);
}

void OutlineTest::AClickBringsTheElementToTheTop()
{
    QByteArray lines;
    for (int i = 0; i < 200; ++i)
        lines += "; a line\n";
    OutlineWindow on(lines + Piece + lines);
    TextControl &text = on.Text();
    on.Click(u"rootins"_s);
    QCOMPARE(on.Status(), u"2 Instruments"_s);
    QCOMPARE(text.Selection().start, 0);

    on.Tree().expand(on.RowOf(u"rootins"_s));
    on.Click(u"ins1"_s);
    const qsizetype start = text.Text().indexOf(u"instr 1"_s);
    QCOMPARE(text.Selection().start, start);
    QVERIFY(text.Selection().IsEmpty());
    QCOMPARE(text.FirstVisibleLine(), text.LineOfOffset(start));
    QCOMPARE(on.Status(), u"Instrument: 3 lines - 46 characters"_s);

    on.Click(u"rootmac"_s);
    on.Tree().expand(on.RowOf(u"rootmac"_s));
    on.Click(u"mac1"_s);
    QCOMPARE(text.FirstVisibleLine(), 201);
    QCOMPARE(on.Status(), u"TONE @ character %1"_s.arg(text.Selection().start));
    QVERIFY(text.updatesEnabled());
}

void OutlineTest::AnEditMakesTheNextClickBuildAnew()
{
    OutlineWindow on;
    on.OpenAll();
    on.Text().SetSelection(0, 0);
    on.Text().ReplaceSelection(u"instr 0\nendin\n"_s);
    QCOMPARE(on.Caption(u"ins1"_s), u"1 ; low"_s);
    on.Click(u"ins1"_s);
    // The key means another element now.
    QCOMPARE(on.Caption(u"ins1"_s), u"0"_s);
    QCOMPARE(on.Tree().currentIndex(), on.RowOf(u"ins1"_s));
    QCOMPARE(on.Text().Selection().start, 0);
    QCOMPARE(on.Status(), u"Instrument: 2 lines - 13 characters"_s);
    // Up to date: the nodes stay as they are.
    QSignalSpy built(on.Tree().model(), &QAbstractItemModel::modelReset);
    on.Click(u"ins1"_s);
    QCOMPARE(built.count(), 0);
}

void OutlineTest::AClickOnAVanishedNodeDoesNothing()
{
    OutlineWindow on;
    on.OpenAll();
    on.Text().SetText(u"instr 7\nendin\n"_s);
    on.Text().SetSelection(3, 3);
    on.Click(u"ins2"_s);
    QVERIFY(!on.RowOf(u"ins2"_s).isValid());
    QCOMPARE(on.Text().Selection().start, 3);
    QCOMPARE(on.Tree().currentIndex(), on.RowOf(u"rootins"_s));
}

void OutlineTest::TheKeyboardShowsANodeToo()
{
    OutlineWindow on;
    on.Tree().setCurrentIndex(on.RowOf(u"ins2"_s));
    on.Tree().setFocus();
    QTest::keyClick(&on.Tree(), Qt::Key_Return);
    QCOMPARE(on.Text().Selection().start, on.Text().Text().indexOf(u"instr 2"_s));
    QVERIFY(on.Tree().hasFocus());
}

void OutlineTest::InstrumentsAreSelectedAndCopied()
{
    OutlineWindow on;
    on.OpenAll();
    on.TakeMenuRow(u"ins2"_s, u"mnuBrowseEdit_0"_s);
    QCOMPARE(on.Text().SelectedText(), u"instr 2\nendin"_s);
    // A label's menu works on its instrument.
    on.TakeMenuRow(u"ins1lbl1"_s, u"mnuBrowseEdit_2"_s);
    QCOMPARE(on.desktop.clipboard, u"instr 1 ; low\nloop: a1 oscil 1, $TONE, 1\nendin\n"_s);
    QCOMPARE(on.Text().SelectedText(), u"instr 2\nendin"_s);
    QVERIFY(!on.window->Context().document.Modified);
}

void OutlineTest::ACutInstrumentComesBackByUndo()
{
    OutlineWindow on;
    on.OpenAll();
    const QString before = on.Text().Text();
    on.TakeMenuRow(u"ins1"_s, u"mnuBrowseEdit_1"_s);
    QCOMPARE(on.desktop.clipboard, u"instr 1 ; low\nloop: a1 oscil 1, $TONE, 1\nendin"_s);
    QVERIFY(!on.Text().Text().contains(u"instr 1"_s));
    on.Click(u"rootins"_s);
    QCOMPARE(on.Status(), u"1 Instruments"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), before);
    on.Click(u"rootins"_s);
    QCOMPARE(on.Status(), u"2 Instruments"_s);
}

void OutlineTest::ADeletedInstrumentComesBackByUndo()
{
    OutlineWindow on;
    on.OpenAll();
    const QString before = on.Text().Text();
    on.TakeMenuRow(u"ins2"_s, u"mnuBrowseEdit_3"_s);
    QCOMPARE(on.Text().Text(), QString(before).remove(u"instr 2\nendin"_s));
    QCOMPARE(on.desktop.clipboard, QString());
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), before);
}

void OutlineTest::AMenuWorksOnTheTextAsItIs()
{
    OutlineWindow on;
    on.OpenAll();
    on.Text().SetSelection(0, 0);
    on.Text().ReplaceSelection(u"; one line more\n"_s);
    on.TakeMenuRow(u"ins2"_s, u"mnuBrowseEdit_1"_s);
    QCOMPARE(on.desktop.clipboard, u"instr 2\nendin"_s);
}

void OutlineTest::AnInstrumentIsExported()
{
    OutlineWindow on;
    on.OpenAll();
    const QString path = on.folder.filePath(u"Instr1.orc"_s);
    on.desktop.ExpectSaveDialog({.filters = {{u"Orchestra"_s, u"*.orc"_s}},
                                 .folder = on.folder.filePath(u"a.orc"_s),
                                 .fileName = u"Instr1.orc"_s,
                                 .defaultExtension = u"orc"_s},
                                {.path = path});
    on.TakeMenuRow(u"ins1"_s, u"mnuBrowseEdit_5"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("instr 1 ; low\r\nloop: a1 oscil 1, $TONE, 1\r\nendin\r\n\r\n"));
}

void OutlineTest::AnIncludeIsInserted()
{
    OutlineWindow on;
    on.WriteFile(u"more.orc"_s, "instr 9\nendin\n");
    on.OpenAll();
    const QString before = on.Text().Text();
    on.TakeMenuRow(u"inc1"_s, u"mnuBInclude_1"_s);
    QCOMPARE(on.Text().Text(), QString(before).replace(u"#include \"more.orc\""_s, u"instr 9\nendin\n"_s));
    QCOMPARE(on.Text().SelectedText(), u"instr 9\nendin\n"_s);
    QCOMPARE(on.Caption(u"ins1"_s), u"9"_s);
    QVERIFY(!on.RowOf(u"inc1"_s).isValid());
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), before);
}

void OutlineTest::AnIncludeIsOpened()
{
    OutlineWindow on;
    on.OpenAll();
    on.desktop.ExpectMessage({.text = u"Cannot find more.orc"_s, .icon = BoxIcon::Warning});
    on.TakeMenuRow(u"inc1"_s, u"mnuBInclude_0"_s);
    on.desktop.CheckAllCame();
    const QString path = on.WriteFile(u"more.orc"_s, "instr 9\nendin\n");
    on.TakeMenuRow(u"inc1"_s, u"mnuBInclude_0"_s);
    QCOMPARE(on.window->Context().document.CurrentFile, path);
    QCOMPARE(on.Caption(u"ins1"_s), u"9"_s);
    QSignalSpy built(on.Tree().model(), &QAbstractItemModel::modelReset);
    on.Click(u"rootins"_s);
    QCOMPARE(built.count(), 0); // the outline of the opened file is up to date
}

void OutlineTest::BranchesOpenAndClose()
{
    OutlineWindow on;
    on.TakeMenuRow(u"rootmac"_s, u"mnuTV_3"_s);
    for (const QString &key : {u"rootins"_s, u"ins1"_s, u"rootmac"_s, u"mac1"_s, u"rootinc"_s})
        QVERIFY2(on.Tree().isExpanded(on.RowOf(key)), qPrintable(key));
    QVERIFY(on.Tree().hasFocus());
    on.TakeMenuRow(u"rootmac"_s, u"mnuTV_4"_s);
    for (const QString &key : {u"rootins"_s, u"ins1"_s, u"rootmac"_s, u"mac1"_s, u"rootinc"_s})
        QVERIFY2(!on.Tree().isExpanded(on.RowOf(key)), qPrintable(key));
    // The key opens all below one node.
    on.Tree().setCurrentIndex(on.RowOf(u"rootins"_s));
    QTest::keyClick(&on.Tree(), Qt::Key_Asterisk);
    QVERIFY(on.Tree().isExpanded(on.RowOf(u"rootins"_s)));
    QVERIFY(on.Tree().isExpanded(on.RowOf(u"ins1"_s)));
    QVERIFY(!on.Tree().isExpanded(on.RowOf(u"rootmac"_s)));
}

void OutlineTest::ExpandBrowseOpensRootsAndTags()
{
    OutlineWindow on(
        "<a>\n<b>\n<c>\n</c>\n</b>\n</a>\n<CsInstruments>\ninstr 1\nx:\nendin\n</CsInstruments>\n",
        u"a.csd"_s);
    QVERIFY(!on.Tree().isExpanded(on.RowOf(u"rootags"_s)));
    on.settings.SaveFlag(Keys::ExpandBrowse, true);
    on.TakeMenuRow(u"rootags"_s, u"mnuTV_6"_s);
    for (const QString &key : {u"rootags"_s, u"tag1"_s, u"tag2"_s, u"rootins"_s})
        QVERIFY2(on.Tree().isExpanded(on.RowOf(key)), qPrintable(key));
    QVERIFY(!on.Tree().isExpanded(on.RowOf(u"ins1"_s)));
}

void OutlineTest::InSingleSelectionOneBranchIsOpen()
{
    OutlineWindow on;
    QTreeView &tree = on.Tree();
    tree.expand(on.RowOf(u"rootins"_s));
    tree.expand(on.RowOf(u"ins1"_s));
    QVERIFY(tree.isExpanded(on.RowOf(u"rootins"_s)));
    tree.expand(on.RowOf(u"rootmac"_s));
    QVERIFY(tree.isExpanded(on.RowOf(u"rootmac"_s)));
    QVERIFY(!tree.isExpanded(on.RowOf(u"rootins"_s)));
    on.settings.SaveFlag(Keys::SingleSelection, false);
    on.TakeMenuRow(u"rootmac"_s, u"mnuTV_6"_s);
    tree.expand(on.RowOf(u"rootins"_s));
    tree.expand(on.RowOf(u"rootmac"_s));
    QVERIFY(tree.isExpanded(on.RowOf(u"rootins"_s)));
}

void OutlineTest::RefreshBuildsAnew()
{
    OutlineWindow on;
    on.Text().SetText(u"#define B #2#\n"_s);
    QCOMPARE(on.Caption(u"mac1"_s), u"TONE"_s);
    // Without a node under the pointer; the menu itself is built on the text as it is.
    on.window->CommandTable().Run(Cmd::mnuTV[TreeEntry::Refresh]);
    QCOMPARE(on.Caption(u"mac1"_s), u"B"_s);
    QVERIFY(!on.RowOf(u"rootins"_s).isValid());
}

void OutlineTest::TheOutlineIsTurnedOffAndOn()
{
    OutlineWindow on;
    on.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(!on.Row(u"mnuBrowse"_s).isChecked());
    QVERIFY(!on.Tree().isVisible());
    QCOMPARE(on.Tree().model()->rowCount(), 0);
    on.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(on.Tree().isVisible());
    QCOMPARE(on.Caption(u"ins2"_s), u"2"_s);
}

void OutlineTest::DeepTagsAreNoFailure()
{
    constexpr int Depth = 100'000;
    // An outer tag of the same name would end at the innermost closing one.
    QByteArray piece, closing;
    for (int i = 0; i < Depth; ++i) {
        piece += "<t" + QByteArray::number(i) + ">\n";
        closing += "</t" + QByteArray::number(Depth - 1 - i) + ">\n";
    }
    OutlineWindow on("sr = 1\n");
    on.settings.SaveFlag(Keys::ExpandBrowse, true);
    on.window->Documents().OpenFile(on.WriteFile(u"deep.csd"_s, piece + closing));
    QCoreApplication::processEvents();
    QModelIndex row = on.Tree().model()->index(0, 0);
    int depth = 0;
    for (; on.Tree().model()->rowCount(row) > 0; ++depth)
        row = on.Tree().model()->index(0, 0, row);
    QCOMPARE(depth, Depth);
    on.TakeMenuRow(u"rootags"_s, u"mnuTV_3"_s);
    QTest::keyClick(&on.Tree(), Qt::Key_Asterisk);
    on.Tree().grab();
    on.TakeMenuRow(u"rootags"_s, u"mnuTV_4"_s);
}

int main(int argc, char **argv)
{
    return RunUiTest<OutlineTest>(argc, argv);
}

#include "test_outline.moc"
