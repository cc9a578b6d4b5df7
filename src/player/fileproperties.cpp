// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/fileproperties.h"

#include "platform/desktop.h"
#include "shell/statustexts.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QString KindText(const QString &path, const Desktop &desktop)
{
    const QString kind = desktop.ExecutableKind(path);
    return desktop.TypeName(path) + (kind.isEmpty() ? QString() : u' ' + kind);
}

/// "name", or the number where the system has no name for it.
QString NameOr(const QString &name, uint number)
{
    return name.isEmpty() ? QString::number(number) : name;
}

/// As listings show them: "rw-r--r-- (644)".
QString PermissionText(QFile::Permissions permissions)
{
    constexpr QFile::Permission bits[] = {QFile::ReadOwner, QFile::WriteOwner, QFile::ExeOwner,
                                          QFile::ReadGroup, QFile::WriteGroup, QFile::ExeGroup,
                                          QFile::ReadOther, QFile::WriteOther, QFile::ExeOther};
    constexpr char16_t letters[] = u"rwxrwxrwx";
    QString text;
    int mode = 0;
    for (int i = 0; i < 9; ++i) {
        const bool set = permissions.testFlag(bits[i]);
        text += set ? QChar(letters[i]) : QChar(u'-');
        mode = mode * 2 + (set ? 1 : 0);
    }
    return text + u" ("_s + QString::number(mode, 8).rightJustified(3, u'0') + u')';
}

} // namespace

std::vector<FileProperty> FileProperties(const QString &path, const Desktop &desktop)
{
    const QFileInfo file(path);
    std::vector<FileProperty> rows = {{u"Path"_s, QDir::toNativeSeparators(file.absoluteFilePath())}};
    const auto add = [&rows](const QString &caption, const QString &value) {
        if (!value.isEmpty())
            rows.push_back({caption, value});
    };
    if (file.isSymLink())
        add(u"Link to"_s, QDir::toNativeSeparators(file.symLinkTarget()));
    if (!file.exists()) {
        add(u"Kind"_s, u"The file does not exist"_s);
        return rows;
    }
    add(u"Kind"_s, KindText(path, desktop));
    add(u"Size"_s, SizeText(file.size()));
    if (const QDateTime made = file.birthTime(); made.isValid())
        add(u"Created"_s, GeneralDate(made));
    add(u"Modified"_s, GeneralDate(file.lastModified()));
    add(u"Accessed"_s, GeneralDate(file.lastRead()));
    add(u"Owner"_s,
        NameOr(file.owner(), file.ownerId()) + u" ("_s + NameOr(file.group(), file.groupId()) + u')');
    add(u"Permissions"_s, PermissionText(file.permissions()));
    return rows;
}

} // namespace zelvane
