// SPDX-License-Identifier: GPL-3.0-or-later
// The tree of related files, driven by the mouse and by keys.

#include "language/ui/languageroom.h"
#include "shell/command.h"
#include "shell/documentsteps.h"
#include "shell/recentlist.h"
#include "shell/statustexts.h"
#include "shell/ui/commands.h"
#include "shell/ui/icons.h"
#include "support/barewindow.h"
#include "support/editorwindow.h"
#include "support/uitest.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QMenu>
#include <QPalette>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A window with a piece, its related files in sight, and rooms for sounds and files that write down what is
/// asked of them.
struct RelatedWindow : BareWindow, SoundStep, FileStep {
    QStringList calls;
    bool filesServed = true;
    std::function<bool()> onOperation = [] { return false; };
    std::unique_ptr<LanguageRoom> room;

    explicit RelatedWindow(const QByteArray &orchestra = "#include \"part.orc\"\n#include \"missing.orc\"\n"
                                                         "a1 soundin \"kick.wav\"\n")
    {
        steps.sound.Take(*this);
        steps.files.Take(*this);
        room = std::make_unique<LanguageRoom>(context);
        WriteFile(u"part.orc"_s, "#include \"deep.inc\"\n");
        WriteFile(u"deep.inc"_s);
        WriteFile(u"kick.wav"_s, "12345");
        WriteFile(u"song.sco"_s);
        WriteFile(u"song.txt"_s);
        WriteFile(u"song.orc"_s, orchestra);
        window.setCentralWidget(&panel);
        window.resize(400, 500);
        window.show();
        commands.Run(Cmd::mnuRelated);
        documents.OpenFile(Path(u"song.orc"_s));
    }

    void MCIopen(const QString &path) override { calls += u"play "_s + path; }
    bool ServesFiles() const override { return filesServed; }
    void OpenWith(const QString &path) override { calls += u"with "_s + path; }
    bool RunFileOperation(FileOperation operation, const QString &path) override
    {
        calls += u"%1 %2"_s.arg(int(operation)).arg(path);
        return onOperation();
    }

    QString Path(const QString &name) const { return folder.filePath(name); }
    QTreeView &Tree() { return Find<QTreeView>(u"tvwRelated"_s); }
    /// The names as the tree has them, a blank before each for its level; closed branches are left out.
    QStringList Rows()
    {
        QStringList rows;
        for (QModelIndex row = Tree().model()->index(0, 0); row.isValid(); row = Tree().indexBelow(row)) {
            int level = 0;
            for (QModelIndex above = row.parent(); above.isValid(); above = above.parent())
                ++level;
            rows += QString(level, u' ') + row.data().toString();
        }
        return rows;
    }
    QModelIndex RowOf(const QString &name)
    {
        QModelIndex row = Tree().model()->index(0, 0);
        while (row.isValid() && row.data().toString() != name)
            row = Tree().indexBelow(row);
        return row;
    }
    QPoint PlaceOf(const QString &name) { return Tree().visualRect(RowOf(name)).center(); }
    void Click(const QString &name, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(Tree().viewport(), button, {}, PlaceOf(name));
    }
    void DoubleClick(const QString &name, Qt::MouseButton button = Qt::LeftButton)
    {
        Click(name, button);
        QTest::mouseDClick(Tree().viewport(), button, {}, PlaceOf(name));
    }
    /// The right mouse button at a place of the tree; the menu that came, if one did, is closed again.
    bool OpenMenu(const QPoint &at)
    {
        QTest::mouseClick(Tree().viewport(), Qt::RightButton, {}, at);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, Tree().viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(Tree().viewport(), &event);
        return CloseMenu();
    }
    bool CloseMenu()
    {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (menu)
            menu->close();
        return menu && menu->objectName() == u"mnuRelatedPopup"_s;
    }
    QAction &Row(const QString &name) { return Find<QAction>(name); }
    QString Info(const QString &name) { return FileInfoLine(Path(name), desktop); }
};

/// The rows of the menu that need a room for files, and what they ask of it.
const std::pair<QString, QString> FileRows[] = {
    {u"mnuRelatedShell_1"_s, u"with"_s}, {u"mnuRelatedShell_3"_s, u"0"_s}, {u"mnuRelatedShell_4"_s, u"1"_s},
    {u"mnuRelatedShell_5"_s, u"2"_s},    {u"mnuRelatedShell_6"_s, u"3"_s}, {u"mnuRelatedShell_10"_s, u"5"_s}};

class RelatedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheTreeIsOpenAndItsFirstFileSelected();
    void EachFileHasThePictureOfItsType();
    void AFileThatIsMissingIsGrey();
    void ADoubleClickOpensAFileAndKeepsTheTree();
    void ADoubleClickOnASoundPlaysIt();
    void ADoubleClickIsThatOfTheLeftButton();
    void EnterIsADoubleClick();
    void SelectingAFileTellsAboutIt();
    void TheMenuOpensAFile();
    void TheMenuOpensInTheShell();
    void TheMenuRunsTheFileOperations();
    void RowsWithoutAPurposeAreDisabled();
    void TheMenuComesOverAFileOnly();
    void TheMenuComesByKey();
    void TheTreeFollowsAFileOperation();
    void TheMenuKeepsItsFileWhenTheTreeChanges();
    void OpeningFromElsewhereBuildsAnew();
    void TurningOffEmptiesAndTurningOnBuilds();
    void WithoutAFileTheTreeIsEmpty();
    void LongChainsOpen();
    void NamesOfManyLinesAreRows();
    void InTheWindowFilesAreRenamedAndDeleted();
};

void RelatedTest::TheTreeIsOpenAndItsFirstFileSelected()
{
    RelatedWindow on;
    QCOMPARE(on.Rows(), (QStringList{u"song.orc"_s, u" part.orc"_s, u"  deep.inc"_s, u" missing.orc"_s,
                                     u" kick.wav"_s, u"song.sco"_s, u"song.txt"_s}));
    QCOMPARE(on.Tree().currentIndex(), on.RowOf(u"song.orc"_s));
    QVERIFY(on.status.shown.contains(u"Related files..."_s));
    QVERIFY(!on.status.shown.contains(on.Info(u"song.orc"_s)));
    QVERIFY(!on.view.busy);
}

void RelatedTest::EachFileHasThePictureOfItsType()
{
    RelatedWindow on;
    const std::pair<QString, QString> pictures[] = {
        {u"song.orc"_s, u"orchestra"_s}, {u"song.sco"_s, u"score"_s},       {u"kick.wav"_s, u"sound"_s},
        {u"song.txt"_s, u"new"_s},       {u"missing.orc"_s, u"notfound"_s}, {u"part.orc"_s, u"orchestra"_s}};
    for (const auto &[name, image] : pictures) {
        const QImage shown = Picture(on.RowOf(name).data(Qt::DecorationRole).value<QIcon>());
        QVERIFY(!shown.isNull());
        QCOMPARE(shown, Picture(Icons::Load(image)));
    }
}

void RelatedTest::AFileThatIsMissingIsGrey()
{
    RelatedWindow on;
    QCOMPARE(on.RowOf(u"missing.orc"_s).data(Qt::ForegroundRole).value<QBrush>(),
             QApplication::palette().brush(QPalette::Disabled, QPalette::Text));
    QVERIFY(!on.RowOf(u"part.orc"_s).data(Qt::ForegroundRole).isValid());
    QCOMPARE(on.RowOf(u"part.orc"_s).data(Qt::ToolTipRole).toString(), on.Path(u"part.orc"_s));
    QCOMPARE(on.RowOf(u"missing.orc"_s).data(Qt::ToolTipRole).toString(), u"missing.orc"_s);
    on.DoubleClick(u"missing.orc"_s);
    QCOMPARE(on.document.CurrentFile, on.Path(u"song.orc"_s));
    QVERIFY(on.calls.isEmpty());
}

void RelatedTest::ADoubleClickOpensAFileAndKeepsTheTree()
{
    RelatedWindow on;
    const QStringList before = on.Rows();
    const QStringList recent = on.view.recentFiles;
    on.DoubleClick(u"part.orc"_s);
    QCOMPARE(on.document.CurrentFile, on.Path(u"part.orc"_s));
    QCOMPARE(on.control.Text(), u"#include \"deep.inc\"\n"_s);
    QCOMPARE(on.Rows(), before);
    QCOMPARE(on.view.recentFiles, recent);
    on.DoubleClick(u"song.txt"_s);
    QCOMPARE(on.document.CurrentFile, on.Path(u"song.txt"_s));
}

