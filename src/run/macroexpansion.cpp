// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/macroexpansion.h"

#include "platform/parameters.h"
#include "platform/runtimeerror.h"
#include "platform/withoutblanks.h"
#include "run/outputfile.h"
#include "run/toolpaths.h"
#include "shell/documentkind.h"
#include "shell/editorcontext.h"
#include "shell/kindsearch.h"
#include "shell/splitpath.h"

#include <array>
#include <deque>
#include <map>
#include <QCoreApplication>
#include <QDir>
#include <QStringView>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr qsizetype LastIndex = 32767; // the scan counts characters from 1 in 16 bits
constexpr qsizetype LongestName = 10;  // SOUNDINPUT

QString ProgramFile()
{
    return QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
}

QString ProgramFileFolder()
{
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
}

bool IsEnvironmentName(const QString &name)
{
    return name == u"SFDIR" || name == u"SSDIR" || name == u"SADIR" || name == u"INCDIR";
}

/// The macros whose value needs neither a document nor a question; the tool paths as they are stored.
std::optional<QString> StaticValue(const QString &name, const RunContext &context)
{
    if (name == u"CSOUND")
        return context.tools.Csound;
    if (name == u"CSOUND2")
        return context.tools.Csound2;
    if (name == u"HELP")
        return context.tools.Help;
    if (name == u"EDITOR")
        return context.tools.Editor;
    if (name == u"PLAYER")
        return context.tools.Player;
    if (name == u"ME")
        return ProgramFile();
    if (name == u"MEDIR")
        return ProgramFileFolder();
    if (IsEnvironmentName(name))
        return context.editor.desktop.EnvironmentVariable(name);
    return std::nullopt;
}

FileKind SearchedKind(const QString &name)
{
    if (name == u"ORCHESTRA")
        return FileKind::Orchestra;
    if (name == u"SCORE")
        return FileKind::Score;
    if (name == u"MIDI")
        return FileKind::Midi;
    if (name == u"SOUNDINPUT")
        return FileKind::Sound;
    return FileKind::Other;
}

/// The extension of a macro that names a file to write; empty for the other macros.
QString OutputExtension(const QString &name)
{
    if (name == u"WAVE")
        return u"wav"_s;
    if (name == u"AIFF")
        return u"aif"_s;
    if (name == u"LOG")
        return u"log"_s;
    return {};
}

std::optional<PathPart> DocumentPart(const QString &name)
{
    if (name == u"NAME")
        return PathPart::WithoutExtension;
    if (name == u"BASENAME")
        return PathPart::BaseName;
    if (name == u"DIR")
        return PathPart::Folder;
    if (name == u"EXT")
        return PathPart::Extension;
    return std::nullopt;
}

/// Whether the macro names a file, which is then quoted when it holds a blank.
bool NamesFile(const QString &name)
{
    return name == u"DOCUMENT" || SearchedKind(name) != FileKind::Other || !OutputExtension(name).isEmpty();
}

/// Puts a file name in double quotes when it holds a blank between other characters. A name that holds a
/// quote, which some file systems allow, is quoted so that it comes out of the parameters whole.
QString QuoteValue(const QString &value)
{
    if (value.contains(u'"'))
        return QuoteFile(value);
    return WithoutBlanks(value).contains(u' ') ? u'"' + value + u'"' : value;
}

/// The text from the scan's index on. It is kept as pieces, the first one on top of the stack, so that
/// putting a value in the place of a macro copies nothing.
class PendingText
{
public:
    explicit PendingText(const QString &text) { Push(text); }

    bool IsEmpty() const { return m_size == 0; }
    QChar First() const { return m_pieces.back().text[m_pieces.back().start]; }

    QChar Take()
    {
        const QChar first = First();
        Drop(1);
        return first;
    }

    void Drop(qsizetype count)
    {
        m_size -= count;
        while (count > 0) {
            Piece &top = m_pieces.back();
            const qsizetype part = std::min(count, top.end - top.start);
            top.start += part;
            count -= part;
            if (top.start == top.end)
                m_pieces.pop_back();
        }
    }

    void Push(const QString &text)
    {
        if (text.isEmpty())
            return;
        m_pieces.push_back({text, 0, text.size()});
        m_size += text.size();
        // Each step of the index uses up at most a macro with its dollars, so what stands behind this bound
        // is never looked at: the scan ends before it, in an overflow or a failure.
        constexpr qsizetype bound = (LastIndex + 2) * (LongestName + 2);
        while (m_size > bound) {
            Piece &bottom = m_pieces.front();
            const qsizetype part = std::min(m_size - bound, bottom.end - bottom.start);
            bottom.end -= part;
            m_size -= part;
            if (bottom.start == bottom.end)
                m_pieces.pop_front();
        }
    }

