// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/ui/frmoptions.h"

#include "language/languagekeys.h"
#include "platform/desktop.h"
#include "platform/filetypes.h"
#include "platform/runtimeerror.h"
#include "platform/systemcolour.h"
#include "platform/ui/textcontrol.h"
#include "platform/windowstate.h"
#include "preferences/allsettingkeys.h"
#include "preferences/preferences.h"
#include "preferences/ui/colourbutton.h"
#include "preferences/ui/preferencescommands.h"
#include "shell/command.h"
#include "shell/editorkeys.h"
#include "shell/layoutkeys.h"
#include "shell/settings.h"
#include "shell/ui/appearance.h"
#include "shell/ui/bandbar.h"
#include "shell/ui/commands.h"
#include "support/boxes.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/scripteddesktop.h"
#include "support/uitest.h"

#include <algorithm>
#include <memory>
#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontDatabase>
#include <QFontDialog>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <type_traits>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A key that the dialog shows.
struct Shown {
    QString name;
    SettingKind kind;
    QString other; ///< a stored value that is not the default
};

std::vector<Shown> ShownKeys()
{
    std::vector<Shown> keys;
    ForEachSettingKey([&]<typename Key>(const Key &key) {
        if constexpr (std::is_base_of_v<OptionKey, Key>) {
            if (key.writer != KeyWriter::Preferences)
                return;
            QString other = u"other "_s + key.Name();
            if constexpr (std::is_base_of_v<FlagKey, Key>)
                other = key.fallback ? u"0"_s : u"-1"_s;
            else if constexpr (std::is_base_of_v<NumberKey, Key>)
                other = QString::number(key.fallback + 1);
            else if constexpr (std::is_same_v<BareFlagKey, Key>)
                other = u"0"_s;
            keys.push_back({key.Name(), key.kind, other});
        }
    });
    return keys;
}

/// What a control shows, as one text; "on" and "off" for boxes and options.
QString ShownBy(const QWidget *control)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(control))
        return button->isChecked() ? u"on"_s : u"off"_s;
    if (const auto *list = qobject_cast<const QComboBox *>(control))
        return QString::number(list->currentIndex());
    if (const auto *field = qobject_cast<const QLineEdit *>(control))
        return field->text();
    return u"no control"_s;
}

/// The same for what is stored.
QString ShownFor(SettingKind kind, const QString &stored)
{
    if (kind == SettingKind::Flag || kind == SettingKind::NumericFlag)
        return ToBoolean(stored) ? u"on"_s : u"off"_s;
    return stored;
}

/// Changes what a control shows, as the user does.
void Change(QWidget *control)
{
    if (auto *button = qobject_cast<QAbstractButton *>(control))
        button->click();
    else if (auto *list = qobject_cast<QComboBox *>(control))
        list->setCurrentIndex((list->currentIndex() + 1) % list->count());
    else if (auto *field = qobject_cast<QLineEdit *>(control))
        field->setText(u"changed "_s + control->objectName());
}

/// What stands on the controls of a page, in the order of their making: "NAME=CAPTION", "NAME=CAPTION|HINT",
/// or "[FRAME]".
QStringList Captions(const QWidget &page)
{
    QHash<const QWidget *, const QLabel *> labels;
    for (const QLabel *label : page.findChildren<QLabel *>())
        if (label->buddy())
            labels[label->buddy()] = label;
    QStringList captions;
    for (const QWidget *control : page.findChildren<QWidget *>()) {
        if (const auto *frame = qobject_cast<const QGroupBox *>(control))
            captions.append(u'[' + frame->title() + u']');
        if (control->objectName().isEmpty() || control->objectName().startsWith(u"qt_"_s) ||
            control->parentWidget()->inherits("QComboBox"))
            continue;
        const QLabel *label = labels.value(control, qobject_cast<const QLabel *>(control));
        if (label && label->buddy() && label == control)
            continue; // told with its field
        const auto *button = qobject_cast<const QAbstractButton *>(control);
        const QString caption = label ? label->text() : button ? button->text() : u"(none)"_s;
        const QString hint = control->toolTip();
        captions.append(control->objectName() + u'=' + caption + (hint.isEmpty() ? QString() : u'|' + hint));
    }
    return captions;
}

struct RecordedRegistry : FileTypeRegistry {
    std::vector<ProgramFiles> registered;
    void Register(const ProgramFiles &files) override { registered.push_back(files); }
};

struct Options {
    QTemporaryDir folder;
    QString file = folder.filePath(u"settings"_s);
    SettingsStore settings{file};
    ScriptedDesktop desktop;
    Appearance looks{settings};
    TextControl text{desktop};
    RecordedRegistry fileTypes;
    std::unique_ptr<frmOptions> dialog;

    void Open()
    {
        dialog.reset();
        dialog = std::make_unique<frmOptions>(OptionsContext{settings, desktop, looks, text, fileTypes});
        dialog->show();
        if (!QTest::qWaitForWindowActive(dialog.get()))
            QTest::qFail("the dialog is not the active window", __FILE__, __LINE__);
    }
    template <typename Widget = QWidget> Widget &Find(const QString &name)
    {
        auto *found = dialog->findChild<Widget *>(name);
        if (!found)
            qFatal("no child named %s", qPrintable(name));
        return *found;
    }
    void Click(const QString &name) { Find<QAbstractButton>(name).click(); }
    QString Stored(const QString &key) { return settings.GetSetting(u"Options", key, u"none"_s); }
};

/// Oblique styles of fonts come in a package of their own.
bool HasStyle(const QString &family, bool bold, bool italic)
{
    const QStringList styles = QFontDatabase::styles(family);
    return std::any_of(styles.begin(), styles.end(), [&](const QString &style) {
        const QFont font = QFontDatabase::font(family, style, 10);
        return font.bold() == bold && font.italic() == italic;
    });
}

/// What the list of the font picker offers: its first one.
QStringList Families(const QFontDialog &picker)
{
    const QAbstractItemModel &rows = *picker.findChild<QListView *>()->model();
    QStringList families;
    for (int row = 0; row < rows.rowCount(); ++row)
        families.append(rows.index(row, 0).data().toString());
    return families;
}

} // namespace

class FrmOptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EachSettingHasItsControl();
    void ControlsSayWhatTheyDo();
    void AnEmptyStoreGivesTheDefaults();
    void EverySettingGoesRound();
    void StoredFormsAreThoseOfTheControls();
    void OptionsThatDisagreeShowWhatTheProgramReads_data();
    void OptionsThatDisagreeShowWhatTheProgramReads();
    void AFileEditedMeanwhileLosesNothingElse();
    void AStoreThatComesBackKeepsItsValues();
    void AStoreThatCannotBeReadShowsNoDialog();
    void WhatCannotBeReadStaysUntilItIsChanged();
    void SettingsOfOthersStayAsTheyAre();
    void OnlyApplyAndOkWrite();
    void AStoreThatCannotBeWrittenKeepsTheDialog();
    void ColoursNeedSystemColorsOff();
    void APickedColourIsStored();
    void TheFontIsSetAtOnce();
    void AProgramOfOneDialogStoresItsFont();
    void AFontThatCannotBeStoredIsToldAlone();
    void SyntaxElementsNameTheSample();
    void ToolFieldsTellWhatTheyName();
    void BrowseButtonsAsk();
    void VariablesAreShown();
    void ExtensionsAreAssociatedAsTheyStand();
    void PagesTurnFromEverywhere();
    void SmallPagesFollowTheKeyboard();
    void SavingComesBeforeTheLooks();
    void TheWindowFollowsAtOnce();
    void SyntaxColoursWait();
    void TheQuestionLeadsHere();
    void OtherQuestionsLeadHereToo_data();
    void OtherQuestionsLeadHereToo();
};

