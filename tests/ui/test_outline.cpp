// SPDX-License-Identifier: GPL-3.0-or-later
// The code outline in the real window.

#include "language/languagekeys.h"
#include "shell/ui/commands.h"
#include "shell/ui/icons.h"
#include "support/editorwindow.h"
#include "support/outlinerows.h"
#include "support/uitest.h"

#include <QAbstractItemModel>
#include <QBrush>
#include <QComboBox>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QItemSelectionModel>
#include <QMenu>
#include <QPainter>
#include <QPalette>
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
        TakeMenuRowAt(Tree().visualRect(RowOf(key)).center(), row);
    }
    void TakeMenuRowAt(const QPoint &at, const QString &row)
    {
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

QBrush GreyText()
{
    return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
}

class OutlineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheTreeHasTheNodesWithIconsAndBoldRoots();
    void ACommentedTagIsGrey();
    void WithoutElementsTheTreeSaysSo();
    void AnotherDocumentHasAnEmptyTree();
    void AClickBringsTheElementToTheTop();
    void ASelectedIconIsSeen();
    void ATooltipIsNoMarkedUpText();
    void AnEditMakesTheNextClickBuildAnew();
    void AnEditWhileAFileIsLoadedCountsToo();
    void ABuildWaitsAndKeepsTheFocus();
    void AClickOnAVanishedNodeDoesNothing();
    void TheKeyboardShowsANodeToo();
    void TheKeyboardBuildsAStaleOutlineAnew();
    void InstrumentsAreSelectedAndCopied();
    void ACutInstrumentComesBackByUndo();
    void ADeletedInstrumentComesBackByUndo();
    void AMenuWorksOnTheTextAsItIs();
    void AMenuOfTheTreeLeavesAStaleOutline();
    void RoomBelowTheNodesHasTheMenuOfTheTree();
    void AnInstrumentIsExported();
    void AnIncludeIsInserted();
    void AnIncludeIsOpened();
    void BranchesOpenAndClose();
    void ADoubleClickOpensABranch();
    void ExpandBrowseOpensRootsAndTags();
    void InSingleSelectionOneBranchIsOpen();
    void ANodeOutOfSightIsNotCurrent();
    void RefreshBuildsAnew();
    void TheOutlineIsTurnedOffAndOn();
    void DeepTagsAreNoFailure();
    void NoMoreOpensThanCanBeLookedAt();
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
    QCOMPARE(on.RowOf(u"tag1"_s).data(Qt::ForegroundRole).value<QBrush>(), GreyText());
    QVERIFY(!on.RowOf(u"tag2"_s).data(Qt::ForegroundRole).isValid());
}

