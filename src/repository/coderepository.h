// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/profilefile.h"

#include <optional>
#include <QString>
#include <QStringList>

namespace zelvane
{

class TextBuffer;
struct EditorContext;

/// Where a fragment stands.
struct FragmentPlace {
    QString file; ///< path
    QString name;

    bool operator==(const FragmentPlace &) const = default;
};

/// What the page of a fragment shows. Line ends may be LF or CR LF.
struct FragmentFields {
    QString code = {};
    QString author = {};
    QString comments = {};
    QString category = {};

    bool operator==(const FragmentFields &) const = default;
};

/// A fragment as it was read.
struct StoredFragment {
    FragmentFields fields = {};
    ProfileEntries entries = {}; ///< of its section, as they stand in the file
    bool found = false;
    bool cut = false; ///< a value is longer than what is shown of it
};

/// What became of a write.
enum class FragmentWrite {
    Done,
    Declined, ///< by the user: all is as it was
    Failed    ///< the user has been told
};

/// The fragments in the repository files of a folder: what the dialog does with them, with all its questions.
/// Other editors may write the same files at any time: what they have changed meanwhile is not written over
/// without a question.
class CodeRepository
{
public:
    /// @param folder the program's, without a separator at its end
    CodeRepository(EditorContext &editor, const QString &folder);

    QStringList Files() const;
    /// The path of the file that new fragments go to; it need not exist.
    QString PersonalFile() const;
    /// The page of a new fragment.
    FragmentFields NewFragment(const QString &code) const;
    StoredFragment Read(const FragmentPlace &place) const;

    /// Writes a new fragment.
    FragmentWrite Add(const FragmentPlace &place, const FragmentFields &fields);
    /// Moves all that the section holds to another name.
    FragmentWrite Rename(const FragmentPlace &place, const QString &name);
    /// Writes a page over the fragment that it shows, or `as` a fragment of a file that the user picks.
    /// @param shown what was read for the page
    FragmentWrite Save(const FragmentPlace &place, const StoredFragment &shown, const FragmentFields &fields,
                       bool as);
    /// Asks whether to save a page that would be lost, and saves it. Failed also for Cancel: the page has to
    /// stay. Declined: its changes may go.
    FragmentWrite SaveBeforeLeaving(const FragmentPlace &place, const StoredFragment &shown,
                                    const FragmentFields &fields);
    FragmentWrite Delete(const FragmentPlace &place, const StoredFragment &shown);
    /// Asks for a name. @return its place in `names`; no value after Cancel, or when there is none, which the
    /// user has been told
    std::optional<qsizetype> Find(const QStringList &names) const;

private:
    bool Ask(const QString &question) const;
    /// Whether a fragment may be written over or deleted that is no longer what was shown.
    /// @param seen its entries that the user knows of
    bool MayTouch(const FragmentPlace &place, ProfileEntries &seen, const QString &what) const;
    /// Whether a fragment may come to a place. @param replaced the entries there that the user gives up; no
    /// value where there is no fragment
    bool MayReplace(const FragmentPlace &place, std::optional<ProfileEntries> &replaced) const;
    FragmentWrite Write(const FragmentPlace &place, const StoredFragment &shown, const FragmentFields &fields,
                        const QString &target);
    void ShowError(const QString &text) const;

    EditorContext &m_editor;
    QString m_folder;
};

/// A text on one line: blanks stand for its line ends.
QString OneLine(const QString &text);

/// What goes into the repository: the selection, or the whole text when nothing is selected.
QString TextForRepository(const TextBuffer &text);

} // namespace zelvane
