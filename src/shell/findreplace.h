// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/editorcontext.h"
#include "shell/findtext.h"

#include <functional>
#include <optional>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zelvane
{

/// The entries of `optScope`.
enum class FindScope { SelectedText, EntireDocument };

/// What the fields of the find dialog hold.
struct FindFields {
    QString find = {};
    QString replace = {};
    bool wholeWords = false;
    bool matchCase = false;
    bool wrap = false;
    std::optional<bool> regularExpression = {}; ///< no value where the dialog has no such box
    FindScope scope = FindScope::EntireDocument;
    /// Where the last step found a place between characters, as "^" does; no value where it found text. A
    /// caret shows no hit.
    std::optional<qsizetype> emptyHit = {};
};

/// What the selection says to the find dialog: one on one line is the text to find, one of several lines is
/// the scope.
struct SelectedForFind {
    QString text = {}; ///< empty where nothing, or more than a line, is selected
    bool severalLines = false;
};
SelectedForFind WhatIsSelected(const TextBuffer &text);

/// The fields as the dialog opens with them: those of the store, and what the selection says.
FindFields OpeningFindFields(const EditorContext &editor);

/// The strings in the list of `txtFind`, the newest first. Kept: one less than the store holds.
QStringList FindStringsOffered(const SettingsStore &settings);

/// The options that the checks stand for.
FindOptions OptionsOf(const FindFields &fields);

/// `bFind`: the next hit. Nothing happens with an empty text to find. @return whether there was one
bool FindNext(EditorContext &editor, const FindFields &fields);

/// `bReplace`: replaces the selection when it is exactly the text to find, or a hit of the regular
/// expression, then goes to the next hit without wrapping. Nothing happens with an empty text to find.
/// @return whether there was a next one
bool ReplaceNext(EditorContext &editor, const FindFields &fields);

/// `bReplaceAll`: replaces every hit of the scope in one pass and one edit, and tells how many there were.
/// Nothing happens with an empty text to find.
/// @param showText hides the text control before the edit and shows it after, also after a failure
void ReplaceAll(EditorContext &editor, const FindFields &fields,
                const std::function<void(bool shown)> &showText = {});

} // namespace zelvane