void OutlineTest::WithoutElementsTheTreeSaysSo()
{
    OutlineWindow on("sr = 44100\n");
    QAbstractItemModel &model = *on.Tree().model();
    QCOMPARE(model.rowCount(), 1);
    const QModelIndex row = model.index(0, 0);
    QCOMPARE(row.data().toString(), u"No elements found."_s);
    QCOMPARE(row.data(Qt::ForegroundRole).value<QBrush>(), GreyText());
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

void OutlineTest::ASelectedIconIsSeen()
{
    const QRect inner(2, 2, 12, 12); // the corners of what it is drawn on are round
    const auto drawn = [&](QPalette::ColorRole on, QIcon::Mode mode) {
        QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
        image.fill(QGuiApplication::palette().color(on));
        QPainter painter(&image);
        Icons::Load(u"instr"_s).paint(&painter, image.rect(), Qt::AlignCenter, mode);
        painter.end();
        return image.copy(inner);
    };
    QVERIFY(drawn(QPalette::Highlight, QIcon::Normal) != drawn(QPalette::Base, QIcon::Normal));
    QCOMPARE(drawn(QPalette::Highlight, QIcon::Selected), drawn(QPalette::Base, QIcon::Normal));
    // As a pixmap too, and in the colours of the moment.
    const auto pixmap = [&] {
        return Icons::Load(u"instr"_s).pixmap(QSize(16, 16), QIcon::Selected).toImage().pixelColor(3, 13);
    };
    QCOMPARE(pixmap(), QGuiApplication::palette().color(QPalette::Base));
    const QPalette before = QGuiApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    QGuiApplication::setPalette(dark);
    QCOMPARE(pixmap(), QColor(27, 30, 32));
    QGuiApplication::setPalette(before);
}

void OutlineTest::ATooltipIsNoMarkedUpText()
{
    OutlineWindow on("instr <b>1</b>\nendin\n");
    QCOMPARE(on.Caption(u"ins1"_s), u"<b>1</b>"_s);
    QVERIFY(on.RowOf(u"ins1"_s).data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;1&lt;/b&gt;"_s));
    QCOMPARE(on.RowOf(u"rootins"_s).data(Qt::ToolTipRole).toString(), u"Instruments"_s);
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

void OutlineTest::AnEditWhileAFileIsLoadedCountsToo()
{
    OutlineWindow on;
    on.window->Context().document.Loading = true;
    on.Text().SetSelection(0, 0);
    on.Text().ReplaceSelection(u"instr 0\nendin\n"_s);
    on.window->Context().document.Loading = false;
    QSignalSpy built(on.Tree().model(), &QAbstractItemModel::modelReset);
    on.Click(u"rootins"_s);
    QCOMPARE(built.count(), 1);
    QCOMPARE(on.Status(), u"3 Instruments"_s);
}

void OutlineTest::ABuildWaitsAndKeepsTheFocus()
{
    OutlineWindow on;
    bool waited = false;
    connect(on.Tree().model(), &QAbstractItemModel::modelReset, &on.Tree(), [&] {
        const QCursor *pointer = QGuiApplication::overrideCursor();
        waited = pointer && pointer->shape() == Qt::WaitCursor;
    });
    auto &opcodes = on.Find<QComboBox>(u"cmbOpcodes"_s);
    on.window->activateWindow();
    opcodes.setFocus();
    QVERIFY(opcodes.hasFocus());
    on.Text().SetText(u"instr 7\nendin\n"_s);
    on.Click(u"rootins"_s);
    QVERIFY(waited);
    QCOMPARE(on.Status(), u"1 Instruments"_s);
    QVERIFY(!QGuiApplication::overrideCursor());
    opcodes.setFocus();
    on.Row(u"mnuBrowse"_s).trigger();
    waited = false;
    on.Row(u"mnuBrowse"_s).trigger();
    QVERIFY(waited);
    QVERIFY(opcodes.hasFocus());
    QVERIFY(!QGuiApplication::overrideCursor());
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

void OutlineTest::TheKeyboardBuildsAStaleOutlineAnew()
{
    OutlineWindow on;
    on.Tree().setCurrentIndex(on.RowOf(u"ins2"_s));
    on.Text().SetSelection(0, 0);
    on.Text().ReplaceSelection(u"; one line more\n"_s);
    on.Tree().setFocus();
    QTest::keyClick(&on.Tree(), Qt::Key_Return);
    QCOMPARE(on.Text().Selection().start, on.Text().Text().indexOf(u"instr 2"_s));
    QCOMPARE(on.Tree().currentIndex(), on.RowOf(u"ins2"_s));
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

void OutlineTest::AMenuOfTheTreeLeavesAStaleOutline()
{
    OutlineWindow on;
    on.OpenAll();
    on.Tree().setCurrentIndex(on.RowOf(u"rootmac"_s));
    on.Text().SetText(u"instr 7\nendin\n#define A #1#\n#include \"x.orc\"\n"_s);
    QSignalSpy built(on.Tree().model(), &QAbstractItemModel::modelReset);
    on.TakeMenuRow(u"rootmac"_s, u"mnuTV_4"_s);
    QCOMPARE(built.count(), 0);
    QCOMPARE(on.Caption(u"ins1"_s), u"1 ; low"_s);
    QCOMPARE(on.Tree().currentIndex(), on.RowOf(u"rootmac"_s));
    // What works on the text is up to date before it is chosen.
    on.OpenAll();
    on.TakeMenuRow(u"ins1"_s, u"mnuBrowseEdit_0"_s);
    QCOMPARE(built.count(), 1);
    QCOMPARE(on.Text().SelectedText(), u"instr 7\nendin"_s);
}

void OutlineTest::RoomBelowTheNodesHasTheMenuOfTheTree()
{
    OutlineWindow empty("sr = 44100\n");
    const QPoint message = empty.Tree().visualRect(empty.Tree().model()->index(0, 0)).center();
    empty.Text().SetText(u"instr 7\nendin\n"_s);
    empty.TakeMenuRowAt(message, u"mnuTV_6"_s);
    QCOMPARE(empty.Caption(u"ins1"_s), u"7"_s);
    QVERIFY(empty.Tree().hasFocus());
    // Below all nodes the current one counts.
    const QPoint room(20, empty.Tree().viewport()->height() - 5);
    QVERIFY(!empty.Tree().indexAt(room).isValid());
    empty.TakeMenuRowAt(room, u"mnuTV_3"_s);
    QVERIFY(empty.Tree().isExpanded(empty.RowOf(u"rootins"_s)));
    empty.Tree().setCurrentIndex(empty.RowOf(u"ins1"_s));
    empty.TakeMenuRowAt(room, u"mnuBrowseEdit_0"_s);
    QCOMPARE(empty.Text().SelectedText(), u"instr 7\nendin"_s);

    OutlineWindow other("instr 1\nendin\n", u"a.txt"_s);
    other.TakeMenuRowAt(QPoint(20, 20), u"mnuTV_6"_s);
    QCOMPARE(other.Tree().model()->rowCount(), 0);
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

void OutlineTest::ADoubleClickOpensABranch()
{
    OutlineWindow on;
    const auto doubleClick = [&on](Qt::MouseButton button) {
        const QPoint at = on.Tree().visualRect(on.RowOf(u"rootins"_s)).center();
        QTest::mouseClick(on.Tree().viewport(), button, {}, at);
        QTest::mouseDClick(on.Tree().viewport(), button, {}, at);
        return on.Tree().isExpanded(on.RowOf(u"rootins"_s));
    };
    // The left button's only: the others have no double click.
    for (const Qt::MouseButton button : {Qt::MiddleButton, Qt::RightButton, Qt::BackButton})
        QVERIFY(!doubleClick(button));
    QVERIFY(doubleClick(Qt::LeftButton));
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

void OutlineTest::ANodeOutOfSightIsNotCurrent()
{
    OutlineWindow on;
    QTreeView &tree = on.Tree();
    tree.expand(on.RowOf(u"rootins"_s));
    tree.expand(on.RowOf(u"ins1"_s));
    on.Click(u"ins1lbl1"_s);
    tree.collapse(on.RowOf(u"ins1"_s));
    QCOMPARE(tree.currentIndex(), on.RowOf(u"ins1"_s));
    // Another branch that opens closes this one.
    tree.expand(on.RowOf(u"rootmac"_s));
    QCOMPARE(tree.currentIndex(), on.RowOf(u"rootins"_s));
    QCOMPARE(tree.selectionModel()->selectedIndexes(), QModelIndexList{on.RowOf(u"rootins"_s)});
    on.OpenAll();
    on.Click(u"mac1cal1"_s);
    on.TakeMenuRow(u"rootinc"_s, u"mnuTV_4"_s);
    QCOMPARE(tree.currentIndex(), on.RowOf(u"rootmac"_s));
    // One that is in sight stays.
    on.OpenAll();
    tree.collapse(on.RowOf(u"rootins"_s));
    QCOMPARE(tree.currentIndex(), on.RowOf(u"rootmac"_s));
}

void OutlineTest::RefreshBuildsAnew()
{
    OutlineWindow on;
    on.Text().SetText(u"#define B #2#\n"_s);
    QCOMPARE(on.Caption(u"mac1"_s), u"TONE"_s);
    on.Text().setFocus();
    on.TakeMenuRow(u"rootmac"_s, u"mnuTV_6"_s);
    QCOMPARE(on.Caption(u"mac1"_s), u"B"_s);
    QVERIFY(!on.RowOf(u"rootins"_s).isValid());
    QVERIFY(on.Tree().hasFocus());
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
    row = on.Tree().model()->index(0, 0);
    int opened = 0;
    for (; on.Tree().isExpanded(row); ++opened)
        row = on.Tree().model()->index(0, 0, row);
    QCOMPARE(opened, 100);
    QTest::keyClick(&on.Tree(), Qt::Key_Asterisk);
    on.Tree().grab();
    on.TakeMenuRow(u"rootags"_s, u"mnuTV_4"_s);
}

void OutlineTest::NoMoreOpensThanCanBeLookedAt()
{
    constexpr int Macros = 1500; // with 1,125,750 calls
    OutlineWindow on("sr = 1\n");
    on.window->Documents().OpenFile(
        on.WriteFile(u"many.orc"_s, QByteArray("#define A #1#\n$A\n").repeated(Macros)));
    on.OpenAll();
    const QAbstractItemModel &model = *on.Tree().model();
    const QModelIndex root = model.index(0, 0);
    QVERIFY(on.Tree().isExpanded(root));
    int rows = model.rowCount(root), calls = 0;
    for (int i = 0; i < Macros; ++i) {
        const QModelIndex macro = model.index(i, 0, root);
        calls += model.rowCount(macro);
        rows += on.Tree().isExpanded(macro) ? model.rowCount(macro) : 0;
    }
    QCOMPARE(calls, Macros * (Macros + 1) / 2);
    QVERIFY2(rows > 998'000 && rows <= 1'000'000, qPrintable(QString::number(rows)));
    QVERIFY(on.Tree().isExpanded(model.index(0, 0, root)));
    on.TakeMenuRowAt(QPoint(60, 5), u"mnuTV_4"_s);
    QVERIFY(!on.Tree().isExpanded(root));
}

int main(int argc, char **argv)
{
    return RunUiTest<OutlineTest>(argc, argv);
}

#include "test_outline.moc"
