// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/form.h"

#include "support/scripteddesktop.h"
#include "support/uitest.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
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
    void EnterOnCancelCancels();
    void EscapeRejects();
    void WithoutADefaultEnterPressesNothing();
    void APickedFileGoesIntoItsField();
    void APickedFolderGoesIntoItsField();
    void FocusSelectsTheText();
    void AClickIntoAFocusedFieldOnlyPutsTheCaret();
    void TabFollowsTheOrderGiven();
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

int main(int argc, char **argv)
{
    return RunUiTest<FormTest>(argc, argv);
}

#include "test_form.moc"
