// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/canceldialogs.h"
#include "run/macroexpansion.h"
#include "run/toolpaths.h"
#include "run/ui/frmflags.h"
#include "run/ui/frmimages.h"
#include "run/ui/frmpresets.h"
#include "run/ui/presetimages.h"
#include "shell/layoutkeys.h"
#include "shell/ui/icons.h"
#include "support/boxes.h"
#include "support/modaldriver.h"
#include "support/testcontext.h"
#include "support/uitest.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QToolTip>
#include <sys/stat.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

using Fields = std::vector<std::pair<QString, QString>>;

/// The preset editor over a store of its own and a scripted desktop. The program /opt/csound is the tool path
/// of Csound.
class Editor
{
public:
    Editor() { context.desktop.executableKinds[u"/opt/csound"_s] = u"ELF 64-bit"_s; }

    void Add(const QString &name, const Fields &fields = {})
    {
        context.settings.SaveSetting(u"Presets"_s, name, {});
        for (const auto &[key, value] : fields)
            context.settings.SaveSetting(name, key, value);
    }
    frmPresets &Open()
    {
        dialog = std::make_unique<frmPresets>(run);
        dialog->show();
        dialog->activateWindow();
        if (!QTest::qWaitForWindowActive(dialog.get()))
            qFatal("the dialog does not become active");
        return *dialog;
    }

    template <typename Widget> Widget &Find(const QString &name) const
    {
        auto *found = dialog->findChild<Widget *>(name);
        if (!found)
            qFatal("no child named %s", qPrintable(name));
        return *found;
    }
    QLineEdit &Field(const QString &name) const { return Find<QLineEdit>(name); }
    QComboBox &List(const QString &name) const { return Find<QComboBox>(name); }
    QCheckBox &Check(const QString &name) const { return Find<QCheckBox>(name); }
    QPushButton &Button(const QString &name) const { return Find<QPushButton>(name); }
    IconView &Preview() const { return Find<IconView>(u"imgBitmap"_s); }
    QTabWidget &Pages() const { return Find<QTabWidget>(u"TbsPreset"_s); }
    QString Name() const { return List(u"cmbPreset"_s).currentText(); }
    void ClickTool(const QString &key)
    {
        QTest::mouseClick(&Find<QToolButton>(u"tlbPreset_"_s + key), Qt::LeftButton);
    }
    /// The enabled tools in their order, as letters: n s d u o p.
    QString Tools() const
    {
        QString text;
        for (const QString &key : {u"new"_s, u"save"_s, u"delete"_s, u"up"_s, u"down"_s, u"preset"_s})
            text += Find<QToolButton>(u"tlbPreset_"_s + key).isEnabled() ? (key == u"down"_s ? u'o' : key[0])
                                                                         : u'-';
        return text;
    }
    /// Types a name into the list of presets, in place of what stands there.
    void TypeName(const QString &name)
    {
        QLineEdit *edit = List(u"cmbPreset"_s).lineEdit();
        List(u"cmbPreset"_s).setFocus();
        edit->selectAll();
        if (name.isEmpty())
            QTest::keyClick(&List(u"cmbPreset"_s), Qt::Key_Delete);
        QTest::keyClicks(&List(u"cmbPreset"_s), name);
    }
    /// Chooses a row as the mouse does in the open list.
    void Choose(int row)
    {
        QComboBox &list = List(u"cmbPreset"_s);
        list.setCurrentIndex(row);
        Q_EMIT list.activated(row);
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers held = Qt::ControlModifier) const
    {
        QTest::keyClick(dialog->focusWidget() ? dialog->focusWidget() : dialog.get(), key, held);
    }
    QStringList Rows() const
    {
        QStringList rows;
        for (int i = 0; i < List(u"cmbPreset"_s).count(); ++i)
            rows.append(List(u"cmbPreset"_s).itemText(i));
        return rows;
    }
    QStringList Stored() { return PresetStore(context.settings).ReadPresetList(); }
    QString Stored(const QString &preset, const QString &key)
    {
        return context.settings.GetSetting(preset, key, u"(absent)"_s);
    }
    void ExpectReplace(const QString &name, BoxAnswer answer)
    {
        context.desktop.ExpectMessage(
            {.text = u"Replace saved parameters for '"_s + name + u"' with current settings?"_s,
             .icon = BoxIcon::Information,
             .buttons = BoxButtons::YesNo},
            answer);
    }
    void ExpectDiscard(const QString &preset, BoxAnswer answer, std::function<void()> during = {})
    {
        context.desktop.ExpectMessage(
            {.text = u"The changes to "_s + preset + u" are not saved. Discard them?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo,
             .defaultAnswer = BoxAnswer::No},
            answer, std::move(during));
    }
    void ExpectDelete(const QString &name, BoxAnswer answer)
    {
        context.desktop.ExpectMessage({.text = u"Delete the '"_s + name + u"' preset?"_s,
                                       .icon = BoxIcon::Information,
                                       .buttons = BoxButtons::YesNo,
                                       .defaultAnswer = BoxAnswer::No},
                                      answer);
    }
    /// A picture file of one colour. @return its path
    QString WritePicture(const QString &name, const QColor &colour, int side = 16) const
    {
        QImage image(side, side, QImage::Format_RGB32);
        image.fill(colour);
        const QString path = context.folder.filePath(name);
        if (!image.save(path))
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    TestContext context;
    ToolPaths tools{.Csound = u"/opt/csound"_s};
    RunContext run{context.editor, tools, context.windows};
    std::unique_ptr<frmPresets> dialog;
};

const Fields FullRecord = {{u"Command"_s, u"$CSOUND$"_s}, {u"Args"_s, u"-W -o $WAVE$"_s},
                           {u"Folder"_s, u"$DIR$"_s},     {u"Window"_s, u"2"_s},
                           {u"SaveFirst"_s, u"1"_s},      {u"Name"_s, u"Label"_s},
                           {u"Tooltip"_s, u"Tip"_s},      {u"CreateButton"_s, u"0"_s},
                           {u"NewGroup"_s, u"1"_s},       {u"2ndCommand"_s, u"$PLAYER$"_s},
                           {u"2ndArgs"_s, u"$WAVE$"_s},   {u"2ndFolder"_s, u"/snd"_s},
                           {u"2ndWindow"_s, u"3"_s},      {u"Image"_s, u"104"_s}};

} // namespace

Q_DECLARE_METATYPE(std::function<void(Editor &)>)

class TestFrmPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void WordsOfTheFields_data();
    void WordsOfTheFields();
    void Tooltips_data();
    void Tooltips();
    void ControlsHaveNamesForScreenReaders();
    void OpensOnTheFirstPreset();
    void OpensEmptyWithoutPresets();
    void ChosenRowFillsAllFields();
    void AbsentKeysAreDefaults();
    void BrokenRecordIsShownWithItsDefault();
    void ToolsFollowTheName();
    void TypedNameLeavesTheFields();
    void SaveMakesAPresetAtTheEnd();
    void SaveWritesAllFields();
    void SaveUnderAnExistingNameAsks();
    void SaveUnderANumberIsImpossible();
    void AGreySaveSaysWhy();
    void NewClearsEverything();
    void NewBeginsWithTheName();
    void NewAsksAboutUnsavedFields_data();
    void NewAsksAboutUnsavedFields();
    void CloseAsksAboutUnsavedFields_data();
    void CloseAsksAboutUnsavedFields();
    void TheEndOfTheSessionAsksAboutUnsavedFields();
    void NothingUnsavedClosesAtOnce();
    void DeleteAsksAndGoesToTheFirst();
    void DeleteLastLeavesAnEmptyList();
    void EachDeletionLengthensTheSecondWindowList();
    void MovesByKeys();
    void KeysWithAltAreNotTheDialogs();
    void CtrlTabStepsAndWraps();
    void MacroReplacesTheSelection();
    void MacroNeedsATextField();
    void MacroMenuRows();
    void SecondActionNeedsAProgram();
    void CommandTellsAboutItsFile();
    void PreviewShowsTheImage();
    void PictureFileThatCannotBeLoadedIsNotSaved();
    void PicturesLoseTheirLightGrey();
    void WhatIsNoPictureFileIsNotWaitedFor();
    void UnwritableStoreIsReportedAndTheFieldsStay();
    void CommandsArePicked();
    void FoldersArePicked();
    void BitmapsArePicked();
    void FlagsArePicked();
    void ImageIsPicked();
    void ShowsAPresetByName();
    void WheelOverTheListChoosesNothing();
    void ButtonsAreFlatAsSet();
};

void TestFrmPresets::WordsOfTheFields_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("caption");
    const auto row = [](const char *field, const QString &caption) {
        QTest::newRow(field) << QString::fromLatin1(field) << caption;
    };
    row("cmbPreset", u"&Preset:"_s);
    row("txtCommand", u"&Command:"_s);
    row("txtArgs", u"Pa&rameters:"_s);
    row("txtFolder", u"&Initial Folder:"_s);
    row("cmbWindow", u"&Window:"_s);
    row("chkSaveFirst", u"&Save document first"_s);
    row("txt2ndCommand", u"&Command:"_s);
    row("txt2ndArgs", u"Pa&rameters:"_s);
    row("txt2ndFolder", u"&Initial Folder:"_s);
    row("cmb2ndWindow", u"&Window:"_s);
    row("chkCreateButton", u"Create &button"_s);
    row("chkNewGroup", u"&Start new group"_s);
    row("txtName", u"&Label:"_s);
    row("txtTooltip", u"&Tooltip:"_s);
    row("TxtBitmap", u"&Bitmap:"_s);
    row("bCommand", u"Browse..."_s);
    row("bImages", u"Pick a built-in image..."_s);
    row("bCancel", u"&Close"_s);
}

void TestFrmPresets::WordsOfTheFields()
{
    QFETCH(QString, field);
    QFETCH(QString, caption);
    Editor editor;
    editor.Open();
    QCOMPARE(editor.dialog->windowTitle(), u"Zelvane - Add/Remove Presets"_s);
    auto &widget = editor.Find<QWidget>(field);
    if (const auto *button = qobject_cast<QAbstractButton *>(&widget)) {
        QCOMPARE(button->text(), caption);
        return;
    }
    for (const QLabel *label : editor.dialog->findChildren<QLabel *>()) {
        if (label->buddy() == &widget) {
            QCOMPARE(label->text(), caption);
            return;
        }
    }
    QFAIL("the field has no label");
}

void TestFrmPresets::Tooltips_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("tooltip");
    const auto row = [](const char *field, const QString &tooltip) {
        QTest::newRow(field) << QString::fromLatin1(field) << tooltip;
    };
    row("cmbPreset", u"Name of the Preset.\nPresets will appear on the toolbar in same order as they do in "
                     "this list"_s);
    row("txtArgs", u"Parameters to be passed to the application. Macros allowed."_s);
    row("txtFolder", u"Startup directory for the command. Defaults to Command directory. Macros allowed."_s);
    row("cmbWindow", u"State of the window"_s);
    row("chkSaveFirst", u"Save current document before running the command"_s);
    row("txt2ndFolder", u"Startup directory for the 2nd command. Defaults to 1st action Initaill Folder. "
                        "Macros allowed."_s);
    row("chkCreateButton", u"Show a toolbar button for this preset"_s);
    row("chkNewGroup", u"Insert a separator before preset button"_s);
    row("txtName",
        u"Text appearing in the Presets Bar button labels. Should be reasonably short: max 10 characters."_s);
    row("txtTooltip", u"Presets Bar button tooltip text."_s);
    row("TxtBitmap", u"Image should be 16x16 pixels otherwise will be resized. Mask color: Light gray R192 "
                     "G192 B192. Leave empty to use shell icon."_s);
}

void TestFrmPresets::Tooltips()
{
    QFETCH(QString, field);
    QFETCH(QString, tooltip);
    Editor editor;
    editor.Open();
    QCOMPARE(editor.Find<QWidget>(field).toolTip(), tooltip);
}

void TestFrmPresets::ControlsHaveNamesForScreenReaders()
{
    Editor editor;
    editor.Open();
    QStringList nameless;
    for (const QWidget *widget : editor.dialog->findChildren<QWidget *>()) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const bool control =
            button || qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QComboBox *>(widget);
        const bool inside = qobject_cast<const QComboBox *>(widget->parentWidget()) ||
                            widget->objectName().startsWith(u"qt_"_s) ||
                            qobject_cast<const QTabBar *>(widget->parentWidget());
        if (control && !inside && widget->accessibleName().isEmpty() && (!button || button->text().isEmpty()))
            nameless.append(widget->objectName());
    }
    QCOMPARE(nameless, QStringList());
    // The label of a button tells what it browses for.
    QCOMPARE(editor.Button(u"bFolder"_s).accessibleName(), u"Initial Folder: Browse..."_s);
}

void TestFrmPresets::OpensOnTheFirstPreset()
{
    Editor editor;
    editor.Add(u"one"_s, FullRecord);
    editor.Add(u"two"_s);
    editor.Open();
    QCOMPARE(editor.Rows(), (QStringList{u"one"_s, u"two"_s}));
    QCOMPARE(editor.Name(), u"one"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"$CSOUND$"_s);
    QCOMPARE(editor.Tools(), u"nsd-op"_s);
    QCOMPARE(editor.Pages().currentIndex(), 0);
    QCOMPARE(editor.Pages().count(), 3);
    QCOMPARE(editor.dialog->focusWidget(), &editor.List(u"cmbPreset"_s));
    for (const QString &list : {u"cmbWindow"_s, u"cmb2ndWindow"_s}) {
        QStringList rows;
        for (int i = 0; i < editor.List(list).count(); ++i)
            rows.append(editor.List(list).itemText(i));
        QCOMPARE(rows, (QStringList{u"Hidden"_s, u"Normal"_s, u"Minimized"_s, u"Maximized"_s}));
    }
}

