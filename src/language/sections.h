// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textencoding.h"
#include "shell/command.h"
#include "shell/document.h"

#include <optional>
#include <QString>
#include <QStringList>

namespace zelvane
{

class DocumentLifecycle;
class DocumentView;
class Highlighter;
struct DocumentSteps;
struct EditorContext;

/// The text between the first "<tag>" and the first "</tag>" of the text, in exact case; empty when one of
/// them is missing. Knows nothing of nesting. @throws RunTimeError when the closing one comes first
QString ExtractTag(const QString &text, const QString &tag);

/// The text of a unified file without options. Each half keeps its own last line end, and has one more behind
/// it; there is none behind the last tag.
QString UnifiedText(const QString &orchestra, const QString &score);

/// The two halves of a piece: going from one to the other, in a unified file or in a pair of files, and the
/// conversions between the two forms.
class PieceSections
{
public:
    /// @param steps gives the outline
    PieceSections(EditorContext &editor, DocumentLifecycle &documents, DocumentView &view,
                  DocumentSteps &steps, Highlighter &highlighter);

    /// In a unified document puts the caret to the half's opening tag, at the top of the view; tags are
    /// looked for without regard to case. Else opens the file of the other half, where the caret goes back to
    /// the place at which that file was left by these commands.
    void mnuOrchestra();
    void mnuScore();
    /// Makes a new, modified unified document of the files of both halves as they are on disk, or writes the
    /// halves of the document's text to two files. Without a file name neither does anything but tell so.
    /// Unsaved edits stay out of the unified document: it asks about them only where no copy is kept.
    /// @throws RunTimeError when a file cannot be read, in which case the document is as it was, or cannot be
    /// written
    void mnuCSD(Conversion conversion);

private:
    /// Where a half was left.
    struct CaretMemory {
        QString file = {};
        qint32 caret = 0; ///< offset from 0
    };
    /// A half as it is on disk.
    struct Half {
        QString text;
        TextEncoding encoding;
    };

    /// What the commands of the two halves differ in.
    struct Way {
        FileKind kind;
        QString opening;          ///< the tag of a unified file
        QString missing;          ///< tells that there is none
        CaretMemory &ours;        ///< takes the place that is left
        const CaretMemory &other; ///< that of the command of the other half
    };
    void Go(const Way &way);
    void GoToTag(const Way &way);
    void GoToFile(const Way &way);

    void ConvertToUnified();
    void ConvertToPair();
    /// No value when there is none: the user knows why.
    std::optional<Half> ReadHalf(FileKind kind);
    /// @throws RunTimeError when the document is not on disk
    void TellWhyNoHalfIsFound();
    /// That of both; a half that has none of its own goes along with the other.
    static TextEncoding CommonEncoding(const Half &orchestra, const Half &score);
    /// Replaces the document by a new one of that text, which nobody has saved yet.
    void ShowUnified(const QString &name, const QString &text, const TextEncoding &encoding);
    /// Asks for a file and writes a half to it. @param taken files that must not be written over: they hold
    /// what is only there once. @return its name, empty when the user has cancelled
    QString SaveHalf(FileKind kind, const QString &text, const QStringList &taken);
    QString AskForHalf(FileKind kind, const QStringList &taken);

    EditorContext &m_editor;
    DocumentLifecycle &m_documents;
    DocumentView &m_view;
    DocumentSteps &m_steps;
    Highlighter &m_highlighter;
    CaretMemory m_orchestraSide; ///< of the command mnuOrchestra
    CaretMemory m_scoreSide;     ///< of the command mnuScore
};

} // namespace zelvane