void FrmOptionsTest::EachSettingHasItsControl()
{
    Options options;
    options.Open();
    QCOMPARE(options.dialog->windowTitle(), u"Zelvane - Preferences"_s);
    QSet<QString> declared;
    for (const Shown &key : ShownKeys())
        declared.insert(key.name);
    QSet<QString> found;
    for (const QWidget *control : options.dialog->findChildren<QWidget *>()) {
        if (control->objectName().startsWith(u"qt_"_s))
            continue;
        if (qobject_cast<const QCheckBox *>(control) || qobject_cast<const QComboBox *>(control) ||
            qobject_cast<const QLineEdit *>(control) || qobject_cast<const QRadioButton *>(control))
            found.insert(control->objectName());
    }
    QCOMPARE(found, declared);
}

void FrmOptionsTest::ControlsSayWhatTheyDo()
{
    // Each with what stands on it or before it, and its hint. A frame stands before its controls.
    const QString works = u"Works only at file opening."_s;
    const QString extras = u"Commands of the menu Extras."_s;
    const std::vector<std::pair<QString, QStringList>> pages = {
        {u"Editor"_s,
         {u"[Colors and font]"_s, u"SystemColors=Use &system colors"_s, u"bBackColor=&Back Color:|#ffffff"_s,
          u"bFontColor=Fo&nt Color:|#000000"_s, u"bFont=Set &Font..."_s,
          u"FixedPitchFonts=&Fixed Pitch Fonts|The list of fonts holds only those whose characters have one "
          "width."_s,
          u"[Tabs]"_s, u"TabInsertSpaces=&Insert spaces"_s, u"RealTabs=Keep &tabs"_s,
          u"TabSpaces=S&paces in a tab:|How many spaces are worth one tab."_s,
          u"TabSize=Tab si&ze:|Distance of the tab stops in dialog units, a quarter of a character each; 0 "
          u"is "
          "the editor's own. Works from the next start on."_s,
          u"DragAndDrop=&Drag-and-drop text editing"_s, u"SyntaxHighlight=Syntax &highlight|"_s + works,
          u"CppComments=&Use C style comments"_s, u"[Line separation]"_s,
          u"LineWidth=Line &width:|How many characters a separator line has."_s,
          u"LineStyle1=Style &1:|What the first separator line of the Insert menu is made of."_s,
          u"LineStyle2=Style &2:|What the second separator line of the Insert menu is made of."_s}},
        {u"Syntax colors"_s,
         {u"lstSyntaxElements=Syntax &elements:"_s, u"lblSample=Sample"_s, u"bColor=Color..."_s}},
        {u"General"_s,
         {u"[Display]"_s,
          u"SingleSelection=&Tree single selection"_s,
          u"ExpandBrowse=&Expand Code Outline"_s,
          u"HotTracking=&Hot tracking"_s,
          u"Splash=&Splash screen"_s,
          u"BandLabels=&Band labels"_s,
          u"FlatButtons=&Flat buttons"_s,
          u"[General]"_s,
          u"DeleteTempFiles=&Delete temp files at startup"_s,
          u"RememberCaret=&Remember caret position"_s,
          u"SaveOnSwitch=Save on &Orc/Sco switch"_s,
          u"ConfirmPresets=&Confirm Preset"_s,
          u"OverwritePrompt=&Warn before overwrite"_s,
          u"MinimizeOnPresets=&Minimize before Preset"_s,
          u"MultipleInstances=Allow multiple &instances"_s,
          u"SliderNegative=&Negative numbers on Slider"_s,
          u"SafetyCopy=&Keep a copy of unsaved text|What was not saved is offered again after a crash or a "
          "power cut."_s,
          u"Startup=At start&up:"_s,
          u"BakPath=Backu&p folder:|Empty: the folder of the document."_s,
          u"bBakPath=Browse..."_s}},
        {u"Programs"_s,
         {u"Csound=&Csound:"_s, u"bCsound=Browse..."_s, u"Csound2=Csound #&2:"_s, u"bCsound2=Browse..."_s,
          u"Help=&Help:"_s, u"bHelp=Browse..."_s, u"Editor=Sound &editor:"_s, u"bEditor=Browse..."_s,
          u"Player=Sound &player:"_s, u"bPlayer=Browse..."_s, u"[Environment variables]"_s,
          u"lblSFDIR=SFDIR: |SFDIR: "_s, u"lblSSDIR=SSDIR: |SSDIR: "_s, u"lblSADIR=SADIR: |SADIR: "_s,
          u"lblINCDIR=INCDIR: |INCDIR: "_s}},
        {u"Extensions"_s,
         {u"OrchestraExtensions=&Orchestra:"_s, u"ScoreExtensions=&Score:"_s,
          u"UFFExtensions=&Unified format:"_s, u"SoundExtensions=Sou&nd:"_s, u"MIDIExtensions=&MIDI:"_s,
          u"lblExtensions=Type extensions separated by only one space. Example: \"xxx yyy zzz\" NOT \"*.xxx "
          ".yyy    zzz\" "_s,
          u"bAssociate=Associate e&xtensions..."_s}},
        {u"Writing"_s,
         {u"[While you type]"_s,
          u"LiveColours=Color the text as it is t&yped|Without a refresh, where Syntax highlight is on."_s,
          u"Completion=Complete &words|Ctrl+Space lists opcodes and names of the text that begin like the word."_s,
          u"AutoComplete=List &them after three letters|The list of words comes up by itself."_s,
          u"ArgumentHint=&Hints on arguments|A tip shows what the opcode at the caret takes; "
          u"Ctrl+Shift+Space "
          "brings it back."_s,
          u"AutoIndent=&Indent by itself|A new line begins below the last one, deeper in an instrument, a "
          "condition or a loop."_s,
          u"MoveLines=&Duplicate and move lines|"_s + extras, u"[In the text]"_s,
          u"LineNumbers=&Line numbers"_s, u"CurrentLine=Mark the line of the &caret"_s,
          u"BracketMatch=Mark matching &brackets|Quotes and tags too."_s,
          u"SameWord=Mark the same word &everywhere|Wherever the word at the caret stands in sight."_s,
          u"Folding=&Fold parts of the text|Instruments, opcodes, conditions, loops, tags and comments can "
          u"be "
          "shut."_s,
          u"Bookmarks=Boo&kmarks|"_s + extras, u"[Search]"_s,
          u"FindInFiles=Find in file&s|A command of the menu Extras."_s,
          u"RegularExpressions=&Regular expressions|In Find and Replace: a box that makes the text a pattern."_s,
          u"bAllAids=Turn all o&n"_s}},
    };
    Options options;
    options.Open();
    const auto &tabs = options.Find<QTabWidget>(u"tbsOptions"_s);
    QCOMPARE(tabs.count(), int(pages.size()));
    for (int page = 0; page < int(pages.size()); ++page) {
        QCOMPARE(tabs.tabText(page), pages[size_t(page)].first);
        QCOMPARE(tabs.widget(page)->objectName(), u"picOptions_"_s + QString::number(page));
        const QStringList shown = Captions(*tabs.widget(page));
        const QStringList &expected = pages[size_t(page)].second;
        for (qsizetype i = 0; i < expected.size(); ++i)
            QCOMPARE(shown.value(i), expected[i]);
        QCOMPARE(shown.size(), expected.size());
    }
    QCOMPARE(options.Find<QPushButton>(u"cmdOK"_s).text(), u"OK"_s);
    QCOMPARE(options.Find<QPushButton>(u"cmdCancel"_s).text(), u"Cancel"_s);
    QCOMPARE(options.Find<QPushButton>(u"cmdApply"_s).text(), u"&Apply"_s);
}

