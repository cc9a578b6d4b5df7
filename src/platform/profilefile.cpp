// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/profilefile.h"

#include "platform/readfile.h"
#include "platform/runtimeerror.h"

#include <algorithm>
#include <chrono>
#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

ProfileFile::ProfileFile(const QString &name, ProfileText text) : m_name(name), m_text(text) {}

/// Reads the file again if it is another than at the last time.
void ProfileFile::Refresh() const
{
    if (m_step)
        return; // m_bytes is what was read at the start of the step, with its changes
    const auto forget = [this] {
        m_file = {};
        m_bytes.clear();
        m_indexed = false;
    };
    const std::optional<FileStamp> stamp = StampOf(m_name);
    if (stamp == m_stamp && (!stamp || (m_settled && m_file.IsOpen())))
        return;
    m_stamp = stamp;
    if (!stamp) {
        forget();
        return;
    }
    try {
        NativeFile file = OpenRegularFile(m_name);
        m_stamp = StampOf(file);
        m_settled = IsSettled(*m_stamp);
        QByteArray bytes = ReadWhole(file, m_name);
        m_file = std::move(file);
        if (bytes != m_bytes) {
            m_bytes = std::move(bytes);
            m_indexed = false;
        }
    } catch (const RunTimeError &) {
        forget();
        m_settled = false;
        throw;
    }
}

void ProfileFile::Index() const
{
    const profile::Spelling spelling(m_text);
    m_sections.clear();
    m_sectionPlaces.clear();
    qsizetype current = -1;
    profile::LineReader reader(m_bytes);
    for (profile::Line line; reader.Next(line);) {
        if (line.kind == profile::Line::Kind::Section) {
            const QString folded = profile::Fold(spelling.Name(line.name));
            current = m_sectionPlaces.value(folded, -1);
            if (current < 0) {
                current = qsizetype(m_sections.size());
                m_sectionPlaces.insert(folded, current);
                m_sections.push_back({line.name, {}, {}});
            }
        } else if (line.kind == profile::Line::Kind::Entry && current >= 0) {
            Section &target = m_sections[size_t(current)];
            const QString folded = profile::Fold(spelling.Name(line.name));
            if (!target.places.contains(folded)) {
                target.places.insert(folded, qsizetype(target.entries.size()));
                target.entries.push_back({line.name, line.value});
            }
        }
    }
    m_indexed = true;
}

const ProfileFile::Section *ProfileFile::FindSection(QStringView section) const
{
    if (!m_step) {
        m_failure.reset();
        try {
            Refresh();
        } catch (const RunTimeError &failure) {
            m_failure = failure; // a store that cannot be read has no keys; the first write tells why
        }
    }
    if (!m_indexed)
        Index();
    const qsizetype place = m_sectionPlaces.value(profile::Fold(section), -1);
    return place < 0 ? nullptr : &m_sections[size_t(place)];
}

std::optional<QString> ProfileFile::Value(QStringView section, QStringView key) const
{
    const Section *found = FindSection(section);
    const qsizetype place = found ? found->places.value(profile::Fold(key), -1) : -1;
    return place < 0 ? std::nullopt
                     : std::optional(profile::Spelling(m_text).Value(found->entries[size_t(place)].value));
}

ProfileEntries ProfileFile::Entries(QStringView section) const
{
    const profile::Spelling spelling(m_text);
    ProfileEntries entries;
    if (const Section *found = FindSection(section)) {
        for (const Entry &entry : found->entries)
            entries.emplace_back(spelling.Name(entry.key), spelling.Value(entry.value));
    }
    return entries;
}

ProfileEntries ProfileFile::AllEntries(QStringView section) const
{
    if (!FindSection(section))
        return {};
    return profile::SectionEntries(m_bytes, section, profile::Spelling(m_text)).value_or(ProfileEntries());
}

QStringList ProfileFile::SectionNames() const
{
    QStringList names;
    FindSection({});
    for (const Section &section : m_sections)
        names.append(profile::Spelling(m_text).Name(section.name));
    return names;
}

void ProfileFile::Change(Edit edit)
{
    if (!m_step) {
        Write(edit);
        return;
    }
    QByteArray bytes = edit(m_bytes);
    if (bytes != m_bytes) {
        m_bytes = std::move(bytes);
        m_indexed = false;
    }
    m_step->push_back(std::move(edit));
}

