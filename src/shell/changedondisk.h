// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"

#include <QByteArray>
#include <QString>

namespace zelvane
{

/// A state of a file.
struct DiskPicture {
    bool exists = false;
    FileStamp stamp = {};
    bool settled = false;    ///< the stamp is old enough to tell the next writing apart
    QByteArray content = {}; ///< tells contents apart within this process

    /// Of a file that held these bytes after it had that stamp.
    static DiskPicture Of(const QByteArray &bytes, const FileStamp &stamp);
    bool SameAs(const DiskPicture &other) const { return exists == other.exists && content == other.content; }
};

/// Whether the document's file is still what the document was read from or written to. Size and time are
/// compared first, and the contents where these differ: a file that was touched, or written with the same
/// bytes, has not changed.
class ChangedOnDisk
{
public:
    /// The document has been read from the file, in this state.
    void Remember(const QString &name, DiskPicture picture);
    /// The document has just been written to the file, as these bytes.
    void Remember(const QString &name, const QByteArray &bytes);
    /// A new document has this name: no file is to be there.
    void RememberNew(const QString &name);
    /// The document's file has another name now.
    void Follow(const QString &name) { m_name = name; }

    /// Whether another program has written the file, and this state of it has not been asked about yet; the
    /// answer counts as asking. A file that has vanished cannot be loaded: it is asked about at the save.
    bool AskToLoad();
    /// The present state of the file may be saved over without a further question.
    void LeaveToSave() { m_left = true; }
    /// Whether saving would replace what the document was not made from, or bring back a file that was taken
    /// away.
    bool AskToSave();
    /// Whether the document is one that was to be new; what AskToSave says is then that a file is there.
    bool IsNew() const { return !m_name.isEmpty() && !m_known.exists; }
    /// Whether the file has been taken away; what AskToSave says is then that none is there.
    bool IsGone() const { return m_known.exists && !m_seen.exists; }
    /// Whether the folder that the file stood in has been taken away, or its disk.
    bool FolderIsGone() const;

private:
    DiskPicture PictureNow() const;
    void Look();

    QString m_name;
    DiskPicture m_known; ///< as the document has it
    DiskPicture m_seen;  ///< as it was looked at last
    bool m_asked = false;
    bool m_left = false;
};

} // namespace zelvane