void FrmOptionsTest::AnEmptyStoreGivesTheDefaults()
{
    Options options;
    options.Open();
    QVERIFY2(options.settings.GetAllSettings(u"Options").empty(), "reading creates no key");
    ForEachSettingKey([&]<typename Key>(const Key &key) {
        if constexpr (requires { key.fallback; }) {
            if (key.writer != KeyWriter::Preferences)
                return;
            const QString shown = ShownBy(&options.Find(key.Name()));
            if constexpr (std::is_base_of_v<FlagKey, Key>)
                QVERIFY2(shown == (key.fallback ? u"on"_s : u"off"_s), qPrintable(key.Name()));
            else if constexpr (std::is_base_of_v<TextKey, Key>)
                QVERIFY2(shown == QStringView(key.fallback), qPrintable(key.Name()));
            else
                QVERIFY2(shown == QString::number(key.fallback), qPrintable(key.Name()));
        }
    });
    QVERIFY(options.Find<QRadioButton>(u"RealTabs"_s).isChecked());
}

void FrmOptionsTest::EverySettingGoesRound()
{
    for (const Shown &key : ShownKeys()) {
        Options options;
        options.settings.SaveSetting(u"Options", key.name, key.other);
        options.Open();
        QWidget &control = options.Find(key.name);
        const QString shown = ShownFor(key.kind, key.other);
        // One of two options is always chosen: what stands alone in the store as "no" leaves it.
        if (key.name != u"RealTabs")
            QVERIFY2(ShownBy(&control) == shown, qPrintable(key.name + u' ' + ShownBy(&control)));
        options.Click(u"cmdApply"_s);
        QVERIFY2(ShownFor(key.kind, options.Stored(key.name)) == ShownBy(&control), qPrintable(key.name));

        Change(&control);
        const QString changed = ShownBy(&control);
        options.Click(u"cmdOK"_s);
        QVERIFY(!options.dialog->isVisible());
        QVERIFY2(ShownFor(key.kind, options.Stored(key.name)) == changed, qPrintable(key.name));
        options.Open();
        QVERIFY2(ShownBy(&options.Find(key.name)) == changed, qPrintable(key.name));
    }
}

void FrmOptionsTest::StoredFormsAreThoseOfTheControls()
{
    Options options;
    options.settings.SaveFlag(Keys::Splash, true); // "-1"
    options.Open();
    QVERIFY(options.Find<QCheckBox>(u"Splash"_s).isChecked());
    options.Click(u"cmdApply"_s);
    QCOMPARE(options.Stored(u"Splash"_s), u"1"_s);
    QCOMPARE(options.Stored(u"HotTracking"_s), u"0"_s);
    QCOMPARE(options.Stored(u"TabInsertSpaces"_s), u"False"_s);
    QCOMPARE(options.Stored(u"RealTabs"_s), u"True"_s);
    QCOMPARE(options.Stored(u"Startup"_s), u"0"_s);
    QCOMPARE(options.Stored(u"TabSpaces"_s), u"8"_s);
    QCOMPARE(options.Stored(u"BackColor"_s), u"-2147483643"_s);
    QCOMPARE(options.Stored(u"FontColor"_s), u"-2147483640"_s);
    for (const char16_t *key : {u"CommentsColor", u"OpcodeColor", u"KeywordColor", u"MacroColor",
                                u"LiteralColor", u"TagColor", u"ColorComments", u"Font"})
        QCOMPARE(options.Stored(QString::fromUtf16(key)), u"none"_s);
}

void FrmOptionsTest::OptionsThatDisagreeShowWhatTheProgramReads_data()
{
    QTest::addColumn<QString>("insert");
    QTest::addColumn<QString>("keep");
    QTest::addColumn<bool>("inserts");
    QTest::newRow("both") << u"1"_s << u"True"_s << true;
    QTest::newRow("none") << u"0"_s << u"False"_s << false;
    QTest::newRow("only spaces") << u"True"_s << QString() << true;
    QTest::newRow("only tabs") << QString() << u"True"_s << false;
}

void FrmOptionsTest::OptionsThatDisagreeShowWhatTheProgramReads()
{
    QFETCH(QString, insert);
    QFETCH(QString, keep);
    QFETCH(bool, inserts);
    Options options;
    if (!insert.isEmpty())
        options.settings.SaveSetting(u"Options", u"TabInsertSpaces", insert);
    if (!keep.isEmpty())
        options.settings.SaveSetting(u"Options", u"RealTabs", keep);
    QCOMPARE(options.settings.Flag(Keys::TabInsertSpaces), inserts);
    options.Open();
    QCOMPARE(options.Find<QRadioButton>(u"TabInsertSpaces"_s).isChecked(), inserts);
    QCOMPARE(options.Find<QRadioButton>(u"RealTabs"_s).isChecked(), !inserts);
}

void FrmOptionsTest::AFileEditedMeanwhileLosesNothingElse()
{
    Options options;
    options.settings.SaveText(Keys::BakPath, u"/before"_s);
    options.Open();
    QFile file(options.file);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("; a note of mine\n[Options]\nCommentsColor=4711\nBakPath=/meanwhile\nunknown=kept\nUsed=77\n"
               "[Recent File List]\n1=/piece.csd\n[Presets]\nMine=\n[Mine]\nCommand=/bin/true\n");
    file.close();
    options.Find<QLineEdit>(u"UFFExtensions"_s).setText(u"csd xml"_s);
    options.Click(u"cmdOK"_s);
    SettingsStore after(options.file);
    QCOMPARE(after.GetSetting(u"Options", u"CommentsColor"), u"4711"_s);
    QCOMPARE(after.GetSetting(u"Options", u"unknown"), u"kept"_s);
    QCOMPARE(after.GetSetting(u"Options", u"Used"), u"77"_s);
    QCOMPARE(after.GetSetting(u"Recent File List", u"1"), u"/piece.csd"_s);
    QCOMPARE(after.GetSetting(u"Mine", u"Command"), u"/bin/true"_s);
    QCOMPARE(after.GetSetting(u"Options", u"UFFExtensions"), u"csd xml"_s);
    QCOMPARE(after.GetSetting(u"Options", u"BakPath"), u"/meanwhile"_s); // nobody has touched the field
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().startsWith("; a note of mine"));
}

