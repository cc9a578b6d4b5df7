// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/changedondisk.h"

#include "platform/readfile.h"
#include "platform/runtimeerror.h"

#include <new>
#include <optional>
#include <QDir>
#include <QFileInfo>
#include <QHashFunctions>
#include <utility>

namespace zelvane
{

namespace
{

/// Tells contents apart within this process.
QByteArray Fingerprint(const QByteArray &bytes)
{
    const quint64 parts[] = {quint64(bytes.size()), qHashBits(bytes.constData(), size_t(bytes.size()), 1),
                             qHashBits(bytes.constData(), size_t(bytes.size()), 2)};
    return {reinterpret_cast<const char *>(parts), sizeof parts};
}

} // namespace

DiskPicture DiskPicture::Of(const QByteArray &bytes, const FileStamp &stamp)
{
    return {true, stamp, IsSettled(stamp), Fingerprint(bytes)};
}

void ChangedOnDisk::Remember(const QString &name, DiskPicture picture)
{
    m_name = name;
    m_known = m_seen = std::move(picture);
    m_asked = m_left = false;
}

void ChangedOnDisk::Remember(const QString &name, const QByteArray &bytes)
{
    // Fresh, so not settled: should another program have written meanwhile, the contents tell.
    Remember(name, DiskPicture::Of(bytes, StampOf(name).value_or(FileStamp())));
}

void ChangedOnDisk::RememberNew(const QString &name)
{
    Remember(name, DiskPicture());
}

DiskPicture ChangedOnDisk::PictureNow() const
{
    const std::optional<FileStamp> stamp = StampOf(m_name);
    if (!stamp)
        return {};
    if (m_seen.exists && m_seen.settled && *stamp == m_seen.stamp)
        return m_seen;
    try {
        const NativeFile file = OpenRegularFile(m_name);
        const FileStamp opened = StampOf(file);
        return DiskPicture::Of(ReadWhole(file, m_name), opened);
    } catch (const RunTimeError &) {
    } catch (const std::bad_alloc &) {
        // A report of it would make the window the active one again, and the next look meet the same.
    }
    // What cannot be read has what its size and time say.
    if (stamp->size == m_known.stamp.size && stamp->modified == m_known.stamp.modified)
        return {true, *stamp, false, m_known.content};
    return {true, *stamp, false, QByteArray::number(stamp->size) + ' ' + QByteArray::number(stamp->modified)};
}

void ChangedOnDisk::Look()
{
    DiskPicture now = PictureNow();
    if (!now.SameAs(m_seen))
        m_asked = m_left = false;
    m_seen = std::move(now);
}

bool ChangedOnDisk::FolderIsGone() const
{
    return m_known.exists && !QFileInfo(m_name).dir().exists();
}

bool ChangedOnDisk::AskToLoad()
{
    if (m_name.isEmpty() || IsNew())
        return false;
    Look();
    const bool ask = m_seen.exists && !m_seen.SameAs(m_known) && !m_asked;
    m_asked = m_asked || ask;
    return ask;
}

bool ChangedOnDisk::AskToSave()
{
    if (m_name.isEmpty())
        return false;
    Look();
    const bool ask = !m_seen.SameAs(m_known) && !m_left;
    // Right after the answer the window is the active one again.
    m_asked = m_asked || ask;
    return ask;
}

} // namespace zelvane