    /// A name behind the dollar that stands first. Names longer than any macro are cut: they are unknown
    /// anyway.
    struct Name {
        QString text = {};
        bool closed = false;
    };
    Name NameBehindDollar() const
    {
        Name name;
        qsizetype skip = 1;
        for (auto piece = m_pieces.rbegin(); piece != m_pieces.rend(); ++piece) {
            for (qsizetype i = piece->start + skip; i < piece->end; ++i) {
                if (piece->text[i] == u'$') {
                    name.closed = true;
                    return name;
                }
                if (name.text.size() > LongestName)
                    return name;
                name.text += piece->text[i];
            }
            skip = 0;
        }
        return name;
    }

    QString Text() const
    {
        QString text;
        for (auto piece = m_pieces.rbegin(); piece != m_pieces.rend(); ++piece)
            text += QStringView(piece->text).sliced(piece->start, piece->end - piece->start);
        return text;
    }

private:
    struct Piece {
        QString text;
        qsizetype start = 0;
        qsizetype end = 0;
    };
    std::deque<Piece> m_pieces; // the first characters are in the last piece
    qsizetype m_size = 0;
};

} // namespace

bool ScanMacros(QString &text, const std::function<MacroValue(const QString &name)> &valueOf)
{
    QString done;
    PendingText pending(text);
    const auto step = [&done, &pending] {
        if (!pending.IsEmpty())
            done += pending.Take();
    };
    while (!pending.IsEmpty()) {
        if (done.size() == LastIndex)
            throw RunTimeError(ErrorNumber::Overflow, u"Overflow"_s);
        if (pending.First() != u'$') {
            step();
            continue;
        }
        const PendingText::Name name = pending.NameBehindDollar();
        const MacroValue value = valueOf(name.text.toUpper());
        if (value.state == MacroValue::State::Failed) {
            text = done + pending.Text();
            return false;
        }
        if (value.state == MacroValue::State::Text) {
            if (!name.closed)
                throw RunTimeError(ErrorNumber::InvalidCall, u"Invalid procedure call or argument"_s);
            pending.Drop(name.text.size() + 2);
            pending.Push(value.text);
        }
        // Over the dollar of an unknown name, or the first character of the value; behind an empty value,
        // over the character that follows.
        step();
    }
    text = done;
    return true;
}

namespace
{

/// The values of the macros in one expansion.
class MacroTable
{
public:
    explicit MacroTable(RunContext &context) : m_context(context) {}

    /// The macro's value before confirmation; no value for an unknown name.
    std::optional<QString> Value(const QString &name)
    {
        EditorContext &editor = m_context.editor;
        const bool csound = name == u"CSOUND";
        if (csound || name == u"CSOUND2") {
            const bool second = csound == editor.desktop.IsKeyDown(KeyCode::Shift);
            return second ? m_context.tools.Csound2 : m_context.tools.Csound;
        }
        if (const auto value = StaticValue(name, m_context))
            return value;
        if (name == u"DOCUMENT")
            return editor.document.CurrentFile;
        if (const FileKind kind = SearchedKind(name); kind != FileKind::Other)
            return SearchKindFile(kind, false, false, editor);
        if (const QString extension = OutputExtension(name); !extension.isEmpty())
            return OutputFileFor(extension, editor);
        if (const auto part = DocumentPart(name))
            return SplitPath(*part, editor.document.CurrentFile);
        if (name == u"SEL") {
            // Read once: a selection may name itself, and its first line may be long.
            if (!m_selection)
                m_selection = SelectionFirstLine(editor);
            return m_selection;
        }
        if (name == u"CLIP") {
            CopySelectionToClipboard(editor);
            return QString();
        }
        return std::nullopt;
    }

private:
    RunContext &m_context;
    std::optional<QString> m_selection;
};

} // namespace

bool ExpandPresetMacros(QString &text, bool confirm, RunContext &context)
{
    MacroTable table(context);
    return ScanMacros(text, [&](const QString &name) -> MacroValue {
        const auto found = table.Value(name);
        if (!found)
            return {};
        QString value = confirm ? ConfirmMacroValue(name, *found, context) : *found;
        if (value.isEmpty() && name != u"CLIP") {
            ReportEmptyMacro(name, context);
            return {MacroValue::State::Failed};
        }
        if (NamesFile(name))
            value = QuoteValue(value);
        return {MacroValue::State::Text, value};
    });
}

QString ExpandStaticMacros(const QString &text, const RunContext &context)
{
    const QString field = text.toUpper();
    if (field.size() < 2 || !field.startsWith(u'$') || !field.endsWith(u'$'))
        return text;
    const auto value = StaticValue(field.sliced(1, field.size() - 2), context);
    return value && !value->isEmpty() ? *value : text;
}

