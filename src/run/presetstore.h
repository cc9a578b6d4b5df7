// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowstate.h"
#include "run/presetkeys.h"

#include <QDate>
#include <QString>
#include <QStringList>

namespace zelvane
{

class SettingsStore;

/// The name of a preset: its key in the index, and what the user sees.
using PresetKey = QString;

/// One preset as the editor shows it.
struct PresetRecord {
    QString Command = {};
    QString Args = {};
    QString Folder = {};
    WindowState Window = WindowState::Normal;
    bool SaveFirst = false;
    QString Name = {};    ///< label of the button; the toolbar takes the preset's name when it is empty
    QString Tooltip = {}; ///< likewise
    bool CreateButton = true;
    bool NewGroup = false;
    QString Image = {}; ///< number of a built-in image, or path of a file, or empty for the command's icon
    QString SecondCommand = {};
    QString SecondArgs = {};
    QString SecondFolder = {};
    WindowState SecondWindow = WindowState::Normal;

    bool operator==(const PresetRecord &) const = default;
};

/// The presets in the settings store: an index of names in section "Presets", in the order of toolbar, menu
/// and lists, and a section for each preset.
class PresetStore
{
public:
    explicit PresetStore(SettingsStore &settings) : m_settings(settings) {}

    /// The names in order; empty when there is no index.
    QStringList ReadPresetList() const;
    /// Whether the index holds the name. Today's date is the mark of absence, so a preset named after today's
    /// date counts as missing (kept).
    bool PresetExists(const PresetKey &name, const QDate &today) const;
    /// Adds the name at the end of the index; an existing name keeps its place.
    void AddToIndex(const PresetKey &name);
    /// Removes the preset's section, then its name from the index.
    void Remove(const PresetKey &name);
    /// Writes the index afresh in the order given. The sections stay untouched.
    void RewritePresetOrder(const QStringList &names);

    PresetRecord ReadRecord(const PresetKey &name) const;
    /// A stored text as it is, else the key's default.
    QString Text(const PresetKey &name, const RecordTextKey &key) const;
    QString Text(const PresetKey &name, const BareRecordTextKey &key, const QString &fallback) const;
    /// What the store holds for a key of any kind; empty when it is absent.
    QString StoredText(const PresetKey &name, const RecordKey &key) const;
    /// The default for a value that is no number; normal for a number that no window state has.
    WindowState State(const PresetKey &name, const RecordNumberKey &key) const;
    /// The default for a value that is no flag.
    bool Flag(const PresetKey &name, const RecordFlagKey &key) const;

    void SaveText(const PresetKey &name, const RecordKeyOf<SettingKind::Text> &key, const QString &value);
    /// Writes a text, or removes the key when the text is empty.
    void SaveTextOrDelete(const PresetKey &name, const RecordKeyOf<SettingKind::Text> &key,
                          const QString &value);
    void SaveNumber(const PresetKey &name, const RecordKeyOf<SettingKind::Number> &key, int value);
    /// Writes "1" or "0".
    void SaveFlag(const PresetKey &name, const RecordKeyOf<SettingKind::Flag> &key, bool value);
    /// Writes a value of any kind in the stored form that the caller gives.
    void SaveStoredText(const PresetKey &name, const RecordKey &key, const QString &text);
    void DeleteKey(const PresetKey &name, const RecordKey &key);

    /// The section that holds a preset: its name. A preset named like a section of the program itself
    /// ("Options") has its record beside that section, or deleting the preset would delete the user's
    /// settings.
    static QString RecordSection(const PresetKey &name);

private:
    SettingsStore &m_settings;
};

} // namespace zelvane
