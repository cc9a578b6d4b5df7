// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/ui/languageroom.h"
#include "platform/ui/textcontrol.h"
#include "player/playerkeys.h"
#include "player/ui/playerroom.h"
#include "repository/ui/repositoryroom.h"
#include "run/presetkeys.h"
#include "run/presetstore.h"
#include "run/ui/runroom.h"
#include "shell/bands.h"
#include "shell/command.h"
#include "shell/documentlifecycle.h"
#include "shell/documentsteps.h"
#include "shell/layoutkeys.h"
#include "shell/toolkeys.h"
#include "shell/ui/appearance.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "shell/ui/layoutparts.h"
#include "shell/ui/menuname.h"
#include "shell/ui/menutable.h"
#include "shell/ui/sidepanel.h"
#include "shell/ui/windowcontext.h"
#include "shell/windowsteps.h"
#include "support/barewindow.h"
#include "support/uitest.h"
#include "texttools/ui/texttoolsroom.h"

#include <QAbstractItemModel>
#include <QByteArray>
#include <QComboBox>
#include <QFile>
#include <QMainWindow>
#include <QMenuBar>
#include <QScopeGuard>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

class RoomsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ABandWithoutItsRoomTakesNoPlace();
    void TheLanguageTakesItsSteps();
    void ATreeIsEmptiedWithItsBand();
    void ANewDocumentEmptiesTheRelatedFiles();
    void TheOpcodesAreLoadedWhenTheirBandIsShown();
    void PresetsPlugInWithBarMenuAndKeys();
    void LabelsOfPresetsFollowTheirRow();
    void TheFoldersOfTheToolsAreKnownWithTheTools();
    void TheTextToolsBindTheirCommand();
    void TheRepositoryBindsItsCommands();
    void EachRoomKeepsItsPartsOfTheLayout();
    void APartThatNobodyKeepsIsNotWritten();
};

void RoomsTest::ABandWithoutItsRoomTakesNoPlace()
{
    BareWindow on;
    QVERIFY(!on.bands.IsAnyBandVisible());
    QCOMPARE(on.bands.heightForWidth(600), 0);
    const PlayerRoom room(on.context);
    QVERIFY(on.Has(WindowBand::Player));
    QVERIFY(!on.Has(WindowBand::Opcodes));
    QVERIFY(!on.Has(WindowBand::Presets));
    QVERIFY(on.bands.heightForWidth(600) > 0);
    QVERIFY(on.bands.isAncestorOf(&on.Find<QToolBar>(u"tbPlayer"_s)));
}

void RoomsTest::TheLanguageTakesItsSteps()
{
    BareWindow on;
    const LanguageRoom room(on.context);
    on.windowSteps.Run(WindowMoment::Tables);
    on.documents.OpenFile(on.WriteFile(u"x.orc"_s, "a1 oscil 1\n"));
    QCOMPARE(on.control.StyleAt(3), StyleClass::Opcode);
    QCOMPARE(on.control.StyleAt(0), StyleClass::Text);
    QVERIFY(!on.control.CanUndo());

    QVERIFY(!on.steps.outline->OutlineShown());
    on.commands.Run(Cmd::mnuBrowse);
    QVERIFY(on.steps.outline->OutlineShown());
    QVERIFY(!on.steps.relatedFiles->RelatedFilesShown());
    on.commands.Run(Cmd::mnuRelated);
    QVERIFY(on.steps.relatedFiles->RelatedFilesShown());
    on.documents.OpenFile(on.document.CurrentFile);
    QVERIFY(on.status.shown.contains(u"Code outline..."_s));
    QVERIFY(on.status.shown.contains(u"Related files..."_s));
}