void FrmOptionsTest::AStoreThatComesBackKeepsItsValues()
{
    Options options;
    for (const Shown &key : ShownKeys())
        options.settings.SaveSetting(u"Options", key.name, key.other);
    options.settings.SaveColour(Keys::BackColor, 0x102030);
    const auto before = options.settings.GetAllSettings(u"Options");
    // An editor has renamed the file, and writes the new one only later.
    const QString away = options.file + u'~';
    QVERIFY(QFile::rename(options.file, away));
    options.Open();
    QVERIFY(QFile::rename(away, options.file));
    options.Find<QLineEdit>(u"BakPath"_s).setText(u"/mine"_s);
    options.Click(u"cmdApply"_s);
    for (const auto &[key, value] : before) {
        // What is written is the same in the form of the control.
        const QString shown = ShownBy(options.dialog->findChild<QWidget *>(key));
        const bool flag = shown == u"on"_s || shown == u"off"_s;
        if (key == u"BakPath"_s)
            QCOMPARE(options.Stored(key), u"/mine"_s);
        else if (flag && key != u"RealTabs"_s)
            QVERIFY2(ToBoolean(options.Stored(key)) == ToBoolean(value), qPrintable(key));
        else if (!flag)
            QVERIFY2(options.Stored(key) == value, qPrintable(key));
    }
    // From now on the dialog shows what there is.
    QCOMPARE(options.Find<QLineEdit>(u"Csound"_s).text(), u"other Csound"_s);
    QCOMPARE(options.Find<ColourButton>(u"bBackColor"_s).Colour(), 0x102030u);
}

void FrmOptionsTest::AStoreThatCannotBeReadShowsNoDialog()
{
    EditorWindow editor;
    editor.settings.SaveText(Keys::BakPath, u"/mine"_s);
    editor.Open();
    const QString file = editor.storeFolder.filePath(u"settings"_s);
    const QString away = file + u'~';
    QVERIFY(QFile::rename(file, away));
    QVERIFY(QDir().mkdir(file));
    try {
        editor.settings.SaveNumber(Keys::Window, 1);
        QFAIL("the store can be written");
    } catch (const RunTimeError &failure) {
        editor.desktop.ExpectMessage(ErrorBox(failure), BoxAnswer::Cancel);
    }
    editor.Row(u"mnuPreferences"_s).trigger(); // would not come back from a dialog
    QVERIFY(QDir().rmdir(file));
    QVERIFY(QFile::rename(away, file));

    // It can be read again.
    ModalDriver driver;
    driver.Expect<frmOptions>([&](frmOptions &dialog) {
        QCOMPARE(dialog.findChild<QLineEdit *>(u"BakPath"_s)->text(), u"/mine"_s);
        dialog.findChild<QPushButton *>(u"cmdCancel"_s)->click();
    });
    editor.Row(u"mnuPreferences"_s).trigger();
}

void FrmOptionsTest::WhatCannotBeReadStaysUntilItIsChanged()
{
    Options options;
    options.settings.SaveSetting(u"Options", u"Startup", u"3");
    options.settings.SaveSetting(u"Options", u"Splash", u"q");
    options.settings.SaveSetting(u"Options", u"BackColor", u"white");
    options.Open();
    auto &startup = options.Find<QComboBox>(u"Startup"_s);
    QCOMPARE(startup.currentIndex(), 0);
    options.Click(u"cmdApply"_s);
    QCOMPARE(options.Stored(u"Startup"_s), u"3"_s);
    QCOMPARE(options.Stored(u"Splash"_s), u"q"_s);
    QCOMPARE(options.Stored(u"BackColor"_s), u"white"_s);
    startup.setCurrentIndex(2);
    options.Click(u"Splash"_s);
    options.Find<ColourButton>(u"bBackColor"_s).SetColour(5);
    options.Click(u"cmdOK"_s);
    QCOMPARE(options.Stored(u"Startup"_s), u"2"_s);
    QCOMPARE(options.Stored(u"Splash"_s), u"0"_s);
    QCOMPARE(options.Stored(u"BackColor"_s), u"5"_s);
}

void FrmOptionsTest::SettingsOfOthersStayAsTheyAre()
{
    Options options;
    QStringList others;
    ForEachSettingKey([&]<typename Key>(const Key &key) {
        if constexpr (!std::is_base_of_v<OptionKey, Key>)
            others.append(key.keys.first.Name());
        else if (key.writer != KeyWriter::Preferences)
            others.append(key.Name());
    });
    // These two are on buttons.
    QVERIFY(others.removeOne(u"BackColor"_s));
    QVERIFY(others.removeOne(u"FontColor"_s));
    options.Open();
    for (const QString &key : others)
        options.settings.SaveSetting(u"Options", key, u"set meanwhile: "_s + key);
    options.Click(u"cmdOK"_s);
    for (const QString &key : others)
        QCOMPARE(options.Stored(key), u"set meanwhile: "_s + key);
    QCOMPARE(size_t(options.settings.GetAllSettings(u"Options").size()),
             size_t(others.size()) + ShownKeys().size() + 2);
}

void FrmOptionsTest::OnlyApplyAndOkWrite()
{
    Options options;
    options.Open();
    options.Click(u"HotTracking"_s);
    options.Click(u"cmdCancel"_s);
    QVERIFY(!options.dialog->isVisible());
    QCOMPARE(options.Stored(u"HotTracking"_s), u"none"_s);

    options.Open();
    QVERIFY(!options.Find<QCheckBox>(u"HotTracking"_s).isChecked());
    options.Click(u"HotTracking"_s);
    options.Click(u"cmdApply"_s);
    QVERIFY(options.dialog->isVisible());
    options.Click(u"Splash"_s);
    options.Click(u"cmdCancel"_s);
    QCOMPARE(options.Stored(u"HotTracking"_s), u"1"_s); // what was applied before stays
    QCOMPARE(options.Stored(u"Splash"_s), u"1"_s);
}

void FrmOptionsTest::AStoreThatCannotBeWrittenKeepsTheDialog()
{
    Options options;
    options.settings.SaveText(Keys::BakPath, u"/a"_s);
    options.Open();
    options.Find<QLineEdit>(u"BakPath"_s).setText(u"/b"_s);
    QFile::remove(options.file + u".lock"_s);
    QVERIFY(QDir().mkdir(options.file + u".lock"_s));
    try {
        options.settings.SaveNumber(Keys::Window, 1);
        QFAIL("the store can be written");
    } catch (const RunTimeError &failure) {
        options.desktop.ExpectMessage(ErrorBox(failure), BoxAnswer::Cancel);
    }
    options.Click(u"cmdOK"_s);
    QVERIFY(options.dialog->isVisible());
    QCOMPARE(options.Find<QLineEdit>(u"BakPath"_s).text(), u"/b"_s);
    QCOMPARE(options.Stored(u"BakPath"_s), u"/a"_s);
    QVERIFY(QDir().rmdir(options.file + u".lock"_s));
    options.Click(u"cmdOK"_s);
    QVERIFY(!options.dialog->isVisible());
    QCOMPARE(options.Stored(u"BakPath"_s), u"/b"_s);
}

