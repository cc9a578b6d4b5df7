// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/trash.h"

#include "platform/nativecalls.h"
#include "platform/nativefile.h"
#include "platform/runtimeerror.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

using namespace native;

namespace
{

constexpr qsizetype LongestName = 255; ///< bytes, of a name on the file systems of the desktop
constexpr char NoteSuffix[] = ".trashinfo";

struct Trash {
    QByteArray folder;
    QByteArray top = {}; ///< notes in it name files relative to this folder; empty: by their full path
};

std::optional<dev_t> DeviceOf(const QByteArray &path)
{
    struct stat info = {};
    return ::stat(path.constData(), &info) == 0 ? std::optional(info.st_dev) : std::nullopt;
}

using Look = int (*)(const char *, struct stat *);

/// Makes a folder that its user alone may enter. @return whether it is one, and the user's own
bool OwnFolder(const QByteArray &path, Look look)
{
    std::ignore = ::mkdir(path.constData(), 0700);
    struct stat info = {};
    return look(path.constData(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == ::geteuid();
}

bool IsUsable(const Trash &trash)
{
    // The user may have led his own trash to a larger disk; beside other people's files, a link is anybody's.
    const Look look = trash.top.isEmpty() ? Look(::stat) : Look(::lstat);
    return OwnFolder(trash.folder, look) && OwnFolder(trash.folder + "/files", look) &&
           OwnFolder(trash.folder + "/info", look);
}

Trash HomeTrash()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QDir().mkpath(data);
    return {QFile::encodeName(data) + "/Trash"};
}

/// The highest folder of the file system that a folder is on.
QByteArray TopFolder(QByteArray folder, dev_t device)
{
    while (folder != "/") {
        const QByteArray above = FolderOf(folder);
        if (DeviceOf(above) != device)
            break;
        folder = above;
    }
    return folder;
}

/// The trash that a file system has for all users, if the administrator made one, or for this one.
std::optional<Trash> TrashBelow(const QByteArray &top)
{
    const QByteArray user = QByteArray::number(uint(::geteuid()));
    const QByteArray base = top == "/" ? QByteArray() : top;
    const QByteArray common = base + "/.Trash";
    struct stat info = {};
    // Where it is no folder of the right kind, anybody may have put it there.
    if (::lstat(common.constData(), &info) == 0 && S_ISDIR(info.st_mode) && (info.st_mode & S_ISVTX)) {
        if (const Trash trash{common + '/' + user, top}; IsUsable(trash))
            return trash;
    }
    if (const Trash trash{base + "/.Trash-" + user, top}; IsUsable(trash))
        return trash;
    return {};
}

/// @param folder that the file lies in, without links
Trash TrashFor(const QByteArray &folder, const QString &name)
{
    const Trash home = HomeTrash();
    const bool usable = IsUsable(home);
    const auto device = DeviceOf(folder);
    if (device && (!usable || DeviceOf(home.folder) != device)) {
        if (const auto trash = TrashBelow(TopFolder(folder, *device)))
            return *trash;
    }
    if (!usable)
        throw RunTimeError(ErrorNumber::PathNotFound, u"There is no trash for it"_s, name);
    return home;
}

QByteArray NoteText(const Trash &trash, const QByteArray &file)
{
    QByteArray path = file;
    if (!trash.top.isEmpty())
        path.remove(0, trash.top == "/" ? 1 : trash.top.size() + 1);
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") +
           "\nDeletionDate=" + QDateTime::currentDateTime().toString(u"yyyy-MM-ddThh:mm:ss"_s).toLatin1() +
           '\n';
}

/// The name of the file in the trash when it is not the first of that name: "x.2.orc".
QByteArray NumberedName(const QByteArray &name, int number)
{
    const qsizetype room = LongestName - qsizetype(sizeof NoteSuffix) + 1;
    const QByteArray middle = number > 1 ? '.' + QByteArray::number(number) : QByteArray();
    qsizetype point = name.lastIndexOf('.');
    if (point <= 0 || name.size() - point > 16)
        point = name.size();
    qsizetype length = std::min(point, room - middle.size() - (name.size() - point));
    // No character is cut in two.
    while (length < point && length > 0 && (name[length] & 0xC0) == 0x80)
        --length;
    return name.first(length) + middle + name.sliced(point);
}

/// A note of a deleted file; it goes again unless the file came into the trash.
class Note
{
public:
    explicit Note(const QByteArray &path)
        : m_path(path),
          m_file(
              Retry([&] { return ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); })),
          m_error(m_file.IsOpen() ? 0 : errno)
    {
    }
    ~Note()
    {
        if (m_file.IsOpen() && !m_kept)
            ::unlink(m_path.constData());
    }
    Q_DISABLE_COPY_MOVE(Note)

    int Error() const { return m_error; }
    int Write(const QByteArray &text)
    {
        const int error = WriteAll(m_file.Descriptor(), text);
        return error != 0 ? error : Flush(m_file.Descriptor());
    }
    void Keep() { m_kept = true; }

private:
    QByteArray m_path;
    NativeFile m_file;
    int m_error;
    bool m_kept = false;
};

} // namespace

TransferEnd MoveToTrash(const QString &path, const TransferProgress &progress)
{
    const QByteArray given = PathOf(path);
    struct stat info = {};
    if (::lstat(given.constData(), &info) != 0)
        Fail(errno, path);
    if (!S_ISLNK(info.st_mode))
        RefuseSpecial(info.st_mode, path);
    // The links of its folder are followed, one in its own place is what is deleted.
    const QByteArray folder =
        QFile::encodeName(QFileInfo(QFile::decodeName(FolderOf(given))).canonicalFilePath());
    if (folder.isEmpty())
        Fail(ENOENT, path);
    const QByteArray name = given.sliced(given.lastIndexOf('/') + 1);
    const QByteArray file = (folder == "/" ? QByteArray() : folder) + '/' + name;
    const Trash trash = TrashFor(folder, path);

    constexpr int mostNames = 10'000;
    for (int number = 1; number <= mostNames; ++number) {
        const QByteArray kept = NumberedName(name, number);
        Note note(trash.folder + "/info/" + kept + NoteSuffix);
        if (note.Error() == EEXIST)
            continue;
        if (note.Error() != 0)
            Fail(note.Error(), path);
        if (const int error = note.Write(NoteText(trash, file)))
            Fail(error, path);
        const TransferEnd end = MoveFileAsItIs(QFile::decodeName(file),
                                               QFile::decodeName(trash.folder + "/files/" + kept), progress);
        if (end == TransferEnd::Exists)
            continue;
        if (end == TransferEnd::Done)
            note.Keep();
        return end;
    }
    throw RunTimeError(ErrorNumber::PathFileAccess, u"The trash holds too many files of that name"_s, path);
}

} // namespace zelvane