void RoomsTest::ATreeIsEmptiedWithItsBand()
{
    BareWindow on;
    const LanguageRoom room(on.context);
    on.document.DocumentKind = FileKind::Score;
    on.document.CurrentFile = on.WriteFile(u"piece.sco"_s);
    const std::pair<QString, Command> trees[] = {{u"tvwBrowse"_s, Cmd::mnuBrowse},
                                                 {u"tvwRelated"_s, Cmd::mnuRelated}};
    for (const auto &[name, row] : trees) {
        const PanelBand band = name == u"tvwBrowse"_s ? PanelBand::Browse : PanelBand::Related;
        auto &tree = on.Find<QTreeView>(name);
        QVERIFY(!on.panel.IsBandVisible(band));
        on.commands.Run(row);
        QVERIFY(on.panel.IsBandVisible(band));
        QVERIFY(on.commands.IsChecked(row));
        QCOMPARE(tree.model()->rowCount(), 1);
        on.commands.Run(row);
        QVERIFY(!on.panel.IsBandVisible(band));
        QVERIFY(!on.commands.IsChecked(row));
        QCOMPARE(tree.model()->rowCount(), 0);
    }
}

void RoomsTest::ANewDocumentEmptiesTheRelatedFiles()
{
    BareWindow on;
    const LanguageRoom room(on.context);
    on.commands.Run(Cmd::mnuRelated);
    const QAbstractItemModel &files = *on.Find<QTreeView>(u"tvwRelated"_s).model();
    on.documents.OpenFile(on.WriteFile(u"piece.sco"_s));
    QCOMPARE(files.rowCount(), 1);
    on.documents.NewFile(FileKind::Score, {});
    QCOMPARE(files.rowCount(), 0);
}

void RoomsTest::TheOpcodesAreLoadedWhenTheirBandIsShown()
{
    BareWindow on;
    const LanguageRoom room(on.context);
    const auto &combo = on.Find<QComboBox>(u"cmbOpcodes"_s);
    on.bands.SetBandVisible(WindowBand::Opcodes, false);
    on.windowSteps.Run(WindowMoment::Lists);
    QCOMPARE(combo.count(), 0);
    on.bands.SetBandVisible(WindowBand::Player, true);
    QCOMPARE(combo.count(), 0);
    on.bands.SetBandVisible(WindowBand::Opcodes, true);
    QCOMPARE(combo.count(), 4);
    on.bands.SetBandVisible(WindowBand::Opcodes, false);
    on.bands.SetBandVisible(WindowBand::Opcodes, true);
    QCOMPARE(combo.count(), 4);
}

void RoomsTest::PresetsPlugInWithBarMenuAndKeys()
{
    BareWindow on;
    PresetStore store(on.settings);
    RunRoom room(on.context);
    on.windowSteps.Run(WindowMoment::Bars);
    const auto &bar = on.Find<QToolBar>(u"tbPresets"_s);
    QVERIFY(bar.actions().isEmpty());
    on.settings.SaveSetting(u"Presets"_s, u"One"_s, {});
    on.settings.SaveSetting(u"One"_s, u"Command"_s, u"/bin/one"_s);
    room.RebuildPresets();
    QCOMPARE(bar.actions().size(), 1);
    QCOMPARE(on.commands.Action(Cmd::mnuPreset[0])->text(), u"&One\tCtrl+1"_s);

    on.window.show();
    on.desktop.ExpectShellRun({.file = u"/bin/one"_s, .folder = u"/bin"_s});
    QTest::keyClick(&on.control, Qt::Key_1, Qt::ControlModifier);
    on.desktop.CheckAllCame();
    // Another window's keys are its own.
    QWidget other;
    QTest::keyClick(&other, Qt::Key_1, Qt::ControlModifier);
    on.desktop.CheckAllCame();
}

