// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/form.h"

#include "platform/runtimeerror.h"
#include "shell/settingkey.h"
#include "shell/settings.h"
#include "shell/ui/keyedcontrols.h"
#include "shell/ui/screenplace.h"
#include "shell/ui/spinner.h"
#include "support/boxes.h"
#include "support/scripteddesktop.h"
#include "support/uitest.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStringList>
#include <QTemporaryDir>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

/// A dialog with a form of three rows, two ends and a button of its own.
class Sample : public QDialog
{
public:
    Sample()
    {
        FormGrid form(this);
        label = form.Add({.caption = u"&File name:"_s,
                          .field = file,
                          .hint = u"What is opened"_s,
                          .button = browse,
                          .labelName = u"lblFile"_s});
        form.Add({.caption = u"&Kind:"_s, .field = kind});
        form.Add({.caption = u"&Number:"_s, .field = number, .spinner = spinner});
        form.AddStretch();
        form.AddAcross(ButtonBox(*this, ok, cancel, [this] { ++confirmed; }));
        connect(browse, &QPushButton::clicked, this, [this] { ++browsed; });
    }
    void Show()
    {
        show();
        activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(this));
    }

    QWidget &Spin(const SpinRange &range) { return *NewSpinner(desktop, number, u"VScroll1"_s, range); }

    ScriptedDesktop desktop;
    QLineEdit *file = Named(new QLineEdit(this), u"txtFile"_s);
    QPushButton *browse = Named(new QPushButton(u"&Browse..."_s, this), u"bFile"_s);
    QComboBox *kind = NewTypingList(this, u"cmbKind"_s);
    QLineEdit *number = Named(new QLineEdit(this), u"txtNumber"_s, u"How many"_s);
    QPushButton *spinner = new QPushButton(this);
    QPushButton *ok = Named(new QPushButton(u"OK"_s, this), u"bOK"_s);
    QPushButton *cancel = Named(new QPushButton(u"Cancel"_s, this), u"bCancel"_s);
    QLabel *label = nullptr;
    int confirmed = 0;
    int browsed = 0;
};

QPoint PlaceOf(const QWidget &widget)
{
    return widget.mapTo(widget.window(), QPoint());
}

} // namespace

class FormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ANameIsForTestsAndForReaders();
    void ALabelLeadsToItsField();
    void ASpokenNameOfTheFieldsOwnStays();
    void RowsStandUnderOneAnother();
    void ASpinnerTouchesItsField();
    void ATypingListLeavesTheTypedTextAlone();
    void EnterConfirmsFromFieldsAndButtons();
    void EnterComesBehindTheKeysBeforeIt();
    void EnterComesBehindAKeyThatEndsTheDialog();
    void EnterOnCancelCancels();
    void EscapeRejects();
    void WithoutADefaultEnterPressesNothing();
    void APickedFileGoesIntoItsField();
    void APickedFolderGoesIntoItsField();
    void FocusSelectsTheText();
    void AClickIntoAFocusedFieldOnlyPutsTheCaret();
    void TabFollowsTheOrderGiven();
    void ArrowsStepThroughTheNumbers();
    void UpAndDownKeysStepToo();
    void ASpinnerTakesAnyStep();
    void AFailedStepIsReportedAndChangesNothing();
    void ASpinnerIsEnabledAsItsField();
    void ControlsShowTheDefaultsOfTheirKeys();
    void ControlsShowWhatIsStored();
    void ControlsAreSavedInTheirOwnForms();
    void AValueThatCannotBeReadGivesItsDefault();
    void ADialogOpensWhereItWasClosed();
    void APlaceOffTheScreenIsBroughtBack();
};

void FormTest::ANameIsForTestsAndForReaders()
{
    QWidget widget;
    QCOMPARE(Named(&widget, u"txtA"_s), &widget);
    QCOMPARE(widget.objectName(), u"txtA"_s);
    QCOMPARE(widget.accessibleName(), QString());
    Named(&widget, u"txtB"_s, u"Second"_s);
    QCOMPARE(widget.objectName(), u"txtB"_s);
    QCOMPARE(widget.accessibleName(), u"Second"_s);
}

