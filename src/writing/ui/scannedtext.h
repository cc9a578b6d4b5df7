// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/document.h"
#include "shell/ui/windowcontext.h"
#include "writing/codemap.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace zelvane
{

/// The text at rest, for the aids that need the whole of it.
struct TextScan {
    QString text;
    FileKind kind = FileKind::Other;
    CodeMap map;
};

/// Scans the document when the user pauses: once for all aids, and not at all while none listens.
class ScannedText : public QObject
{
    Q_OBJECT

public:
    explicit ScannedText(const WindowContext &context);

    /// Has the present text scanned as soon as the work at hand is done.
    void Request();
    /// The text, fetched once for all that ask for it in one pause of the typing; good until the next call.
    const QString &Text();

Q_SIGNALS:
    /// The text has not changed for a while, or is new. It changes with no signal between this and the next
    /// textChanged.
    void scanned(const TextScan &scan);

private:
    void Wait();
    /// A document may become one of another kind while its text stays.
    void FollowKind();
    void Scan();
    void ForgetText();

    const WindowContext &m_context;
    QTimer m_pause;
    QString m_text; ///< null when it is not held
    QTimer m_hold;
    FileKind m_kind = FileKind::Other; ///< as it was scanned
};

} // namespace zelvane
