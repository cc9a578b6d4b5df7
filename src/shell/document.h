// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textencoding.h"

#include <QString>

namespace zelvane
{

/// The kinds of document and of file. 4 and 5 are not used.
enum class FileKind : quint8 {
    Other = 0,
    Orchestra = 1,
    Score = 2,
    Unified = 3,
    Midi = 6,
    Sound = 7,
    Cancelled = 255, ///< transient: the new-file dialog was cancelled
};

/// The line-end form a text was found in at load.
enum class LineEndForm : quint8 { Pc = 0, Unix = 1, Mac = 2 };

/// The one document of the process.
struct DocumentRecord {
    QString CurrentFile;                           ///< full path; empty until the document has been saved
    FileKind DocumentKind = FileKind::Other;       ///< set by ClassifyDocument and NewFile
    LineEndForm CurrentPlatform = LineEndForm::Pc; ///< as found at load; saving neither heeds nor changes it
    TextEncoding Encoding;                         ///< as found at load; saving keeps it
    bool HoldsNul = false; ///< loaded with NUL characters, and not saved since: it may be no text
    QString OfferedName;   ///< what the first save of an unnamed text offers as its path; mostly empty
    bool Modified = false; ///< the text differs from what was last loaded or saved
    bool Loading = false;  ///< the program itself is changing the text
};

} // namespace zelvane
