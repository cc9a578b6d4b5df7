// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/unsavedcopy.h"

#include "platform/nativecalls.h"
#include "platform/readfile.h"
#include "platform/runtimeerror.h"
#include "platform/temporaryfile.h"
#include "platform/userfolders.h"

#include <algorithm>
#include <cerrno>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRandomGenerator>
#include <QStringList>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

using namespace native;

namespace
{

constexpr mode_t OwnerOnly = 0600;
constexpr mode_t OwnersFolder = 0700;
constexpr mode_t OthersAsUsual = 0777; ///< as far as the process's mask leaves it
constexpr char FirstLine[] = "Zelvane copy\n";
const QString UnsavedSuffix = u".open"_s;
const QString ReplacedSuffix = u".old"_s;
const QString KeptSuffix = u".kept"_s;

/// In the order of TextEncoding::Form.
constexpr const char *EncodingNames[] = {"UTF-8", "Windows-1252", "UTF-16LE", "UTF-16BE"};
constexpr char WithMark[] = " with mark";

QString SuffixOf(UnsavedCopy::Kind kind)
{
    return kind == UnsavedCopy::Kind::Unsaved ? UnsavedSuffix : ReplacedSuffix;
}

/// A value that stands in one line.
QByteArray OneLine(const QString &text)
{
    return text.toUtf8().replace('%', "%25").replace('\n', "%0A").replace('\r', "%0D");
}

QByteArray Header(const CopyInfo &info, qsizetype size)
{
    QByteArray header = FirstLine;
    const auto add = [&](const char *name, const QByteArray &value) {
        header += name + ": "_ba + value + '\n';
    };
    add("Name", OneLine(info.name));
    add("Kind", QByteArray::number(info.kind));
    if (info.encoding) {
        const QByteArray encoding = EncodingNames[size_t(info.encoding->form)];
        add("Encoding", info.encoding->byteOrderMark ? encoding + WithMark : encoding);
    }
    if (!info.replacedBy.isEmpty())
        add("ReplacedBy", info.replacedBy.toHex());
    add("Bytes", QByteArray::number(size));
    return header + '\n';
}

std::optional<TextEncoding> EncodingOf(QByteArray name)
{
    TextEncoding encoding;
    if (name.endsWith(WithMark)) {
        encoding.byteOrderMark = true;
        name.chop(qsizetype(sizeof WithMark) - 1);
    }
    const auto place = std::find(std::begin(EncodingNames), std::end(EncodingNames), name);
    if (place == std::end(EncodingNames))
        return {};
    encoding.form = TextEncoding::Form(place - std::begin(EncodingNames));
    return encoding;
}

/// A name that a person finds the text by, and that no other copy has.
QString FreshPath(const CopyInfo &info, UnsavedCopy::Kind kind)
{
    constexpr qsizetype longest = 60; // characters: names may be short on some file systems
    QString stem = QFileInfo(info.name).fileName().left(longest);
    if (stem.isEmpty())
        stem = u"Untitled"_s; // also where somebody has edited the name in a copy into that of a folder
    if (stem.back().isHighSurrogate())
        stem.chop(1);
    for (;;) {
        const quint32 number = QRandomGenerator::global()->generate();
        const QString path =
            UnsavedCopy::Folder() + u'/' + stem + u'-' + u"%1"_s.arg(number, 8, 16, QChar(u'0'));
        // Also not once it is kept.
        if (!QFile::exists(path + UnsavedSuffix) && !QFile::exists(path + ReplacedSuffix) &&
            !QFile::exists(path + KeptSuffix))
            return path + SuffixOf(kind);
    }
}

/// Makes a folder, and those above it that are missing. @return 0 or the error
int MakeFolders(const QByteArray &path, mode_t mode)
{
    if (::mkdir(path.constData(), mode) == 0)
        return 0;
    const int reason = errno;
    if (reason == EEXIST)
        return QFileInfo(QFile::decodeName(path)).isDir() ? 0 : ENOTDIR;
    const QByteArray above = FolderOf(path);
    if (reason != ENOENT || above.size() >= path.size())
        return reason;
    if (const int error = MakeFolders(above, OthersAsUsual); error != 0)
        return error;
    return ::mkdir(path.constData(), mode) == 0 || errno == EEXIST ? 0 : errno;
}

/// @throws RunTimeError
void MakeFolder()
{
    const QString folder = UnsavedCopy::Folder();
    if (QFileInfo(folder).isDir())
        return;
    if (const int error = MakeFolders(PathOf(folder), OwnersFolder); error != 0)
        Fail(error, folder);
}

} // namespace