void TestFrmPresets::OpensEmptyWithoutPresets()
{
    Editor editor;
    editor.Open();
    QCOMPARE(editor.Rows(), QStringList());
    QCOMPARE(editor.Name(), QString());
    QCOMPARE(editor.Tools(), u"n----p"_s);
    QCOMPARE(editor.List(u"cmbWindow"_s).currentIndex(), 1);
    QCOMPARE(editor.List(u"cmb2ndWindow"_s).currentIndex(), 1);
    QVERIFY(!editor.Field(u"txt2ndCommand"_s).isEnabled());
    QVERIFY(editor.Preview().Icon().isNull());
    // The hint about the command: at the field until it names a file, and always at its label.
    const QString hint = u"Executable or document. Macros allowed."_s;
    QCOMPARE(editor.Field(u"txtCommand"_s).toolTip(), hint);
    const auto labels = editor.dialog->findChildren<QLabel *>();
    QCOMPARE(std::count_if(labels.begin(), labels.end(),
                           [&](const QLabel *label) {
                               return label->buddy() == &editor.Field(u"txtCommand"_s) &&
                                      label->toolTip() == hint;
                           }),
             1);
    // None of the tools does anything.
    for (const Qt::Key key : {Qt::Key_S, Qt::Key_D, Qt::Key_U, Qt::Key_I})
        editor.Key(key);
    QVERIFY(editor.context.windows.calls.isEmpty());
}

void TestFrmPresets::ChosenRowFillsAllFields()
{
    Editor editor;
    editor.Add(u"empty"_s);
    editor.Add(u"full"_s, FullRecord);
    editor.Open();
    editor.Choose(1);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"$CSOUND$"_s);
    QCOMPARE(editor.Field(u"txtArgs"_s).text(), u"-W -o $WAVE$"_s);
    QCOMPARE(editor.Field(u"txtFolder"_s).text(), u"$DIR$"_s);
    QCOMPARE(editor.List(u"cmbWindow"_s).currentIndex(), 2);
    QVERIFY(editor.Check(u"chkSaveFirst"_s).isChecked());
    QCOMPARE(editor.Field(u"txtName"_s).text(), u"Label"_s);
    QCOMPARE(editor.Field(u"txtTooltip"_s).text(), u"Tip"_s);
    QVERIFY(!editor.Check(u"chkCreateButton"_s).isChecked());
    QVERIFY(editor.Check(u"chkNewGroup"_s).isChecked());
    QCOMPARE(editor.Field(u"txt2ndCommand"_s).text(), u"$PLAYER$"_s);
    QCOMPARE(editor.Field(u"txt2ndArgs"_s).text(), u"$WAVE$"_s);
    QCOMPARE(editor.Field(u"txt2ndFolder"_s).text(), u"/snd"_s);
    QCOMPARE(editor.List(u"cmb2ndWindow"_s).currentIndex(), 3);
    QCOMPARE(editor.Field(u"TxtBitmap"_s).text(), QString());
    QCOMPARE(Picture(editor.Preview().Icon()), Picture(Icons::LoadImage(104)));
    QCOMPARE(editor.Tools(), u"nsdu-p"_s);
}

void TestFrmPresets::AbsentKeysAreDefaults()
{
    Editor editor;
    editor.Add(u"full"_s, FullRecord);
    editor.Add(u"empty"_s);
    editor.Open();
    editor.Choose(1);
    for (const QLineEdit *field : editor.dialog->findChildren<QLineEdit *>()) {
        if (!field->objectName().startsWith(u"qt_"_s) && field != editor.List(u"cmbPreset"_s).lineEdit())
            QCOMPARE(field->text(), QString());
    }
    QCOMPARE(editor.List(u"cmbWindow"_s).currentIndex(), 1);
    QCOMPARE(editor.List(u"cmb2ndWindow"_s).currentIndex(), 1);
    QVERIFY(!editor.Check(u"chkSaveFirst"_s).isChecked());
    QVERIFY(editor.Check(u"chkCreateButton"_s).isChecked());
    QVERIFY(!editor.Check(u"chkNewGroup"_s).isChecked());
    QVERIFY(editor.Preview().Icon().isNull());
}

void TestFrmPresets::BrokenRecordIsShownWithItsDefault()
{
    Editor editor;
    editor.Add(u"broken"_s, {{u"Args"_s, u"-d"_s}, {u"Window"_s, u"wide"_s}});
    editor.Add(u"whole"_s, FullRecord);
    editor.Open();
    QCOMPARE(editor.Tools(), u"nsd-op"_s);
    QCOMPARE(editor.Field(u"txtArgs"_s).text(), u"-d"_s);
    QCOMPARE(editor.List(u"cmbWindow"_s).currentIndex(), 1);
    QCOMPARE(editor.context.settings.TakeUnreadable().size(), 1u);
    editor.Choose(1);
    QCOMPARE(editor.Field(u"txtArgs"_s).text(), u"-W -o $WAVE$"_s);
}

void TestFrmPresets::ToolsFollowTheName()
{
    Editor editor;
    for (const QString &name : {u"one"_s, u"two"_s, u"three"_s})
        editor.Add(name);
    editor.Open();
    QCOMPARE(editor.Tools(), u"nsd-op"_s);
    editor.Choose(1);
    QCOMPARE(editor.Tools(), u"nsduop"_s);
    editor.Choose(2);
    QCOMPARE(editor.Tools(), u"nsdu-p"_s);
    editor.TypeName(u"four"_s);
    QCOMPARE(editor.Tools(), u"ns---p"_s);
    editor.TypeName(u"17"_s);
    QCOMPARE(editor.Tools(), u"n----p"_s);
    editor.TypeName(u"1e3"_s);
    QCOMPARE(editor.Tools(), u"n----p"_s);
    editor.TypeName({});
    QCOMPARE(editor.Tools(), u"n----p"_s);
    editor.TypeName(u"two"_s);
    QCOMPARE(editor.Tools(), u"nsduop"_s);
}

void TestFrmPresets::TypedNameLeavesTheFields()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"/bin/one"_s}});
    editor.Add(u"two"_s, {{u"Command"_s, u"/bin/two"_s}});
    editor.Open();
    editor.Field(u"txtCommand"_s).setText(u"/bin/mine"_s);
    editor.TypeName(u"two"_s);
    editor.Key(Qt::Key_Return, {});
    editor.Key(Qt::Key_Tab, {});
    QVERIFY(!editor.List(u"cmbPreset"_s).hasFocus());
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/bin/mine"_s);
    QCOMPARE(editor.Name(), u"two"_s);
    QVERIFY(editor.dialog->isVisible());
    // The arrows of the list choose, as its rows do.
    editor.List(u"cmbPreset"_s).setFocus();
    editor.Key(Qt::Key_Down, {});
    QCOMPARE(editor.Name(), u"two"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/bin/two"_s);
}

void TestFrmPresets::SaveMakesAPresetAtTheEnd()
{
    Editor editor;
    editor.Add(u"one"_s);
    editor.Add(u"two"_s);
    editor.Open();
    editor.TypeName(u"new one"_s);
    editor.Field(u"txtCommand"_s).setText(u"/opt/csound"_s);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(), (QStringList{u"one"_s, u"two"_s, u"new one"_s}));
    QCOMPARE(editor.Rows(), editor.Stored());
    QCOMPARE(editor.Name(), u"new one"_s);
    QCOMPARE(editor.Stored(u"new one"_s, u"Command"_s), u"/opt/csound"_s);
    QCOMPARE(editor.context.windows.calls, QStringList{u"rebuild"_s});
    QCOMPARE(editor.Tools(), u"nsdu-p"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/opt/csound"_s);
}

