// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QHash>
#include <QList>
#include <QString>
#include <utility>

namespace zelvane
{

class Desktop;

/// What is asked of a help viewer: a page for a keyword, or the contents.
enum class HelpCommand { Keyword, Contents };

/// A manual of many pages, as a help file names it: a text file of sections and keys, section "Manual" with
/// the keys Folder (a folder, relative to the help file's own, or an address of the web), Page (the page of a
/// word, "$WORD$" being the word) and Contents, and section "Pages" with the words whose pages have other
/// names. There "name*" is every word that begins so, unless it has a row of its own; the first such row
/// counts.
struct Manual {
    QString folder; ///< without a separator at its end
    QString page;
    QString contents;
    QHash<QString, QString> pages;
    QList<std::pair<QString, QString>> families; ///< beginning of the words, page

    /// Whether it lies on this machine's disk.
    bool IsLocal() const;
    /// Whether it can be opened: its contents page is there, or it lies on the web.
    bool IsThere() const;
    /// The path or address of a word's page; that of the contents where the word has none.
    QString PageOf(const QString &word) const;
    QString ContentsPage() const;
};

/// @return nothing when the file is missing or no help file of this kind
std::optional<Manual> ReadManual(const QString &helpFile);

/// Opens a help file at a keyword or at its contents. Of a manual the page goes to the desktop's browser. A
/// help file that is a program is started with the command and the word as arguments ("-k" and the word, or
/// "-c"), and any other goes to the desktop's default program for it.
void OpenHelp(Desktop &desktop, const QString &file, HelpCommand command, const QString &word = {});

} // namespace zelvane