void FormTest::ALabelLeadsToItsField()
{
    Sample sample;
    QCOMPARE(sample.label->buddy(), sample.file);
    QCOMPARE(sample.label->objectName(), u"lblFile"_s);
    QCOMPARE(sample.label->text(), u"&File name:"_s);
    QCOMPARE(sample.file->accessibleName(), u"File name"_s);
    QCOMPARE(sample.browse->accessibleName(), u"File name: Browse..."_s);
    for (const QWidget *widget : std::initializer_list<const QWidget *>{sample.label, sample.file})
        QCOMPARE(widget->toolTip(), u"What is opened"_s);
    QCOMPARE(sample.file->accessibleDescription(), u"What is opened"_s);
    QCOMPARE(sample.kind->toolTip(), QString());

    sample.Show();
    sample.number->setFocus();
    QTest::keyClick(&sample, Qt::Key_F, Qt::AltModifier);
    QCOMPARE(sample.focusWidget(), sample.file);
}

void FormTest::ASpokenNameOfTheFieldsOwnStays()
{
    Sample sample;
    QCOMPARE(sample.number->accessibleName(), u"How many"_s);
}

void FormTest::RowsStandUnderOneAnother()
{
    Sample sample;
    sample.Show();
    QVERIFY(PlaceOf(*sample.label).x() < PlaceOf(*sample.file).x());
    QVERIFY(PlaceOf(*sample.file).x() + sample.file->width() <= PlaceOf(*sample.browse).x());
    QCOMPARE(PlaceOf(*sample.file).x(), PlaceOf(*sample.kind).x());
    QVERIFY(PlaceOf(*sample.file).y() + sample.file->height() <= PlaceOf(*sample.kind).y());
    QVERIFY(PlaceOf(*sample.kind).y() + sample.kind->height() <= PlaceOf(*sample.number).y());
    const int below = PlaceOf(*sample.ok).y();
    const int wide = sample.file->width();
    sample.resize(sample.width() + 100, sample.height() + 100);
    QTRY_COMPARE(sample.file->width(), wide + 100);
    QCOMPARE(PlaceOf(*sample.ok).y(), below + 100);
}

void FormTest::ASpinnerTouchesItsField()
{
    Sample sample;
    sample.Show();
    QCOMPARE(PlaceOf(*sample.spinner).x(), PlaceOf(*sample.number).x() + sample.number->width());
    QCOMPARE(PlaceOf(*sample.number).x(), PlaceOf(*sample.file).x());
}

void FormTest::ATypingListLeavesTheTypedTextAlone()
{
    Sample sample;
    sample.kind->addItems({u"orchestra"_s, u"score"_s});
    sample.kind->clearEditText();
    sample.Show();
    sample.kind->setFocus();
    QTest::keyClicks(sample.kind, u"Orc"_s);
    QCOMPARE(sample.kind->currentText(), u"Orc"_s);
    QTest::keyClick(sample.kind, Qt::Key_Return);
    QCOMPARE(sample.kind->count(), 2);
    const int width = sample.kind->sizeHint().width();
    sample.kind->addItem(QString(200, u'w'));
    QCOMPARE(sample.kind->sizeHint().width(), width);
}

void FormTest::EnterConfirmsFromFieldsAndButtons()
{
    Sample sample;
    sample.Show();
    int times = 0;
    for (QWidget *widget :
         std::initializer_list<QWidget *>{sample.file, sample.kind, sample.browse, sample.ok}) {
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
        QCOMPARE(sample.confirmed, ++times);
    }
    QCOMPARE(sample.browsed, 0);
    QTest::mouseClick(sample.ok, Qt::LeftButton);
    QCOMPARE(sample.confirmed, ++times);
    QVERIFY2(sample.isVisible(), "what is confirmed decides whether the dialog closes");
}

void FormTest::EnterComesBehindTheKeysBeforeIt()
{
    QDialog dialog;
    QVBoxLayout column(&dialog);
    QCheckBox box(u"&Comments"_s);
    QPushButton all(u"A&ll"_s);
    QPushButton ok(u"OK"_s);
    QPushButton cancel(u"Cancel"_s);
    int pressed = 0;
    QStringList confirmed;
    const auto confirm = [&] {
        confirmed.append((box.isChecked() ? u"on "_s : u"off "_s) + QString::number(pressed));
    };
    column.addWidget(&box);
    column.addWidget(&all);
    column.addWidget(ButtonBox(dialog, &ok, &cancel, confirm));
    connect(&all, &QPushButton::clicked, &dialog, [&] { ++pressed; });
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto type = [](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    };

    box.setFocus();
    type(Qt::Key_C, Qt::AltModifier);
    type(Qt::Key_Return);
    QCOMPARE(confirmed, QStringList{u"on 0"_s});
    ok.setFocus(); // it takes Enter itself
    type(Qt::Key_L, Qt::AltModifier);
    type(Qt::Key_Enter);
    QCOMPARE(confirmed.value(1), u"on 1"_s);
    QTest::qWait(300); // nothing is clicked once more
    QVERIFY(box.isChecked());
    QCOMPARE(pressed, 1);
    QCOMPARE(confirmed.size(), 2);
}