void TestFrmPresets::SaveWritesAllFields()
{
    Editor editor;
    editor.Open();
    editor.TypeName(u"mine"_s);
    editor.Field(u"txtCommand"_s).setText(u"$csound$"_s);
    editor.Field(u"txtArgs"_s).setText(u"-W"_s);
    editor.Field(u"txtFolder"_s).setText(u"/f"_s);
    editor.List(u"cmbWindow"_s).setCurrentIndex(3);
    editor.Check(u"chkSaveFirst"_s).click();
    editor.Field(u"txt2ndCommand"_s).setText(u"/bin/second"_s);
    editor.Field(u"txt2ndArgs"_s).setText(u"-2"_s);
    editor.Field(u"txt2ndFolder"_s).setText(u"/g"_s);
    editor.List(u"cmb2ndWindow"_s).setCurrentIndex(0);
    editor.Check(u"chkCreateButton"_s).click();
    editor.Check(u"chkNewGroup"_s).click();
    editor.Field(u"txtName"_s).setText(u"A label of any length"_s);
    editor.Field(u"txtTooltip"_s).setText(u"Tip"_s);
    editor.dialog->setImgnumber(120);
    editor.ClickTool(u"save"_s);
    const Fields expected = {{u"Command"_s, u"$csound$"_s}, {u"Args"_s, u"-W"_s},
                             {u"Folder"_s, u"/f"_s},        {u"Window"_s, u"3"_s},
                             {u"SaveFirst"_s, u"1"_s},      {u"Name"_s, u"A label of any length"_s},
                             {u"Tooltip"_s, u"Tip"_s},      {u"CreateButton"_s, u"0"_s},
                             {u"NewGroup"_s, u"1"_s},       {u"2ndCommand"_s, u"/bin/second"_s},
                             {u"2ndArgs"_s, u"-2"_s},       {u"2ndFolder"_s, u"/g"_s},
                             {u"2ndWindow"_s, u"0"_s},      {u"Image"_s, u"120"_s}};
    QCOMPARE(editor.context.settings.GetAllSettings(u"mine"_s), expected);
}

void TestFrmPresets::SaveUnderAnExistingNameAsks()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"/bin/one"_s}});
    editor.Add(u"two"_s);
    editor.Open();
    editor.Field(u"txtCommand"_s).setText(u"/bin/changed"_s);
    editor.ExpectReplace(u"one"_s, BoxAnswer::No);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"one"_s, u"Command"_s), u"/bin/one"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/bin/changed"_s);
    QVERIFY(editor.context.windows.calls.isEmpty());
    editor.ExpectReplace(u"one"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"one"_s, u"Command"_s), u"/bin/changed"_s);
    QCOMPARE(editor.Stored(), (QStringList{u"one"_s, u"two"_s}));
    // The store knows no case: it is the same preset.
    editor.TypeName(u"TWO"_s);
    editor.ExpectReplace(u"TWO"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Rows(), (QStringList{u"one"_s, u"two"_s}));
    QCOMPARE(editor.Name(), u"two"_s);
    QCOMPARE(editor.Stored(u"two"_s, u"Command"_s), u"/bin/changed"_s);
}

void TestFrmPresets::SaveUnderANumberIsImpossible()
{
    Editor editor;
    editor.Open();
    for (const QString &name : {u"123"_s, u"1e3"_s, u""_s}) {
        editor.TypeName(name);
        editor.Key(Qt::Key_S);
        editor.ClickTool(u"save"_s);
    }
    QCOMPARE(editor.Stored(), QStringList());
}

void TestFrmPresets::AGreySaveSaysWhy()
{
    Editor editor;
    editor.Open();
    auto &save = editor.Find<QToolButton>(u"tlbPreset_save"_s);
    for (const auto &[name, words] : {std::pair{u""_s, u"The preset has no name yet"_s},
                                      {u"mine"_s, u"Save the preset (Ctrl+S)"_s},
                                      {u"12"_s, u"The name of a preset must not be a number"_s}}) {
        editor.TypeName(name);
        QCOMPARE(save.toolTip(), words);
        // The pointer rests on the button, which is grey or not.
        QHelpEvent rests(QEvent::ToolTip, save.rect().center(), save.mapToGlobal(save.rect().center()));
        QApplication::sendEvent(&save, &rests);
        QCOMPARE(QToolTip::text(), words);
        QToolTip::hideText();
        QVERIFY(Eventually([] { return !QToolTip::isVisible(); }));
    }
}

void TestFrmPresets::NewClearsEverything()
{
    Editor editor;
    editor.Add(u"full"_s, FullRecord);
    editor.Open();
    editor.Key(Qt::Key_N);
    for (const QLineEdit *field : editor.dialog->findChildren<QLineEdit *>()) {
        if (!field->objectName().startsWith(u"qt_"_s))
            QCOMPARE(field->text(), QString());
    }
    QCOMPARE(editor.Name(), QString());
    QCOMPARE(editor.List(u"cmbWindow"_s).currentIndex(), 1);
    QCOMPARE(editor.List(u"cmb2ndWindow"_s).currentIndex(), 1);
    QVERIFY(!editor.Check(u"chkSaveFirst"_s).isChecked());
    QVERIFY(!editor.Check(u"chkNewGroup"_s).isChecked());
    QVERIFY(editor.Check(u"chkCreateButton"_s).isChecked());
    QVERIFY(editor.Preview().Icon().isNull());
    QCOMPARE(editor.Tools(), u"n----p"_s);
    QCOMPARE(editor.Stored(), QStringList{u"full"_s});
    // The built-in image has gone too.
    editor.TypeName(u"next"_s);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"next"_s, u"Image"_s), u"(absent)"_s);
    // No preset is chosen any more: the first one can be reached by the arrow key.
    editor.Key(Qt::Key_N);
    QCOMPARE(editor.List(u"cmbPreset"_s).currentIndex(), -1);
    editor.List(u"cmbPreset"_s).setFocus();
    editor.Key(Qt::Key_Down, {});
    QCOMPARE(editor.Name(), u"full"_s);
    QCOMPARE(editor.Field(u"txtArgs"_s).text(), u"-W -o $WAVE$"_s);
}

void TestFrmPresets::NewBeginsWithTheName()
{
    Editor editor;
    editor.Add(u"full"_s, FullRecord);
    editor.Open();
    editor.Field(u"txtArgs"_s).setFocus();
    editor.ClickTool(u"new"_s);
    QVERIFY(editor.List(u"cmbPreset"_s).hasFocus());
    editor.Pages().setCurrentIndex(2);
    editor.Field(u"txtName"_s).setFocus();
    editor.Key(Qt::Key_N);
    QVERIFY(editor.List(u"cmbPreset"_s).hasFocus());
    QTest::keyClicks(editor.dialog->focusWidget(), u"next"_s);
    QCOMPARE(editor.Name(), u"next"_s);
}

void TestFrmPresets::NewAsksAboutUnsavedFields_data()
{
    using Change = std::function<void(Editor &)>;
    QTest::addColumn<std::function<void(Editor &)>>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("text", [](Editor &editor) { QTest::keyClicks(&editor.Field(u"txtArgs"_s), u"x"_s); });
    row("second action", [](Editor &editor) { editor.Field(u"txt2ndFolder"_s).setText(u"/x"_s); });
    row("window", [](Editor &editor) { editor.List(u"cmbWindow"_s).setCurrentIndex(0); });
    row("box", [](Editor &editor) { editor.Check(u"chkNewGroup"_s).click(); });
    row("image", [](Editor &editor) { editor.dialog->setImgnumber(105); });
    row("name", [](Editor &editor) { editor.List(u"cmbPreset"_s).setEditText(u"full"_s); });
}

