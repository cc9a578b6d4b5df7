// SPDX-License-Identifier: GPL-3.0-or-later

// The tables of commands: menu rows, their handlers and their keys.

#include "shell/command.h"
#include "shell/textops.h"
#include "shell/ui/commandkeys.h"
#include "shell/ui/commands.h"
#include "shell/ui/menutable.h"
#include "shell/ui/toolbutton.h"
#include "support/editorwindow.h"
#include "support/uitest.h"
#include "window/ui/toolbartable.h"
#include "writing/writingkeys.h"

#include <QAction>
#include <QFile>
#include <QKeySequence>
#include <QRegularExpression>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;
using zelvane::test::EditorWindow;
using zelvane::test::RunUiTest;

namespace
{

// Names are no commands: what is not a constant of Cmd cannot be bound or run.
static_assert(!std::is_constructible_v<Command, const char16_t *>);
static_assert(!std::is_constructible_v<Command, std::u16string_view>);
static_assert(!std::is_constructible_v<Command, std::u16string_view, int>);
static_assert(!std::is_default_constructible_v<Command>);
static_assert(!std::is_constructible_v<CommandArray<int>, std::u16string_view>);
static_assert(!std::is_constructible_v<MenuName, std::u16string_view>);

QStringList RowNames(const std::vector<Command> &commands)
{
    QStringList names;
    for (const Command command : commands)
        names.append(command.RowName());
    return names;
}

/// The commands of a menu that writing aids bind while they are on.
std::vector<Command> ExtraCommands()
{
    std::vector<Command> commands;
    for (const MenuRow &row : MenuTable()) {
        if (row.command && row.under == Menu::mnuExtras)
            commands.push_back(*row.command);
    }
    return commands;
}

/// The commands of the menus, and of the buttons that no menu has.
std::vector<Command> AllCommands()
{
    std::vector<Command> commands;
    for (const MenuRow &row : MenuTable()) {
        if (row.command)
            commands.push_back(*row.command);
    }
    const std::set<Command> rows(commands.begin(), commands.end());
    for (const ToolButton &button : ToolbarTable()) {
        if (!rows.contains(button.command))
            commands.push_back(button.command);
    }
    return commands;
}

/// Whether the value is a named one: the compiler writes the others as a cast of a number.
template <auto value> constexpr bool IsEnumerator()
{
    return std::string_view(__PRETTY_FUNCTION__).find("(zelvane::") == std::string_view::npos;
}
static_assert(IsEnumerator<FileOperation::Properties>());
static_assert(!IsEnumerator<FileOperation(4)>());

template <typename Entry, int... number>
void AddEntries(CommandArray<Entry> array, std::set<Command> &commands,
                std::integer_sequence<int, number...> /*tried*/)
{
    ((IsEnumerator<Entry(number)>() ? void(commands.insert(array[Entry(number)])) : void()), ...);
}

/// All that Cmd declares, but for the arrays whose rows come and go.
std::set<Command> DeclaredCommands()
{
    constexpr int MostEntries = 32;
    std::set<Command> commands;
    const auto add = [&]<typename Entry>(CommandArray<Entry> array) {
        if constexpr (std::is_enum_v<Entry>)
            AddEntries(array, commands, std::make_integer_sequence<int, MostEntries>());
    };
#define ADD_COMMAND(name) commands.insert(Cmd::name);
#define ADD_ARRAY(name, Entry) add(Cmd::name);
    ZELVANE_COMMANDS(ADD_COMMAND, ADD_ARRAY)
#undef ADD_COMMAND
#undef ADD_ARRAY
    return commands;
}

class CommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void EveryRowHasAHandler();
    void DeclaredCommandsAreThoseOfTheTables();
    void RowsStandOnce();
    void RowsWithoutAnActionStayEnabled();
    void HandlersOfEntriesGoFirst();
    void HandlersCanBeTakenAway();
    void KeysBelongToOneRow();
    void HelpPageTellsTheKeys();
    void KeysReachTheirTaker_data();
    void KeysReachTheirTaker();
};

void CommandsTest::EveryRowHasAHandler()
{
    EditorWindow editor;
    const Commands &commands = editor.Open().CommandTable();
    const std::vector<Command> extras = ExtraCommands();
    std::vector<Command> unbound;
    for (const Command command : AllCommands()) {
        QVERIFY2(commands.Action(command), qPrintable(command.RowName()));
        if (!commands.IsBound(command))
            unbound.push_back(command);
    }
    QCOMPARE(RowNames(unbound), RowNames(extras));
}

void CommandsTest::DeclaredCommandsAreThoseOfTheTables()
{
    const std::vector<Command> tables = AllCommands();
    const std::set<Command> inTables(tables.begin(), tables.end());
    const std::set<Command> declared = DeclaredCommands();
    QCOMPARE(RowNames({declared.begin(), declared.end()}), RowNames({inTables.begin(), inTables.end()}));
}

void CommandsTest::RowsStandOnce()
{
    std::set<Command> seen;
    for (const Command command : AllCommands())
        QVERIFY2(seen.insert(command).second, qPrintable(command.RowName()));
    std::set<MenuName> menus = {Menu::Bar, Menu::Popups};
    for (const MenuRow &row : MenuTable()) {
        QVERIFY2(menus.contains(row.under), qPrintable(row.under.ToString()));
        if (row.submenu)
            QVERIFY2(menus.insert(*row.submenu).second, qPrintable(row.submenu->ToString()));
    }
}