void FormTest::EnterComesBehindAKeyThatEndsTheDialog()
{
    Sample sample;
    sample.cancel->setText(u"&Cancel"_s);
    sample.Show();
    QTest::keyClick(sample.file, Qt::Key_C, Qt::AltModifier);
    QTest::keyClick(sample.file, Qt::Key_Return);
    QCOMPARE(sample.result(), int(QDialog::Rejected));
    QVERIFY(!sample.isVisible());
    QCOMPARE(sample.confirmed, 0);
}

void FormTest::EnterOnCancelCancels()
{
    Sample sample;
    sample.Show();
    sample.cancel->setFocus();
    QTest::keyClick(sample.cancel, Qt::Key_Return);
    QCOMPARE(sample.confirmed, 0);
    QVERIFY(!sample.isVisible());
    QCOMPARE(sample.result(), int(QDialog::Rejected));
}

void FormTest::EscapeRejects()
{
    Sample sample;
    sample.Show();
    QTest::keyClick(sample.file, Qt::Key_Escape);
    QVERIFY(!sample.isVisible());
    sample.Show();
    QTest::mouseClick(sample.cancel, Qt::LeftButton);
    QVERIFY(!sample.isVisible());
    QCOMPARE(sample.confirmed, 0);
}

void FormTest::WithoutADefaultEnterPressesNothing()
{
    QDialog dialog;
    auto *field = new QLineEdit(&dialog);
    auto *browse = new QPushButton(&dialog);
    auto *close = new QPushButton(&dialog);
    Fill(dialog, {field, browse, close});
    int pressed = 0;
    for (QPushButton *button : {browse, close})
        connect(button, &QPushButton::clicked, &dialog, [&pressed] { ++pressed; });
    SetEnterAndEscape(dialog, nullptr, close);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (QWidget *widget : std::initializer_list<QWidget *>{field, browse, close}) {
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
    }
    QCOMPARE(pressed, 0);
    QVERIFY(dialog.isVisible());
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
}

void FormTest::APickedFileGoesIntoItsField()
{
    ScriptedDesktop desktop;
    QLineEdit field(u"before"_s);
    const FileDialogRequest request{.title = u"Select a file"_s, .folder = u"/home"_s};
    desktop.ExpectOpenDialog(request, {});
    PickFile(desktop, request, field);
    QCOMPARE(field.text(), u"before"_s);
    desktop.ExpectOpenDialog(request, {.path = u"/home/a.wav"_s});
    PickFile(desktop, request, field);
    QCOMPARE(field.text(), u"/home/a.wav"_s);
}

void FormTest::APickedFolderGoesIntoItsField()
{
    ScriptedDesktop desktop;
    QLineEdit field(u"before"_s);
    desktop.ExpectBrowseFolder(u"Select a folder"_s, u"/home"_s, {});
    PickFolder(desktop, u"Select a folder"_s, u"/home"_s, field);
    QCOMPARE(field.text(), u"before"_s);
    desktop.ExpectBrowseFolder(u"Select a folder"_s, u"/home"_s, u"/tmp"_s);
    PickFolder(desktop, u"Select a folder"_s, u"/home"_s, field);
    QCOMPARE(field.text(), u"/tmp"_s);
}

void FormTest::FocusSelectsTheText()
{
    Sample sample;
    SelectOnFocus(sample.number);
    sample.number->setText(u"4410"_s);
    sample.Show();
    sample.file->setFocus();
    sample.number->deselect();
    sample.number->setFocus(Qt::TabFocusReason);
    QCOMPARE(sample.number->selectedText(), u"4410"_s);
    sample.file->setFocus();
    sample.number->deselect();
    QTest::mouseClick(sample.number, Qt::LeftButton);
    QTRY_COMPARE(sample.number->selectedText(), u"4410"_s);
}

void FormTest::AClickIntoAFocusedFieldOnlyPutsTheCaret()
{
    Sample sample;
    SelectOnFocus(sample.number);
    sample.number->setText(u"4410"_s);
    sample.Show();
    sample.number->setFocus(Qt::TabFocusReason);
    QTest::mouseClick(sample.number, Qt::LeftButton, {}, QPoint(4, sample.number->height() / 2));
    QCoreApplication::processEvents();
    QCOMPARE(sample.number->selectedText(), QString());
    QCOMPARE(sample.number->cursorPosition(), 0);
}

