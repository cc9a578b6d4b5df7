// SPDX-License-Identifier: GPL-3.0-or-later
#include "repository/coderepository.h"

#include "platform/desktop.h"
#include "platform/programinfo.h"
#include "platform/runtimeerror.h"
#include "platform/samefile.h"
#include "platform/textbuffer.h"
#include "repository/fragmenttext.h"
#include "repository/repositorytree.h"
#include "shell/editorcontext.h"

#include <chrono>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

/// How long a write waits for another editor's: longer than a setting's, since the user waits for it.
constexpr std::chrono::seconds LockPatience{2};

ProfileFile Opened(const QString &file)
{
    ProfileFile opened(file, ProfileText::Plain);
    opened.SetPatience(LockPatience);
    return opened;
}

QString BareName(const QString &file)
{
    return QFileInfo(QDir::fromNativeSeparators(file)).fileName();
}

bool IsSameSection(const QString &name, const QString &other)
{
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

ProfileEntries EntriesOf(const FragmentFields &fields)
{
    return {{u"Code"_s, EscapeFragment(fields.code)},
            {u"Author"_s, OneLine(fields.author)},
            {u"Comments"_s, EscapeFragment(fields.comments)},
            {u"Category"_s, OneLine(fields.category)}};
}

/// A write found other entries than those that it was meant for.
struct ChangedElsewhere {
};

/// Puts a condition into a step of writes: nothing of it is written, and ChangedElsewhere is thrown, where
/// the section is there at that moment and holds anything else. @param expected no value: no such section
void Expect(ProfileFile &file, const QString &section, const std::optional<ProfileEntries> &expected)
{
    // Moved to where it is, it stays; but what it holds is looked at under the file's lock.
    file.MoveSection(section, section, [expected](ProfileEntries &entries) {
        if (entries != expected)
            throw ChangedElsewhere();
    });
}

constexpr QLatin1String AddFailed("Error adding code fragment.");

QString LoginName(const Desktop &desktop)
{
    for (const QString &variable : {u"LOGNAME"_s, u"USER"_s, u"USERNAME"_s}) {
        const QString name = desktop.EnvironmentVariable(variable);
        if (!name.isEmpty())
            return name;
    }
    return QFileInfo(QDir::homePath()).owner();
}

} // namespace

CodeRepository::CodeRepository(EditorContext &editor, const QString &folder)
    : m_editor(editor), m_folder(folder)
{
}

QStringList CodeRepository::Files() const
{
    return RepositoryFiles(m_folder);
}

QString CodeRepository::PersonalFile() const
{
    return QDir::toNativeSeparators(m_folder + u'/') + PersonalFileName(LoginName(m_editor.desktop));
}

FragmentFields CodeRepository::NewFragment(const QString &code) const
{
    const QDate today = m_editor.desktop.Now().date();
    return {.code = code,
            .author = LoginName(m_editor.desktop),
            .comments = u"Created on "_s + QLocale::system().toString(today, QLocale::ShortFormat),
            .category = u"General"_s};
}

StoredFragment CodeRepository::Read(const FragmentPlace &place) const
{
    const ProfileFile file = Opened(place.file);
    // All is taken from one reading: another editor may write at any time.
    StoredFragment read{.entries = file.AllEntries(place.name)};
    read.found = !read.entries.empty() || file.SectionNames().contains(place.name, Qt::CaseInsensitive);
    const auto value = [&](QLatin1String key, const QString &missing = {}) {
        for (const auto &[name, whole] : read.entries) {
            if (name.compare(key, Qt::CaseInsensitive) != 0)
                continue;
            read.cut |= whole.size() > ReadLimit;
            return StartOf(whole, ReadLimit);
        }
        return missing;
    };
    read.fields.code = UnescapeFragment(value("Code"_L1));
    read.fields.author = value("Author"_L1);
    read.fields.comments = UnescapeFragment(value("Comments"_L1));
    read.fields.category = value("Category"_L1, u"General"_s);
    return read;
}