QByteArray ContentHash(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Blake2b_256);
}

QString UnsavedCopy::Folder()
{
    return StateFolder() + u"/unsaved"_s;
}

void UnsavedCopy::Write(const CopyInfo &info, const QByteArray &bytes)
{
    MakeFolder();
    const bool fresh = !Stands() || m_name.isNull() || info.name != m_name;
    const QString path = fresh ? FreshPath(info, m_kind) : m_path;
    const QByteArray target = PathOf(path);
    TemporaryFile file(FolderOf(target), OwnerOnly);
    int error = file.Error();
    for (const QByteArray &part : {Header(info, bytes.size()), bytes}) {
        if (error == 0)
            error = WriteAll(file.Descriptor(), part);
    }
    if (error == 0)
        error = Flush(file.Descriptor());
    if (error == 0)
        error = fresh ? file.Become(target) : file.RenameTo(target);
    if (error != 0)
        Fail(error, path);
    FlushFolder(FolderOf(target));
    if (fresh)
        Remove();
    m_path = path;
    m_name = info.name.isNull() ? u""_s : info.name;
    m_file = file.Take();
}

void UnsavedCopy::Keep()
{
    if (!Stands())
        return;
    const QString kept = m_path.first(m_path.lastIndexOf(u'.')) + KeptSuffix;
    // The time from which the days are counted.
    ::futimens(m_file.Descriptor(), nullptr);
    QFile::rename(m_path, kept);
    m_file = {};
}

void UnsavedCopy::Remove()
{
    if (!Stands())
        return;
    QFile::remove(m_path);
    m_file = {};
}

std::optional<UnsavedCopy::Content> UnsavedCopy::Read() const
{
    const QByteArray whole = ReadWhole(m_file, m_path);
    const qsizetype end = whole.indexOf("\n\n");
    if (!whole.startsWith(FirstLine) || end < 0)
        return {};
    QHash<QByteArray, QByteArray> fields;
    for (const QByteArray &line : whole.first(end).split('\n')) {
        if (const qsizetype colon = line.indexOf(": "); colon > 0)
            fields.insert(line.first(colon), line.sliced(colon + 2));
    }
    Content content;
    content.bytes = whole.sliced(end + 2);
    if (!fields.contains("Bytes") || fields.value("Bytes").toLongLong() != content.bytes.size())
        return {};
    content.info.name = QString::fromUtf8(QByteArray::fromPercentEncoding(fields.value("Name")));
    content.info.kind = fields.value("Kind").toInt();
    content.info.replacedBy = QByteArray::fromHex(fields.value("ReplacedBy"));
    if (fields.contains("Encoding")) {
        content.info.encoding = EncodingOf(fields.value("Encoding"));
        if (!content.info.encoding)
            return {};
    }
    return content;
}

QDateTime UnsavedCopy::Written() const
{
    return QDateTime::fromMSecsSinceEpoch(StampOf(m_file).modified / 1'000'000);
}

std::vector<UnsavedCopy> UnsavedCopy::TakeLeft()
{
    std::vector<UnsavedCopy> left;
    const QDir folder(Folder());
    for (const Kind kind : {Kind::Unsaved, Kind::Replaced}) {
        const QStringList names =
            folder.entryList({u'*' + SuffixOf(kind)}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
        for (const QString &name : names) {
            UnsavedCopy copy(kind);
            // Not QDir's own joining, which takes a name that begins with a colon for a place in the program.
            copy.m_path = Folder() + u'/' + name;
            copy.m_file = LockLeftFile(copy.m_path);
            if (copy.Stands())
                left.push_back(std::move(copy));
        }
    }
    // By name where the clock of files stood still, so that a start asks in the same order each time.
    std::sort(left.begin(), left.end(), [](const UnsavedCopy &a, const UnsavedCopy &b) {
        return std::pair(b.Written(), a.m_path) < std::pair(a.Written(), b.m_path);
    });
    return left;
}

void UnsavedCopy::RemoveOld(const QDateTime &now)
{
    constexpr qint64 secondsADay = 24 * 60 * 60;
    const QDir folder(Folder());
    const QFileInfoList kept =
        folder.entryInfoList({u'*' + KeptSuffix}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &file : kept) {
        if (file.lastModified().secsTo(now) > KeptDays * secondsADay)
            QFile::remove(file.filePath());
    }
    RemoveLeftTemporaries(PathOf(Folder()));
}

} // namespace zelvane