void RelatedTest::ADoubleClickOnASoundPlaysIt()
{
    RelatedWindow on;
    on.DoubleClick(u"kick.wav"_s);
    QCOMPARE(on.calls, QStringList{u"play "_s + on.Path(u"kick.wav"_s)});
    QCOMPARE(on.document.CurrentFile, on.Path(u"song.orc"_s));
}

void RelatedTest::ADoubleClickIsThatOfTheLeftButton()
{
    RelatedWindow on;
    for (const Qt::MouseButton button : {Qt::MiddleButton, Qt::RightButton, Qt::BackButton}) {
        on.DoubleClick(u"part.orc"_s, button);
        on.DoubleClick(u"kick.wav"_s, button);
        QCOMPARE(on.document.CurrentFile, on.Path(u"song.orc"_s));
        QVERIFY(on.calls.isEmpty());
    }
}

void RelatedTest::EnterIsADoubleClick()
{
    RelatedWindow on;
    on.Tree().setCurrentIndex(on.RowOf(u"kick.wav"_s));
    QTest::keyClick(&on.Tree(), Qt::Key_Return);
    QTest::keyClick(&on.Tree(), Qt::Key_Enter);
    QCOMPARE(on.calls, (QStringList{2, u"play "_s + on.Path(u"kick.wav"_s)}));
    QTest::keyClick(&on.Tree(), Qt::Key_Down);
    QTest::keyClick(&on.Tree(), Qt::Key_Return);
    QCOMPARE(on.document.CurrentFile, on.Path(u"song.sco"_s));
}

void RelatedTest::SelectingAFileTellsAboutIt()
{
    RelatedWindow on;
    on.Click(u"kick.wav"_s);
    QCOMPARE(on.status.text, on.Info(u"kick.wav"_s));
    QVERIFY(on.status.text.endsWith(u" - 5 bytes"_s));
    QTest::keyClick(&on.Tree(), Qt::Key_Down);
    QCOMPARE(on.status.text, on.Info(u"song.sco"_s));
    on.Click(u"missing.orc"_s);
    QCOMPARE(on.status.text, QString());
    QTest::keyClick(&on.Tree(), Qt::Key_Up);
    QCOMPARE(on.status.text, on.Info(u"deep.inc"_s));
    // The line may have gone since.
    on.status.Show({});
    on.Click(u"deep.inc"_s);
    QCOMPARE(on.status.text, on.Info(u"deep.inc"_s));
}

void RelatedTest::TheMenuOpensAFile()
{
    RelatedWindow on;
    QVERIFY(on.OpenMenu(on.PlaceOf(u"kick.wav"_s)));
    QCOMPARE(on.Tree().currentIndex(), on.RowOf(u"kick.wav"_s));
    on.Row(u"mnuRelatedItem_0"_s).trigger();
    QCOMPARE(on.calls, QStringList{u"play "_s + on.Path(u"kick.wav"_s)});
    QVERIFY(on.OpenMenu(on.PlaceOf(u"song.sco"_s)));
    on.Row(u"mnuRelatedItem_0"_s).trigger();
    QCOMPARE(on.document.CurrentFile, on.Path(u"song.sco"_s));
}

void RelatedTest::TheMenuOpensInTheShell()
{
    RelatedWindow on;
    QVERIFY(on.OpenMenu(on.PlaceOf(u"kick.wav"_s)));
    on.desktop.ExpectShellRun({.file = on.Path(u"kick.wav"_s), .folder = on.folder.path()});
    on.Row(u"mnuRelatedShell_0"_s).trigger();
    on.desktop.ExpectShellRun({.file = on.folder.path(), .folder = QFileInfo(on.folder.path()).path()});
    on.Row(u"mnuRelatedShell_8"_s).trigger();
    on.desktop.CheckAllCame();
}