void FrmOptionsTest::ColoursNeedSystemColorsOff()
{
    Options options;
    options.Open();
    const QStringList names{u"lblBackColor"_s, u"bBackColor"_s, u"lblFontColor"_s, u"bFontColor"_s};
    for (const QString &name : names)
        QVERIFY2(!options.Find(name).isEnabled(), qPrintable(name));
    options.Click(u"SystemColors"_s);
    for (const QString &name : names)
        QVERIFY2(options.Find(name).isEnabled(), qPrintable(name));
    QVERIFY(options.Find(u"bFont"_s).isEnabled());
    options.Click(u"cmdOK"_s);
    options.Open();
    for (const QString &name : names)
        QVERIFY2(options.Find(name).isEnabled(), qPrintable(name));
}

void FrmOptionsTest::APickedColourIsStored()
{
    Options options;
    AddTextLooks(options.looks, options.text);
    options.settings.SaveFlag(Keys::SystemColors, false);
    options.settings.SaveColour(Keys::FontColor, 0x0000FF);
    options.Open();
    ModalDriver driver;
    driver.Expect<QColorDialog>([](QColorDialog &picker) {
        QCOMPARE(picker.currentColor(), QColor(255, 0, 0));
        picker.setCurrentColor(QColor(1, 2, 3));
        picker.accept();
    });
    options.Click(u"bFontColor"_s);
    // Seen, and left as it is: the background is still the desktop's.
    driver.Expect<QColorDialog>([](QColorDialog &picker) { picker.accept(); });
    options.Click(u"bBackColor"_s);
    driver.Expect<QColorDialog>([](QColorDialog &picker) {
        picker.setCurrentColor(Qt::green);
        picker.reject();
    });
    options.Click(u"bBackColor"_s);
    QCOMPARE(options.Stored(u"FontColor"_s), u"255"_s);
    options.Click(u"cmdApply"_s);
    QCOMPARE(options.Stored(u"FontColor"_s), QString::number(0x030201));
    QCOMPARE(options.Stored(u"BackColor"_s), u"-2147483643"_s);
    QCOMPARE(options.Find<ColourButton>(u"bFontColor"_s).accessibleDescription(), u"#010203"_s);

    driver.Expect<QColorDialog>([](QColorDialog &picker) {
        picker.setCurrentColor(QColor(0x10, 0x20, 0x30));
        picker.accept();
    });
    options.Click(u"bBackColor"_s);
    options.Click(u"cmdApply"_s);
    QCOMPARE(options.Stored(u"BackColor"_s), QString::number(0x302010));
    QCOMPARE(options.text.SendScintilla(QsciScintillaBase::SCI_STYLEGETBACK,
                                        int(QsciScintillaBase::STYLE_DEFAULT)),
             0x302010);
}

void FrmOptionsTest::TheFontIsSetAtOnce()
{
    Options options;
    options.text.ApplyFont({.family = u"DejaVu Sans Mono"_s, .points = 11, .bold = true, .italic = false});
    options.Open();
    ModalDriver driver;
    driver.Expect<QFontDialog>([](QFontDialog &picker) {
        QVERIFY(picker.testOption(QFontDialog::MonospacedFonts));
        QVERIFY(picker.testOption(QFontDialog::DontUseNativeDialog)); // it would list all fonts
        QVERIFY(Families(picker).contains(u"DejaVu Sans Mono"_s));
        QVERIFY(!Families(picker).contains(u"DejaVu Sans"_s));
        QCOMPARE(picker.currentFont().pointSizeF(), 11);
        QVERIFY(picker.currentFont().bold());
        QFont font(u"DejaVu Sans Mono"_s);
        font.setPointSizeF(17);
        font.setStyleName(u"Book"_s);
        picker.setCurrentFont(font);
        picker.accept();
    });
    options.Click(u"bFont"_s);
    QCOMPARE(options.text.CurrentFont().points, 17);
    QVERIFY(!options.text.CurrentFont().bold);
    QVERIFY(!options.text.CurrentFont().italic);
    QCOMPARE(options.Stored(u"FontSize"_s), u"none"_s); // the window stores it when it closes

    options.Click(u"FixedPitchFonts"_s);
    driver.Expect<QFontDialog>([](QFontDialog &picker) {
        QVERIFY(!picker.testOption(QFontDialog::MonospacedFonts));
        QVERIFY(Families(picker).contains(u"DejaVu Sans"_s));
        QFont font = picker.currentFont();
        font.setPointSizeF(30);
        picker.setCurrentFont(font);
        picker.reject();
    });
    options.Click(u"bFont"_s);
    QCOMPARE(options.text.CurrentFont().points, 17);

    // A font that is only looked at stays what it is.
    for (const bool bold : {false, true}) {
        for (const bool italic : {false, true}) {
            const TextFont font{
                .family = u"DejaVu Sans Mono"_s, .points = 12.5, .bold = bold, .italic = italic};
            options.text.ApplyFont(font);
            driver.Expect<QFontDialog>([bold, italic](QFontDialog &picker) {
                if (HasStyle(u"DejaVu Sans Mono"_s, bold, italic)) {
                    QCOMPARE(picker.currentFont().bold(), bold);
                    QCOMPARE(picker.currentFont().italic(), italic);
                }
                picker.accept();
            });
            options.Click(u"bFont"_s);
            QVERIFY(options.text.CurrentFont() == font);
        }
    }
}

void FrmOptionsTest::AProgramOfOneDialogStoresItsFont()
{
    QTemporaryDir folder;
    SettingsStore settings(folder.filePath(u"settings"_s));
    settings.SaveText(Keys::Font, u"DejaVu Sans Mono"_s);
    settings.SaveNumber(Keys::FontSize, 11);
    ScriptedDesktop desktop;
    ModalDriver driver;
    const auto look = [&](double points) {
        driver.Expect<frmOptions>([&driver, points](frmOptions &dialog) {
            driver.Expect<QFontDialog>([points](QFontDialog &picker) {
                QCOMPARE(picker.currentFont().family(), u"DejaVu Sans Mono"_s);
                QFont font = picker.currentFont();
                font.setPointSizeF(points);
                picker.setCurrentFont(font);
                picker.accept();
            });
            dialog.findChild<QPushButton *>(u"bFont"_s)->click();
            dialog.findChild<QPushButton *>(u"cmdCancel"_s)->click();
        });
        ShowPreferencesAlone(settings, desktop);
    };
    look(11); // only looked at
    QCOMPARE(settings.GetSetting(u"Options", u"FontBold", u"none"_s), u"none"_s);
    look(17);
    QCOMPARE(settings.Number(Keys::FontSize, 0), 17);
    QCOMPARE(settings.Text(Keys::Font, {}), u"DejaVu Sans Mono"_s);
    QCOMPARE(settings.GetSetting(u"Options", u"FontBold"), u"0"_s);
    QCOMPARE(settings.GetSetting(u"Options", u"FontItalic"), u"0"_s);
}