void FormTest::TabFollowsTheOrderGiven()
{
    Sample sample;
    SetTabOrder({sample.number, sample.cancel, sample.ok, sample.file});
    sample.Show();
    sample.number->setFocus();
    for (const QWidget *next :
         std::initializer_list<const QWidget *>{sample.cancel, sample.ok, sample.file}) {
        QTest::keyClick(sample.focusWidget(), Qt::Key_Tab);
        QCOMPARE(sample.focusWidget(), next);
    }
}

// Spinners

void FormTest::ArrowsStepThroughTheNumbers()
{
    Sample sample;
    QWidget &spinner = sample.Spin({.least = 1, .most = 3});
    sample.number->setText(u"2x"_s);
    sample.Show();
    sample.file->setFocus();
    QTest::mouseClick(spinner.findChild<QToolButton *>(u"up"_s), Qt::LeftButton);
    QCOMPARE(sample.number->text(), u"3"_s);
    QCOMPARE(sample.focusWidget(), sample.number);
    QTest::mouseClick(spinner.findChild<QToolButton *>(u"up"_s), Qt::LeftButton);
    QCOMPARE(sample.number->text(), u"3"_s);
    for (const QString &text : {u"2"_s, u"1"_s, u"1"_s}) {
        QTest::mouseClick(spinner.findChild<QToolButton *>(u"down"_s), Qt::LeftButton);
        QCOMPARE(sample.number->text(), text);
    }
}

