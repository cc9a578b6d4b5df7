// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textencoding.h"

#include <optional>
#include <QString>

namespace zelvane
{

class ChangedOnDisk;
class Desktop;
struct DocumentRecord;
class TextBuffer;

/// Puts the document's text into a file, with CR LF line ends, and asks first where that may lose something.
class DocumentWriter
{
public:
    DocumentWriter(const DocumentRecord &document, const TextBuffer &text, Desktop &desktop,
                   ChangedOnDisk &disk)
        : m_document(document), m_text(text), m_desktop(desktop), m_disk(disk)
    {
    }

    /// A failure is told. @return the encoding of the file: the document's, or another where that cannot hold
    /// the text; no value when the file was not written
    std::optional<TextEncoding> Save(const QString &name);

private:
    /// Asks before another program's work is written over.
    bool MaySaveOver(const QString &name);
    /// The question that the state of the file calls for.
    bool AskAboutState(const QString &name);
    /// Asks before the first save of what may be no text.
    bool MayRewriteLineEnds(const QString &name);
    /// @throws RunTimeError
    TextEncoding Write(const QString &name);
    void TellUnsaved(const QString &name, const QString &why);

    const DocumentRecord &m_document;
    const TextBuffer &m_text;
    Desktop &m_desktop;
    ChangedOnDisk &m_disk;
};

} // namespace zelvane
