// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/linestore.h"

#include <deque>
#include <optional>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QtGlobal>

namespace zelvane
{

/// An error or a warning in a program's output, which may take several lines.
struct RunMessage {
    LineMark mark = LineMark::Error;
    qint64 first = 0;          ///< number of the line of output that it begins in
    qint64 last = 0;           ///< and of its last one
    QString text = {};         ///< what its first line says; of a very long one the start
    QStringList files = {};    ///< the file that it is about, then those that include it
    int line = 0;              ///< of the file as the program counts, from 1; 0 where none is named
    bool lineIsBefore = false; ///< the line may be the one before the place
    QString token = {};        ///< a word that stands in the place
    QString context = {};      ///< how the line of the place begins, or what stands in it
};

/// Finds the messages of Csound 6.18 in its output. Lines of other programs that begin with "error:" or
/// "warning:" are messages too.
class RunMessages
{
public:
    /// Takes the next line of output. @return what the line is to be marked as: the first lines of messages
    /// are
    LineMark Take(qint64 number, const QString &line);

    /// The message that a line of output belongs to.
    const RunMessage *At(qint64 number) const;
    /// The characters of the messages that are kept, which have a limit however much a program writes.
    qsizetype Characters() const { return m_characters; }
    /// The first error of the run, however long ago.
    const std::optional<RunMessage> &FirstError() const { return m_firstError; }

private:
    /// @return what is left of the line behind the files
    QString TakeFiles(qint64 number, const QString &line);
    bool TakeDetail(qint64 number, const QString &line);
    LineMark TakeHead(qint64 number, const QString &line);
    RunMessage *Open(qint64 number);
    void Grow(RunMessage &message, qint64 number);

    std::deque<RunMessage> m_messages; ///< the last ones
    qsizetype m_characters = 0;        ///< of all of them but the newest
    std::optional<RunMessage> m_firstError;
    bool m_firstIsLast = false; ///< the first error is the last message: details are for both
};

} // namespace zelvane