void FormTest::UpAndDownKeysStepToo()
{
    Sample sample;
    sample.Spin({.least = 0, .most = 9});
    sample.Show();
    sample.number->setFocus();
    QTest::keyClick(sample.number, Qt::Key_Up);
    QTest::keyClick(sample.number, Qt::Key_Up);
    QTest::keyClick(sample.number, Qt::Key_Down);
    QCOMPARE(sample.number->text(), u"1"_s);
    QTest::keyClick(sample.number, Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(sample.number->text(), u"1"_s);
}

void FormTest::ASpinnerTakesAnyStep()
{
    Sample sample;
    ScriptedDesktop desktop;
    QWidget *spinner =
        NewSpinner(desktop, sample.number, u"VScroll1"_s,
                   [](const QString &text, int direction) { return text + (direction > 0 ? u'+' : u'-'); });
    QCOMPARE(spinner->objectName(), u"VScroll1"_s);
    sample.Show();
    sample.number->setFocus();
    QTest::keyClick(sample.number, Qt::Key_Down);
    QTest::keyClick(sample.number, Qt::Key_Up);
    QCOMPARE(sample.number->text(), u"-+"_s);
}

void FormTest::AFailedStepIsReportedAndChangesNothing()
{
    Sample sample;
    sample.Spin({.least = 0, .most = 9});
    sample.number->setText(u"1e999"_s);
    sample.Show();
    sample.number->setFocus();
    sample.desktop.ExpectMessage(ErrorBox(RunTimeError(ErrorNumber::Overflow, u"Overflow"_s)),
                                 BoxAnswer::Cancel);
    QTest::keyClick(sample.number, Qt::Key_Up);
    QCOMPARE(sample.number->text(), u"1e999"_s);
}

void FormTest::ASpinnerIsEnabledAsItsField()
{
    Sample sample;
    sample.number->setEnabled(false);
    QWidget &spinner = sample.Spin({.least = 0, .most = 9});
    QVERIFY(!spinner.isEnabled());
    sample.number->setEnabled(true);
    QVERIFY(spinner.isEnabled());
}

// Settings

namespace
{

constexpr FlagKey Splash{u"Splash", true};
constexpr BareFlagKey RealTabs{u"RealTabs"};
constexpr NumberKey Startup{u"Startup", 1};
constexpr TextKey BakPath{u"BakPath", u"none"};
constexpr NumberKey RandomMax{u"RandomMax", .5};

/// A store and a control of each kind.
struct Keyed {
    Keyed()
    {
        list.addItems({u"a"_s, u"b"_s, u"c"_s});
        controls.Bind(&box, Splash);
        controls.Bind(&option, RealTabs);
        controls.Bind(&list, Startup);
        controls.Bind(&text, BakPath);
        controls.Bind(&number, RandomMax);
    }
    QStringList Shown() const
    {
        return {box.isChecked() ? u"+"_s : u"-"_s, option.isChecked() ? u"+"_s : u"-"_s,
                QString::number(list.currentIndex()), text.text(), number.text()};
    }
    QString Stored(const QString &key) { return settings.GetSetting(u"Options"_s, key, u"(absent)"_s); }

    QTemporaryDir folder;
    SettingsStore settings{folder.filePath(u"settings"_s)};
    QCheckBox box;
    QRadioButton option;
    QComboBox list;
    QLineEdit text;
    QLineEdit number;
    KeyedControls controls{settings};
};

} // namespace

void FormTest::ControlsShowTheDefaultsOfTheirKeys()
{
    Keyed keyed;
    keyed.option.setChecked(true);
    keyed.controls.Load();
    QCOMPARE(keyed.Shown(), (QStringList{u"+"_s, u"+"_s, u"1"_s, u"none"_s, u".5"_s}));
    QVERIFY2(keyed.settings.GetAllSettings(u"Options"_s).empty(), "reading creates no key");
}

void FormTest::ControlsShowWhatIsStored()
{
    Keyed keyed;
    keyed.settings.SaveFlag(Splash, false);
    keyed.settings.SaveFlag(RealTabs, true);
    keyed.settings.SaveNumber(Startup, 2);
    keyed.settings.SaveText(BakPath, u"/tmp"_s);
    keyed.settings.SaveStoredText(RandomMax, u"1e3 or so"_s);
    keyed.controls.Load();
    QCOMPARE(keyed.Shown(), (QStringList{u"-"_s, u"+"_s, u"2"_s, u"/tmp"_s, u"1e3 or so"_s}));
}

void FormTest::ControlsAreSavedInTheirOwnForms()
{
    Keyed keyed;
    keyed.controls.Load();
    keyed.box.setChecked(false);
    keyed.option.setChecked(true);
    keyed.list.setCurrentIndex(2);
    keyed.text.setText(u"/home"_s);
    keyed.number.setText(u"007"_s);
    keyed.controls.Save();
    const std::vector<std::pair<QString, QString>> stored = {{u"Splash"_s, u"0"_s},
                                                             {u"RealTabs"_s, u"True"_s},
                                                             {u"Startup"_s, u"2"_s},
                                                             {u"BakPath"_s, u"/home"_s},
                                                             {u"RandomMax"_s, u"007"_s}};
    QCOMPARE(keyed.settings.GetAllSettings(u"Options"_s), stored);
    keyed.box.setChecked(true);
    keyed.option.setAutoExclusive(false);
    keyed.option.setChecked(false);
    keyed.controls.Save();
    QCOMPARE(keyed.Stored(u"Splash"_s), u"1"_s);
    QCOMPARE(keyed.Stored(u"RealTabs"_s), u"False"_s);
}

void FormTest::AValueThatCannotBeReadGivesItsDefault()
{
    Keyed keyed;
    keyed.settings.SaveStoredText(Splash, u"q"_s);
    keyed.settings.SaveStoredText(Startup, u"zz"_s);
    keyed.settings.SaveText(BakPath, u"/tmp"_s);
    keyed.controls.Load();
    QCOMPARE(keyed.settings.TakeUnreadable().size(), 2u);
    QCOMPARE(keyed.Shown(), (QStringList{u"+"_s, u"-"_s, u"1"_s, u"/tmp"_s, u".5"_s}));
}

// Places

void FormTest::ADialogOpensWhereItWasClosed()
{
    constexpr BareNumberKey x{u"FindX"};
    constexpr BareNumberKey y{u"FindY"};
    const QTemporaryDir folder;
    SettingsStore settings(folder.filePath(u"settings"_s));
    QPoint place;
    {
        Sample sample;
        const QPoint before = sample.pos();
        RestorePlace(sample, settings, x, y);
        QCOMPARE(sample.pos(), before);
        sample.move(123, 97);
        place = sample.pos();
        SavePlace(sample, settings, x, y);
    }
    Sample sample;
    RestorePlace(sample, settings, x, y);
    QCOMPARE(sample.pos(), place);
}

void FormTest::APlaceOffTheScreenIsBroughtBack()
{
    constexpr BareNumberKey x{u"FindX"};
    constexpr BareNumberKey y{u"FindY"};
    const QTemporaryDir folder;
    SettingsStore settings(folder.filePath(u"settings"_s));
    settings.SaveNumber(x, 1e6);
    settings.SaveNumber(y, 1e6);
    Sample sample;
    RestorePlace(sample, settings, x, y);
    QVERIFY(sample.screen()->availableGeometry().contains(sample.pos()));
    settings.DeleteSetting(y);
    sample.move(50, 60);
    RestorePlace(sample, settings, x, y);
    QCOMPARE(sample.pos(), QPoint(50, 60));
}

int main(int argc, char **argv)
{
    return RunUiTest<FormTest>(argc, argv);
}

#include "test_form.moc"