void RelatedTest::TheMenuRunsTheFileOperations()
{
    RelatedWindow on;
    const QStringList before = on.Rows();
    QVERIFY(on.OpenMenu(on.PlaceOf(u"part.orc"_s)));
    for (const auto &[row, asked] : FileRows) {
        on.calls.clear();
        QVERIFY(on.Row(row).isEnabled());
        on.Row(row).trigger();
        QCOMPARE(on.calls, QStringList{asked + u' ' + on.Path(u"part.orc"_s)});
    }
    QCOMPARE(on.Rows(), before);
}

void RelatedTest::RowsWithoutAPurposeAreDisabled()
{
    RelatedWindow on;
    QVERIFY(on.OpenMenu(on.PlaceOf(u"missing.orc"_s)));
    for (const QString &row : {u"mnuRelatedItem_0"_s, u"mnuRelatedShell_0"_s, u"mnuRelatedShell_8"_s})
        QVERIFY(!on.Row(row).isEnabled());
    for (const auto &[row, asked] : FileRows)
        QVERIFY(!on.Row(row).isEnabled());

    on.filesServed = false;
    QVERIFY(on.OpenMenu(on.PlaceOf(u"part.orc"_s)));
    for (const QString &row : {u"mnuRelatedItem_0"_s, u"mnuRelatedShell_0"_s, u"mnuRelatedShell_8"_s})
        QVERIFY(on.Row(row).isEnabled());
    for (const auto &[row, asked] : FileRows)
        QVERIFY(!on.Row(row).isEnabled());
}

void RelatedTest::TheMenuComesOverAFileOnly()
{
    RelatedWindow on;
    QVERIFY(!on.OpenMenu(on.Tree().viewport()->rect().bottomRight() - QPoint(5, 5)));
}

void RelatedTest::TheMenuComesByKey()
{
    RelatedWindow on;
    on.Tree().setCurrentIndex(on.RowOf(u"song.sco"_s));
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&on.Tree(), &event);
    QVERIFY(on.CloseMenu());
    on.Row(u"mnuRelatedItem_0"_s).trigger();
    QCOMPARE(on.document.CurrentFile, on.Path(u"song.sco"_s));
}

void RelatedTest::TheTreeFollowsAFileOperation()
{
    RelatedWindow on;
    QVERIFY(on.OpenMenu(on.PlaceOf(u"song.sco"_s)));
    on.onOperation = [&on] { return QFile::rename(on.Path(u"song.sco"_s), on.Path(u"song two.sco"_s)); };
    on.Row(u"mnuRelatedShell_5"_s).trigger();
    QVERIFY(on.Rows().contains(u"song two.sco"_s));
    QVERIFY(!on.Rows().contains(u"song.sco"_s));
}

void RelatedTest::TheMenuKeepsItsFileWhenTheTreeChanges()
{
    RelatedWindow on;
    QVERIFY(on.OpenMenu(on.PlaceOf(u"song.txt"_s)));
    on.documents.OpenFile(on.Path(u"part.orc"_s));
    on.Row(u"mnuRelatedShell_6"_s).trigger();
    QCOMPARE(on.calls, QStringList{u"3 "_s + on.Path(u"song.txt"_s)});
}

void RelatedTest::OpeningFromElsewhereBuildsAnew()
{
    RelatedWindow on;
    on.documents.OpenFile(on.Path(u"song.sco"_s), OpenOrigin::RelatedFiles);
    QCOMPARE(on.Rows().value(1), u" part.orc"_s);
    on.documents.OpenFile(on.Path(u"part.orc"_s));
    QCOMPARE(on.Rows(), (QStringList{u"part.orc"_s, u" deep.inc"_s}));
}

void RelatedTest::TurningOffEmptiesAndTurningOnBuilds()
{
    RelatedWindow on;
    on.commands.Run(Cmd::mnuRelated);
    QCOMPARE(on.Tree().model()->rowCount(), 0);
    on.documents.OpenFile(on.Path(u"song.sco"_s));
    QCOMPARE(on.Tree().model()->rowCount(), 0);
    on.commands.Run(Cmd::mnuRelated);
    QCOMPARE(on.Rows().size(), 7);
    QVERIFY(on.Tree().isVisible());
}