void RoomsTest::LabelsOfPresetsFollowTheirRow()
{
    BareWindow on;
    on.settings.SaveFlag(Keys::PresetsLabels, true);
    const RunRoom room(on.context);
    const auto &bar = on.Find<QToolBar>(u"tbPresets"_s);
    QCOMPARE(bar.toolButtonStyle(), Qt::ToolButtonIconOnly);
    on.windowSteps.Run(WindowMoment::Bars);
    QVERIFY(on.commands.IsChecked(Cmd::mnuLabels[LabelPlace::Presets]));
    QCOMPARE(bar.toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    on.commands.Run(Cmd::mnuLabels[LabelPlace::Presets]);
    QVERIFY(!on.commands.IsChecked(Cmd::mnuLabels[LabelPlace::Presets]));
    QCOMPARE(bar.toolButtonStyle(), Qt::ToolButtonIconOnly);
    QVERIFY(!on.commands.IsBound(Cmd::mnuLabels[LabelPlace::Toolbar]));
}

void RoomsTest::TheFoldersOfTheToolsAreKnownWithTheTools()
{
    const QByteArray path = qgetenv("PATH");
    const auto restore = qScopeGuard([&] { qputenv("PATH", path); });
    qputenv("PATH", "/no/such/folder"); // where no csound is
    BareWindow on;
    const RunRoom room(on.context);
    on.appearance.Apply(Look::ToolPaths);
    on.commands.MenuOpening(Menu::mnuView);
    QVERIFY(!on.commands.IsEnabled(Cmd::mnuDIR[KnownFolder::Csound]));
    QVERIFY(on.commands.IsEnabled(Cmd::mnuDIR[KnownFolder::Program]));
    on.settings.SaveText(Keys::Csound, u"/opt/csound/csound"_s);
    on.commands.MenuOpening(Menu::mnuView);
    QVERIFY(!on.commands.IsEnabled(Cmd::mnuDIR[KnownFolder::Csound])); // in memory as they were read
    on.appearance.Apply(Look::ToolPaths);
    on.commands.MenuOpening(Menu::mnuView);
    QVERIFY(on.commands.IsEnabled(Cmd::mnuDIR[KnownFolder::Csound]));
    on.desktop.ExpectShellRun({.verb = u"open"_s, .file = u"/opt/csound"_s});
    on.commands.Run(Cmd::mnuDIR[KnownFolder::Csound]);
    on.desktop.CheckAllCame();
}

void RoomsTest::TheTextToolsBindTheirCommand()
{
    BareWindow on;
    QVERIFY(!on.commands.IsBound(Cmd::mnuTabSpace));
    const TextToolsRoom room(on.context);
    QVERIFY(on.commands.IsBound(Cmd::mnuTabSpace));
}

void RoomsTest::TheRepositoryBindsItsCommands()
{
    BareWindow on;
    QVERIFY(!on.commands.IsBound(Cmd::mnuCodeRes));
    const RepositoryRoom room(on.context);
    QVERIFY(on.commands.IsBound(Cmd::mnuCodeRes) && on.commands.IsEnabled(Cmd::mnuCodeRes));
    QVERIFY(on.commands.IsBound(Cmd::mnuCodeResAdd) && on.commands.IsEnabled(Cmd::mnuCodeResAdd));
}

void RoomsTest::EachRoomKeepsItsPartsOfTheLayout()
{
    BareWindow on;
    const LanguageRoom language(on.context);
    const RunRoom run(on.context);
    const PlayerRoom player(on.context);
    on.settings.SaveFlag(Keys::CodeOutline, false);
    on.settings.SaveFlag(Keys::LoopMode, true);
    for (const LayoutPart part : PartsOfThePanels)
        on.layout.Restore(part);
    QVERIFY(!on.commands.IsChecked(Cmd::mnuBrowse));
    QVERIFY(on.commands.IsChecked(Cmd::mnuRelated));
    QVERIFY(on.commands.IsChecked(Cmd::mnuLoop));

    on.settings.DeleteSetting(u"Options"_s);
    on.layout.SaveAll();
    QStringList written;
    for (const auto &[key, value] : on.settings.GetAllSettings(u"Options"_s))
        written.append(key + u' ' + value);
    // In the order of the parts and not of the rooms.
    QCOMPARE(written,
             (QStringList{u"PresetsLabels 0"_s, u"CodeOutline 0"_s, u"RelatedFiles -1"_s, u"LoopMode -1"_s}));
}

void RoomsTest::APartThatNobodyKeepsIsNotWritten()
{
    BareWindow on;
    on.settings.SaveFlag(Keys::LoopMode, true);
    for (const LayoutPart part : PartsOfThePanels)
        on.layout.Restore(part);
    QVERIFY(!on.commands.IsChecked(Cmd::mnuLoop));
    on.layout.SaveAll();
    QVERIFY(on.settings.Flag(Keys::LoopMode));
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<RoomsTest>(argc, argv);
}

#include "test_rooms.moc"