void TestFrmPresets::NewAsksAboutUnsavedFields()
{
    QFETCH(std::function<void(Editor &)>, change);
    Editor editor;
    editor.Add(u"one"_s);
    editor.Add(u"full"_s, FullRecord);
    editor.Open();
    if (qstrcmp(QTest::currentDataTag(), "name") != 0)
        editor.Choose(1);
    change(editor);
    editor.ExpectDiscard(u"'full'"_s, BoxAnswer::No);
    editor.Key(Qt::Key_N);
    QCOMPARE(editor.Name(), u"full"_s);
    editor.ExpectDiscard(u"'full'"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_N);
    QCOMPARE(editor.Name(), QString());
    QCOMPARE(editor.Field(u"txtArgs"_s).text(), QString());
    editor.Key(Qt::Key_N); // nothing is lost any more
    editor.context.desktop.CheckAllCame();
}

void TestFrmPresets::CloseAsksAboutUnsavedFields_data()
{
    QTest::addColumn<std::function<void(Editor &)>>("close");
    using Close = std::function<void(Editor &)>;
    QTest::newRow("button") << Close([](Editor &editor) { editor.Button(u"bCancel"_s).click(); });
    QTest::newRow("Esc") << Close([](Editor &editor) { editor.Key(Qt::Key_Escape, {}); });
    QTest::newRow("frame") << Close([](Editor &editor) { editor.dialog->close(); });
}

void TestFrmPresets::CloseAsksAboutUnsavedFields()
{
    QFETCH(std::function<void(Editor &)>, close);
    Editor editor;
    editor.Open();
    editor.Field(u"txtCommand"_s).setText(u"/bin/mine"_s);
    editor.ExpectDiscard(u"the new preset"_s, BoxAnswer::No);
    close(editor);
    QVERIFY(editor.dialog->isVisible());
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/bin/mine"_s);
    editor.TypeName(u"mine"_s);
    editor.ExpectDiscard(u"'mine'"_s, BoxAnswer::Yes);
    close(editor);
    QVERIFY(!editor.dialog->isVisible());
    QCOMPARE(editor.Stored(), QStringList());
    editor.context.desktop.CheckAllCame();
}

void TestFrmPresets::TheEndOfTheSessionAsksAboutUnsavedFields()
{
    Editor editor;
    editor.Open();
    editor.dialog->hide();
    editor.dialog->setModal(true);
    editor.dialog->show();
    editor.Field(u"txtCommand"_s).setText(u"/bin/mine"_s);
    editor.ExpectDiscard(u"the new preset"_s, BoxAnswer::No);
    QVERIFY(!CancelDialogs());
    QVERIFY(editor.dialog->isVisible());
    // Asked for again while the question stands, the end leaves the question to the user.
    bool again = true;
    editor.ExpectDiscard(u"the new preset"_s, BoxAnswer::Yes, [&] { again = CancelDialogs(); });
    QVERIFY(CancelDialogs());
    QVERIFY(!again);
    QVERIFY(!editor.dialog->isVisible());
    editor.context.desktop.CheckAllCame();
}

void TestFrmPresets::NothingUnsavedClosesAtOnce()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"/bin/one"_s}});
    editor.Add(u"full"_s, FullRecord);
    editor.Open();
    const auto closes = [&editor] {
        editor.Button(u"bCancel"_s).click();
        const bool closed = !editor.dialog->isVisible();
        editor.dialog->show();
        return closed;
    };
    QVERIFY(closes());
    editor.Choose(1);
    QVERIFY(closes());
    editor.Key(Qt::Key_U); // moved up, and otherwise as it was
    QVERIFY(closes());
    editor.Field(u"txtArgs"_s).setText(u"-d"_s);
    editor.ExpectReplace(u"full"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_S);
    QVERIFY(closes());
    editor.Key(Qt::Key_N);
    editor.TypeName(u"next"_s);
    editor.Key(Qt::Key_S);
    QVERIFY(closes());
    for (const QString &name : {u"next"_s, u"full"_s, u"one"_s}) {
        editor.Choose(editor.List(u"cmbPreset"_s).findText(name));
        editor.Field(u"txtArgs"_s).setText(u"-changed"_s);
        editor.ExpectDelete(name, BoxAnswer::Yes);
        editor.Key(Qt::Key_D);
        QVERIFY(closes());
    }
    editor.context.desktop.CheckAllCame();
}

void TestFrmPresets::DeleteAsksAndGoesToTheFirst()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"/bin/one"_s}});
    editor.Add(u"two"_s, {{u"Command"_s, u"/bin/two"_s}});
    editor.Open();
    editor.Choose(1);
    editor.ExpectDelete(u"two"_s, BoxAnswer::No);
    editor.Key(Qt::Key_D);
    QCOMPARE(editor.Stored(), (QStringList{u"one"_s, u"two"_s}));
    editor.ExpectDelete(u"two"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_D);
    QCOMPARE(editor.Stored(), QStringList{u"one"_s});
    QVERIFY(editor.context.settings.GetAllSettings(u"two"_s).empty());
    QCOMPARE(editor.Rows(), QStringList{u"one"_s});
    QCOMPARE(editor.Name(), u"one"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/bin/one"_s);
    QCOMPARE(editor.List(u"cmbWindow"_s).count(), 4);
    QCOMPARE(editor.context.windows.calls, QStringList{u"rebuild"_s});
    QCOMPARE(editor.Tools(), u"nsd--p"_s);
}

void TestFrmPresets::DeleteLastLeavesAnEmptyList()
{
    Editor editor;
    editor.Add(u"one"_s, FullRecord);
    editor.Open();
    editor.Pages().setCurrentIndex(2);
    editor.ExpectDelete(u"one"_s, BoxAnswer::Yes);
    editor.ClickTool(u"delete"_s);
    QCOMPARE(editor.Rows(), QStringList());
    QCOMPARE(editor.Name(), QString());
    QCOMPARE(editor.Stored(), QStringList());
    QCOMPARE(editor.Pages().currentIndex(), 0);
    QCOMPARE(editor.Tools(), u"n----p"_s);
    QCOMPARE(editor.context.windows.calls, QStringList{u"rebuild"_s});
}

void TestFrmPresets::EachDeletionLengthensTheSecondWindowList()
{
    Editor editor;
    for (const QString &name : {u"one"_s, u"two"_s, u"three"_s})
        editor.Add(name, {{u"Command"_s, u"/opt/csound"_s}, {u"2ndCommand"_s, u"x"_s}});
    editor.Open();
    QComboBox &list = editor.List(u"cmb2ndWindow"_s);
    for (const QString &name : {u"one"_s, u"two"_s}) {
        editor.ExpectDelete(name, BoxAnswer::Yes);
        editor.Key(Qt::Key_D);
    }
    QCOMPARE(list.count(), 12);
    QCOMPARE(list.itemText(10), u"Minimized"_s);
    QCOMPARE(list.currentIndex(), 1);
    // A row of the later ones means the state that it names.
    list.setCurrentIndex(10);
    editor.ExpectReplace(u"three"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"three"_s, u"2ndWindow"_s), u"2"_s);
}

