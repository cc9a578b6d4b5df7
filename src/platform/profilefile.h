// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"

#include <functional>
#include <optional>
#include <QHash>
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

namespace zelvane
{

/// A private profile file: UTF-8 text of `[section]` and `key=value` lines, shared by several processes and
/// edited by hand. Sections and keys are compared without regard to case, keep the spelling of their first
/// writer, and are told in the order of their creation. Any text is a section, a key or a value: what would
/// not survive in a line is escaped.
///
/// Escapes: `\\` backslash, `\n` LF, `\r` CR, `\t` tab, `\s` a blank at the start or the end, `\uXXXX` any
/// other UTF-16 unit. A backslash before anything else stands for itself. Blanks around names and values do
/// not count. Lines that begin with ";" or "#", empty lines and lines that are not understood are kept where
/// they are by all writes.
///
/// Every write takes the file's lock, reads what others wrote, and replaces the file in one step. So a
/// process that is killed at any moment leaves a whole file with at most its last write missing. Writes are
/// not forced to the disk one by one: closing a window makes sixty of them. A power cut can so take back the
/// last seconds.
class ProfileFile
{
public:
    explicit ProfileFile(const QString &name);

    const QString &Name() const { return m_name; }

    /// Readers never fail: a file that is missing or cannot be read is empty to them. Of two equal keys the
    /// first holds.
    std::optional<QString> Value(QStringView section, QStringView key) const;
    std::vector<std::pair<QString, QString>> Entries(QStringView section) const;
    QStringList SectionNames() const;

    /// Writers throw RunTimeError when the file cannot be read or written; it is then as it was. What changes
    /// nothing writes nothing.
    void SetValue(QStringView section, QStringView key, QStringView value);
    /// Several keys of a section in one step.
    void SetValues(QStringView section, const std::vector<std::pair<QString, QString>> &entries);
    void RemoveKey(QStringView section, QStringView key);
    /// Comments and lines that are not understood stay behind.
    void RemoveSection(QStringView section);
    /// Removes a section and writes it anew as the last, in one step: a killed process leaves the old or the
    /// new one.
    void ReplaceSection(QStringView section, const std::vector<std::pair<QString, QString>> &entries);

private:
    struct Entry {
        QByteArrayView key, value; // as written in m_bytes
    };
    struct Section {
        QByteArrayView name;
        std::vector<Entry> entries;
        QHash<QString, qsizetype> places; // by folded key
    };

    void Refresh() const;
    const Section *FindSection(QStringView section) const;
    void Change(const std::function<QByteArray(const QByteArray &)> &edit);

    QString m_name;
    // What was read last. The file stays open, so that no other can pass for it by its number.
    mutable NativeFile m_file;
    mutable std::optional<FileStamp> m_stamp;
    mutable bool m_settled = false; // the stamp is old enough to show the next change in place
    mutable QByteArray m_bytes;
    mutable bool m_indexed = false;
    mutable std::vector<Section> m_sections;
    mutable QHash<QString, qsizetype> m_sectionPlaces;
};

} // namespace zelvane
