// SPDX-License-Identifier: GPL-3.0-or-later

// The writing aids as a whole: their settings, their page of Preferences, their menu, and that nothing of
// them is there while all are off.

#include "platform/ui/scintilla.h"
#include "platform/ui/textcontrol.h"
#include "preferences/ui/frmoptions.h"
#include "shell/command.h"
#include "shell/findkeys.h"
#include "shell/settingkey.h"
#include "shell/ui/appearance.h"
#include "shell/ui/commands.h"
#include "shell/ui/menuname.h"
#include "shell/ui/menutable.h"
#include "support/editorwindow.h"
#include "support/modaldriver.h"
#include "support/uitest.h"
#include "window/ui/frmeditor.h"
#include "window/ui/rooms.h"
#include "writing/ui/writingroom.h"
#include "writing/writingkeys.h"

#include <iterator>
#include <QAction>
#include <QCheckBox>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QStringList>
#include <QTabWidget>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace zelvane;
using namespace zelvane::test;

namespace
{

const FlagKey AllAids[] = {
#define AID_KEY(Type, Name, ...) Keys::Name,
    ZELVANE_WRITING_KEYS(AID_KEY)
#undef AID_KEY
        Keys::RegularExpressions,
};

/// The commands of an aid.
struct AidCommands {
    FlagKey key;
    std::vector<Command> commands;
};
const AidCommands CommandsOfAids[] = {
    {Keys::Completion, {Cmd::mnuComplete}},
    {Keys::ArgumentHint, {Cmd::mnuArgumentHint}},
    {Keys::Bookmarks,
     {Cmd::mnuBookmark[BookmarkEntry::Toggle], Cmd::mnuBookmark[BookmarkEntry::Next],
      Cmd::mnuBookmark[BookmarkEntry::Previous], Cmd::mnuBookmark[BookmarkEntry::List]}},
    {Keys::Folding,
     {Cmd::mnuFold[FoldEntry::Here], Cmd::mnuFold[FoldEntry::All], Cmd::mnuFold[FoldEntry::None]}},
    {Keys::MoveLines,
     {Cmd::mnuDuplicateLine, Cmd::mnuMoveLine[LineMove::Up], Cmd::mnuMoveLine[LineMove::Down]}},
    {Keys::FindInFiles, {Cmd::mnuFindInFiles}},
};

struct WritingWindow : EditorWindow {
    WritingRoom &Room() { return window->Rooms().writing; }
    void Turn(const FlagKey &key, bool on)
    {
        settings.SaveFlag(key, on);
        window->Looks().ApplyAll();
    }
    void TurnAll(bool on)
    {
        for (const FlagKey &key : AllAids)
            settings.SaveFlag(key, on);
        window->Looks().ApplyAll();
    }
    bool MenuShown() { return Find<QMenu>(u"mnuExtras"_s).menuAction()->isVisible(); }
    std::vector<long> TextState()
    {
        std::vector<long> state;
        using Sci = QsciScintillaBase;
        for (int margin = 0; margin < 5; ++margin)
            state.push_back(Text().SendScintilla(Sci::SCI_GETMARGINWIDTHN, margin));
        for (const int message : {int(Sci::SCI_GETMARGINLEFT), int(Sci::SCI_GETCARETLINEVISIBLE),
                                  int(Sci::SCI_GETCARETLINEVISIBLEALWAYS), int(Sci::SCI_GETAUTOMATICFOLD)})
            state.push_back(Text().SendScintilla(unsigned(message)));
        return state;
    }
};

} // namespace

class WritingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void WithAllOffNothingIsThere();
    void TheMenuComesAndGoesWithEachAid();
    void AidsLiveWhileTheirSettingIsOn();
    void RowsAreThoseOfLivingAids();
    void PreferencesTurnThemOnAndOff();
    void KeysWithoutTheirAidDoNothing();
    void AllGoWithoutATrace();
};

void WritingTest::WithAllOffNothingIsThere()
{
    WritingWindow editor;
    editor.Open({editor.WriteFile(u"a.csd"_s, "<CsoundSynthesizer>\n")});
    QCOMPARE(editor.Room().AidCount(), size_t(0));
    QVERIFY(!editor.Room().Decorations());
    QVERIFY(!editor.MenuShown());
    const Commands &commands = editor.window->CommandTable();
    int rows = 0;
    for (const MenuRow &row : MenuTable()) {
        if (row.under != Menu::mnuExtras || !row.command)
            continue;
        ++rows;
        QVERIFY2(!commands.IsBound(*row.command), qPrintable(row.command->RowName()));
        QVERIFY2(!commands.Action(*row.command)->isEnabled(), qPrintable(row.command->RowName()));
    }
    QCOMPARE(rows, 13);
    for (const FlagKey &key : AllAids)
        QVERIFY2(!editor.settings.Flag(key), qPrintable(key.Name()));
}

void WritingTest::TheMenuComesAndGoesWithEachAid()
{
    WritingWindow editor;
    editor.Open();
    for (const FlagKey &key : AllAids) {
        // This one only says how another works.
        const bool aid = key.Name() != Keys::AutoComplete.Name();
        editor.Turn(key, true);
        QVERIFY2(editor.MenuShown() == aid, qPrintable(key.Name()));
        editor.Turn(key, false);
        QVERIFY2(!editor.MenuShown(), qPrintable(key.Name()));
    }
    // From the start on, too.
    editor.settings.SaveFlag(Keys::CurrentLine, true);
    editor.Open();
    QVERIFY(editor.MenuShown());
}