void TestFrmPresets::MovesByKeys()
{
    Editor editor;
    for (const QString &name : {u"one"_s, u"two"_s, u"three"_s})
        editor.Add(name);
    editor.Open();
    // Also in a text field, where the toolkit has a use of its own for Ctrl+U.
    editor.Field(u"txtCommand"_s).setText(u"kept"_s);
    editor.Field(u"txtCommand"_s).setFocus();
    editor.Key(Qt::Key_I);
    QCOMPARE(editor.Stored(), (QStringList{u"two"_s, u"one"_s, u"three"_s}));
    QCOMPARE(editor.Tools(), u"nsduop"_s);
    editor.Key(Qt::Key_I);
    QCOMPARE(editor.Stored(), (QStringList{u"two"_s, u"three"_s, u"one"_s}));
    QCOMPARE(editor.Tools(), u"nsdu-p"_s);
    editor.Key(Qt::Key_I);
    editor.Key(Qt::Key_U);
    QCOMPARE(editor.Stored(), (QStringList{u"two"_s, u"one"_s, u"three"_s}));
    editor.ClickTool(u"up"_s);
    QCOMPARE(editor.Stored(), (QStringList{u"one"_s, u"two"_s, u"three"_s}));
    QCOMPARE(editor.Rows(), editor.Stored());
    QCOMPARE(editor.Name(), u"one"_s);
    editor.ClickTool(u"down"_s);
    QCOMPARE(editor.Rows(), (QStringList{u"two"_s, u"one"_s, u"three"_s}));
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"kept"_s);
    QCOMPARE(editor.context.windows.calls.size(), 5);
}

void TestFrmPresets::KeysWithAltAreNotTheDialogs()
{
    Editor editor;
    editor.Add(u"one"_s, FullRecord);
    editor.Add(u"two"_s);
    editor.Open();
    editor.Check(u"chkSaveFirst"_s).setFocus();
    for (const Qt::Key key : {Qt::Key_N, Qt::Key_S, Qt::Key_D, Qt::Key_U, Qt::Key_I})
        editor.Key(key, Qt::ControlModifier | Qt::AltModifier);
    editor.Key(Qt::Key_F8, Qt::ControlModifier);
    QCOMPARE(QApplication::activePopupWidget(), nullptr);
    QCOMPARE(editor.Name(), u"one"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"$CSOUND$"_s);
    QVERIFY(editor.context.windows.calls.isEmpty());
}

void TestFrmPresets::CtrlTabStepsAndWraps()
{
    Editor editor;
    editor.Open();
    for (const QString &field : {u"cmbPreset"_s, u"txtCommand"_s}) {
        editor.Find<QWidget>(field).setFocus();
        for (const int page : {1, 2, 0}) {
            editor.Key(Qt::Key_Tab);
            QCOMPARE(editor.Pages().currentIndex(), page);
            for (int i = 0; i < 3; ++i)
                QCOMPARE(editor.Pages().widget(i)->isVisible(), i == page);
        }
    }
    editor.Key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(editor.Pages().currentIndex(), 2);
}

void TestFrmPresets::MacroReplacesTheSelection()
{
    Editor editor;
    editor.Open();
    QLineEdit &args = editor.Field(u"txtArgs"_s);
    args.setText(u"-W -o here x"_s);
    args.setFocus();
    args.setSelection(6, 4);
    editor.Key(Qt::Key_F8, {});
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    QCOMPARE(menu->objectName(), u"mnuMacros"_s);
    for (QAction *action : menu->actions()) {
        if (action->text().startsWith(u"$WAVE$\t"_s))
            action->trigger();
    }
    menu->close();
    QCOMPARE(args.text(), u"-W -o $WAVE$ x"_s);
    QCOMPARE(args.selectionStart(), 6);
    QCOMPARE(args.selectedText(), u"$WAVE$"_s);
    QCOMPARE(editor.dialog->focusWidget(), &args);
    // By the mouse: the tool does not take the focus. The macro that is selected still is replaced.
    editor.ClickTool(u"preset"_s);
    QCOMPARE(QApplication::activePopupWidget(), menu);
    menu->actions().first()->trigger();
    menu->close();
    QCOMPARE(args.text(), u"-W -o $CSOUND$ x"_s);
    QCOMPARE(args.selectedText(), u"$CSOUND$"_s);
}

void TestFrmPresets::MacroNeedsATextField()
{
    Editor editor;
    editor.Open();
    for (const QString &control : {u"cmbPreset"_s, u"chkSaveFirst"_s, u"bCancel"_s}) {
        editor.Find<QWidget>(control).setFocus();
        editor.Key(Qt::Key_F8, {});
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        editor.context.desktop.ExpectMessage(
            {.text = u"You should first select a text field."_s, .icon = BoxIcon::Warning});
        menu->actions().first()->trigger();
        menu->close();
        editor.context.desktop.CheckAllCame();
    }
    QCOMPARE(editor.Name(), QString());
}

void TestFrmPresets::MacroMenuRows()
{
    Editor editor;
    editor.Open().move(0, 0);                                    // there is room for the menu
    QVERIFY(!editor.dialog->findChild<QMenu *>(u"mnuMacros"_s)); // filled at the first use
    editor.ClickTool(u"preset"_s);
    auto &menu = editor.Find<QMenu>(u"mnuMacros"_s);
    QStringList rows;
    for (const QAction *action : menu.actions())
        rows.append(action->text());
    QCOMPARE(rows.size(), 25);
    QCOMPARE(rows.first(), u"$CSOUND$\tCsound executable"_s);
    QCOMPARE(rows[17], u"$SFDIR$\tSFDIR environment variable"_s);
    QCOMPARE(rows.last(), u"$MEDIR$\tDirectory of Zelvane executable"_s);
    // Under the tool, its left edges in line, and without room for a column that is not there.
    const auto &tool = editor.Find<QToolButton>(u"tlbPreset_preset"_s);
    QCOMPARE(menu.pos().y(), tool.mapToGlobal(QPoint(0, tool.height())).y());
    int widest = 0;
    for (const QString &row : rows)
        widest = std::max(widest, menu.fontMetrics().horizontalAdvance(row.section(u'\t', 1)));
    QVERIFY2(menu.width() < 2 * widest, "the menu has an empty column");
    menu.close();
    editor.ClickTool(u"preset"_s);
    QCOMPARE(menu.actions().size(), 25);
    menu.close();
}

void TestFrmPresets::SecondActionNeedsAProgram()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"$CSOUND$"_s}, {u"2ndCommand"_s, u"/bin/second"_s}});
    editor.Open();
    QLineEdit &command = editor.Field(u"txtCommand"_s);
    QLineEdit &second = editor.Field(u"txt2ndCommand"_s);
    QVERIFY(second.isEnabled());
    command.setText(u"$CSOUND$ -h"_s); // a macro is the whole field or none
    QVERIFY(!second.isEnabled());
    command.setText(u"/opt/csound"_s);
    QVERIFY(second.isEnabled());
    command.setText(u"/a/manual.html"_s);
    QVERIFY(!second.isEnabled());
    for (const QString &name : {u"b2ndCommand"_s, u"txt2ndArgs"_s, u"b2ndPickFlag"_s, u"txt2ndFolder"_s,
                                u"b2ndFolder"_s, u"cmb2ndWindow"_s})
        QVERIFY(!editor.Find<QWidget>(name).isEnabled());
    // The page itself can be looked at, and its text stays until another preset is chosen.
    QVERIFY(editor.Pages().isTabEnabled(1));
    editor.ExpectReplace(u"one"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"one"_s, u"2ndCommand"_s), u"(absent)"_s);
    QCOMPARE(second.text(), u"/bin/second"_s);
    editor.Choose(0);
    QCOMPARE(second.text(), QString());
}