void FrmOptionsTest::AFontThatCannotBeStoredIsToldAlone()
{
    QTemporaryDir folder;
    const QString file = folder.filePath(u"settings"_s);
    SettingsStore settings(file);
    settings.SaveNumber(Keys::FontSize, 11);
    ScriptedDesktop desktop;
    ModalDriver driver;
    driver.Expect<frmOptions>([&](frmOptions &dialog) {
        driver.Expect<QFontDialog>([](QFontDialog &picker) {
            QFont font = picker.currentFont();
            font.setPointSizeF(17);
            picker.setCurrentFont(font);
            picker.accept();
        });
        dialog.findChild<QPushButton *>(u"bFont"_s)->click();
        QFile::remove(file + u".lock"_s);
        QVERIFY(QDir().mkdir(file + u".lock"_s));
        try {
            settings.SaveNumber(Keys::Window, 1);
            QFAIL("the store can be written");
        } catch (const RunTimeError &failure) {
            desktop.ExpectMessage(ErrorBox(failure), BoxAnswer::Cancel);
        }
        dialog.findChild<QPushButton *>(u"cmdCancel"_s)->click();
    });
    ShowPreferencesAlone(settings, desktop); // and comes back: its caller has work to do
    QCOMPARE(settings.Number(Keys::FontSize, 0), 11);
}

void FrmOptionsTest::SyntaxElementsNameTheSample()
{
    Options options;
    options.Open();
    auto &list = options.Find<QListWidget>(u"lstSyntaxElements"_s);
    const auto &sample = options.Find<QLabel>(u"lblSample"_s);
    QCOMPARE(sample.text(), u"Sample"_s);
    QStringList samples;
    for (int row = 0; row < list.count(); ++row) {
        list.setCurrentRow(row);
        samples.append(sample.text());
    }
    QCOMPARE(samples, SyntaxElements());
    // The Tab key brings the first one.
    options.Open();
    options.Find<QTabWidget>(u"tbsOptions"_s).setCurrentIndex(1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"lstSyntaxElements"_s);
    QCOMPARE(options.Find<QLabel>(u"lblSample"_s).text(), u"Normal text"_s);
    QCOMPARE(options.Find<QListWidget>(u"lstSyntaxElements"_s).selectedItems().size(), 1);
    // The button has no action: nothing opens, nothing is stored.
    options.Click(u"bColor"_s);
    QVERIFY(!QApplication::activeModalWidget() || QApplication::activeModalWidget() == options.dialog.get());
    QVERIFY(options.settings.GetAllSettings(u"Options").empty());
}

void FrmOptionsTest::ToolFieldsTellWhatTheyName()
{
    Options options;
    options.desktop.typeNames[u"/bin/one"_s] = u"program"_s;
    options.desktop.executableKinds[u"/bin/one"_s] = u"ELF 64-bit"_s;
    options.desktop.typeNames[u"/a <b>.pdf"_s] = u"PDF document"_s;
    options.settings.SaveSetting(u"Options", u"Csound", u"/bin/one");
    options.Open();
    QCOMPARE(options.Find(u"Csound"_s).toolTip(), u"one: program ELF 64-bit"_s);
    for (const QString &name : {u"Csound"_s, u"Csound2"_s, u"Help"_s, u"Editor"_s, u"Player"_s}) {
        auto &field = options.Find<QLineEdit>(name);
        field.setText(u"/bin/one"_s);
        QCOMPARE(field.toolTip(), u"one: program ELF 64-bit"_s);
        for (const QString &other : {u"/bin/on"_s, QString(), u"\"/bin/one\""_s, u"one"_s}) {
            field.setText(other); // taken as it stands
            QCOMPARE(field.toolTip(), QString());
            field.setText(u"/bin/one"_s);
            QCOMPARE(field.toolTip(), u"one: program ELF 64-bit"_s);
        }
    }
    options.Find<QLineEdit>(u"Help"_s).setText(u"/a <b>.pdf"_s);
    QVERIFY(options.Find(u"Help"_s).toolTip().contains(u"a &lt;b&gt;.pdf: PDF document"_s));
}

void FrmOptionsTest::BrowseButtonsAsk()
{
    Options options;
    options.Open();
    const std::pair<QString, QString> programs[] = {{u"Csound"_s, u"Csound"_s},
                                                    {u"Csound2"_s, u"Csound #2"_s},
                                                    {u"Editor"_s, u"Sound editor"_s},
                                                    {u"Player"_s, u"Sound player"_s}};
    for (const auto &[key, title] : programs) {
        auto &field = options.Find<QLineEdit>(key);
        field.setText(u"/opt/"_s + key);
        options.desktop.ExpectOpenDialog(ProgramRequest(title, u"/opt/"_s + key), {});
        options.Click(u"b"_s + key);
        QCOMPARE(field.text(), u"/opt/"_s + key); // Cancel
        options.desktop.ExpectOpenDialog(ProgramRequest(title, u"/opt/"_s + key), {.path = u"/x y"_s});
        options.Click(u"b"_s + key);
        QCOMPARE(field.text(), u"/x y"_s);
    }
    options.desktop.ExpectOpenDialog(HelpFileRequest(u"Help"_s, {}), {.path = u"/csound.pdf"_s});
    options.Click(u"bHelp"_s);
    QCOMPARE(options.Find<QLineEdit>(u"Help"_s).text(), u"/csound.pdf"_s);
    options.desktop.ExpectOpenDialog(HelpFileRequest(u"Help"_s, u"/csound.pdf"_s), {});
    options.Click(u"bHelp"_s);
    QCOMPARE(options.Find<QLineEdit>(u"Help"_s).text(), u"/csound.pdf"_s);

    auto &backup = options.Find<QLineEdit>(u"BakPath"_s);
    backup.setText(u"/old"_s);
    options.desktop.ExpectBrowseFolder(u"Select the backup folder"_s, u"/old"_s, {});
    options.Click(u"bBakPath"_s);
    QCOMPARE(backup.text(), u"/old"_s);
    options.desktop.ExpectBrowseFolder(u"Select the backup folder"_s, u"/old"_s, u"/new"_s);
    options.Click(u"bBakPath"_s);
    QCOMPARE(backup.text(), u"/new"_s);
}

void FrmOptionsTest::VariablesAreShown()
{
    Options options;
    options.desktop.environment[u"SADIR"_s] = u"/an & alysis"_s;
    const QString deep = u"/"_s + QString(300, u'x');
    options.desktop.environment[u"INCDIR"_s] = deep;
    options.Open();
    QCOMPARE(options.Find<QLabel>(u"lblSFDIR"_s).text(), u"SFDIR: "_s);
    QCOMPARE(options.Find<QLabel>(u"lblSADIR"_s).text(), u"SADIR: /an & alysis"_s);
    QCOMPARE(options.Find<QLabel>(u"lblINCDIR"_s).accessibleName(), u"INCDIR: "_s + deep);
    QCOMPARE(options.Find<QLabel>(u"lblINCDIR"_s).toolTip(), u"INCDIR: "_s + deep);
    QVERIFY(options.dialog->width() <
            options.Find<QLabel>(u"lblINCDIR"_s).fontMetrics().horizontalAdvance(deep));
}

