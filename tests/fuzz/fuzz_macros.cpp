// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/presetmacros.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzdesktop.h"
#include "fuzz/fuzzinput.h"
#include "platform/parameters.h"
#include "platform/runtimeerror.h"
#include "run/macroexpansion.h"
#include "run/outputfile.h"
#include "run/toolpaths.h"
#include "shell/documentkind.h"
#include "shell/kindsearch.h"
#include "shell/splitpath.h"

#include <QCoreApplication>
#include <QFile>
#include <utility>

using namespace zelvane;

namespace
{

const QString &Document(int number)
{
    static const QString folder = fuzz::WorkFolder() + u'/';
    static const QString documents[] = {
        QString(), folder + QStringLiteral("a b.csd"), folder + QStringLiteral("x.orc"),
        folder + QStringLiteral("my \"best\" song.csd"), QStringLiteral("/none/a b.orc")};
    static const bool made = [] {
        for (int i = 1; i <= 3; ++i)
            QFile(documents[i]).open(QIODevice::WriteOnly);
        QFile(folder + QStringLiteral("x.sco")).open(QIODevice::WriteOnly);
        return true;
    }();
    Q_UNUSED(made);
    return documents[number];
}

/// The values of all macros, each asked for in the plainest way. The answers of the desktop are the same
/// throughout a run, so that a question asked twice changes nothing.
class Values
{
public:
    Values(RunContext &run, bool confirm) : m_run(run), m_confirm(confirm) {}

    std::optional<QString> operator()(const QString &name) const
    {
        std::optional<QString> value = Plain(name);
        if (value && m_confirm)
            value = ConfirmMacroValue(name, *value, m_run);
        return value;
    }

private:
    std::optional<QString> Plain(const QString &name) const
    {
        EditorContext &editor = m_run.editor;
        const QString &document = editor.document.CurrentFile;
        const bool shift = editor.desktop.IsKeyDown(KeyCode::Shift);
        if (name == QStringLiteral("CSOUND"))
            return shift ? m_run.tools.Csound2 : m_run.tools.Csound;
        if (name == QStringLiteral("CSOUND2"))
            return shift ? m_run.tools.Csound : m_run.tools.Csound2;
        if (name == QStringLiteral("HELP"))
            return m_run.tools.Help;
        if (name == QStringLiteral("EDITOR"))
            return m_run.tools.Editor;
        if (name == QStringLiteral("PLAYER"))
            return m_run.tools.Player;
        if (name == QStringLiteral("ME"))
            return QCoreApplication::applicationFilePath();
        if (name == QStringLiteral("MEDIR"))
            return QCoreApplication::applicationDirPath();
        if (QStringLiteral("SFDIR SSDIR SADIR INCDIR").split(u' ').contains(name))
            return editor.desktop.EnvironmentVariable(name);
        if (name == QStringLiteral("DOCUMENT"))
            return document;
        if (name == QStringLiteral("ORCHESTRA"))
            return SearchKindFile(FileKind::Orchestra, false, false, editor);
        if (name == QStringLiteral("SCORE"))
            return SearchKindFile(FileKind::Score, false, false, editor);
        if (name == QStringLiteral("MIDI"))
            return SearchKindFile(FileKind::Midi, false, false, editor);
        if (name == QStringLiteral("SOUNDINPUT"))
            return SearchKindFile(FileKind::Sound, false, false, editor);
        if (name == QStringLiteral("WAVE"))
            return OutputFileFor(QStringLiteral("wav"), editor);
        if (name == QStringLiteral("AIFF"))
            return OutputFileFor(QStringLiteral("aif"), editor);
        if (name == QStringLiteral("LOG"))
            return OutputFileFor(QStringLiteral("log"), editor);
        if (name == QStringLiteral("NAME"))
            return SplitPath(PathPart::WithoutExtension, document);
        if (name == QStringLiteral("BASENAME"))
            return SplitPath(PathPart::BaseName, document);
        if (name == QStringLiteral("DIR"))
            return SplitPath(PathPart::Folder, document);
        if (name == QStringLiteral("EXT"))
            return SplitPath(PathPart::Extension, document);
        if (name == QStringLiteral("SEL"))
            return SelectionFirstLine(editor);
        if (name == QStringLiteral("CLIP"))
            return QString();
        return std::nullopt;
    }

    RunContext &m_run;
    bool m_confirm;
};

} // namespace

/// The macro language beside its loop, over any values of the tools, the environment and the selection.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using How = oracle::MacroEnd::How;
    constexpr int patience = 100; // macros that name themselves are left to tests of their own

    static SettingsStore settings(fuzz::WorkFolder() + QStringLiteral("/settings"));
    fuzz::Input input(data, size);
    const quint8 choices = input.Byte();
    fuzz::Editor editor(settings);
    editor.document.CurrentFile = Document(input.Number(0, 4));
    ClassifyDocument(editor.document, settings);
    editor.desktop.shift = choices & 1;
    editor.desktop.answer = choices & 2 ? BoxAnswer::Yes : BoxAnswer::No;
    editor.window.active = !(choices & 4);
    const bool confirm = choices & 8;
    QString text = input.Text();
    const ToolPaths tools{.Csound = input.Text(),
                          .Csound2 = QStringLiteral("/opt/csound 7"),
                          .Help = QString(),
                          .Editor = input.Text(),
                          .Player = QStringLiteral("a\"b")};
    editor.text.SetText(input.Text());
    editor.text.SetSelection(0, -1);
    editor.desktop.environment[QStringLiteral("SFDIR")] = input.Text();
    editor.desktop.picked = input.Text();
    RunContext run{editor.context, tools, editor.window};

    const oracle::MacroEnd expected = oracle::ExpandPresetMacros(text, Values(run, confirm), patience);
    if (expected.how == How::GaveUp)
        return 0;
    const QString given = text;
    try {
        const bool done = ExpandPresetMacros(text, confirm, run);
        fuzz::ExpectSame("done", done, expected.how == How::Done, given, text, expected.failed);
        fuzz::Expect("no error", expected.how == How::Done || expected.how == How::Failed, given, text);
        fuzz::ExpectSame("text", text, expected.text, given);
    } catch (const RunTimeError &error) {
        const How how = error.Number() == ErrorNumber::Overflow ? How::Overflow : How::InvalidCall;
        fuzz::Expect("error", how == expected.how, given, error.Description());
    }
    const QString fixed = ExpandStaticMacros(given, run);
    if (fixed != given)
        fuzz::Expect("one macro", given.startsWith(u'$') && given.endsWith(u'$') && !fixed.isEmpty(), given);
    return 0;
}
