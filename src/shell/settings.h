// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/runtimeerror.h"
#include "shell/settingkey.h"

#include <functional>
#include <memory>
#include <optional>
#include <QSet>
#include <QString>
#include <QStringView>
#include <utility>
#include <vector>

namespace zelvane
{

class ProfileFile;

/// The store's own sections; each preset has one more.
namespace Sections
{
inline constexpr char16_t Options[] = u"Options"; ///< all single-valued settings
inline constexpr char16_t RecentFiles[] = u"Recent File List";
inline constexpr char16_t RecentFindStrings[] = u"Recent Find Strings";
inline constexpr char16_t RecentCommandLines[] = u"Recent Command Lines";
inline constexpr char16_t RecentFileSearches[] = u"Recent File Searches";
inline constexpr char16_t Presets[] = u"Presets";
} // namespace Sections

/// A stored value that cannot be read as its key's kind.
struct UnreadableSetting {
    QString entry; ///< as it stands in the store: `FontSize=q`, or `[Section] Key=value` outside of "Options"
    RunTimeError error; ///< 13 "Type mismatch", or 6 "Overflow" when it is beyond the type
};

/// The per-user store of strings, addressed by section and key; keys and sections are compared without regard
/// to case and enumerated in the order of their creation. Every write is atomic, takes the lock of the
/// store's file, and waits for the disk.
class SettingsStore
{
public:
    /// The store at its place in the user's configuration folder.
    SettingsStore();
    /// A store in a file of the caller's choice.
    explicit SettingsStore(const QString &file);
    ~SettingsStore();

    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;

    /// The stored string, or `fallback` when the key is absent. Never fails, never creates the key.
    QString GetSetting(QStringView section, QStringView key, const QString &fallback = {}) const;
    /// Creates section and key as needed. @throws RunTimeError when the store cannot be written
    void SaveSetting(QStringView section, QStringView key, QStringView value);
    /// Saves several keys of a section in one step: faster, and a process that is killed meanwhile has saved
    /// all or none.
    void SaveSettings(QStringView section, const std::vector<std::pair<QString, QString>> &entries);
    /// All keys of a section with their values, in order of creation.
    std::vector<std::pair<QString, QString>> GetAllSettings(QStringView section) const;
    /// Removes a key; nothing happens when it is absent. @throws RunTimeError when the store cannot be
    /// written
    void DeleteSetting(QStringView section, QStringView key);
    /// Removes a whole section; nothing happens when it is absent. @throws RunTimeError when the store cannot
    /// be written
    void DeleteSetting(QStringView section);
    /// Deletes a section and saves all these keys anew in one step: a process that is killed meanwhile loses
    /// none.
    void ReplaceSection(QStringView section, const std::vector<std::pair<QString, QString>> &entries);

    /// Writes all that `work` saves in one step, at its end; readers see it before. @throws what `work`
    /// throws, after what it had saved by then was written; RunTimeError when the store cannot be written:
    /// then nothing of the step was
    void InOneStep(const std::function<void()> &work);

    /// Readers of section "Options" by declared key, each with the key's own default. They never fail: a
    /// stored value that cannot be read as the kind is noted, and the default read.
    QString Text(const TextKey &key) const;
    bool Flag(const FlagKey &key) const;
    double Number(const NumberKey &key) const;
    int Integer(const NumberKey &key) const;
    quint32 Colour(const ColourKey &key) const;
    /// The same with a default that only the reader knows (a control's present value).
    QString Text(const BareTextKey &key, const QString &fallback) const;
    bool Flag(const BareFlagKey &key, bool fallback) const;
    double Number(const BareNumberKey &key, double fallback) const;
    int Integer(const BareNumberKey &key, int fallback) const;
    /// A colour that was stored and can be read.
    std::optional<quint32> StoredColour(const ColourKey &key) const;
    /// What the store holds for a key of any kind.
    std::optional<QString> StoredText(const OptionKey &key) const;
    /// Readers of a record's section.
    bool Flag(QStringView section, const RecordFlagKey &key) const;
    int Integer(QStringView section, const RecordNumberKey &key) const;

    /// The values that readers could not read since the last call; each is noted once.
    std::vector<UnreadableSetting> TakeUnreadable() const;
    /// Called by a reader, which has not come back then, when it has noted a value.
    void OnUnreadable(std::function<void()> noted) { m_noted = std::move(noted); }

    /// Writers of section "Options". A flag is written as "-1" or "0", a number as its shortest decimal text.
    void SaveText(const OptionKeyOf<SettingKind::Text> &key, const QString &value);
    void SaveFlag(const OptionKeyOf<SettingKind::Flag> &key, bool value);
    void SaveNumber(const OptionKeyOf<SettingKind::Number> &key, double value);
    void SaveColour(const ColourKey &key, quint32 value);
    /// Writes a value in a stored form of the caller's choice, such as a check box's "1".
    void SaveStoredText(const OptionKey &key, const QString &text);
    void DeleteSetting(const OptionKey &key);

private:
    /// @param convert makes the value from its stored text, or throws
    template <typename Value, typename Convert>
    std::optional<Value> Read(QStringView section, const SettingKey &key, Convert convert) const;
    std::optional<bool> ReadFlag(QStringView section, const SettingKey &key) const;

    std::unique_ptr<ProfileFile> m_file;
    mutable std::vector<UnreadableSetting> m_unreadable;
    mutable QSet<QString> m_known; ///< entries that were noted once
    std::function<void()> m_noted;
};

/// Turns a stored value into a boolean: a number other than 0 and the word for true are true.
/// @throws RunTimeError 13 "Type mismatch" for any other text
bool ToBoolean(const QString &value);

/// Turns a stored colour into 0xBBGGRR or a system colour with the top bit set. @throws RunTimeError 13 or 6
quint32 ToColour(const QString &value);

} // namespace zelvane