void TestFrmPresets::CommandTellsAboutItsFile()
{
    Editor editor;
    editor.context.desktop.typeNames[u"/opt/csound"_s] = u"Application"_s;
    editor.context.desktop.typeNames[u"/a/<b>.html"_s] = u"HTML document"_s;
    editor.Open();
    QLineEdit &command = editor.Field(u"txtCommand"_s);
    command.setText(u"$csound$"_s);
    QCOMPARE(command.toolTip(), u"csound: Application ELF 64-bit"_s);
    command.setText(u"/a/<b>.html"_s);
    QVERIFY2(command.toolTip().contains(u"&lt;b&gt;.html: HTML document"_s), "a file name is no markup");
    command.setText(u"/no/such"_s);
    QCOMPARE(command.toolTip(), QString());
}

void TestFrmPresets::PreviewShowsTheImage()
{
    Editor editor;
    const QString red = editor.WritePicture(u"red.bmp"_s, Qt::red);
    editor.Add(u"number"_s, {{u"Image"_s, u"104"_s}});
    editor.Add(u"file"_s, {{u"Image"_s, red}});
    editor.Add(u"none"_s, {{u"Command"_s, editor.context.WriteFile(u"a.html"_s, "<html></html>")}});
    editor.Add(u"beyond"_s, {{u"Image"_s, u"9999"_s}});
    editor.Open();
    QLineEdit &bitmap = editor.Field(u"TxtBitmap"_s);
    QCOMPARE(Picture(editor.Preview().Icon()), Picture(Icons::LoadImage(104)));
    editor.Choose(1);
    QCOMPARE(bitmap.text(), red);
    QCOMPARE(Picture(editor.Preview().Icon()).pixel(8, 8), qRgb(255, 0, 0));
    editor.Choose(2);
    QCOMPARE(bitmap.text(), QString());
    QVERIFY(editor.Preview().Icon().isNull());
    editor.Choose(3);
    QVERIFY(editor.Preview().Icon().isNull());
    // A change of the command shows its icon where there is no image.
    editor.Choose(2);
    QLineEdit &command = editor.Field(u"txtCommand"_s);
    const QString document = command.text();
    command.setText(u"/no/such"_s);
    QVERIFY(editor.Preview().Icon().isNull());
    command.setText(document);
    QVERIFY(!editor.Preview().Icon().isNull());
    editor.Pages().setCurrentIndex(2);
    const QImage empty = (editor.Preview().SetIcon({}), editor.Preview().grab().toImage());
    command.clear();
    command.setText(document);
    QVERIFY(editor.Preview().grab().toImage() != empty);
    editor.Choose(0);
    command.setText(document);
    QCOMPARE(Picture(editor.Preview().Icon()), Picture(Icons::LoadImage(104)));
    // A typed path takes the place of the number, also when it is none.
    bitmap.setText(u"/no/such.bmp"_s);
    QVERIFY(editor.Preview().Icon().isNull());
    bitmap.setText(red);
    QCOMPARE(Picture(editor.Preview().Icon()).pixel(8, 8), qRgb(255, 0, 0));
    command.setText(u"/no/such"_s);
    QCOMPARE(Picture(editor.Preview().Icon()).pixel(8, 8), qRgb(255, 0, 0));
    editor.ExpectReplace(u"number"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"number"_s, u"Image"_s), red);
    // And a number that of the path.
    editor.dialog->setImgnumber(107);
    QCOMPARE(bitmap.text(), QString());
    QCOMPARE(Picture(editor.Preview().Icon()), Picture(Icons::LoadImage(107)));
}

void TestFrmPresets::PictureFileThatCannotBeLoadedIsNotSaved()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Image"_s, u"104"_s}});
    editor.Open();
    editor.Field(u"TxtBitmap"_s).setText(editor.context.WriteFile(u"broken.bmp"_s, "BMno picture"));
    editor.Field(u"txtTooltip"_s).setText(u"changed"_s);
    editor.ExpectReplace(u"one"_s, BoxAnswer::Yes);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"one"_s, u"Image"_s), u"104"_s);
    QCOMPARE(editor.Stored(u"one"_s, u"Tooltip"_s), u"changed"_s);
}

void TestFrmPresets::PicturesLoseTheirLightGrey()
{
    Editor editor;
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(qRgb(192, 192, 192));
    for (int y = 8; y < 24; ++y) {
        for (int x = 8; x < 24; ++x)
            image.setPixel(x, y, qRgb(10, 20, 200));
    }
    const QString path = editor.context.folder.filePath(u"masked.png"_s);
    QVERIFY(image.save(path));
    editor.Open();
    editor.Field(u"TxtBitmap"_s).setText(path);
    const QIcon icon = editor.Preview().Icon();
    const QImage small = Picture(icon);
    QCOMPARE(small.size(), QSize(16, 16));
    QCOMPARE(qAlpha(small.pixel(1, 1)), 0);
    QCOMPARE(small.pixel(8, 8), qRgb(10, 20, 200));
    // On a screen of twice the dots all dots of the file are there.
    const QImage large = icon.pixmap(QSize(16, 16), 2.0).toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(large.size(), QSize(32, 32));
    QCOMPARE(large.pixel(8, 8), qRgb(10, 20, 200));
    QCOMPARE(qAlpha(large.pixel(7, 7)), 0);
}

void TestFrmPresets::WhatIsNoPictureFileIsNotWaitedFor()
{
    Editor editor;
    editor.Open();
    const QString pipe = editor.context.folder.filePath(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString &path : {pipe, editor.context.folder.path(), u"/dev/zero"_s}) {
        editor.Field(u"TxtBitmap"_s).setText(path);
        QVERIFY(editor.Preview().Icon().isNull());
    }
}

void TestFrmPresets::UnwritableStoreIsReportedAndTheFieldsStay()
{
    Editor editor;
    editor.Open();
    editor.TypeName(u"mine"_s);
    editor.Field(u"txtCommand"_s).setText(u"/bin/mine"_s);
    // A file stands where the store's folder was.
    const QString folder = editor.context.folder.path();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);
    QVERIFY(file.open(QIODevice::WriteOnly));
    editor.context.desktop.ExpectMessage(ErrorBox(u"Not a directory (76)"_s, folder + u"/settings"_s),
                                         BoxAnswer::Cancel);
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Name(), u"mine"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/bin/mine"_s);
    QCOMPARE(editor.Rows(), QStringList());
    QVERIFY(editor.dialog->isVisible());
    QVERIFY(file.remove());
}

void TestFrmPresets::CommandsArePicked()
{
    Editor editor;
    editor.Open();
    editor.Field(u"txtCommand"_s).setText(u"old"_s);
    const FileDialogRequest request{.title = u"Select a command"_s,
                                    .filters = {{u"Executables"_s, u"*.exe"_s}}};
    editor.context.desktop.ExpectOpenDialog(request, {});
    editor.Button(u"bCommand"_s).click();
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"old"_s);
    editor.context.desktop.ExpectOpenDialog(request, {u"/opt/csound"_s});
    editor.Button(u"bCommand"_s).click();
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/opt/csound"_s);
    editor.context.desktop.ExpectOpenDialog(request, {u"/bin/a player"_s});
    editor.Button(u"b2ndCommand"_s).click();
    QCOMPARE(editor.Field(u"txt2ndCommand"_s).text(), u"/bin/a player"_s);
}