void WritingTest::AidsLiveWhileTheirSettingIsOn()
{
    WritingWindow editor;
    editor.Open();
    QVERIFY(!editor.Room().Aid(u"LineNumbers"_s));
    editor.Turn(Keys::LineNumbers, true);
    WritingAid *aid = editor.Room().Aid(u"LineNumbers"_s);
    QVERIFY(aid);
    QVERIFY(editor.Room().Decorations());
    editor.window->Looks().ApplyAll();
    QCOMPARE(editor.Room().Aid(u"LineNumbers"_s), aid);
    editor.Turn(Keys::CurrentLine, true);
    QCOMPARE(editor.Room().Aid(u"LineNumbers"_s), aid);
    QCOMPARE(editor.Room().AidCount(), size_t(2));
    editor.Turn(Keys::LineNumbers, false);
    QVERIFY(!editor.Room().Aid(u"LineNumbers"_s));
    QVERIFY(editor.Room().Decorations());
    editor.Turn(Keys::CurrentLine, false);
    QCOMPARE(editor.Room().AidCount(), size_t(0));
    QVERIFY(!editor.Room().Decorations());
}

void WritingTest::RowsAreThoseOfLivingAids()
{
    WritingWindow editor;
    editor.Open();
    const Commands &commands = editor.window->CommandTable();
    const auto check = [&] {
        for (const AidCommands &aid : CommandsOfAids) {
            for (const Command command : aid.commands) {
                const bool lives = editor.Room().Aid(aid.key.Name());
                QVERIFY2(commands.IsBound(command) == lives, qPrintable(command.RowName()));
                QVERIFY2(lives || !commands.Action(command)->isEnabled(), qPrintable(command.RowName()));
            }
        }
    };
    editor.TurnAll(true);
    check();
    for (const AidCommands &aid : CommandsOfAids) {
        editor.Turn(aid.key, false);
        QVERIFY(!editor.Room().Aid(aid.key.Name()));
        check();
    }
    editor.TurnAll(false);
    check();
}

void WritingTest::PreferencesTurnThemOnAndOff()
{
    WritingWindow editor;
    editor.Open();
    ModalDriver driver;
    driver.Expect<frmOptions>([&](frmOptions &dialog) {
        auto *pages = dialog.findChild<QTabWidget *>(u"tbsOptions"_s);
        // Behind all others.
        QCOMPARE(pages->tabText(pages->count() - 1), u"Writing"_s);
        QWidget *page = pages->widget(pages->count() - 1);
        QStringList boxes;
        for (const QCheckBox *box : page->findChildren<QCheckBox *>()) {
            QVERIFY2(!box->isChecked(), qPrintable(box->objectName()));
            boxes.append(box->objectName());
        }
        QStringList keys;
        for (const FlagKey &key : AllAids)
            keys.append(key.Name());
        boxes.sort();
        keys.sort();
        QCOMPARE(boxes, keys);

        // This one says how another works, and nothing without it.
        auto *completion = page->findChild<QCheckBox *>(u"Completion"_s);
        const auto *byItself = page->findChild<QCheckBox *>(u"AutoComplete"_s);
        QVERIFY(!byItself->isEnabled());
        completion->setChecked(true);
        QVERIFY(byItself->isEnabled());
        completion->setChecked(false);
        QVERIFY(!byItself->isEnabled());

        page->findChild<QPushButton *>(u"bAllAids"_s)->click();
        QVERIFY(!editor.MenuShown());
        dialog.findChild<QPushButton *>(u"cmdApply"_s)->click();
        QVERIFY(editor.MenuShown());
        for (const FlagKey &key : AllAids)
            QVERIFY2(editor.settings.Flag(key), qPrintable(key.Name()));
        QVERIFY(editor.Room().AidCount() > 0);
        for (QCheckBox *box : page->findChildren<QCheckBox *>())
            box->setChecked(false);
        dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
    });
    editor.Row(u"mnuPreferences"_s).trigger();
    QVERIFY(!editor.MenuShown());
    QCOMPARE(editor.Room().AidCount(), size_t(0));
}

void WritingTest::KeysWithoutTheirAidDoNothing()
{
    WritingWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, "one\ntwo\n")});
    const QString text = editor.Text().Text();
    for (const QKeyCombination key :
         {Qt::CTRL | Qt::Key_Space, Qt::CTRL | Qt::SHIFT | Qt::Key_Space, Qt::CTRL | Qt::Key_L,
          Qt::CTRL | Qt::SHIFT | Qt::Key_Up, Qt::CTRL | Qt::SHIFT | Qt::Key_Down}) {
        QKeyEvent press(QEvent::KeyPress, key.key(), key.keyboardModifiers());
        QCoreApplication::sendEvent(&editor.Text(), &press);
        QVERIFY(!press.isAccepted());
    }
    QCOMPARE(editor.Text().Text(), text);
    QVERIFY(!editor.Text().CanUndo());
}

void WritingTest::AllGoWithoutATrace()
{
    WritingWindow editor;
    editor.Open({editor.WriteFile(u"a.orc"_s, "instr 1\na1 oscil (1, 2)\nout a1 ; (\nendin\n")});
    editor.Text().SetSelection(10, 12);
    const std::vector<long> state = editor.TextState();
    const StyledText styled = editor.Text().Styled(0, editor.Text().Length());
    editor.TurnAll(true);
    QVERIFY(editor.TextState() != state);
    QCoreApplication::processEvents();
    editor.TurnAll(false);
    QVERIFY(editor.TextState() == state);
    QCOMPARE(editor.Text().Styled(0, editor.Text().Length()).runs.size(), styled.runs.size());
    QVERIFY(!editor.Text().CanUndo());
    QVERIFY(!editor.window->Context().document.Modified);
    QCOMPARE(editor.Text().Selection(), (TextSpan{10, 12}));
}

int main(int argc, char **argv)
{
    return RunUiTest<WritingTest>(argc, argv);
}

#include "test_writing.moc"