void FrmOptionsTest::ExtensionsAreAssociatedAsTheyStand()
{
    Options options;
    options.Open();
    options.Find<QLineEdit>(u"UFFExtensions"_s).setText(u"csd xml"_s);
    const MessageBoxRequest question{
        .text = u"Zelvane will register the following file extensions: \norc sco csd xml\nYou'll be able to "
                "use the Run Csound dialog and the Presets directly from the shell (really cool!). Do you "
                "want to continue?"_s,
        .icon = BoxIcon::Question,
        .buttons = BoxButtons::YesNo,
        .title = u"Associate extensions"_s};
    options.desktop.ExpectMessage(question, BoxAnswer::No);
    options.Click(u"bAssociate"_s);
    QVERIFY(options.fileTypes.registered.empty());
    options.desktop.ExpectMessage(question, BoxAnswer::Yes);
    options.desktop.ExpectMessage({.text = u"Extensions have been succesfully associated with Zelvane"_s,
                                   .icon = BoxIcon::Information});
    options.Click(u"bAssociate"_s);
    QCOMPARE(options.fileTypes.registered.size(), 1u);
    QCOMPARE(options.fileTypes.registered.front().types.back().extensions, (QStringList{u"csd"_s, u"xml"_s}));
    QVERIFY(options.settings.GetAllSettings(u"Options").empty()); // that is for OK
}

void FrmOptionsTest::PagesTurnFromEverywhere()
{
    Options options;
    options.Open();
    auto &pages = options.Find<QTabWidget>(u"tbsOptions"_s);
    QCOMPARE(pages.count(), 6);
    for (const QString &name : {u"cmdOK"_s, u"cmdCancel"_s, u"cmdApply"_s}) {
        pages.setCurrentIndex(0);
        QStringList seen;
        for (int i = 0; i < 6; ++i) {
            options.Find(name).setFocus();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
            seen.append(pages.currentWidget()->objectName());
        }
        QCOMPARE(seen.join(u' '),
                 u"picOptions_1 picOptions_2 picOptions_3 picOptions_4 picOptions_5 picOptions_0"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab,
                        Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(pages.currentIndex(), 5);
    }
    // And from every control of a page.
    for (int page = 0; page < 6; ++page) {
        pages.setCurrentIndex(page);
        for (QWidget *control : pages.widget(page)->findChildren<QWidget *>()) {
            pages.setCurrentIndex(page);
            if (!control->isVisible() || !control->isEnabled() || control->focusPolicy() == Qt::NoFocus)
                continue;
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Tab, Qt::ControlModifier);
            QVERIFY2(pages.currentIndex() == (page + 1) % 6, qPrintable(control->objectName()));
        }
    }
}

void FrmOptionsTest::SmallPagesFollowTheKeyboard()
{
    Options options;
    options.Open();
    auto &tabs = options.Find<QTabWidget>(u"tbsOptions"_s);
    const auto bars = [&] {
        int shown = 0;
        for (const QScrollBar *bar : tabs.currentWidget()->findChildren<QScrollBar *>())
            shown += bar->isVisible() && bar->window() == options.dialog.get() ? 1 : 0;
        return shown;
    };
    for (int page = 0; page < tabs.count(); ++page) {
        tabs.setCurrentIndex(page);
        QVERIFY2(bars() == 0, qPrintable(tabs.tabText(page))); // there is room for all
    }
    options.dialog->resize(options.dialog->minimumSizeHint());
    QVERIFY(options.dialog->height() < 400);
    for (int page = 0; page < tabs.count(); ++page) {
        tabs.setCurrentIndex(page);
        QCoreApplication::processEvents();
        const auto *area = qobject_cast<QScrollArea *>(tabs.currentWidget());
        QVERIFY(area);
        tabs.setFocus();
        for (int i = 0; i < 60; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QWidget *at = QApplication::focusWidget();
            if (area->widget()->isAncestorOf(at)) {
                const QRect place(at->mapTo(area->viewport(), QPoint(0, 0)), at->size());
                // What is wider or higher than the page shows a part of itself.
                const QRect part = place & area->viewport()->rect();
                QVERIFY2(part.height() >= std::min(at->height(), area->viewport()->height() / 2) &&
                             part.width() >= std::min(at->width(), area->viewport()->width() / 2),
                         qPrintable(u"%1: %2 %3 of %4 %5, %6 %7"_s.arg(at->objectName())
                                        .arg(place.x())
                                        .arg(place.y())
                                        .arg(place.width())
                                        .arg(place.height())
                                        .arg(area->viewport()->width())
                                        .arg(area->viewport()->height())));
            }
        }
    }
    // So does a key of its own, from another page's end.
    tabs.setCurrentIndex(2);
    auto &area = *qobject_cast<QScrollArea *>(tabs.currentWidget());
    area.verticalScrollBar()->setValue(0);
    QTest::keyClick(options.dialog.get(), Qt::Key_P, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"BakPath"_s);
    QVERIFY(!QApplication::focusWidget()->visibleRegion().isEmpty());
}

void FrmOptionsTest::SavingComesBeforeTheLooks()
{
    Options options;
    QStringList calls;
    bool fails = false;
    for (const auto look : {Look::ToolPaths, Look::TextColours, Look::BandLabels, Look::HotTracking,
                            Look::FlatButtons, Look::Font, Look::TabStops})
        options.looks.Add(look, [&, look](const SettingsStore &settings) {
            if (fails)
                throw RunTimeError(ErrorNumber::InvalidCall, u"no"_s);
            calls.append(QString::number(int(look)) + u' ' + settings.Text(Keys::BakPath));
        });
    options.Open();
    options.Find<QLineEdit>(u"BakPath"_s).setText(u"/new"_s);
    options.Click(u"cmdApply"_s);
    QStringList expected;
    for (const auto look : {Look::FlatButtons, Look::HotTracking, Look::BandLabels, Look::TextColours,
                            Look::ToolPaths}) // the others wait for the next start
        expected.append(QString::number(int(look)) + u" /new"_s);
    QCOMPARE(calls, expected);

    // A failure there is told, and takes nothing back.
    fails = true;
    options.Find<QLineEdit>(u"BakPath"_s).setText(u"/newer"_s);
    options.desktop.ExpectMessage(ErrorBox(RunTimeError(ErrorNumber::InvalidCall, u"no"_s)),
                                  BoxAnswer::Cancel);
    options.Click(u"cmdOK"_s);
    QVERIFY(options.dialog->isVisible());
    QCOMPARE(options.Stored(u"BakPath"_s), u"/newer"_s);
    fails = false;
    options.Click(u"cmdOK"_s);
    QVERIFY(!options.dialog->isVisible());
}

