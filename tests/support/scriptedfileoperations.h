// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/fileoperations.h"

#include <deque>
#include <QString>
#include <QStringList>

namespace zelvane::test
{

/// A service for whole files that touches none: it writes down what is asked of it and answers as it was told
/// to, else that it was done.
class ScriptedFileOperations : public FileOperations
{
public:
    QStringList calls; ///< "move A > B", "copy A > B", "rename A > NAME", "trash A", "delete A",
                       ///< "delete unasked A, B"
    std::deque<bool> answers;

    bool Move(const QString &source, const QString &target) override
    {
        return Answer(QStringLiteral("move ") + source + QStringLiteral(" > ") + target);
    }
    bool Copy(const QString &source, const QString &target) override
    {
        return Answer(QStringLiteral("copy ") + source + QStringLiteral(" > ") + target);
    }
    bool Rename(const QString &source, const QString &name) override
    {
        return Answer(QStringLiteral("rename ") + source + QStringLiteral(" > ") + name);
    }
    bool Delete(const QString &path, Deletion way) override
    {
        return Answer((way == Deletion::ToTrash ? QStringLiteral("trash ") : QStringLiteral("delete ")) +
                      path);
    }
    bool DeleteUnasked(const QStringList &paths) override
    {
        return Answer(QStringLiteral("delete unasked ") + paths.join(QStringLiteral(", ")));
    }

private:
    bool Answer(const QString &call)
    {
        calls.append(call);
        if (answers.empty())
            return true;
        const bool answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

/// A progress that counts, and stops the work when it is told to.
class CountedProgress : public WorkProgress
{
public:
    QStringList begun;
    int steps = 0;
    int ended = 0;
    int stopAt = -1; ///< the step that is answered with a stop

    void Begin(const QString &what) override { begun.append(what); }
    bool GoOn(qint64 /*done*/, qint64 /*total*/) override { return steps++ != stopAt; }
    void End() override { ++ended; }
};

} // namespace zelvane::test
