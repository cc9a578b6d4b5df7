// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/listfiles.h"

#include "platform/filenamecase.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <QByteArray>
#include <QFile>
#include <QRegularExpression>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

struct CloseFolder {
    void operator()(DIR *listing) const { ::closedir(listing); }
};

/// All but "*" and "?" stands for itself.
QRegularExpression PatternOf(const QString &pattern)
{
    QRegularExpression::PatternOptions options = QRegularExpression::DotMatchesEverythingOption;
    if (FileNameCase == Qt::CaseInsensitive)
        options |= QRegularExpression::CaseInsensitiveOption;
    return QRegularExpression(
        QRegularExpression::anchoredPattern(
            QRegularExpression::escape(pattern).replace(u"\\*"_s, u".*"_s).replace(u"\\?"_s, u"."_s)),
        options);
}

} // namespace

bool ListFiles(const QString &folder, const QString &pattern, QStringList &names)
{
    names.clear();
    QString place = folder;
    if (place.endsWith(u'\\') || place.endsWith(u'/'))
        place.chop(1);
    place += u'/';
    const QRegularExpression matching = PatternOf(pattern);
    const std::unique_ptr<DIR, CloseFolder> listing(::opendir(QFile::encodeName(place).constData()));
    bool matched = false;
    while (const dirent *entry = listing ? ::readdir(listing.get()) : nullptr) {
        const QByteArray name = entry->d_name;
        struct stat info = {};
        if (name == "." || name == ".." || !matching.match(QFile::decodeName(name)).hasMatch() ||
            ::fstatat(::dirfd(listing.get()), name.constData(), &info, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        const bool own = info.st_uid == ::geteuid();
        if (S_ISDIR(info.st_mode))
            matched = true;
        else if (own && (S_ISREG(info.st_mode) || S_ISLNK(info.st_mode)))
            names.append(place + QFile::decodeName(name));
    }
    names.sort();
    return matched || !names.isEmpty();
}

} // namespace zelvane
