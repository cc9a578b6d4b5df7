// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace zelvane
{

/// What the command line asks for; the switches are tested in this order.
enum class StartForm {
    QuickPreset, ///< holds "/p ": the chooser, and nothing else
    RunCsound,   ///< holds "/r ": the Run Csound dialog, and nothing else
    NewInstance, ///< equals "/i": an editor of its own, without a document
    Document,    ///< any other text: the path of a document, with or without double quotes
    Nothing,     ///< empty: the stored start-up rule decides
};

/// The argument string of the process. It is one string, never split: a path with blanks needs no quotes.
/// The arguments of the process are joined by one blank. Those that name a file, as a path, with or without
/// double quotes, or as a "file:" address, are made absolute paths, so that they mean the same to an editor
/// that runs in another folder; and they are not searched for switches, so that a folder named "p " does not
/// start the chooser. Neither is what stands behind the first argument "--", which goes itself.
///
/// Where the whole string names a file, that is the document; else it is the first of the arguments that
/// names one, and the others are ignored, as with files that are dropped.
class CommandLine
{
public:
    /// @param arguments those of the process, without the program's own name and the toolkit's options
    /// @param given all of them, where the toolkit has taken some: only a name of a file is looked for there
    explicit CommandLine(const QStringList &arguments, const QStringList &given = {});

    /// The string as it is handed over to a running editor.
    const QString &Text() const { return m_text; }
    StartForm Form() const { return m_form; }
    /// The path behind "/p " or "/r " (whichever decided), or the whole text; empty for the other forms.
    const QString &Document() const { return m_document; }

private:
    QString m_text;
    StartForm m_form = StartForm::Nothing;
    QString m_document;
};

} // namespace zelvane