void CommandsTest::RowsWithoutAnActionStayEnabled()
{
    EditorWindow editor;
    editor.Open();
    for (const TreeEntry entry : {TreeEntry::Expand, TreeEntry::Collapse}) {
        QAction &row = editor.Row(Cmd::mnuTV[entry].RowName());
        QVERIFY(row.isEnabled());
        row.trigger();
        QVERIFY(row.isEnabled());
    }
}

void CommandsTest::HandlersOfEntriesGoFirst()
{
    EditorWindow editor;
    Commands &commands = editor.Open().CommandTable();
    QStringList runs;
    commands.Bind(Cmd::mnuSSO,
                  [&](FileOperation operation) { runs.append(QString::number(int(operation))); });
    commands.Bind(Cmd::mnuSSO[FileOperation::Copy], [&] { runs.append(u"copy"_s); });
    for (const FileOperation operation :
         {FileOperation::Move, FileOperation::Copy, FileOperation::Properties})
        editor.Row(Cmd::mnuSSO[operation].RowName()).trigger();
    QCOMPARE(runs, QStringList({u"0"_s, u"copy"_s, u"5"_s}));
}

void CommandsTest::HandlersCanBeTakenAway()
{
    EditorWindow editor;
    Commands &commands = editor.Open().CommandTable();
    int runs = 0;
    const Command entries[] = {Cmd::mnuFold[FoldEntry::Here], Cmd::mnuFold[FoldEntry::None]};
    commands.Bind(Cmd::mnuFold, [&](FoldEntry) { ++runs; });
    commands.Bind(Cmd::mnuDuplicateLine, [&] { ++runs; });
    for (const Command command : {entries[0], entries[1], Command(Cmd::mnuDuplicateLine)}) {
        QVERIFY(commands.Action(command)->isEnabled());
        commands.Run(command);
    }
    QCOMPARE(runs, 3);
    commands.Unbind(Cmd::mnuFold);
    commands.Unbind(Cmd::mnuDuplicateLine);
    for (const Command command : {entries[0], entries[1], Command(Cmd::mnuDuplicateLine)}) {
        QVERIFY(!commands.Action(command)->isEnabled());
        commands.Run(command);
    }
    QCOMPARE(runs, 3);
}

void CommandsTest::KeysBelongToOneRow()
{
    std::set<QString> seen;
    for (const MenuRow &row : MenuTable()) {
        for (const QKeySequence &key : KeySequences(row.key)) {
            const QString text = key.toString(QKeySequence::PortableText);
            QCOMPARE(key.count(), 1);
            QVERIFY2(key[0].key() != Qt::Key_unknown, qPrintable(row.command->RowName()));
            QVERIFY2(seen.insert(text).second, qPrintable(text));
        }
    }
    QVERIFY(seen.contains(u"Ctrl+Num++"_s));
    QVERIFY(seen.contains(u"Shift+Ins"_s));
    QVERIFY(!seen.contains(u"Tab"_s));
}

void CommandsTest::HelpPageTellsTheKeys()
{
    QFile file(QStringLiteral(ZELVANE_SOURCE_DIR "/data/zelvane.html"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    const QString table = page.mid(page.indexOf(u"<h2 id=\"keys\">"_s)).section(u"</table>"_s, 0, 0);
    // The presets' keys come and go with their rows, and some keys have no row.
    static const QRegularExpression rowless(
        u"^((Ctrl|Alt)[+][0-9]|Alt[+](Up|Down|Left|Right|PgUp|PgDown|NumPad [*])|Ctrl[+](PgUp|PgDown)|(Shift[+])?F6|Shift[+]F10|Enter|[*])$"_s);
    static const QRegularExpression marked(u"<kbd>([^<]*)</kbd>"_s);
    QStringList told;
    for (auto match = marked.globalMatch(table); match.hasNext();) {
        const QString key = match.next().captured(1);
        if (!rowless.match(key).hasMatch())
            told.append(key);
    }

    EditorWindow editor;
    const Commands &commands = editor.Open().CommandTable();
    QStringList shown;
    for (const MenuRow &row : MenuTable()) {
        const QStringList keys = QString::fromUtf16(row.key.keys).split(u"; "_s);
        if (!keys[0].isEmpty() && !keys[0].endsWith(u"Click"_s) && commands.IsBound(*row.command))
            shown.append(keys[0]);
        // The others of a row need not be told.
        for (const QString &other : keys.mid(1))
            told.removeOne(other);
    }
    told.sort();
    shown.sort();
    QCOMPARE(told, shown);
}

void CommandsTest::KeysReachTheirTaker_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QKeyCombination>("key");
    for (const MenuRow &row : MenuTable()) {
        for (const QKeySequence &key : KeySequences(row.key)) {
            const QString text = key.toString(QKeySequence::PortableText);
            QTest::newRow(qPrintable(text)) << row.command->RowName() << key[0];
        }
    }
}

void CommandsTest::KeysReachTheirTaker()
{
    QFETCH(QString, row);
    QFETCH(QKeyCombination, key);
    EditorWindow editor;
    editor.settings.SaveFlag(Keys::LineNumbers, true); // else the menu Extras is out of sight
    Commands &commands = editor.Open().CommandTable();
    QStringList runs;
    for (const Command command : AllCommands()) {
        commands.Bind(command, [&runs, command] { runs.append(command.RowName()); });
        commands.SetEnabled(command, true);
    }
    editor.window->activateWindow();
    editor.Text().setFocus();
    QTest::keyClick(editor.window->windowHandle(), key.key(), key.keyboardModifiers());
    QCOMPARE(runs, QStringList(row));
}

} // namespace

int main(int argc, char **argv)
{
    return RunUiTest<CommandsTest>(argc, argv);
}

#include "test_commands.moc"
