// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"
#include "platform/textencoding.h"

#include <optional>
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <vector>

namespace zelvane
{

/// What a copy is of.
struct CopyInfo {
    QString name = {}; ///< full path of the document; empty for a text that never had one
    int kind = 0;      ///< the caller's number for the kind of document
    /// That of the document, whose text the copy holds as UTF-8 with LF line ends; absent where the bytes are
    /// a file's own.
    std::optional<TextEncoding> encoding = {};
    /// ContentHash of the bytes that a file was to be written over with.
    QByteArray replacedBy = {};

    bool operator==(const CopyInfo &) const = default;
};

/// Tells one content of a file from another.
QByteArray ContentHash(const QByteArray &bytes);

/// A copy of a text, in a folder for all of them and readable by its owner alone: a few lines that say what
/// it is, an empty line, the bytes. It belongs to the process that wrote it or took it over, until that ends,
/// however it ends: a lock says so, which no other process can inherit by its number.
class UnsavedCopy
{
public:
    /// Unsaved is a text that lives in an editor; Replaced is what a file held that is being written in
    /// place.
    enum class Kind { Unsaved, Replaced };

    explicit UnsavedCopy(Kind kind = Kind::Unsaved) : m_kind(kind) {}

    /// `unsaved` in the state folder; it may not exist yet.
    static QString Folder();

    Kind WhichKind() const { return m_kind; }
    /// Whether a file stands that is this object's.
    bool Stands() const { return m_file.IsOpen(); }
    QString Path() const { return m_path; }

    /// Writes the copy in one step that a power cut respects, in place of what it held before.
    /// @throws RunTimeError; the former copy stands then
    void Write(const CopyInfo &info, const QByteArray &bytes);
    /// Lets go of the copy: it stays for KeptDays, and nobody is asked about it.
    void Keep();
    /// Removes the file.
    void Remove();

    struct Content {
        CopyInfo info;
        QByteArray bytes;
    };
    /// No value when the file is no whole copy. @throws RunTimeError when it cannot be read
    std::optional<Content> Read() const;
    QDateTime Written() const;

    /// The copies whose processes have ended, the last written first. They are this process's from here on,
    /// so that no two processes ask about one. A copy that is let go of without Keep or Remove is there for
    /// the next.
    static std::vector<UnsavedCopy> TakeLeft();

    static constexpr int KeptDays = 7;
    /// Removes what was kept long enough, and what interrupted writes have left in the folder.
    static void RemoveOld(const QDateTime &now);

private:
    Kind m_kind;
    QString m_path;
    QString m_name;    // of the document, as the path has it; null when it is not known
    NativeFile m_file; // locked
};

} // namespace zelvane