FragmentWrite CodeRepository::Add(const FragmentPlace &place, const FragmentFields &fields)
{
    for (std::optional<ProfileEntries> replaced;;) {
        if (!MayReplace(place, replaced))
            return FragmentWrite::Declined;
        try {
            ProfileFile file = Opened(place.file);
            file.InOneStep([&] {
                Expect(file, place.name, replaced);
                file.SetValues(place.name, EntriesOf(fields));
            });
            return FragmentWrite::Done;
        } catch (const ChangedElsewhere &) {
            continue;
        } catch (const RunTimeError &) {
            ShowError(AddFailed);
            return FragmentWrite::Failed;
        }
    }
}

FragmentWrite CodeRepository::Rename(const FragmentPlace &place, const QString &name)
{
    std::optional<ProfileEntries> replaced;
    for (std::optional<ProfileEntries> asked;;) {
        const StoredFragment now = Read(place);
        ProfileEntries entries = now.entries;
        if (const qsizetype lost = CutSection(entries);
            lost > 0 && asked != now.entries &&
            !Ask(u"'%1' is longer than %2 characters. Under another name its last %3 characters would be "
                 "lost.\n\nRename it all the same?"_s.arg(place.name)
                     .arg(ReadLimit)
                     .arg(lost)))
            return FragmentWrite::Declined;
        asked = now.entries;
        const bool sameSection = IsSameSection(place.name, name);
        if (!sameSection && !MayReplace({.file = place.file, .name = name}, replaced))
            return FragmentWrite::Declined;
        if (!now.found)
            break; // another editor has deleted it, or given it another name
        try {
            ProfileFile file = Opened(place.file);
            file.InOneStep([&] {
                Expect(file, place.name, asked);
                if (!sameSection)
                    Expect(file, name, replaced);
                file.MoveSection(place.name, name, [](ProfileEntries &moved) { CutSection(moved); });
            });
            return FragmentWrite::Done;
        } catch (const ChangedElsewhere &) {
            continue;
        } catch (const RunTimeError &) {
            break; // the file is as it was
        }
    }
    ShowError(AddFailed);
    return FragmentWrite::Failed;
}

FragmentWrite CodeRepository::Save(const FragmentPlace &place, const StoredFragment &shown,
                                   const FragmentFields &fields, bool as)
{
    QString target = place.file;
    if (as) {
        target = m_editor.desktop
                     .SaveFileDialog({.title = u"Select file to save the code fragment in"_s,
                                      .filters = {{u"Code Repository Files"_s, u"*.csr"_s}},
                                      .folder = m_folder,
                                      .defaultExtension = u"csr"_s,
                                      .overwritePrompt = false}) // the fragment joins those of the file
                     .path;
        if (target.isEmpty())
            return FragmentWrite::Declined;
    }
    if (m_editor.desktop.MessageBox(
            {.text = u"Replace saved parameters for '"_s + place.name + u"' with current settings?"_s,
             .icon = BoxIcon::Question,
             .buttons = BoxButtons::YesNo}) != BoxAnswer::Yes)
        return FragmentWrite::Declined;
    return Write(place, shown, fields, target);
}

FragmentWrite CodeRepository::SaveBeforeLeaving(const FragmentPlace &place, const StoredFragment &shown,
                                                const FragmentFields &fields)
{
    switch (m_editor.desktop.MessageBox({.text = u"Save changes to '"_s + place.name + u"'?"_s,
                                         .icon = BoxIcon::Warning,
                                         .buttons = BoxButtons::YesNoCancel})) {
    case BoxAnswer::Yes:
        return Write(place, shown, fields, place.file) == FragmentWrite::Done ? FragmentWrite::Done
                                                                              : FragmentWrite::Failed;
    case BoxAnswer::No:
        return FragmentWrite::Declined;
    default:
        return FragmentWrite::Failed;
    }
}

FragmentWrite CodeRepository::Delete(const FragmentPlace &place, const StoredFragment &shown)
{
    if (m_editor.desktop.MessageBox({.text = u"Delete '"_s + place.name + u"' item?"_s,
                                     .icon = BoxIcon::Question,
                                     .buttons = BoxButtons::YesNo,
                                     .defaultAnswer = BoxAnswer::No}) != BoxAnswer::Yes)
        return FragmentWrite::Declined;
    for (ProfileEntries seen = shown.entries;;) {
        if (!MayTouch(place, seen, u"Delete it all the same?"_s))
            return FragmentWrite::Declined;
        try {
            ProfileFile file = Opened(place.file);
            file.InOneStep([&] {
                Expect(file, place.name, seen);
                file.RemoveSection(place.name);
            });
            return FragmentWrite::Done;
        } catch (const ChangedElsewhere &) {
            continue;
        } catch (const RunTimeError &) {
            ShowError(u"Cannot delete '"_s + place.name + u"' item."_s);
            return FragmentWrite::Failed;
        }
    }
}

