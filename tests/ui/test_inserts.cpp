// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs and commands of the Insert menu, by keys.

#include "shell/documentkeys.h"
#include "shell/settings.h"
#include "support/boxes.h"
#include "support/dialogwindow.h"
#include "support/uitest.h"
#include "texttools/insertkeys.h"
#include "texttools/ui/frmheader.h"
#include "texttools/ui/frmnewinclude.h"
#include "texttools/ui/frmnewinstr.h"
#include "texttools/ui/frmnewmacro.h"
#include "texttools/ui/frmrndnum.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A main window with an orchestra, and a script for one of the dialogs.
struct Inserting : DialogWindow<QDialog> {
    explicit Inserting(const QByteArray &text = "abc\n", const QString &name = u"song.orc"_s)
    {
        Open({WriteFile(name, text)});
    }

    QString TextNow() { return Text().Text(); }
    QLineEdit &Field(const QString &name) { return *dialog->findChild<QLineEdit *>(name); }
    QCheckBox &Box(const QString &name) { return *dialog->findChild<QCheckBox *>(name); }
    QWidget *Focus() { return QApplication::focusWidget(); }
    /// Types into what has the keyboard, in place of what is there.
    void Type(const QString &text)
    {
        QTest::keyClick(Focus(), Qt::Key_A, Qt::ControlModifier);
        if (text.isEmpty())
            QTest::keyClick(Focus(), Qt::Key_Delete);
        QTest::keyClicks(Focus(), text);
    }
    void Key(Qt::Key key) { QTest::keyClick(Focus(), key); }
    void Alt(char key) { QTest::keyClick(Focus(), Qt::Key(key), Qt::AltModifier); }

    /// Opens a dialog by its menu row; `script` has to end it.
    template <typename Dialog> void Show(const QString &row, const std::function<void()> &script)
    {
        ShowBy<Dialog>(row, script);
    }
    void Header(const std::function<void()> &script) { Show<frmHeader>(u"mnuHeader"_s, script); }
    void Random(const std::function<void()> &script) { Show<frmRndNum>(u"mnuRandom"_s, script); }
    void Instrument(const std::function<void()> &script) { Show<frmNewInstr>(u"mnuNewInstr"_s, script); }
    void Macro(const std::function<void()> &script) { Show<frmNewMacro>(u"mnuNewMacro"_s, script); }
    void Include(const std::function<void()> &script) { Show<frmNewInclude>(u"mnuNewInclude"_s, script); }

    void ExpectWarning(const QString &text)
    {
        desktop.ExpectMessage({.text = text, .icon = BoxIcon::Warning});
    }
    /// The general report of a failure.
    void ExpectReport(const QString &failure) { desktop.ExpectMessage(ErrorBox(failure), BoxAnswer::Cancel); }
    /// The controls that Tab goes through, from the one that has the keyboard on.
    QStringList TabOrder()
    {
        QStringList names;
        QWidget *first = Focus();
        do {
            names += Focus()->objectName();
            QTest::keyClick(Focus(), Qt::Key_Tab);
        } while (Focus() != first && names.size() < 20);
        return names;
    }
    /// Captions, hints and keys of the fields, by their labels.
    QStringList Labels()
    {
        QStringList labels;
        for (const QLabel *label : dialog->findChildren<QLabel *>())
            labels += label->text() + u'|' + label->buddy()->objectName() + u'|' + label->buddy()->toolTip();
        return labels;
    }
};

class InsertsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheHeaderHasItsFields();
    void AHeaderIsInsertedAndKept();
    void AHeaderGoesToTheStart();
    void AHeaderWithoutAControlRateIsRefused();
    void TheControlRateStepsThroughLegalValues();
    void TheSampleRateIsPicked();
    void ARateBeyondAllIsReported();
    void FieldsThatCannotBeKeptAreTold();
    void TheRandomNumberHasItsFields();
    void ARandomNumberIsInsertedAndKept();
    void ARandomNumberNeedsNumbers();
    void TheInstrumentHasItsFields();
    void AnInstrumentIsInserted();
    void AnInstrumentGoesToTheEnd();
    void AnInstrumentNeedsANumber();
    void AnInstrumentKeepsItsNumberAsTyped();
    void PastedLineEndsBecomeBlanks();
    void TheMacroHasItsFields();
    void AMacroIsInserted();
    void AMacroNeedsANameAndNoHash();
    void TheIncludeHasItsFields();
    void AnIncludeIsTypedAndInserted();
    void AnIncludeIsPicked();
    void AnIncludeIsPickedElsewhere();
    void AnIncludeOfNoDocumentStaysAsItIs();
    void AnIncludeNeedsAFile();
    void EscapeInsertsNothing();
    void AnInsertionIsColouredAndUndone();
    void AnInsertionGivesTheTextTheKeyboard();
    void AnInsertionTakesThePlaceOfTheSelection();
    void TheRowsOfTheSeparatorsShowThem();
    void ASeparatorIsInserted();
    void AFilenameIsInserted();
};

