// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/fileoperations.h"

#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "platform/trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QString BareName(const QString &path)
{
    return QFileInfo(path).fileName();
}

bool IsReadOnly(const QString &path)
{
    constexpr QFile::Permissions writeBits = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    return !(QFileInfo(path).permissions() & writeBits);
}

} // namespace

QString PathInFolder(const QString &folder, const QString &name)
{
    const QString plain = QDir(folder).path();
    return plain == u"/"_s ? plain + name : plain + u'/' + name;
}

bool SystemFileOperations::Move(const QString &source, const QString &target)
{
    return Run(MoveFileTo, u"move"_s, u"Moving"_s, source, target);
}

bool SystemFileOperations::Copy(const QString &source, const QString &target)
{
    return Run(CopyFileTo, u"copy"_s, u"Copying"_s, source, target);
}

bool SystemFileOperations::Rename(const QString &source, const QString &name)
{
    if (name.contains(u'/') || name.contains(QDir::separator()) || name == u"."_s || name == u".."_s) {
        Tell(u"Unable to rename "_s + source + u'.', u"\""_s + name + u"\" is no name for a file"_s);
        return false;
    }
    return Run(MoveFileTo, u"rename"_s, u"Renaming"_s, source, PathInFolder(QFileInfo(source).path(), name));
}

bool SystemFileOperations::Run(Transfer transfer, const QString &verb, const QString &doing,
                               const QString &source, const QString &target)
{
    const auto once = [&](Replacing replacing) {
        m_progress.Begin(doing + u' ' + BareName(source) + u"..."_s);
        const auto ended = qScopeGuard([this] { m_progress.End(); });
        return transfer(source, target, replacing,
                        [this](qint64 done, qint64 total) { return m_progress.GoOn(done, total); });
    };
    try {
        TransferEnd end = once(Replacing::Refused);
        if (end == TransferEnd::Exists && MayReplace(target))
            end = once(Replacing::Allowed);
        return end == TransferEnd::Done;
    } catch (const RunTimeError &error) {
        Tell(u"Unable to "_s + verb + u' ' + source + u" to "_s + target + u'.', error.Description());
        return false;
    }
}

bool SystemFileOperations::MayReplace(const QString &target)
{
    return m_desktop.MessageBox({.text = target +
                                         (IsReadOnly(target) ? u" already exists and is read-only."_s
                                                             : u" already exists."_s) +
                                         u"\nDo you want to replace it?"_s,
                                 .icon = BoxIcon::Warning,
                                 .buttons = BoxButtons::YesNo,
                                 .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes;
}

bool SystemFileOperations::Delete(const QString &path, Deletion way)
{
    const bool toTrash = way == Deletion::ToTrash;
    if (m_desktop.MessageBox({.text = toTrash ? u"Do you want to move "_s + path + u" to the trash?"_s
                                              : u"Do you want to delete "_s + path +
                                                    u" for good? It cannot be brought back."_s,
                              .icon = toTrash ? BoxIcon::Question : BoxIcon::Warning,
                              .buttons = BoxButtons::YesNo,
                              .defaultAnswer = toTrash ? BoxAnswer::Yes : BoxAnswer::No}) != BoxAnswer::Yes)
        return false;
    if (!toTrash)
        return DeleteForGood(path);
    try {
        m_progress.Begin(u"Moving "_s + BareName(path) + u" to the trash..."_s);
        const auto ended = qScopeGuard([this] { m_progress.End(); });
        return MoveToTrash(path, [this](qint64 done, qint64 total) {
                   return m_progress.GoOn(done, total);
               }) == TransferEnd::Done;
    } catch (const RunTimeError &error) {
        if (error.Number() == ErrorNumber::FileNotFound) {
            Tell(u"Unable to delete "_s + path + u'.', error.Description());
            return false;
        }
        return m_desktop.MessageBox({.text = u"Unable to move "_s + path + u" to the trash.\n\n"_s +
                                             error.Description() +
                                             u"\n\nDo you want to delete it for good?"_s,
                                     .icon = BoxIcon::Warning,
                                     .buttons = BoxButtons::YesNo,
                                     .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes &&
               DeleteForGood(path);
    }
}

bool SystemFileOperations::DeleteForGood(const QString &path)
{
    try {
        RemoveFile(path);
        return true;
    } catch (const RunTimeError &error) {
        Tell(u"Unable to delete "_s + path + u'.', error.Description());
        return false;
    }
}

bool SystemFileOperations::DeleteUnasked(const QStringList &paths)
{
    QString first, why;
    qsizetype failed = 0;
    for (const QString &path : paths) {
        try {
            RemoveFile(path);
        } catch (const RunTimeError &error) {
            if (error.Number() == ErrorNumber::FileNotFound)
                continue;
            if (failed++ == 0) {
                first = path;
                why = error.Description();
            }
        }
    }
    if (failed > 0)
        Tell(u"Unable to delete "_s + first + (failed > 1 ? u" and %1 more."_s.arg(failed - 1) : u"."_s),
             why);
    return failed == 0;
}

void SystemFileOperations::Tell(const QString &what, const QString &why)
{
    m_desktop.MessageBox({.text = what + u"\n\n"_s + why, .icon = BoxIcon::Warning});
}

} // namespace zelvane