void ProfileFile::Write(const Edit &edit)
{
    constexpr std::chrono::milliseconds patienceAfterwards(50);

    const QString target = FollowLinks(m_name);
    const QString folder = QFileInfo(target).path();
    if (!QFileInfo::exists(folder) && !QDir().mkpath(folder))
        throw RunTimeError(ErrorNumber::PathNotFound, u"The folder cannot be made"_s, folder);
    {
        const std::chrono::milliseconds patience =
            m_lockRefused ? std::min(patienceAfterwards, m_patience) : m_patience;
        m_lockRefused = true;
        const FileLock lock(target, patience);
        m_lockRefused = false;
        Refresh();
        QByteArray bytes = edit(m_bytes);
        if (bytes == m_bytes)
            return;
        m_file = ReplaceLockedFile(target, bytes);
        m_stamp = StampOf(m_file);
        m_settled = false;
        m_bytes = std::move(bytes);
        m_indexed = false;
    }
    // The others need not wait for this.
    FlushName(target);
}

void ProfileFile::SetValue(QStringView section, QStringView key, QStringView value)
{
    Change([section = section.toString(), key = key.toString(), value = value.toString(),
            spelling = profile::Spelling(m_text)](const QByteArray &bytes) {
        return profile::WithValue(bytes, section, key, value, spelling);
    });
}

void ProfileFile::SetValues(QStringView section, const ProfileEntries &entries)
{
    if (entries.empty()) {
        FindSection(section);
        if (m_failure)
            throw *m_failure;
        return;
    }
    Change([section = section.toString(), entries,
            spelling = profile::Spelling(m_text)](const QByteArray &bytes) {
        QByteArray result = bytes;
        for (const auto &[key, value] : entries)
            result = profile::WithValue(result, section, key, value, spelling);
        return result;
    });
}

void ProfileFile::RemoveKey(QStringView section, QStringView key)
{
    if (m_step || StampOf(m_name))
        Change([section = section.toString(), key = key.toString(), spelling = profile::Spelling(m_text)](
                   const QByteArray &bytes) { return profile::WithoutKey(bytes, section, key, spelling); });
}

void ProfileFile::RemoveSection(QStringView section)
{
    if (m_step || StampOf(m_name))
        Change([section = section.toString(), spelling = profile::Spelling(m_text)](const QByteArray &bytes) {
            return profile::WithoutSection(bytes, section, spelling);
        });
}

void ProfileFile::ReplaceSection(QStringView section, const ProfileEntries &entries)
{
    Change([section = section.toString(), entries,
            spelling = profile::Spelling(m_text)](const QByteArray &bytes) {
        return profile::WithSection(profile::WithoutSection(bytes, section, spelling), section, entries,
                                    spelling);
    });
}

void ProfileFile::MoveSection(QStringView section, QStringView name,
                              const std::function<void(ProfileEntries &)> &change)
{
    Change([section = section.toString(), name = name.toString(), change,
            spelling = profile::Spelling(m_text)](const QByteArray &bytes) {
        std::optional<ProfileEntries> entries = profile::SectionEntries(bytes, section, spelling);
        if (!entries)
            return bytes;
        const ProfileEntries before = *entries;
        if (change)
            change(*entries);
        if (section == name && *entries == before)
            return bytes;
        const QByteArray without = profile::WithoutSection(bytes, section, spelling);
        return profile::WithSection(profile::WithoutSection(without, name, spelling), name, *entries,
                                    spelling);
    });
}

void ProfileFile::InOneStep(const std::function<void()> &work)
{
    if (m_step) {
        work();
        return;
    }
    FindSection({}); // reads what stands in the file
    m_step.emplace();
    try {
        work();
    } catch (...) {
        // Its failure is the one to tell, whatever comes of the writing.
        try {
            WriteStep();
        } catch (const RunTimeError &) {
        }
        throw;
    }
    WriteStep();
}

void ProfileFile::WriteStep()
{
    const std::vector<Edit> edits = std::move(*m_step);
    m_step.reset();
    if (edits.empty())
        return;
    // m_bytes is not what the file holds.
    m_stamp = FileStamp();
    m_settled = false;
    Write([&edits](const QByteArray &bytes) {
        QByteArray result = bytes;
        for (const Edit &edit : edits)
            result = edit(result);
        return result;
    });
}

} // namespace zelvane