void InsertsTest::TheHeaderHasItsFields()
{
    Inserting on;
    on.Header([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Orchestra Header"_s);
        QCOMPARE(
            on.Labels(),
            (QStringList{
                u"Sample &rate:|cmbSr|Set the samples per second per channel for your orchestra."_s,
                u"&Control rate:|txtKR|Set the K-rate cycles per second. Use up/down arrows to get legal values."_s,
                u"Cha&nnels:|txtChannels|Set number of audio output channels. (1 = mono, 2 = stereo, 4 = quadraphonic)"_s}));
        const auto &rates = *on.dialog->findChild<QComboBox *>(u"cmbSr"_s);
        QCOMPARE(rates.count(), 9);
        QCOMPARE(rates.itemText(0), u"8000"_s);
        QCOMPARE(rates.itemText(8), u"96000"_s);
        QVERIFY(rates.isEditable());
        QCOMPARE(rates.currentText(), u"44100"_s);
        QCOMPARE(on.Field(u"txtKR"_s).text(), u"4410"_s);
        QCOMPARE(on.Field(u"txtChannels"_s).text(), u"1"_s);
        QCOMPARE(on.Box(u"chkStartofFile"_s).text(), u"Insert at start of file"_s);
        QCOMPARE(on.Box(u"chkStartofFile"_s).toolTip(),
                 u"If not checked header will be inserted at current caret position."_s);
        QVERIFY(!on.Box(u"chkStartofFile"_s).isChecked());
        QVERIFY(on.dialog->findChild<QWidget *>(u"VScroll2"_s));
        QVERIFY(on.dialog->findChild<QWidget *>(u"VScroll3"_s));
        QCOMPARE(on.TabOrder(), (QStringList{u"cmbSr"_s, u"txtKR"_s, u"txtChannels"_s, u"chkStartofFile"_s,
                                             u"bOK"_s, u"bCancel"_s}));
        on.Key(Qt::Key_Escape);
    });
}