void RelatedTest::WithoutAFileTheTreeIsEmpty()
{
    RelatedWindow on;
    on.documents.NewFile(FileKind::Orchestra, {});
    QCOMPARE(on.Tree().model()->rowCount(), 0);
    on.commands.Run(Cmd::mnuRelated);
    on.commands.Run(Cmd::mnuRelated);
    QCOMPARE(on.Tree().model()->rowCount(), 0);
    QTest::keyClick(&on.Tree(), Qt::Key_Return);
    QVERIFY(!on.OpenMenu(QPoint(5, 5)));
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&on.Tree(), &event);
    QVERIFY(!on.CloseMenu());
}

void RelatedTest::LongChainsOpen()
{
    constexpr int Length = 3000;
    RelatedWindow on("#include \"in0.inc.orc\"\n");
    for (int i = 0; i < Length; ++i)
        on.WriteFile(u"in%1.inc.orc"_s.arg(i), "#include \"in" + QByteArray::number(i + 1) + ".inc.orc\"\n");
    on.documents.OpenFile(on.Path(u"song.orc"_s));
    QCOMPARE(on.Rows().size(), Length + 4);
    on.Tree().scrollToBottom();
    on.Tree().repaint();
}

void RelatedTest::NamesOfManyLinesAreRows()
{
    RelatedWindow on("\"two\nlines.wav\" #include <" + QByteArray(5000, 'x') + ">\n#include \"<b>x</b>\"\n");
    on.WriteFile(u"two\nlines.wav"_s);
    on.documents.OpenFile(on.Path(u"song.orc"_s));
    QCOMPARE(on.Rows().value(1), u" two lines.wav"_s);
    QCOMPARE(on.Rows().value(2).size(), 301);
    const QModelIndex marked = on.RowOf(u"<b>x</b>"_s);
    QVERIFY(marked.data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;x"_s));
    on.DoubleClick(u"two lines.wav"_s);
    QCOMPARE(on.calls, QStringList{u"play "_s + on.Path(u"two\nlines.wav"_s)});
}

void RelatedTest::InTheWindowFilesAreRenamedAndDeleted()
{
    EditorWindow on;
    on.WriteFile(u"song.sco"_s, "");
    const QString song = on.WriteFile(u"song.orc"_s, "#include \"song.sco\"\n");
    on.Open({song});
    auto &tree = on.Find<QTreeView>(u"tvwRelated"_s);
    const QAbstractItemModel &files = *tree.model();
    const auto openMenu = [&](const QModelIndex &row) {
        const QPoint at = tree.visualRect(row).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, tree.viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(tree.viewport(), &event);
        QVERIFY(QApplication::activePopupWidget());
        QApplication::activePopupWidget()->close();
    };
    QCOMPARE(files.rowCount(), 2);

    openMenu(files.index(1, 0));
    on.desktop.ExpectInput(u"Rename"_s, u"Rename 'song.sco' to:"_s, u"song2.sco"_s);
    on.Row(u"mnuRelatedShell_5"_s).trigger();
    QVERIFY(QFile::exists(on.folder.filePath(u"song2.sco"_s)));
    QCOMPARE(files.index(1, 0).data().toString(), u"song2.sco"_s);
    QVERIFY(files.index(0, 0, files.index(0, 0)).data(Qt::ForegroundRole).isValid());

    // The document goes with its file.
    openMenu(files.index(0, 0));
    on.desktop.ExpectInput(u"Rename"_s, u"Rename 'song.orc' to:"_s, u"tune.orc"_s);
    on.Row(u"mnuRelatedShell_5"_s).trigger();
    QCOMPARE(on.window->Context().document.CurrentFile, on.folder.filePath(u"tune.orc"_s));
    QCOMPARE(files.rowCount(), 1);

    openMenu(files.index(0, 0));
    on.desktop.ExpectMessage(
        {.text = u"Do you want to move "_s + on.folder.filePath(u"tune.orc"_s) + u" to the trash?"_s,
         .icon = BoxIcon::Question,
         .buttons = BoxButtons::YesNo,
         .defaultAnswer = BoxAnswer::Yes},
        BoxAnswer::Yes);
    on.Row(u"mnuRelatedShell_6"_s).trigger();
    QVERIFY(!QFile::exists(on.folder.filePath(u"tune.orc"_s)));
    QVERIFY(on.window->Context().document.CurrentFile.isEmpty());
    QCOMPARE(files.rowCount(), 0);
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<RelatedTest>(argc, argv);
}

#include "test_related.moc"
