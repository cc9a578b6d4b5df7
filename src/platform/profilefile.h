// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/nativefile.h"
#include "platform/profiletext.h"
#include "platform/runtimeerror.h"

#include <chrono>
#include <functional>
#include <optional>
#include <QHash>
#include <QString>
#include <QStringList>
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
/// process that is killed at any moment, and a power cut, leave a whole file with at most the last write
/// missing. Each write waits for the disk, so what belongs together is written in one step.
class ProfileFile
{
public:
    /// How long a write waits for a lock that another process holds.
    static constexpr std::chrono::milliseconds Patience{400};

    explicit ProfileFile(const QString &name, ProfileText text = ProfileText::Escaped);

    const QString &Name() const { return m_name; }
    void SetPatience(std::chrono::milliseconds patience) { m_patience = patience; }

    /// Readers never fail: a file that is missing or cannot be read is empty to them. Of two equal keys the
    /// first holds.
    std::optional<QString> Value(QStringView section, QStringView key) const;
    ProfileEntries Entries(QStringView section) const;
    /// With those too that do not hold, since an equal key stands before them.
    ProfileEntries AllEntries(QStringView section) const;
    QStringList SectionNames() const;

    /// Writers throw RunTimeError when the file cannot be read or written; it is then as it was. What changes
    /// nothing writes nothing. After a wait for the lock in vain the next ones are short until it was free
    /// once: a stopped process does not stop this one.
    void SetValue(QStringView section, QStringView key, QStringView value);
    /// Several keys of a section in one step. Where there are none nothing is written or locked: that only
    /// throws when what stands in the file cannot be read.
    void SetValues(QStringView section, const ProfileEntries &entries);
    void RemoveKey(QStringView section, QStringView key);
    /// Comments and lines that are not understood stay behind.
    void RemoveSection(QStringView section);
    /// Removes a section and writes it anew as the last, in one step: a killed process leaves the old or the
    /// new one.
    void ReplaceSection(QStringView section, const ProfileEntries &entries);

    /// Takes a section away and writes what it held as the last one, under another name, in place of a
    /// section that has it; nothing happens where there is none. @param change takes all entries, those that
    /// do not hold among them, and may change them
    void MoveSection(QStringView section, QStringView name,
                     const std::function<void(ProfileEntries &)> &change = {});

    /// Writes all that `work` changes in one step, at its end; readers see it before. When `work` throws,
    /// what it had changed by then is written. Steps within a step belong to the outer one. @throws
    /// RunTimeError as writers do: then nothing of the step was written
    void InOneStep(const std::function<void()> &work);

private:
    using Edit = std::function<QByteArray(const QByteArray &)>;

    struct Entry {
        QByteArrayView key, value; // as written in m_bytes
    };
    struct Section {
        QByteArrayView name;
        std::vector<Entry> entries;
        QHash<QString, qsizetype> places; // by folded key
    };

    void Refresh() const;
    /// Finds the sections and entries of what was read.
    void Index() const;
    const Section *FindSection(QStringView section) const;
    void Change(Edit edit);
    void Write(const Edit &edit);
    void WriteStep();

    QString m_name;
    ProfileText m_text;
    // What was read last. The file stays open, so that no other can pass for it by its number.
    mutable NativeFile m_file;
    mutable std::optional<FileStamp> m_stamp;
    mutable bool m_settled = false; // the stamp is old enough to show the next change in place
    mutable QByteArray m_bytes;
    mutable bool m_indexed = false;
    mutable std::vector<Section> m_sections;
    mutable QHash<QString, qsizetype> m_sectionPlaces;
    mutable std::optional<RunTimeError> m_failure; // of the last reader; in a step, of its start
    std::optional<std::vector<Edit>> m_step;       // what the step under way has changed in m_bytes
    std::chrono::milliseconds m_patience = Patience;
    bool m_lockRefused = false;
};

} // namespace zelvane