void InsertsTest::AHeaderIsInsertedAndKept()
{
    Inserting on;
    on.Text().SetSelection(3, 3);
    on.Header([&] {
        on.Type(u"48000"_s);
        on.Alt('C');
        on.Type(u"24000"_s);
        on.Alt('N');
        on.Type(u"2"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"abcsr = 48000\nkr = 24000\nksmps = 2\nnchnls = 2\n\n"_s);
    QCOMPARE(on.settings.GetSetting(u"Options", u"HeaderSR"), u"48000"_s);
    QCOMPARE(on.settings.GetSetting(u"Options", u"HeaderKR"), u"24000"_s);
    QCOMPARE(on.settings.GetSetting(u"Options", u"HeaderChannels"), u"2"_s);
    on.Header([&] {
        QCOMPARE(on.dialog->findChild<QComboBox *>(u"cmbSr"_s)->currentText(), u"48000"_s);
        QCOMPARE(on.Field(u"txtKR"_s).text(), u"24000"_s);
        QCOMPARE(on.Field(u"txtChannels"_s).text(), u"2"_s);
        on.Key(Qt::Key_Escape);
    });
}

void InsertsTest::AHeaderGoesToTheStart()
{
    Inserting on;
    on.Text().SetSelection(1, 2);
    on.Header([&] {
        on.Box(u"chkStartofFile"_s).setFocus();
        on.Key(Qt::Key_Space);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"sr = 44100\nkr = 4410\nksmps = 10\nnchnls = 1\nabc\n"_s);
}

void InsertsTest::AHeaderWithoutAControlRateIsRefused()
{
    Inserting on;
    on.Header([&] {
        on.Alt('C');
        on.Type(u"4411"_s);
        on.Alt('N');
        on.ExpectWarning(u"Invalid K-rate"_s);
        on.Key(Qt::Key_Return);
        QCOMPARE(on.Focus()->objectName(), u"txtKR"_s);
        QVERIFY(on.dialog->isVisible());
        on.Type(u"0"_s);
        on.ExpectReport(u"Division by zero (11)"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.dialog->isVisible());
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.TextNow(), u"abc\n"_s);
    QVERIFY(on.settings.GetSetting(u"Options", u"HeaderSR").isEmpty());
}

void InsertsTest::TheControlRateStepsThroughLegalValues()
{
    Inserting on;
    on.Header([&] {
        QLineEdit &rate = on.Field(u"txtKR"_s);
        on.Alt('C');
        on.Key(Qt::Key_Up);
        QCOMPARE(rate.text(), u"4900"_s);
        on.Key(Qt::Key_Down);
        on.Key(Qt::Key_Down);
        QCOMPARE(rate.text(), u"3675"_s);
        on.Field(u"txtChannels"_s).setFocus();
        auto *spinner = on.dialog->findChild<QWidget *>(u"VScroll2"_s);
        QTest::mouseClick(spinner->findChild<QToolButton *>(u"up"_s), Qt::LeftButton);
        QCOMPARE(rate.text(), u"4410"_s);
        QVERIFY(rate.hasFocus());
        on.Field(u"txtChannels"_s).setFocus();
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Field(u"txtChannels"_s).text(), u"2"_s);
        on.Key(Qt::Key_Escape);
    });
}

void InsertsTest::TheSampleRateIsPicked()
{
    Inserting on;
    on.settings.SaveSetting(u"Options", u"HeaderKR", u"100");
    on.Header([&] {
        auto &rates = *on.dialog->findChild<QComboBox *>(u"cmbSr"_s);
        QStringList items;
        for (int i = 0; i < rates.count(); ++i)
            items += rates.itemText(i);
        QCOMPARE(items.join(u' '), u"8000 11025 16000 22050 32000 44100 48000 88200 96000"_s);
        QCOMPARE(on.Field(u"txtKR"_s).text(), u"100"_s);
        on.Key(Qt::Key_Down);
        QCOMPARE(rates.currentText(), u"48000"_s);
        on.Box(u"chkStartofFile"_s).setChecked(true);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"sr = 48000\nkr = 100\nksmps = 480\nnchnls = 1\nabc\n"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), u"abc\n"_s);
}

void InsertsTest::ARateBeyondAllIsReported()
{
    Inserting on;
    on.Header([&] {
        on.Type(u"3000000000"_s);
        on.ExpectReport(u"Overflow (6)"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.dialog->isVisible());
        on.Alt('C');
        on.ExpectReport(u"Overflow (6)"_s);
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Field(u"txtKR"_s).text(), u"4410"_s);
        on.Key(Qt::Key_Escape);
    });
    on.Random([&] {
        on.Type(u"-1e308"_s);
        on.Alt('X');
        on.Type(u"1e308"_s);
        on.Alt('D');
        on.Type(u"99"_s);
        on.ExpectReport(u"Overflow (6)"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.dialog->isVisible());
        QCOMPARE(on.Field(u"txtDigits"_s).text(), u"15"_s);
        on.Type({});
        on.Key(Qt::Key_Return); // no number is none
        QVERIFY(on.dialog->isVisible());
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.TextNow(), u"abc\n"_s);
    QVERIFY(!on.window->Context().document.Modified);
}

void InsertsTest::FieldsThatCannotBeKeptAreTold()
{
    Inserting on;
    // A file stands where the store's folder was.
    const QString folder = on.storeFolder.path();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const auto expectReport = [&] {
        on.desktop.ExpectMessage(ErrorBox(u"Not a directory (76)"_s, folder + u"/settings"_s),
                                 BoxAnswer::Cancel);
    };
    on.Header([&] {
        expectReport();
        on.Key(Qt::Key_Return);
        QVERIFY(!on.dialog->isVisible());
        on.desktop.CheckAllCame();
    });
    QCOMPARE(on.TextNow(), u"sr = 44100\nkr = 4410\nksmps = 10\nnchnls = 1\nabc\n"_s);
    on.Random([&] {
        on.Type(u"5"_s);
        on.Alt('X');
        on.Type(u"5"_s);
        expectReport();
        on.Key(Qt::Key_Return);
        QVERIFY(!on.dialog->isVisible());
        on.desktop.CheckAllCame();
    });
    QCOMPARE(on.TextNow(), u"sr = 44100\nkr = 4410\nksmps = 10\nnchnls = 1\n5abc\n"_s);
    QVERIFY(file.remove());
}

void InsertsTest::TheRandomNumberHasItsFields()
{
    Inserting on;
    on.Random([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Random Number"_s);
        QCOMPARE(on.Labels(), (QStringList{u"&Min:|txtMin|"_s, u"Ma&x:|txtMax|"_s,
                                           u"&Digits after decimal:|txtDigits|"_s}));
        const std::pair<QString, QString> fields[] = {
            {u"txtMin"_s, u"0"_s}, {u"txtMax"_s, u"1"_s}, {u"txtDigits"_s, u"3"_s}};
        for (const auto &[name, value] : fields) {
            QCOMPARE(on.Focus()->objectName(), name);
            QCOMPARE(on.Field(name).text(), value);
            QCOMPARE(on.Field(name).selectedText(), value);
            on.Key(Qt::Key_Tab);
        }
        on.Alt('X');
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Field(u"txtMax"_s).text(), u"2"_s);
        on.Alt('D');
        for (int i = 0; i < 20; ++i)
            on.Key(Qt::Key_Up);
        QCOMPARE(on.Field(u"txtDigits"_s).text(), u"15"_s);
        on.Key(Qt::Key_Escape);
    });
}

void InsertsTest::ARandomNumberIsInsertedAndKept()
{
    Inserting on("abc");
    on.Text().SetSelection(0, 3);
    on.Random([&] {
        on.Type(u"1"_s);
        on.Alt('X');
        on.Type(u" 2.0 "_s);
        on.Alt('D');
        on.Type(u"20"_s);
        on.Key(Qt::Key_Return);
    });
    bool isNumber = false;
    const double number = on.TextNow().toDouble(&isNumber);
    QVERIFY(isNumber);
    QVERIFY(number >= 1 && number <= 2);
    QCOMPARE(on.TextNow().trimmed(), on.TextNow());
    QCOMPARE(on.settings.GetSetting(u"Options", u"RandomMin"), u"1"_s);
    QCOMPARE(on.settings.GetSetting(u"Options", u"RandomMax"), u" 2.0 "_s);
    QCOMPARE(on.settings.GetSetting(u"Options", u"RandomDigits"), u"15"_s);
}

void InsertsTest::ARandomNumberNeedsNumbers()
{
    Inserting on;
    on.Random([&] {
        on.Type(u"one"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.dialog->isVisible());
        on.Type(u"7"_s);
        on.Alt('X');
        on.Type(u"7"_s);
        on.Alt('D');
        on.Type(u"-1"_s);
        on.ExpectReport(u"Invalid procedure call or argument (5)"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.dialog->isVisible());
        on.Type(u"0"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"7abc\n"_s);
}

void InsertsTest::TheInstrumentHasItsFields()
{
    Inserting on;
    on.Instrument([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Instrument"_s);
        QCOMPARE(on.Labels(), (QStringList{u"&Instrument #:|txtNumber|Instrument number."_s,
                                           u"Instrument &name:|txtName|"_s}));
        QCOMPARE(on.Box(u"chkEndofFile"_s).text(), u"Insert at end of file"_s);
        QCOMPARE(on.Box(u"chkEndofFile"_s).toolTip(),
                 u"If not checked instrument will be inserted at current caret position."_s);
        QVERIFY(on.dialog->findChild<QWidget *>(u"VScroll1"_s));
        on.Key(Qt::Key_Up);
        QCOMPARE(on.Field(u"txtNumber"_s).text(), u"2"_s);
        QCOMPARE(on.TabOrder(),
                 (QStringList{u"txtNumber"_s, u"txtName"_s, u"chkEndofFile"_s, u"bOK"_s, u"bCancel"_s}));
        on.Key(Qt::Key_Escape);
    });
}

void InsertsTest::AnInstrumentIsInserted()
{
    Inserting on;
    on.Instrument([&] {
        on.Type(u"12"_s);
        on.Alt('N');
        on.Type(u"a voice"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"instr 12 ; a voice\n\n;instrument body\n\nendinabc\n"_s);
}

void InsertsTest::AnInstrumentGoesToTheEnd()
{
    Inserting on("abc");
    on.Text().SetSelection(0, 2);
    on.Instrument([&] {
        on.Box(u"chkEndofFile"_s).setChecked(true);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"abc\ninstr 1\n\n;instrument body\n\nendin"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), u"abc"_s);
}

void InsertsTest::AnInstrumentNeedsANumber()
{
    Inserting on;
    on.Instrument([&] {
        for (const QString &number : {u"0"_s, u"-1"_s, u"low"_s, QString()}) {
            on.Type(number);
            on.Alt('N');
            on.ExpectWarning(u"Specify an Instrument number or press Cancel."_s);
            on.Key(Qt::Key_Return);
            QCOMPARE(on.Focus()->objectName(), u"txtNumber"_s);
        }
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.TextNow(), u"abc\n"_s);
}

void InsertsTest::AnInstrumentKeepsItsNumberAsTyped()
{
    Inserting on;
    on.Instrument([&] {
        on.Type(u"1, 2"_s);
        on.Box(u"chkEndofFile"_s).setChecked(true);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"abc\n\ninstr 1, 2\n\n;instrument body\n\nendin"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), u"abc\n"_s);
}

void InsertsTest::PastedLineEndsBecomeBlanks()
{
    Inserting on;
    const auto paste = [&] { QTest::keyClick(on.Focus(), Qt::Key_V, Qt::ControlModifier); };
    QGuiApplication::clipboard()->setText(u"one\ntwo"_s);
    on.Instrument([&] {
        on.Alt('N');
        paste();
        on.Key(Qt::Key_Return);
    });
    QVERIFY(on.TextNow().startsWith(u"instr 1 ; one two\n"_s));
    // What a macro stands for may have several lines.
    on.Macro([&] {
        on.Type(u"M"_s);
        on.Alt('R');
        paste();
        on.Key(Qt::Key_Return);
    });
    QVERIFY(on.TextNow().contains(u"#define M #one\ntwo#"_s));
}

void InsertsTest::TheMacroHasItsFields()
{
    Inserting on;
    on.Macro([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Macro Definition"_s);
        QCOMPARE(
            on.Labels(),
            (QStringList{
                u"Macro &name:|txtName|"_s,
                u"&Arguments:|txtArgs|Arguments are separated by straight single quote characters. Do not type parenthesis."_s,
                u"&Replacement text:|txtReplacement|"_s}));
        QCOMPARE(on.TabOrder(),
                 (QStringList{u"txtName"_s, u"txtArgs"_s, u"txtReplacement"_s, u"bOK"_s, u"bCancel"_s}));
        on.Key(Qt::Key_Escape);
    });
}

void InsertsTest::AMacroIsInserted()
{
    Inserting on;
    on.Macro([&] {
        on.Type(u"TONE"_s);
        on.Alt('A');
        on.Type(u"a' 'b'"_s);
        on.Alt('R');
        on.Type(u"$a + $b"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"#define TONE(a'b) #$a + $b#abc\n"_s);
}

void InsertsTest::AMacroNeedsANameAndNoHash()
{
    Inserting on;
    on.Macro([&] {
        on.Alt('R');
        on.Type(u"a#"_s);
        on.ExpectWarning(u"Specify a Macro name or press Cancel."_s);
        on.Key(Qt::Key_Return);
        QCOMPARE(on.Focus()->objectName(), u"txtName"_s);
        on.Type(u"M"_s);
        on.ExpectWarning(u"Replacement text contains a #."_s);
        on.Key(Qt::Key_Return);
        QCOMPARE(on.Focus()->objectName(), u"txtReplacement"_s);
        on.Type({});
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"#define M #;Replacement text here#abc\n"_s);
}

void InsertsTest::TheIncludeHasItsFields()
{
    Inserting on;
    on.Include([&] {
        QCOMPARE(on.dialog->windowTitle(), u"#include Statement"_s);
        QCOMPARE(on.Labels(), QStringList{u"&File:|txtFile|File to be included. (#include \"filename\")"_s});
        QCOMPARE(on.dialog->findChild<QPushButton *>(u"bFile"_s)->text(), u"Browse..."_s);
        QCOMPARE(on.Box(u"chkQualified"_s).text(), u"Fully &qualified path"_s);
        QCOMPARE(on.TabOrder(),
                 (QStringList{u"txtFile"_s, u"bFile"_s, u"chkQualified"_s, u"bOK"_s, u"bCancel"_s}));
        on.Key(Qt::Key_Escape);
    });
}

void InsertsTest::AnIncludeIsTypedAndInserted()
{
    Inserting on;
    on.Include([&] {
        on.Type(on.folder.filePath(u"in/x.orc"_s));
        QCOMPARE(on.Field(u"txtFile"_s).text(), u"in/x.orc"_s);
        on.Alt('Q');
        QTRY_VERIFY(on.Box(u"chkQualified"_s).isChecked());
        QCOMPARE(on.Field(u"txtFile"_s).text(), on.folder.filePath(u"in/x.orc"_s));
        on.Alt('F');
        on.Type(u"/usr/x.orc"_s);
        QCOMPARE(on.Field(u"txtFile"_s).text(), u"/usr/x.orc"_s);
        on.Type(u"y.orc"_s);
        QCOMPARE(on.Field(u"txtFile"_s).text(), on.folder.filePath(u"y.orc"_s));
        on.Alt('Q');
        QTRY_VERIFY(!on.Box(u"chkQualified"_s).isChecked());
        QCOMPARE(on.Field(u"txtFile"_s).text(), u"y.orc"_s);
        // The caret stays where something is typed in the middle.
        on.Alt('F');
        on.Field(u"txtFile"_s).setCursorPosition(1);
        QTest::keyClicks(on.Focus(), u"ab"_s);
        QCOMPARE(on.Field(u"txtFile"_s).text(), u"yab.orc"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"#include \"yab.orc\"abc\n"_s);
}

void InsertsTest::AnIncludeIsPicked()
{
    Inserting on;
    const FileDialogRequest request{.filters = {{u"All Csound files"_s, u"*.orc;*.sco;*.csd"_s},
                                                {u"Orchestra files"_s, u"*.orc"_s},
                                                {u"Score files"_s, u"*.sco"_s},
                                                {u"Unified Format files"_s, u"*.csd"_s}},
                                    .folder = on.folder.path()};
    on.Include([&] {
        on.Field(u"txtFile"_s).setText(u"old"_s);
        on.desktop.ExpectOpenDialog(request, {});
        on.dialog->findChild<QPushButton *>(u"bFile"_s)->click();
        QCOMPARE(on.Field(u"txtFile"_s).text(), u"old"_s);
        on.desktop.ExpectOpenDialog(request, {.path = on.folder.filePath(u"in/x.sco"_s)});
        on.dialog->findChild<QPushButton *>(u"bFile"_s)->click();
        QCOMPARE(on.Field(u"txtFile"_s).text(), u"in/x.sco"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"#include \"in/x.sco\"abc\n"_s);
}

void InsertsTest::AnIncludeIsPickedElsewhere()
{
    Inserting on;
    on.settings.SaveText(Keys::OrchestraExtensions, u"orc udo"_s);
    const FileDialogRequest request{.filters = {{u"All Csound files"_s, u"*.orc;*.udo;*.sco;*.csd"_s},
                                                {u"Orchestra files"_s, u"*.orc;*.udo"_s},
                                                {u"Score files"_s, u"*.sco"_s},
                                                {u"Unified Format files"_s, u"*.csd"_s}},
                                    .folder = on.folder.path()};
    on.Include([&] {
        const auto browse = [&](const QString &path) {
            on.desktop.ExpectOpenDialog(request, {.path = path});
            on.dialog->findChild<QPushButton *>(u"bFile"_s)->click();
            return on.Field(u"txtFile"_s).text();
        };
        QCOMPARE(browse(u"/usr/x.udo"_s), u"/usr/x.udo"_s);
        on.Alt('Q');
        QTRY_VERIFY(on.Box(u"chkQualified"_s).isChecked());
        QCOMPARE(browse(on.folder.filePath(u"x.udo"_s)), on.folder.filePath(u"x.udo"_s));
        QCOMPARE(browse(u"/usr/x.udo"_s), u"/usr/x.udo"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"#include \"/usr/x.udo\"abc\n"_s);
}

void InsertsTest::AnIncludeOfNoDocumentStaysAsItIs()
{
    Inserting on;
    on.window->Documents().NewFile(FileKind::Orchestra, {});
    on.Include([&] {
        on.Type(u"/usr/x.orc"_s);
        on.Alt('Q');
        QTRY_VERIFY(on.Box(u"chkQualified"_s).isChecked());
        QCOMPARE(on.Field(u"txtFile"_s).text(), u"/usr/x.orc"_s);
        on.Alt('F');
        on.Type(u"x.orc"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"#include \"x.orc\""_s);
}

void InsertsTest::AnIncludeNeedsAFile()
{
    Inserting on;
    on.Include([&] {
        on.Alt('Q');
        on.ExpectWarning(u"Specify a File to include or press Cancel."_s);
        on.Key(Qt::Key_Return);
        QCOMPARE(on.Focus()->objectName(), u"txtFile"_s);
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.TextNow(), u"abc\n"_s);
}

void InsertsTest::EscapeInsertsNothing()
{
    Inserting on;
    const auto escape = [&] { on.Key(Qt::Key_Escape); };
    on.Header(escape);
    on.Random(escape);
    on.Instrument(escape);
    on.Macro(escape);
    on.Include(escape);
    QCOMPARE(on.TextNow(), u"abc\n"_s);
    QVERIFY(!on.window->Context().document.Modified);
}

void InsertsTest::AnInsertionIsColouredAndUndone()
{
    Inserting on("abc ");
    on.Text().SetSelection(4, 4);
    on.Text().ReplaceSelection(u"x "_s);
    on.Macro([&] {
        on.Type(u"M"_s);
        on.Alt('R');
        on.Type(u"a oscil b"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"abc x #define M #a oscil b#"_s);
    QCOMPARE(on.Text().StyleAt(6), StyleClass::Macro);
    QCOMPARE(on.Text().StyleAt(19), StyleClass::Opcode);
    QVERIFY(on.window->Context().document.Modified);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), u"abc x "_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), u"abc "_s);
}

void InsertsTest::AnInsertionGivesTheTextTheKeyboard()
{
    Inserting on;
    auto &opcodes = on.Find<QComboBox>(u"cmbOpcodes"_s);
    const auto insert = [&](Qt::Key end) {
        on.Include([&] {
            on.Type(u"x"_s);
            on.Key(end);
        });
        return on.window->focusWidget();
    };
    opcodes.setFocus();
    QWidget *const before = on.window->focusWidget();
    QVERIFY(before != &on.Text());
    QCOMPARE(insert(Qt::Key_Escape), before);
    QCOMPARE(insert(Qt::Key_Return), &on.Text());
}

void InsertsTest::AnInsertionTakesThePlaceOfTheSelection()
{
    Inserting on;
    on.Text().SetSelection(1, 2);
    on.Include([&] {
        on.Type(u"x"_s);
        on.Key(Qt::Key_Return);
    });
    QCOMPARE(on.TextNow(), u"a#include \"x\"c\n"_s);
}

void InsertsTest::TheRowsOfTheSeparatorsShowThem()
{
    Inserting on;
    on.settings.SaveText(Keys::LineStyle1, u"&x"_s);
    on.window->CommandTable().MenuOpening(Menu::mnuInsert);
    QCOMPARE(on.Row(u"mnuLineSeparation_0"_s).text(), u"&&"_s.repeated(16));
    QCOMPARE(on.Row(u"mnuLineSeparation_1"_s).text(), u"*"_s.repeated(16));
}

void InsertsTest::ASeparatorIsInserted()
{
    Inserting on("ab\ncd\n");
    on.Text().SetSelection(1, 1);
    on.Row(u"mnuLineSeparation_1"_s).trigger();
    QCOMPARE(on.TextNow(), u"ab\n;"_s + u"*"_s.repeated(64) + u"\ncd\n"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), u"ab\ncd\n"_s);
}

void InsertsTest::AFilenameIsInserted()
{
    Inserting on;
    on.desktop.ExpectOpenDialog({.title = u"Select a filename"_s, .folder = on.folder.path()},
                                {.path = on.folder.filePath(u"in/kick.wav"_s)});
    on.Text().SetSelection(0, 3);
    on.Row(u"mnuInsertFilename"_s).trigger();
    QCOMPARE(on.TextNow(), u"in/kick.wav\n"_s);
    QCOMPARE(on.Text().Selection().start, 11);
    QCOMPARE(on.Text().Selection().end, 11);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.TextNow(), u"abc\n"_s);
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<InsertsTest>(argc, argv);
}

#include "test_inserts.moc"
