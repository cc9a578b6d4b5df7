// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog of the code repository, by keys.

#include "repository/repositorykeys.h"
#include "repository/ui/frmcoderes.h"
#include "shell/settings.h"
#include "support/boxes.h"
#include "support/dialogwindow.h"
#include "support/filebytes.h"
#include "support/largefont.h"
#include "support/uitest.h"

#include <ctime>
#include <functional>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRect>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItem>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const QByteArray Shared =
    "[Bell]\nCode=instr 1\\n\\tout 1\\nendin\nAuthor=Zoe\nComments=loud\\nlong\nCategory=MIDI\n"
    "[alpha]\nCode=a\nAuthor=Zoe\nCategory=MIDI\n"
    "[Table 1]\nCode=f 1\nAuthor=Al\nCategory=Score\n"
    "[tab]\nCode=x\n";

/// A main window with an orchestra, and a script for the dialog.
struct Browsing : DialogWindow<frmCodeRes> {
    explicit Browsing(const QByteArray &shared = Shared, const QByteArray &text = "abc def\n")
    {
        desktop.environment[u"LOGNAME"_s] = u"Jo"_s;
        if (!shared.isEmpty())
            WriteFile(u"shared.csr"_s, shared);
        Open({WriteFile(u"song.orc"_s, text)});
    }

    QTreeWidget &Tree() { return *dialog->findChild<QTreeWidget *>(u"lvwCodeRes"_s); }
    QPlainTextEdit &Code() { return *dialog->findChild<QPlainTextEdit *>(u"txtCodeRes"_s); }
    QPlainTextEdit &Comments() { return *dialog->findChild<QPlainTextEdit *>(u"txtComments"_s); }
    QLineEdit &Author() { return *dialog->findChild<QLineEdit *>(u"txtAuthor"_s); }
    QComboBox &Category() { return *dialog->findChild<QComboBox *>(u"cmbCategory"_s); }
    QString File() { return dialog->findChild<QLabel *>(u"lblFile"_s)->text(); }
    QPushButton &InsertButton() { return *dialog->findChild<QPushButton *>(u"bOK"_s); }
    QAction &Tool(const QString &key) { return *dialog->findChild<QAction *>(u"tlbCodeRes_"_s + key); }
    QStringList EnabledTools()
    {
        QStringList keys;
        for (const QString &key : {u"save"_s, u"rename"_s, u"delete"_s}) {
            if (Tool(key).isEnabled())
                keys += key;
        }
        if (InsertButton().isEnabled())
            keys += u"bOK"_s;
        return keys;
    }
    QString Current() { return Tree().currentItem() ? Tree().currentItem()->text(0) : QString(); }
    /// All rows, each level two blanks further in; a group that is closed ends in "+".
    QStringList Rows(QTreeWidgetItem *parent = nullptr, const QString &indent = {})
    {
        QStringList rows;
        QTreeWidgetItem *above = parent ? parent : Tree().invisibleRootItem();
        for (int i = 0; i < above->childCount(); ++i) {
            QTreeWidgetItem *item = above->child(i);
            rows +=
                indent + item->text(0) + (item->childCount() > 0 && !item->isExpanded() ? u"+"_s : QString());
            rows += Rows(item, indent + u"  "_s);
        }
        return rows;
    }

    static QWidget *Focus() { return QApplication::focusWidget(); }
    static QString FocusName() { return Focus() ? Focus()->objectName() : QString(); }
    static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(Focus(), key, modifiers);
    }
    static void Ctrl(char key) { Key(Qt::Key(key), Qt::ControlModifier); }
    static void Alt(char key) { Key(Qt::Key(key), Qt::AltModifier); }
    static void Type(const QString &text) { QTest::keyClicks(Focus(), text); }
    /// The field of a label is open, and has the keyboard.
    static bool Labelling()
    {
        return Eventually([] { return FocusName() == u"label"_s; });
    }
    bool Labelled()
    {
        const bool closed = Eventually([this] { return FocusName() == u"lvwCodeRes"_s; });
        QCoreApplication::processEvents(); // what the name is for comes behind
        return closed;
    }
    void GoTo(const QString &name)
    {
        const QList<QTreeWidgetItem *> found = Tree().findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
        QCOMPARE(found.size(), 1);
        Tree().setCurrentItem(found.front());
    }

    /// Opens the dialog by its menu row; `script` has to end it.
    void Show(const std::function<void()> &script, const QString &row = u"mnuCodeRes"_s)
    {
        ShowBy(row, script);
    }
    void Add(const std::function<void()> &script) { Show(script, u"mnuCodeResAdd"_s); }
    QByteArray Bytes(const QString &name) { return BytesOf(folder.filePath(name)); }

    void ExpectReplace(const QString &name, BoxAnswer answer)
    {
        desktop.ExpectMessage(
            {.text = u"Replace saved parameters for '%1' with current settings?"_s.arg(name),
             .icon = BoxIcon::Question,
             .buttons = BoxButtons::YesNo},
            answer);
    }
    void ExpectDelete(const QString &name, BoxAnswer answer)
    {
        desktop.ExpectMessage({.text = u"Delete '%1' item?"_s.arg(name),
                               .icon = BoxIcon::Question,
                               .buttons = BoxButtons::YesNo,
                               .defaultAnswer = BoxAnswer::No},
                              answer);
    }
    void ExpectLeaving(const QString &name, BoxAnswer answer)
    {
        desktop.ExpectMessage({.text = u"Save changes to '%1'?"_s.arg(name),
                               .icon = BoxIcon::Warning,
                               .buttons = BoxButtons::YesNoCancel},
                              answer);
    }
    void ExpectInputFor(const QString &answer)
    {
        desktop.ExpectInput(
            u"Find code fragment"_s,
            u"Type the name of the code fragment to search for.\n\n(You don't need to specify the full name. You may type the first letters only. Search is case insensitive.)"_s,
            answer);
    }
};

class RepositoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TheDialogHasItsControls();
    void TheDialogFitsTheScreen();
    void TheViewsAreShownAndKept();
    void AGroupHasNoPage();
    void AFragmentHasItsPage();
    void TabIsForTheTextsThatHaveTheFocus();
    void ASelectionIsAdded();
    void TheWholeTextIsAdded();
    void ANewFragmentWithoutANameGoes();
    void TheLabelStaysWhileAnotherWindowIsUsed();
    void ATakenNameIsAskedAbout();
    void ADeclinedNameStopsTheCommand();
    void TheEndOfTheProgramAsksForNoName();
    void TheEndOfTheSessionAsksAboutAnUnsavedPage();
    void CommandsDuringANewNameLeaveTheOthersAlone();
    void ANewFragmentThatCannotBeWrittenStays();
    void WritesThatFailKeepThePage();
    void AFragmentIsRenamed();
    void ARenameKeepsWhatAnotherEditorChanged();
    void AFragmentIsSaved();
    void ViewsThatCannotBeKeptHoldNobodyUp();
    void AFragmentIsSavedInAnotherFile();
    void AFragmentIsDeletedWithItsGroups();
    void TheTreeGetsTheKeyboardOfAPageThatGoes();
    void AFragmentIsFound();
    void AFragmentIsInserted();
    void ChangesAreNotLostSilently();
    void SingleSelectionClosesTheOtherBranches();
    void WhatIsCutIsTold();
    void FiveThousandFragmentsOpenQuickly();
};