std::optional<qsizetype> CodeRepository::Find(const QStringList &names) const
{
    const QString answer =
        m_editor.desktop
            .InputBox(u"Find code fragment"_s,
                      u"Type the name of the code fragment to search for.\n\n"
                      "(You don't need to specify the full name. You may type the first letters only. Search "
                      "is case insensitive.)"_s,
                      {})
            .value_or(QString());
    if (answer.isEmpty())
        return std::nullopt;
    const std::optional<qsizetype> found = FindFragment(names, answer);
    if (!found)
        m_editor.desktop.MessageBox(
            {.text = u"Cannot find '"_s + answer + u"'."_s, .icon = BoxIcon::Information});
    return found;
}

bool CodeRepository::Ask(const QString &question) const
{
    return m_editor.desktop.MessageBox({.text = question,
                                        .icon = BoxIcon::Warning,
                                        .buttons = BoxButtons::YesNo,
                                        .defaultAnswer = BoxAnswer::No}) == BoxAnswer::Yes;
}

bool CodeRepository::MayTouch(const FragmentPlace &place, ProfileEntries &seen, const QString &what) const
{
    // The question may stand for long: what is written meanwhile is asked about too.
    for (;;) {
        StoredFragment now = Read(place);
        if (!now.found || now.entries == seen)
            return true;
        if (!Ask(u"'%1' has been changed elsewhere since it was read.\n\n%2"_s.arg(place.name, what)))
            return false;
        seen = std::move(now.entries);
    }
}

bool CodeRepository::MayReplace(const FragmentPlace &place, std::optional<ProfileEntries> &replaced) const
{
    StoredFragment now = Read(place);
    if (!now.found) {
        replaced.reset();
        return true;
    }
    if (now.entries != replaced &&
        !Ask(u"'%1' is in %2 already.\n\nReplace it?"_s.arg(place.name, BareName(place.file))))
        return false;
    replaced = std::move(now.entries);
    return true;
}

FragmentWrite CodeRepository::Write(const FragmentPlace &place, const StoredFragment &shown,
                                    const FragmentFields &fields, const QString &target)
{
    const bool own = IsSameFile(target, place.file);
    const QString loss =
        own ? u"The rest would be lost."_s : u"Only that would be saved in %1."_s.arg(BareName(target));
    if (shown.cut && !Ask(u"'%1' is longer than %2 characters, and not all of it is shown. %3\n\nSave it all "
                          "the same?"_s.arg(place.name)
                              .arg(ReadLimit)
                              .arg(loss)))
        return FragmentWrite::Declined;
    for (ProfileEntries seen = shown.entries;;) {
        if (own && !MayTouch(place, seen, u"Save all the same?"_s))
            return FragmentWrite::Declined;
        try {
            ProfileFile file = Opened(target);
            file.InOneStep([&] {
                if (own)
                    Expect(file, place.name, seen);
                file.SetValues(place.name, EntriesOf(fields));
            });
            return FragmentWrite::Done;
        } catch (const ChangedElsewhere &) {
            continue;
        } catch (const RunTimeError &) {
            ShowError(u"Error while saving '"_s + place.name + u"'. Check if "_s + BareName(target) +
                      u" is around 64K. In that case you'll have to rename it to something different. "_s +
                      ApplicationTitle() + u" will create another file."_s);
            return FragmentWrite::Failed;
        }
    }
}

void CodeRepository::ShowError(const QString &text) const
{
    m_editor.desktop.MessageBox({.text = text, .icon = BoxIcon::Critical});
}

QString OneLine(const QString &text)
{
    QString line = text;
    for (QChar &unit : line) {
        if (unit == u'\n' || unit == u'\r')
            unit = u' ';
    }
    return line;
}

QString TextForRepository(const TextBuffer &text)
{
    const QString selected = text.SelectedText();
    return selected.isEmpty() ? text.Text() : selected;
}

} // namespace zelvane