QString ConfirmMacroValue(const QString &name, const QString &value, RunContext &context)
{
    if (value.isEmpty())
        return value;
    EditorContext &editor = context.editor;
    const QString title = name + u" - Confirm macro expansion"_s;
    const FileFilter allFiles{u"All Files"_s, u"*"_s};
    if (!OutputExtension(name).isEmpty()) {
        return editor.desktop
            .SaveFileDialog({.title = title,
                             .filters = {allFiles},
                             .folder = SplitPath(PathPart::Folder, value),
                             .fileName = value,
                             .defaultExtension = SplitPath(PathPart::Extension, value)})
            .path;
    }
    const FileKind kind = SearchedKind(name);
    if (kind == FileKind::Other)
        return value;
    if ((kind == FileKind::Orchestra || kind == FileKind::Score) &&
        editor.document.DocumentKind == FileKind::Unified)
        return value;
    return editor.desktop
        .OpenFileDialog({.title = title,
                         .filters = {{KindLabel(kind, editor.document, editor.desktop) + u" Files"_s,
                                      KindPatterns(kind, {}, editor.document, editor.settings)},
                                     allFiles},
                         .folder = value,
                         .fileName = BareFileName(value)})
        .path;
}

void ReportEmptyMacro(const QString &name, RunContext &context)
{
    EditorContext &editor = context.editor;
    const QString empty = name + u" macro returned empty string."_s;
    if (name == u"CSOUND" || name == u"CSOUND2" || name == u"HELP" || name == u"EDITOR" ||
        name == u"PLAYER") {
        const BoxAnswer answer = editor.desktop.MessageBox(
            {.text = empty + u" Do you want to open the Preferences dialog box now?"_s,
             .icon = BoxIcon::Warning,
             .buttons = BoxButtons::YesNo});
        if (answer == BoxAnswer::Yes)
            editor.windows.ShowPreferences();
    } else if (IsEnvironmentName(name)) {
        editor.desktop.MessageBox({.text = empty + u"\n\n"_s + name +
                                           u" environment variable is not set. You should add the following "
                                           "line to the Autoexec.bat:\n\nSET "_s +
                                           name + u"=Drive:\\Directory\n\nAnd reboot your system."_s,
                                   .icon = BoxIcon::Warning});
    } else if (editor.windows.MainWindowActive()) {
        editor.status.Show(empty);
    } else {
        editor.desktop.MessageBox({.text = empty, .icon = BoxIcon::Warning});
    }
}

QString SelectionFirstLine(const EditorContext &context)
{
    if (!context.windows.MainWindowActive())
        return {};
    const TextSpan selection = context.text.Selection();
    const qsizetype lineEnd = context.text.LineEnd(context.text.LineOfOffset(selection.start));
    QString line = context.text.TextRange(selection.start, std::min(selection.end, lineEnd));
    if (const qsizetype end = line.indexOf(u'\r'); end >= 0)
        line.truncate(end);
    return line;
}

void CopySelectionToClipboard(EditorContext &context)
{
    if (!context.windows.MainWindowActive())
        return;
    const bool nothing = context.text.Selection().IsEmpty();
    context.desktop.SetClipboardText(nothing ? context.text.Text() : context.text.SelectedText());
}

std::span<const MacroRow> MacroPickerRows()
{
    static const std::array rows{
        MacroRow{u"$CSOUND$"_s, u"Csound executable"_s},
        MacroRow{u"$CSOUND2$"_s, u"Other Csound version"_s},
        MacroRow{u"$HELP$"_s, u"Help or manual"_s},
        MacroRow{u"$EDITOR$"_s, u"Sound editor"_s},
        MacroRow{u"$PLAYER$"_s, u"Sound player"_s},
        MacroRow{u"$ORCHESTRA$"_s, u"Search for files with orchestra extensions"_s},
        MacroRow{u"$SCORE$"_s, u"Search for files with score extensions"_s},
        MacroRow{u"$SOUNDINPUT$"_s, u"Search for sound files"_s},
        MacroRow{u"$MIDI$"_s, u"Search for MIDI files "_s},
        MacroRow{u"$WAVE$"_s, u"Same path and name of the current document with .wav extension"_s},
        MacroRow{u"$AIFF$"_s, u"Same path and name of the current document with .aif extension"_s},
        MacroRow{u"$LOG$"_s, u"Same path and name of the current document with .log extension"_s},
        MacroRow{u"$DOCUMENT$"_s, u"Fully qualified filename of the current document"_s},
        MacroRow{u"$NAME$"_s, u"Same path and name of the current document stripped of any extension"_s},
        MacroRow{u"$BASENAME$"_s, u"Name of the current document stripped of any extension"_s},
        MacroRow{u"$DIR$"_s, u"The drive and directory of the current document"_s},
        MacroRow{u"$EXT$"_s, u"Extension of the current document"_s},
        MacroRow{u"$SFDIR$"_s, u"SFDIR environment variable"_s},
        MacroRow{u"$SSDIR$"_s, u"SSDIR environment variable"_s},
        MacroRow{u"$SADIR$"_s, u"SADIR environment variable"_s},
        MacroRow{u"$INCDIR$"_s, u"INCDIR environment variable"_s},
        MacroRow{u"$SEL$"_s, u"Selected text in the current document"_s},
        MacroRow{u"$CLIP$"_s, u"Copy current text selection to clipboard"_s},
        MacroRow{u"$ME$"_s, u"Fully qualified filename of Zelvane executable"_s},
        MacroRow{u"$MEDIR$"_s, u"Directory of Zelvane executable"_s},
    };
    return rows;
}

} // namespace zelvane