void TestFrmPresets::FoldersArePicked()
{
    Editor editor;
    editor.Open();
    editor.Field(u"txtFolder"_s).setText(u"/start"_s);
    editor.context.desktop.ExpectBrowseFolder(u"Select initial directory for the preset."_s, u"/start"_s, {});
    editor.Button(u"bFolder"_s).click();
    QCOMPARE(editor.Field(u"txtFolder"_s).text(), u"/start"_s);
    editor.context.desktop.ExpectBrowseFolder(u"Select initial directory for the preset."_s, u"/start"_s,
                                              u"/chosen"_s);
    editor.Button(u"bFolder"_s).click();
    QCOMPARE(editor.Field(u"txtFolder"_s).text(), u"/chosen"_s);
    editor.Field(u"txtCommand"_s).setText(u"/opt/csound"_s);
    editor.context.desktop.ExpectBrowseFolder(u"Select initial directory for the 2nd action."_s, {},
                                              u"/second"_s);
    editor.Button(u"b2ndFolder"_s).click();
    QCOMPARE(editor.Field(u"txt2ndFolder"_s).text(), u"/second"_s);
}

void TestFrmPresets::BitmapsArePicked()
{
    Editor editor;
    const QString red = editor.WritePicture(u"red.bmp"_s, Qt::red);
    editor.Open();
    const FileDialogRequest request{
        .title = u"Select an image"_s,
        .filters = {{u"Images"_s, u"*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.ico;*.cur"_s}}};
    editor.dialog->setImgnumber(104);
    editor.context.desktop.ExpectOpenDialog(request, {});
    editor.Button(u"bBitmap"_s).click();
    QCOMPARE(Picture(editor.Preview().Icon()), Picture(Icons::LoadImage(104)));
    editor.context.desktop.ExpectOpenDialog(request, {red});
    editor.Button(u"bBitmap"_s).click();
    QCOMPARE(editor.Field(u"TxtBitmap"_s).text(), red);
    QCOMPARE(Picture(editor.Preview().Icon()).pixel(8, 8), qRgb(255, 0, 0));
}

void TestFrmPresets::FlagsArePicked()
{
    Editor editor;
    editor.Open();
    editor.Field(u"txtCommand"_s).setText(u"/opt/csound"_s);
    for (const QString &which : {u""_s, u"2nd"_s}) {
        QLineEdit &args = editor.Field(u"txt"_s + which + u"Args"_s);
        QPushButton &button = editor.Button(u"b"_s + which + u"PickFlag"_s);
        editor.Pages().setCurrentIndex(which.isEmpty() ? 0 : 1);
        args.setText(u"-o x.wav"_s);
        args.setFocus();
        args.setSelection(0, 8);
        ModalDriver modal;
        modal.Expect<frmFlags>([](frmFlags &dialog) {
            dialog.findChild<QLineEdit *>(u"txtFlags"_s)->setText(u"-W -d"_s);
            dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
        });
        button.click();
        QCOMPARE(args.text(), u"-W -d"_s);
        // With Ctrl held: a menu instead.
        editor.context.desktop.keysDown = {KeyCode::Ctrl};
        args.setFocus();
        args.setSelection(0, 2);
        button.click();
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QCOMPARE(menu->actions().size(), 56);
        for (QAction *action : menu->actions()) {
            if (action->text().startsWith(u"-A\t"_s))
                action->trigger();
        }
        menu->close();
        QCOMPARE(args.text(), u"-A -d"_s);
        QCOMPARE(args.cursorPosition(), 2);
        editor.context.desktop.keysDown = {};
    }
}

void TestFrmPresets::ImageIsPicked()
{
    Editor editor;
    editor.Open();
    editor.TypeName(u"mine"_s);
    editor.Field(u"TxtBitmap"_s).setText(u"/no/such"_s);
    {
        ModalDriver modal;
        modal.Expect<frmImages>([](frmImages &dialog) { dialog.reject(); });
        editor.Button(u"bImages"_s).click();
    }
    QCOMPARE(editor.Field(u"TxtBitmap"_s).text(), u"/no/such"_s);
    ModalDriver modal;
    modal.Expect<frmImages>([](frmImages &dialog) {
        QTest::keyClick(&dialog, Qt::Key_Down);
        QTest::keyClick(&dialog, Qt::Key_Down);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    editor.Button(u"bImages"_s).click();
    QCOMPARE(editor.Field(u"TxtBitmap"_s).text(), QString());
    QCOMPARE(Picture(editor.Preview().Icon()), Picture(Icons::LoadImage(103)));
    editor.Key(Qt::Key_S);
    QCOMPARE(editor.Stored(u"mine"_s, u"Image"_s), u"103"_s);
}

void TestFrmPresets::ShowsAPresetByName()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"/bin/one"_s}});
    editor.Add(u"two"_s, {{u"Command"_s, u"/bin/two"_s}});
    for (const auto &[asked, shown] :
         {std::pair{u"two"_s, u"two"_s}, {u"TWO"_s, u"one"_s}, {u"gone"_s, u"one"_s}, {u""_s, u"one"_s}}) {
        ModalDriver modal;
        modal.Expect<frmPresets>([shown](frmPresets &dialog) {
            QVERIFY(dialog.isModal());
            QCOMPARE(dialog.findChild<QComboBox *>(u"cmbPreset"_s)->currentText(), shown);
            QCOMPARE(dialog.findChild<QLineEdit *>(u"txtCommand"_s)->text(), u"/bin/"_s + shown);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        ShowPresetEditor(editor.run, asked);
    }
}

void TestFrmPresets::WheelOverTheListChoosesNothing()
{
    Editor editor;
    editor.Add(u"one"_s, {{u"Command"_s, u"/bin/one"_s}});
    editor.Add(u"two"_s, {{u"Command"_s, u"/bin/two"_s}});
    editor.Open();
    QComboBox &list = editor.List(u"cmbPreset"_s);
    editor.Field(u"txtCommand"_s).setFocus();
    const QPoint at = list.rect().center();
    QWheelEvent wheel(QPointF(at), QPointF(list.mapToGlobal(at)), {}, QPoint(0, -120), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&list, &wheel);
    QCOMPARE(editor.Name(), u"one"_s);
    QCOMPARE(editor.Field(u"txtCommand"_s).text(), u"/bin/one"_s);
}

void TestFrmPresets::ButtonsAreFlatAsSet()
{
    Editor editor;
    editor.Open();
    QVERIFY(editor.Find<QToolButton>(u"tlbPreset_save"_s).autoRaise());
    editor.context.settings.SaveStoredText(Keys::FlatButtons, u"0"_s);
    editor.Open();
    QVERIFY(!editor.Find<QToolButton>(u"tlbPreset_save"_s).autoRaise());
}

int main(int argc, char **argv)
{
    return RunUiTest<TestFrmPresets>(argc, argv);
}
#include "test_frmpresets.moc"