void RepositoryTest::TheDialogHasItsControls()
{
    Browsing on(QByteArray{});
    on.Show([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Code Repository"_s);
        QCOMPARE(on.Rows(), QStringList());
        QCOMPARE(on.FocusName(), u"lvwCodeRes"_s);
        QCOMPARE(on.EnabledTools(), QStringList());
        QVERIFY(!on.Code().isEnabled() && !on.Author().isEnabled());
        QVERIFY(!on.Comments().isEnabled() && !on.Category().isEnabled());
        QStringList categories;
        for (int i = 0; i < on.Category().count(); ++i)
            categories += on.Category().itemText(i);
        QCOMPARE(categories,
                 (QStringList{u"Function Tables"_s, u"General"_s, u"Instruments"_s, u"Opcodes"_s, u"Macros"_s,
                              u"Math"_s, u"MIDI"_s, u"Orchestra"_s, u"Score"_s, u"Templates"_s}));
        QVERIFY(on.Category().isEditable());
        QStringList tools;
        for (const QAction *tool : on.dialog->findChild<QToolBar *>(u"tlbCodeRes"_s)->actions()) {
            if (!tool->isSeparator())
                tools += tool->objectName().section(u'_', 1);
        }
        QCOMPARE(tools, (QStringList{u"new"_s, u"save"_s, u"rename"_s, u"delete"_s, u"find"_s, u"sort"_s,
                                     u"singlesel"_s}));
        QStringList views;
        for (const QAction *view : on.dialog->findChild<QMenu *>(u"mnuShow"_s)->actions())
            views += view->text() + (view->isChecked() ? u"*"_s : QString());
        QCOMPARE(views, (QStringList{u"&Name*"_s, u"&Category"_s, u"Ca&tegory && Author"_s, u"&Author"_s,
                                     u"A&uthor && Category"_s}));
        QStringList labels;
        for (const QLabel *label : on.dialog->findChildren<QLabel *>()) {
            if (label->buddy())
                labels += label->text() + u'|' + label->buddy()->objectName();
        }
        labels.sort();
        QCOMPARE(labels, (QStringList{u"&Author:|txtAuthor"_s, u"&Category:|cmbCategory"_s,
                                      u"&Fragments:|lvwCodeRes"_s, u"C&ode:|txtCodeRes"_s,
                                      u"Co&mments:|txtComments"_s}));
        QCOMPARE(on.InsertButton().text(), u"&Insert"_s);
        QCOMPARE(on.dialog->findChild<QPushButton *>(u"bCancel"_s)->text(), u"Close"_s);
        // Without a fragment there is nothing to do to one.
        on.Key(Qt::Key_Delete);
        on.Key(Qt::Key_F2);
        on.Ctrl('S');
        on.Key(Qt::Key_Return);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::TheDialogFitsTheScreen()
{
    const LargeFont font(1.5);
    Browsing on;
    on.Show([&on] {
        const QRect place = on.dialog->frameGeometry();
        QVERIFY2(on.dialog->screen()->availableGeometry().contains(place),
                 qPrintable(QDebug::toString(place)));
        Browsing::Key(Qt::Key_Escape);
    });
}

void RepositoryTest::TheViewsAreShownAndKept()
{
    Browsing on;
    on.Show([&] {
        QCOMPARE(on.Rows(), (QStringList{u"Bell"_s, u"alpha"_s, u"Table 1"_s, u"tab"_s}));
        QCOMPARE(on.Current(), u"Bell"_s);
        on.Ctrl('T');
        QCOMPARE(on.Rows(), (QStringList{u"MIDI"_s, u"  alpha"_s, u"  Bell"_s, u"Score"_s, u"  Table 1"_s,
                                         u"General"_s, u"  tab"_s}));
        QCOMPARE(on.Current(), u"MIDI"_s);
        QCOMPARE(on.FocusName(), u"lvwCodeRes"_s);
        on.Ctrl('T');
        QCOMPARE(on.Rows().mid(0, 4), (QStringList{u"MIDI"_s, u"  Zoe"_s, u"    alpha"_s, u"    Bell"_s}));
        on.Ctrl('T');
        QCOMPARE(on.Rows().last(), u"  tab"_s);
        QCOMPARE(on.Rows().at(5), u"General"_s);
        on.Ctrl('T');
        QCOMPARE(on.Rows().last(), u"    tab"_s);
        QCOMPARE(on.Rows().at(7), u"Unknown"_s);
        on.Ctrl('T');
        QCOMPARE(on.Rows().size(), 4);
        on.dialog->findChild<QMenu *>(u"mnuShow"_s)->actions().at(3)->trigger();
        on.Tool(u"singlesel"_s).trigger();
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.settings.GetSetting(u"Options", u"CodeRepositorySort"), u"3"_s);
    QCOMPARE(on.settings.GetSetting(u"Options", u"CodeRepositorySingleSel"), u"1"_s);
    on.Show([&] {
        QVERIFY(on.Tool(u"singlesel"_s).isChecked());
        QCOMPARE(on.Rows().at(0), u"Zoe+"_s);
        on.Tool(u"singlesel"_s).trigger();
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.settings.GetSetting(u"Options", u"CodeRepositorySingleSel"), u"0"_s);
    on.settings.SaveSetting(u"Options", u"CodeRepositorySort", u"17");
    on.Show([&] {
        QCOMPARE(on.Rows().size(), 4);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::AGroupHasNoPage()
{
    Browsing on;
    on.settings.SaveNumber(Keys::CodeRepositorySort, 1);
    on.Show([&] {
        QCOMPARE(on.EnabledTools(), QStringList());
        QVERIFY(on.Tree().currentItem()->foreground(0).style() != Qt::NoBrush);
        on.Key(Qt::Key_Down);
        QCOMPARE(on.dialog->windowTitle(), u"Code Repository - alpha"_s);
        QCOMPARE(on.EnabledTools(), (QStringList{u"rename"_s, u"delete"_s, u"bOK"_s}));
        on.Key(Qt::Key_Up);
        QCOMPARE(on.dialog->windowTitle(), u"Code Repository"_s);
        QCOMPARE(on.Code().toPlainText() + on.Author().text() + on.Category().currentText() + on.File(),
                 QString());
        QVERIFY(!on.Code().isEnabled());
        on.Key(Qt::Key_Return); // on a group it inserts nothing
        QVERIFY(on.dialog->isVisible());
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.Text().Text(), u"abc def\n"_s);
}

void RepositoryTest::AFragmentHasItsPage()
{
    Browsing on;
    on.Show([&] {
        QCOMPARE(on.dialog->windowTitle(), u"Code Repository - Bell"_s);
        QCOMPARE(on.Code().toPlainText(), u"instr 1\n\tout 1\nendin"_s);
        QCOMPARE(on.Author().text(), u"Zoe"_s);
        QCOMPARE(on.Comments().toPlainText(), u"loud\nlong"_s);
        QCOMPARE(on.Category().currentText(), u"MIDI"_s);
        QCOMPARE(on.File(), u"shared.csr"_s);
        QCOMPARE(on.EnabledTools(), (QStringList{u"rename"_s, u"delete"_s, u"bOK"_s}));
        on.Key(Qt::Key_End);
        QCOMPARE(on.Code().toPlainText(), u"x"_s);
        QCOMPARE(on.Author().text(), QString());
        QCOMPARE(on.Category().currentText(), u"General"_s);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::TabIsForTheTextsThatHaveTheFocus()
{
    Browsing on;
    on.Show([&] {
        const auto stops = [&] {
            int count = 0;
            for (const QWidget *control : on.dialog->findChildren<QWidget *>())
                count += control->window() == on.dialog && (control->focusPolicy() & Qt::TabFocus);
            return count;
        };
        const int before = stops();
        QVERIFY(before > 10);
        on.Key(Qt::Key_Tab);
        QCOMPARE(on.FocusName(), u"txtCodeRes"_s);
        QCOMPARE(stops(), 0);
        on.Ctrl('A');
        on.Key(Qt::Key_Tab);
        QCOMPARE(on.Code().toPlainText(), u"\t"_s);
        on.Alt('A');
        QCOMPARE(on.FocusName(), u"txtAuthor"_s);
        QCOMPARE(stops(), before);
        on.Key(Qt::Key_Tab);
        QCOMPARE(on.FocusName(), u"cmbCategory"_s);
        on.Key(Qt::Key_Tab);
        QCOMPARE(on.FocusName(), u"txtComments"_s);
        QCOMPARE(stops(), 0);
        on.Alt('O');
        QCOMPARE(on.FocusName(), u"txtCodeRes"_s);
        QCOMPARE(stops(), 0);
        on.Alt('F');
        QCOMPARE(on.FocusName(), u"lvwCodeRes"_s);
        QCOMPARE(stops(), before);
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::No);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::ASelectionIsAdded()
{
    Browsing on(Shared, "abc\n\tdef ghi\n");
    on.Text().SetSelection(0, 8);
    on.Add([&] {
        QVERIFY(on.Labelling());
        QCOMPARE(on.Code().toPlainText(), u"abc\n\tdef"_s);
        QCOMPARE(on.Author().text(), u"Jo"_s);
        QCOMPARE(on.Comments().toPlainText(),
                 u"Created on "_s + QLocale::system().toString(on.desktop.now.date(), QLocale::ShortFormat));
        QCOMPARE(on.Category().currentText(), u"General"_s);
        QCOMPARE(on.File(), QString());
        on.Type(u" mine "_s);
        QCOMPARE(on.Bytes(u"jo.csr"_s), "(none)"_ba);
        on.Key(Qt::Key_Return);
        QVERIFY(on.Labelled());
        QTRY_COMPARE(on.Current(), u"mine"_s);
        QCOMPARE(on.dialog->windowTitle(), u"Code Repository - mine"_s);
        QCOMPARE(on.File(), u"jo.csr"_s);
        on.Key(Qt::Key_Escape);
    });
    const QString day = QLocale::system().toString(on.desktop.now.date(), QLocale::ShortFormat);
    QCOMPARE(on.Bytes(u"jo.csr"_s), "[mine]\nCode=abc\\n\\tdef\nAuthor=Jo\nComments=Created on " +
                                        day.toUtf8() + "\nCategory=General\n");
    QCOMPARE(on.Bytes(u"shared.csr"_s), Shared);
}

void RepositoryTest::TheWholeTextIsAdded()
{
    Browsing on(QByteArray{});
    on.Add([&] {
        QVERIFY(on.Labelling());
        QCOMPARE(on.Code().toPlainText(), u"abc def\n"_s);
        on.Type(u"all"_s);
        on.Key(Qt::Key_Tab); // ends the edit too
        QVERIFY(on.Labelled());
        QTRY_COMPARE(on.Current(), u"all"_s);
        QCOMPARE(on.Code().toPlainText(), u"abc def"_s);
        on.Key(Qt::Key_Escape);
    });
    QVERIFY(on.Bytes(u"jo.csr"_s).startsWith("[all]\nCode=abc def\nAuthor=Jo\n"));
}

void RepositoryTest::ANewFragmentWithoutANameGoes()
{
    Browsing on;
    on.Show([&] {
        for (const Qt::Key end : {Qt::Key_Return, Qt::Key_Escape}) {
            on.Ctrl('N');
            QVERIFY(on.Labelling());
            QCOMPARE(on.Rows().size(), 5);
            QCOMPARE(on.Code().toPlainText(), QString());
            if (end == Qt::Key_Escape)
                on.Type(u"given up"_s);
            on.Key(end);
            QVERIFY(on.Labelled());
            QTRY_COMPARE(on.Rows().size(), 4);
            QVERIFY(!on.Current().isEmpty());
            QCOMPARE(on.dialog->windowTitle(), u"Code Repository - "_s + on.Current());
        }
        // Whoever goes on with something else leaves it too.
        on.Ctrl('N');
        QVERIFY(on.Labelling());
        on.Tool(u"sort"_s).trigger();
        QCOMPARE(on.Current(), u"MIDI"_s);
        on.Ctrl('N');
        QVERIFY(on.Labelling());
        on.Type(u"late"_s);
        QTest::mouseClick(on.dialog->findChild<QPushButton *>(u"bCancel"_s), Qt::LeftButton);
    });
    QVERIFY(on.Bytes(u"jo.csr"_s).startsWith("[late]\n"));
}

void RepositoryTest::TheLabelStaysWhileAnotherWindowIsUsed()
{
    Browsing on;
    on.Show([&] {
        on.Ctrl('N');
        QVERIFY(on.Labelling());
        QWidget *field = on.Focus();
        QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
        QApplication::sendEvent(field, &away);
        QCoreApplication::processEvents();
        QCOMPARE(on.Rows().size(), 5);
        on.Key(Qt::Key_Escape);
        QTRY_COMPARE(on.Rows().size(), 4);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::ATakenNameIsAskedAbout()
{
    Browsing on;
    on.WriteFile(u"jo.csr"_s, "[Mine]\nCode=old\n");
    const auto expect = [&](BoxAnswer answer) {
        on.desktop.ExpectMessage({.text = u"'mine' is in jo.csr already.\n\nReplace it?"_s,
                                  .icon = BoxIcon::Warning,
                                  .buttons = BoxButtons::YesNo,
                                  .defaultAnswer = BoxAnswer::No},
                                 answer);
    };
    on.Add([&] {
        QVERIFY(on.Labelling());
        on.Type(u"mine"_s);
        expect(BoxAnswer::No);
        on.Key(Qt::Key_Return);
        // The edit goes on.
        QTRY_VERIFY(on.FocusName() == u"label"_s &&
                    static_cast<QLineEdit *>(on.Focus())->text() == u"mine"_s &&
                    static_cast<QLineEdit *>(on.Focus())->hasSelectedText());
        QCOMPARE(on.Bytes(u"jo.csr"_s), "[Mine]\nCode=old\n"_ba);
        expect(BoxAnswer::Yes);
        on.Key(Qt::Key_Return);
        QVERIFY(on.Labelled());
        QTRY_COMPARE(on.Current(), u"mine"_s);
        QCOMPARE(on.Rows(), (QStringList{u"Bell"_s, u"alpha"_s, u"Table 1"_s, u"tab"_s, u"mine"_s}));
        on.Key(Qt::Key_Escape);
    });
    QVERIFY(on.Bytes(u"jo.csr"_s).startsWith("[Mine]\nCode=abc def\n"));
}

void RepositoryTest::ADeclinedNameStopsTheCommand()
{
    Browsing on;
    on.WriteFile(u"jo.csr"_s, "[Mine]\nCode=old\n");
    on.Add([&] {
        QVERIFY(on.Labelling());
        on.Type(u"mine"_s);
        const QStringList rows = on.Rows();
        const std::function<void()> commands[] = {
            [&] { on.Ctrl('S'); },
            [&] { on.Tool(u"save"_s).trigger(); },
            [&] { on.Tool(u"delete"_s).trigger(); },
            [&] { on.Tool(u"rename"_s).trigger(); },
            [&] { on.Tool(u"sort"_s).trigger(); },
            [&] { on.Tool(u"find"_s).trigger(); },
            [&] { on.Tool(u"new"_s).trigger(); },
            [&] { on.dialog->findChild<QMenu *>(u"mnuShow"_s)->actions()[2]->trigger(); },
            [&] { on.InsertButton().click(); },
            [&] { on.dialog->findChild<QPushButton *>(u"bCancel"_s)->click(); },
            [&] { on.dialog->close(); },
        };
        for (const auto &command : commands) {
            on.desktop.ExpectMessage({.text = u"'mine' is in jo.csr already.\n\nReplace it?"_s,
                                      .icon = BoxIcon::Warning,
                                      .buttons = BoxButtons::YesNo,
                                      .defaultAnswer = BoxAnswer::No},
                                     BoxAnswer::No);
            command();
            on.desktop.CheckAllCame(); // and once only
            QVERIFY(on.Labelling());
            QCOMPARE(static_cast<QLineEdit *>(on.Focus())->text(), u"mine"_s);
            QCOMPARE(on.Rows(), rows);
            QVERIFY(on.dialog->isVisible());
            QCOMPARE(on.Code().toPlainText(), u"abc def\n"_s);
            QVERIFY(on.dialog->findChild<QMenu *>(u"mnuShow"_s)->actions()[0]->isChecked());
        }
        on.Type(u"mine too"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.Labelled());
        QTRY_COMPARE(on.Current(), u"mine too"_s);
        on.Key(Qt::Key_Escape);
    });
    QVERIFY(on.Bytes(u"jo.csr"_s).startsWith("[Mine]\nCode=old\n\n[mine too]\nCode=abc def\n"));
}

void RepositoryTest::TheEndOfTheProgramAsksForNoName()
{
    Browsing on;
    on.WriteFile(u"jo.csr"_s, "[Mine]\nCode=old\n");
    on.Add([&] {
        QVERIFY(on.Labelling());
        on.Type(u"mine"_s);
        on.dialog->done(QDialog::Rejected);
    });
    QCOMPARE(on.Bytes(u"jo.csr"_s), "[Mine]\nCode=old\n"_ba);
}

void RepositoryTest::TheEndOfTheSessionAsksAboutAnUnsavedPage()
{
    Browsing on;
    on.Show([&] {
        on.Code().setPlainText(u"kept"_s);
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Cancel);
        QVERIFY(!on.window->MayEndSession());
        on.desktop.CheckAllCame();
        QVERIFY(on.dialog->isVisible());
        QCOMPARE(on.Code().toPlainText(), u"kept"_s);
        QVERIFY(on.InsertButton().isEnabled());
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Cancel);
        on.window->EndBySystem();
        on.desktop.CheckAllCame();
        QVERIFY(on.dialog->isVisible());
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Yes);
        QVERIFY(on.window->MayEndSession());
        QVERIFY(!on.dialog->isVisible());
    });
    QVERIFY(on.Bytes(u"shared.csr"_s).startsWith("[Bell]\nCode=kept\n"));
}

void RepositoryTest::CommandsDuringANewNameLeaveTheOthersAlone()
{
    Browsing on;
    on.Show([&] {
        for (const QString &tool : {u"save"_s, u"delete"_s}) {
            on.Ctrl('N');
            QVERIFY(on.Labelling());
            on.Tool(tool).trigger();
            QCOMPARE(on.Rows().size(), 4);
        }
        on.Ctrl('N');
        QVERIFY(on.Labelling());
        on.InsertButton().click();
        QCOMPARE(on.Rows().size(), 4);
        QVERIFY(on.dialog->isVisible());
        on.Ctrl('N');
        QVERIFY(on.Labelling());
        on.Type(u"named"_s);
        on.Ctrl('S');
        QCOMPARE(on.Current(), u"named"_s);
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.Bytes(u"shared.csr"_s), Shared);
    QVERIFY(on.Bytes(u"jo.csr"_s).startsWith("[named]\n"));
}

void RepositoryTest::ANewFragmentThatCannotBeWrittenStays()
{
    Browsing on;
    const QString file = on.folder.filePath(u"jo.csr"_s);
    const auto stays = [&](const QString &name) {
        QTRY_COMPARE(on.dialog->windowTitle(), u"Code Repository - "_s + name);
        QCOMPARE(on.Current(), name);
        QCOMPARE(on.Code().toPlainText(), u"abc def\n"_s);
        QVERIFY(on.Tool(u"save"_s).isEnabled());
    };
    const auto expectError = [&] {
        on.desktop.ExpectMessage({.text = u"Error adding code fragment."_s, .icon = BoxIcon::Critical});
    };
    for (const bool click : {false, true}) {
        QVERIFY(QDir().mkdir(file)); // nobody writes it
        on.Add([&] {
            QVERIFY(on.Labelling());
            on.Type(u"kept"_s);
            expectError();
            if (click) {
                QTreeWidgetItem *other = on.Tree().findItems(u"Bell"_s, Qt::MatchExactly).front();
                QTest::mouseClick(on.Tree().viewport(), Qt::LeftButton, {},
                                  on.Tree().visualItemRect(other).center());
            } else {
                on.Key(Qt::Key_Return);
            }
            stays(u"kept"_s);
            QVERIFY(QDir().rmdir(file));
            on.ExpectReplace(u"kept"_s, BoxAnswer::Yes);
            on.Ctrl('S');
            QVERIFY(!on.Tool(u"save"_s).isEnabled());
            on.Key(Qt::Key_Escape);
        });
        QVERIFY(on.Bytes(u"jo.csr"_s).startsWith("[kept]\nCode=abc def\n"));
        QVERIFY(QFile::remove(file));
    }
}

void RepositoryTest::WritesThatFailKeepThePage()
{
    Browsing on;
    const QString file = on.folder.filePath(u"shared.csr"_s);
    const QString aside = on.folder.filePath(u"aside"_s);
    const auto expectError = [&](const QString &text) {
        on.desktop.ExpectMessage({.text = text, .icon = BoxIcon::Critical});
    };
    const auto expectSaveError = [&] {
        expectError(u"Error while saving 'Bell'. Check if shared.csr is around 64K. In that case you'll have "
                    "to rename it to something different. Zelvane will create another file."_s);
    };
    const auto check = [&] {
        on.desktop.CheckAllCame();
        QVERIFY(on.dialog->isVisible());
        QCOMPARE(on.dialog->windowTitle(), u"Code Repository - Bell"_s);
        QCOMPARE(on.Current(), u"Bell"_s);
        QCOMPARE(on.Code().toPlainText(), u"mine"_s);
        QCOMPARE(on.EnabledTools(), (QStringList{u"save"_s, u"rename"_s, u"delete"_s, u"bOK"_s}));
    };
    on.Show([&] {
        on.Code().setPlainText(u"mine"_s);
        QVERIFY(QFile::rename(file, aside));
        QVERIFY(QDir().mkdir(file)); // nobody reads or writes it
        on.ExpectReplace(u"Bell"_s, BoxAnswer::Yes);
        expectSaveError();
        on.Ctrl('S');
        check();
        on.ExpectDelete(u"Bell"_s, BoxAnswer::Yes);
        expectError(u"Cannot delete 'Bell' item."_s);
        on.Tool(u"delete"_s).trigger();
        check();
        expectError(u"Error adding code fragment."_s);
        on.Key(Qt::Key_F2);
        QVERIFY(on.Labelling());
        on.Type(u"Gong"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.Labelled());
        check();
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Yes);
        expectSaveError();
        on.Key(Qt::Key_Escape);
        check();
        // Once it can be written again nothing is lost.
        QVERIFY(QDir().rmdir(file));
        QVERIFY(QFile::rename(aside, file));
        on.ExpectReplace(u"Bell"_s, BoxAnswer::Yes);
        on.Ctrl('S');
        on.Key(Qt::Key_Escape);
    });
    QVERIFY(on.Bytes(u"shared.csr"_s).startsWith("[Bell]\nCode=mine\nAuthor=Zoe\n"));
}

void RepositoryTest::AFragmentIsRenamed()
{
    Browsing on;
    on.settings.SaveNumber(Keys::CodeRepositorySort, 1);
    on.Show([&] {
        on.Key(Qt::Key_Down);
        QCOMPARE(on.Current(), u"alpha"_s);
        on.Key(Qt::Key_F2);
        QVERIFY(on.Labelling());
        on.Type(u"zeta"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.Labelled());
        QTRY_COMPARE(on.dialog->windowTitle(), u"Code Repository - zeta"_s);
        QCOMPARE(on.Rows().mid(0, 3), (QStringList{u"MIDI"_s, u"  Bell"_s, u"  zeta"_s}));
        QCOMPARE(on.Current(), u"zeta"_s);
        QVERIFY(on.Bytes(u"shared.csr"_s).endsWith("\n\n[zeta]\nCode=a\nAuthor=Zoe\nCategory=MIDI\n"));
        const QByteArray now = on.Bytes(u"shared.csr"_s);
        for (const QString &typed : {u""_s, u" "_s, u"zeta"_s}) {
            on.Alt('O'); // from anywhere
            on.Key(Qt::Key_F2);
            QVERIFY(on.Labelling());
            on.Ctrl('A');
            on.Key(Qt::Key_Delete);
            on.Type(typed);
            on.Key(Qt::Key_Return);
            QVERIFY(on.Labelled());
            QCoreApplication::processEvents();
            QCOMPARE(on.Current(), u"zeta"_s);
        }
        on.Key(Qt::Key_F2);
        QVERIFY(on.Labelling());
        on.Type(u"not"_s);
        on.Key(Qt::Key_Escape);
        QVERIFY(on.Labelled());
        QCOMPARE(on.Bytes(u"shared.csr"_s), now);
        // A group has no name of its own.
        on.Key(Qt::Key_Home);
        on.Key(Qt::Key_F2);
        QCOMPARE(on.FocusName(), u"lvwCodeRes"_s);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::ARenameKeepsWhatAnotherEditorChanged()
{
    Browsing on;
    const auto rename = [&](const QString &name) {
        on.Tree().setFocus();
        on.Key(Qt::Key_F2);
        QVERIFY(on.Labelling());
        on.Type(name);
        on.Key(Qt::Key_Return);
        QVERIFY(on.Labelled());
        QTRY_COMPARE(on.dialog->windowTitle(), u"Code Repository - "_s + name);
    };
    on.Show([&] {
        on.GoTo(u"tab"_s);
        on.WriteFile(u"shared.csr"_s, "[tab]\nCode=theirs\n");
        rename(u"shown anew"_s);
        QCOMPARE(on.Code().toPlainText(), u"theirs"_s);
        QVERIFY(!on.Tool(u"save"_s).isEnabled());

        // A page with changes of its own stays, and does not go over the others' unasked.
        on.Author().setFocus();
        on.Type(u"me"_s);
        on.WriteFile(u"shared.csr"_s, "[shown anew]\nCode=theirs again\n");
        rename(u"mine"_s);
        QCOMPARE(on.Author().text(), u"me"_s);
        on.ExpectReplace(u"mine"_s, BoxAnswer::Yes);
        on.desktop.ExpectMessage(
            {.text = u"'mine' has been changed elsewhere since it was read.\n\nSave all the same?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo,
             .defaultAnswer = BoxAnswer::No},
            BoxAnswer::No);
        on.Ctrl('S');
        on.ExpectLeaving(u"mine"_s, BoxAnswer::No);
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.Bytes(u"shared.csr"_s), "[mine]\nCode=theirs again\n"_ba);
}

void RepositoryTest::AFragmentIsSaved()
{
    Browsing on;
    on.Show([&] {
        on.Alt('O');
        on.Key(Qt::Key_End, Qt::ControlModifier);
        on.Key(Qt::Key_Return);
        on.Type(u"; end"_s);
        QVERIFY(on.EnabledTools().contains(u"save"_s));
        on.ExpectReplace(u"Bell"_s, BoxAnswer::No);
        on.Ctrl('S');
        QVERIFY(on.EnabledTools().contains(u"save"_s));
        QCOMPARE(on.Bytes(u"shared.csr"_s), Shared);
        on.Alt('C');
        on.Ctrl('A');
        on.Type(u"Own kind"_s);
        on.ExpectReplace(u"Bell"_s, BoxAnswer::Yes);
        on.Ctrl('S');
        QVERIFY(!on.EnabledTools().contains(u"save"_s));
        QCOMPARE(on.Code().textCursor().position(), 26); // the caret stays
        on.Key(Qt::Key_Escape);
    });
    QByteArray expected = Shared;
    expected.replace("endin\nAuthor=Zoe\nComments=loud\\nlong\nCategory=MIDI",
                     "endin\\n; end\nAuthor=Zoe\nComments=loud\\nlong\nCategory=Own kind");
    QCOMPARE(on.Bytes(u"shared.csr"_s), expected);
}

void RepositoryTest::ViewsThatCannotBeKeptHoldNobodyUp()
{
    Browsing on;
    // A file stands where the store's folder was.
    const QString folder = on.storeFolder.path();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);
    QVERIFY(file.open(QIODevice::WriteOnly));
    on.Show([&] {
        on.Ctrl('T');
        on.desktop.ExpectMessage(ErrorBox(u"Not a directory (76)"_s, folder + u"/settings"_s),
                                 BoxAnswer::Cancel);
        on.Key(Qt::Key_Escape);
        QVERIFY(!on.dialog->isVisible());
        on.desktop.CheckAllCame();
    });
    QVERIFY(file.remove());
}

void RepositoryTest::AFragmentIsSavedInAnotherFile()
{
    Browsing on;
    on.Show([&] {
        on.Alt('M');
        on.Type(u"very "_s);
        on.desktop.keysDown.insert(KeyCode::Ctrl);
        on.desktop.ExpectSaveDialog({.title = u"Select file to save the code fragment in"_s,
                                     .filters = {{u"Code Repository Files"_s, u"*.csr"_s}},
                                     .folder = on.folder.path(),
                                     .defaultExtension = u"csr"_s,
                                     .overwritePrompt = false},
                                    {.path = on.folder.filePath(u"new.csr"_s)});
        on.ExpectReplace(u"Bell"_s, BoxAnswer::Yes);
        auto *bar = on.dialog->findChild<QToolBar *>(u"tlbCodeRes"_s);
        QTest::mouseClick(bar->widgetForAction(&on.Tool(u"save"_s)), Qt::LeftButton);
        on.desktop.keysDown.clear();
        on.Key(Qt::Key_Escape); // nothing is left to be saved
    });
    QCOMPARE(on.Bytes(u"shared.csr"_s), Shared);
    QCOMPARE(
        on.Bytes(u"new.csr"_s),
        "[Bell]\nCode=instr 1\\n\\tout 1\\nendin\nAuthor=Zoe\nComments=very loud\\nlong\nCategory=MIDI\n"_ba);
}

void RepositoryTest::AFragmentIsDeletedWithItsGroups()
{
    Browsing on;
    on.settings.SaveNumber(Keys::CodeRepositorySort, 2);
    on.Show([&] {
        on.GoTo(u"Table 1"_s);
        on.ExpectDelete(u"Table 1"_s, BoxAnswer::No);
        on.Key(Qt::Key_Delete);
        QCOMPARE(on.Bytes(u"shared.csr"_s), Shared);
        on.ExpectDelete(u"Table 1"_s, BoxAnswer::Yes);
        on.Key(Qt::Key_Delete);
        QCOMPARE(on.Rows(), (QStringList{u"MIDI"_s, u"  Zoe"_s, u"    alpha"_s, u"    Bell"_s, u"General"_s,
                                         u"  Unknown"_s, u"    tab"_s}));
        on.GoTo(u"alpha"_s);
        on.ExpectDelete(u"alpha"_s, BoxAnswer::Yes);
        on.Tool(u"delete"_s).trigger();
        QCOMPARE(on.Rows().mid(0, 3), (QStringList{u"MIDI"_s, u"  Zoe"_s, u"    Bell"_s}));
        QCOMPARE(on.dialog->windowTitle().contains(u"alpha"_s), false);
        // In a text the key is the text's.
        on.GoTo(u"tab"_s);
        on.Alt('O');
        on.Key(Qt::Key_Delete);
        QCOMPARE(on.Code().toPlainText(), QString());
        on.ExpectLeaving(u"tab"_s, BoxAnswer::No);
        on.Key(Qt::Key_Escape);
    });
    QVERIFY(!on.Bytes(u"shared.csr"_s).contains("Table 1"));
    QVERIFY(on.Bytes(u"shared.csr"_s).contains("[Bell]"));
}

void RepositoryTest::TheTreeGetsTheKeyboardOfAPageThatGoes()
{
    Browsing on("[only]\nCode=x\n");
    on.Show([&] {
        on.GoTo(u"only"_s);
        on.Alt('O');
        QCOMPARE(on.FocusName(), u"txtCodeRes"_s);
        on.ExpectDelete(u"only"_s, BoxAnswer::Yes);
        on.Tool(u"delete"_s).trigger();
        QVERIFY(!on.Code().isEnabled());
        QCOMPARE(on.FocusName(), u"lvwCodeRes"_s);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::AFragmentIsFound()
{
    Browsing on;
    on.settings.SaveNumber(Keys::CodeRepositorySort, 2);
    on.settings.SaveStoredText(Keys::CodeRepositorySingleSel, u"1"_s);
    on.Show([&] {
        on.ExpectInputFor(u"TAB"_s);
        on.Ctrl('F');
        QCOMPARE(on.Current(), u"tab"_s);
        QCOMPARE(on.dialog->windowTitle(), u"Code Repository - tab"_s);
        QVERIFY(on.Tree().visualItemRect(on.Tree().currentItem()).isValid());
        on.ExpectInputFor(u"tabl"_s);
        on.Ctrl('F');
        QCOMPARE(on.Current(), u"Table 1"_s);
        on.ExpectInputFor(u"none"_s);
        on.desktop.ExpectMessage({.text = u"Cannot find 'none'."_s, .icon = BoxIcon::Information});
        on.Ctrl('F');
        QCOMPARE(on.Current(), u"Table 1"_s);
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::AFragmentIsInserted()
{
    Browsing on;
    on.Text().SetSelection(4, 7);
    on.Find<QWidget>(u"cmbOpcodes"_s).setFocus();
    QVERIFY(on.window->focusWidget() != &on.Text());
    on.Show([&] { on.Key(Qt::Key_Return); });
    QCOMPARE(on.window->focusWidget(), &on.Text());
    QCOMPARE(on.Text().Text(), u"abc instr 1\n\tout 1\nendin\n"_s);
    on.Row(u"mnuUndo"_s).trigger();
    QCOMPARE(on.Text().Text(), u"abc def\n"_s);
    // What the page shows is inserted, and a change of the code alone needs no question.
    on.Show([&] {
        on.Alt('O');
        on.Ctrl('A');
        on.Type(u"xyz"_s);
        on.Alt('I');
    });
    QCOMPARE(on.Text().Text(), u"abc xyz\n"_s);
    on.Show([&] {
        on.GoTo(u"tab"_s);
        const QRect place = on.Tree().visualItemRect(on.Tree().currentItem());
        QTest::mouseDClick(on.Tree().viewport(), Qt::RightButton, {}, place.center());
        QVERIFY(on.dialog->isVisible());
        QTest::mouseClick(on.Tree().viewport(), Qt::LeftButton, {}, place.center());
        QTest::mouseDClick(on.Tree().viewport(), Qt::LeftButton, {}, place.center());
    });
    QCOMPARE(on.Text().Text(), u"abc xyzx\n"_s);
    QCOMPARE(on.Bytes(u"shared.csr"_s), Shared);
}

void RepositoryTest::ChangesAreNotLostSilently()
{
    Browsing on;
    on.Show([&] {
        on.Alt('A');
        on.Ctrl('A');
        on.Type(u"Eva"_s);
        on.Alt('F');
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Cancel);
        on.Key(Qt::Key_Down);
        QTRY_COMPARE(on.Current(), u"Bell"_s);
        on.desktop.CheckAllCame();
        QCOMPARE(on.Author().text(), u"Eva"_s);
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Cancel);
        on.Ctrl('T');
        QCOMPARE(on.Rows().size(), 4);
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Cancel);
        on.Ctrl('N');
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Cancel);
        on.Key(Qt::Key_Return); // the author would not go into the text
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Cancel);
        on.Key(Qt::Key_Escape);
        QVERIFY(on.dialog->isVisible());
        on.ExpectLeaving(u"Bell"_s, BoxAnswer::Yes);
        on.Key(Qt::Key_Down);
        QTRY_COMPARE(on.dialog->windowTitle(), u"Code Repository - alpha"_s);
        QVERIFY(on.Bytes(u"shared.csr"_s).contains("endin\nAuthor=Eva\n"));
        on.Alt('A');
        on.Type(u"x"_s);
        on.Alt('F');
        on.ExpectLeaving(u"alpha"_s, BoxAnswer::No);
        on.Key(Qt::Key_Up);
        QTRY_COMPARE(on.dialog->windowTitle(), u"Code Repository - Bell"_s);
        on.Key(Qt::Key_Escape);
    });
    QByteArray expected = Shared;
    expected.replace("endin\nAuthor=Zoe", "endin\nAuthor=Eva");
    QCOMPARE(on.Bytes(u"shared.csr"_s), expected);
}

void RepositoryTest::SingleSelectionClosesTheOtherBranches()
{
    Browsing on;
    on.settings.SaveNumber(Keys::CodeRepositorySort, 1);
    on.settings.SaveStoredText(Keys::CodeRepositorySingleSel, u"1"_s);
    on.Show([&] {
        QCOMPARE(on.Rows().filter(u"+"_s), (QStringList{u"MIDI+"_s, u"Score+"_s, u"General+"_s}));
        on.Key(Qt::Key_Right);
        QCOMPARE(on.Rows().filter(u"+"_s), (QStringList{u"Score+"_s, u"General+"_s}));
        on.Key(Qt::Key_Down);
        QCOMPARE(on.Current(), u"alpha"_s);
        on.Key(Qt::Key_End);
        on.Key(Qt::Key_Right);
        QCOMPARE(on.Rows().filter(u"+"_s), (QStringList{u"MIDI+"_s, u"Score+"_s}));
        QCOMPARE(on.Current(), u"General"_s);
        on.Tool(u"singlesel"_s).trigger();
        on.Key(Qt::Key_Home);
        on.Key(Qt::Key_Right);
        QCOMPARE(on.Rows().filter(u"+"_s), (QStringList{u"Score+"_s}));
        on.Key(Qt::Key_Escape);
    });
}

void RepositoryTest::WhatIsCutIsTold()
{
    QByteArray many = "[long]\nCode=" + QByteArray(40000, 'x') + "\n";
    for (int i = 0; i < 4000; ++i)
        many += "[fragm" + QByteArray::number(1000 + i) + "]\n";
    Browsing on(many);
    on.Show([&] {
        const auto note = [&](const QString &name) {
            const auto *label = on.dialog->findChild<QLabel *>(name);
            return label->isVisible() ? label->text() : QString();
        };
        QCOMPARE(note(u"lblCutLists"_s),
                 u"shared.csr is too long: only the first 3277 of its 4001 fragments are shown."_s);
        QCOMPARE(on.Rows().size(), 3277);
        QCOMPARE(note(u"lblCutCode"_s),
                 u"The fragment is longer than 32767 characters: not all of it is shown."_s);
        QCOMPARE(on.Code().toPlainText().size(), 32767);
        on.desktop.ExpectMessage(
            {.text =
                 u"'long' is longer than 32767 characters. Under another name its last 7239 characters would be lost.\n\nRename it all the same?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo,
             .defaultAnswer = BoxAnswer::No},
            BoxAnswer::No);
        on.Key(Qt::Key_F2);
        QVERIFY(on.Labelling());
        on.Type(u"short"_s);
        on.Key(Qt::Key_Return);
        QVERIFY(on.Labelled());
        QCOMPARE(on.Current(), u"long"_s);
        on.desktop.CheckAllCame();
        on.Key(Qt::Key_Down);
        QCOMPARE(note(u"lblCutCode"_s), QString());
        on.Key(Qt::Key_Escape);
    });
    QCOMPARE(on.Bytes(u"shared.csr"_s), many);
}

void RepositoryTest::FiveThousandFragmentsOpenQuickly()
{
    QByteArray many;
    for (int i = 0; i < 5000; ++i)
        many += '[' + QByteArray::number(10000 + i) + "]\nCode=a" + QByteArray::number(i) +
                "\\nb\nAuthor=x\nCategory=c" + QByteArray::number(i % 40) + '\n';
    Browsing on(many);
    on.settings.SaveNumber(Keys::CodeRepositorySort, 2);
    const std::clock_t start = std::clock();
    on.Show([&] {
        const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;
        qInfo("5000 fragments were open in %.2f s of a processor", seconds);
        QVERIFY(seconds < 10); // half a second on a quick machine
        QCOMPARE(on.Rows().size(), 5080);
        on.Key(Qt::Key_Escape);
    });
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<RepositoryTest>(argc, argv);
}

#include "test_repository.moc"