void FrmOptionsTest::TheWindowFollowsAtOnce()
{
    EditorWindow editor;
    editor.settings.SaveSetting(u"Presets", u"One", {});
    editor.settings.SaveSetting(u"One", u"Command", u"/bin/true");
    editor.Open();
    editor.Text().LoadText(u"some text"_s);
    editor.window->Context().document.Modified = false;
    const auto &bar = editor.Find<BandBar>(u"CoolBar1"_s);
    const auto flat = [&](const QString &name) {
        return editor.Find<QToolBar>(name).findChildren<QToolButton *>().constFirst()->autoRaise();
    };
    QVERIFY(!bar.AreCaptionsShown());
    QVERIFY(flat(u"Toolbar1"_s));
    QVERIFY(flat(u"tbPresets"_s));
    const auto background = [&] {
        return editor.Text().SendScintilla(QsciScintillaBase::SCI_STYLEGETBACK,
                                           int(QsciScintillaBase::STYLE_DEFAULT));
    };
    const long systems = background();
    const long stops = editor.Text().SendScintilla(QsciScintillaBase::SCI_GETTABWIDTH);
    ModalDriver driver;
    driver.Expect<frmOptions>([&](frmOptions &dialog) {
        const auto click = [&](const char16_t *name) {
            dialog.findChild<QAbstractButton *>(QString::fromUtf16(name))->click();
        };
        for (const char16_t *name : {u"BandLabels", u"FlatButtons", u"HotTracking", u"SystemColors"})
            click(name);
        dialog.findChild<ColourButton *>(u"bBackColor"_s)->SetColour(0x102030);
        dialog.findChild<QLineEdit *>(u"TabSize"_s)->setText(u"64"_s);
        click(u"cmdApply");
        QVERIFY(bar.AreCaptionsShown());
        QVERIFY(!flat(u"Toolbar1"_s));
        QVERIFY(!flat(u"tbPresets"_s));
        QVERIFY(editor.Find<QTreeView>(u"tvwBrowse"_s).hasMouseTracking());
        QVERIFY(editor.Find<QTreeView>(u"tvwRelated"_s).hasMouseTracking());
        QCOMPARE(background(), 0x102030);
        click(u"SystemColors");
        click(u"cmdApply");
        QCOMPARE(background(), systems);
        QCOMPARE(editor.Text().SendScintilla(QsciScintillaBase::SCI_GETTABWIDTH), stops); // the next start
        click(u"BandLabels");
        click(u"cmdCancel");
    });
    editor.Row(u"mnuPreferences"_s).trigger();
    QVERIFY(bar.AreCaptionsShown());
    QCOMPARE(editor.Text().Text(), u"some text"_s);
    QVERIFY(!editor.Text().CanUndo());
    QVERIFY(!editor.window->Context().document.Modified);
}

void FrmOptionsTest::SyntaxColoursWait()
{
    EditorWindow editor;
    const QString piece = editor.WriteFile(u"a.orc"_s, "; a comment\ninstr 1\nendin\n");
    editor.Open({piece});
    const auto style = [&] { return editor.Text().SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, 2ul); };
    const auto colour = [&] {
        return editor.Text().SendScintilla(QsciScintillaBase::SCI_STYLEGETFORE,
                                           static_cast<unsigned long>(style()));
    };
    const long comment = style();
    const long before = colour();
    QVERIFY(comment != 0);
    ModalDriver driver;
    const auto toggle = [&] {
        driver.Expect<frmOptions>([](frmOptions &dialog) {
            dialog.findChild<QCheckBox *>(u"SyntaxHighlight"_s)->click();
            dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
        });
        editor.Row(u"mnuPreferences"_s).trigger();
    };
    toggle(); // off
    QVERIFY(!editor.settings.Flag(Keys::SyntaxHighlight));
    QCOMPARE(style(), comment);
    editor.window->Documents().OpenFile(piece);
    QCOMPARE(style(), 0);
    editor.settings.SaveColour(Keys::CommentsColor, 0x123456); // by hand, while the editor runs
    toggle();                                                  // on
    QCOMPARE(style(), 0);
    editor.Row(u"mnuRefreshSyntaxHighlight"_s).trigger();
    QCOMPARE(style(), comment);
    QCOMPARE(colour(), before); // read at the next start
}

void FrmOptionsTest::TheQuestionLeadsHere()
{
    EditorWindow editor;
    editor.settings.SaveSetting(u"Options", u"ManualCsound2", u"1");
    editor.Open();
    editor.desktop.ExpectMessage(
        {.text =
             u"You should first set a Csound compiler. Do you want to open the Preferences dialog box now?"_s,
         .icon = BoxIcon::Warning,
         .buttons = BoxButtons::YesNo},
        BoxAnswer::Yes);
    const QString csound = editor.WriteFile(u"csound"_s, "#!/bin/sh\n");
    ModalDriver driver;
    const auto fill = [](QDialog &dialog) {
        dialog.findChild<QLineEdit *>(u"txtORC"_s)->setText(u"/a.orc"_s);
        dialog.findChild<QLineEdit *>(u"txtSCO"_s)->setText(u"/a.sco"_s);
        dialog.findChild<QPushButton *>(u"bOK"_s)->click();
    };
    driver.Expect<QDialog>(fill);
    driver.Expect<frmOptions>([&](frmOptions &dialog) {
        dialog.findChild<QTabWidget *>(u"tbsOptions"_s)->setCurrentIndex(3);
        auto *field = dialog.findChild<QLineEdit *>(u"Csound2"_s);
        field->setFocus();
        field->setText(csound);
        QTest::keyClick(field, Qt::Key_Return);
    });
    editor.Row(u"mnuRunCsound"_s).trigger();
    QCOMPARE(editor.settings.GetSetting(u"Options", u"Csound2"), csound);
    // The path in memory is the new one: the same command runs it now.
    editor.desktop.ExpectShellRun(
        {.file = csound, .parameters = u" /a.orc /a.sco"_s, .showState = WindowState::Normal});
    driver.Expect<QDialog>(fill);
    editor.Row(u"mnuRunCsound"_s).trigger();
}

void FrmOptionsTest::OtherQuestionsLeadHereToo_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("text");
    QTest::newRow("a preset") << u"mnuPreset_0"_s << u"CSOUND2 macro returned empty string."_s;
    QTest::newRow("the help") << u"mnuCsHelp"_s << u"You should first set a help file."_s;
}

void FrmOptionsTest::OtherQuestionsLeadHereToo()
{
    QFETCH(QString, row);
    QFETCH(QString, text);
    EditorWindow editor;
    editor.settings.SaveSetting(u"Presets", u"One", {});
    editor.settings.SaveSetting(u"One", u"Command", u"$CSOUND2$");
    editor.Open({editor.WriteFile(u"a.csd"_s, "x\n")});
    editor.desktop.ExpectMessage({.text = text + u" Do you want to open the Preferences dialog box now?"_s,
                                  .icon = BoxIcon::Warning,
                                  .buttons = BoxButtons::YesNo},
                                 BoxAnswer::Yes);
    ModalDriver driver;
    bool seen = false;
    driver.Expect<frmOptions>([&](frmOptions &dialog) {
        seen = true;
        dialog.findChild<QLineEdit *>(u"Csound"_s)->setText(u"/opt/csound"_s);
        dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
    });
    editor.Row(row).trigger();
    QVERIFY(seen);
    QCOMPARE(editor.settings.GetSetting(u"Options", u"Csound"), u"/opt/csound"_s);
}

int main(int argc, char **argv)
{
    return RunUiTest<FrmOptionsTest>(argc, argv);
}

#include "test_frmoptions.moc"
