// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/appearance.h"

#include "platform/systemcolour.h"
#include "platform/ui/textcontrol.h"
#include "shell/editorkeys.h"
#include "shell/settings.h"

namespace zelvane
{

void Appearance::ApplyAtStart(LookTime time) const
{
    for (const LookRow &row : LookTable) {
        if (row.time == time)
            Apply(row.look);
    }
}

void Appearance::ApplyAll() const
{
    for (const LookRow &row : LookTable) {
        if (row.change == LookChange::Anytime)
            Apply(row.look);
    }
}

void Appearance::Apply(Look look) const
{
    const auto parts = m_parts.find(look);
    if (parts == m_parts.end())
        return;
    for (const Part &part : parts->second)
        part(m_settings);
}

void AddTextLooks(Appearance &appearance, TextControl &text)
{
    appearance.Add(Look::TextColours, [&text](const SettingsStore &settings) {
        if (settings.Flag(Keys::SystemColors))
            text.SetTextColours(SystemWindowText, SystemWindow);
        else
            text.SetTextColours(settings.Colour(Keys::FontColor), settings.Colour(Keys::BackColor));
    });
    appearance.Add(Look::TabStops, [&text](const SettingsStore &settings) {
        text.SetTabWidth(settings.Integer(Keys::TabSize));
    });
    appearance.Add(Look::DragMode, [&text](const SettingsStore &settings) {
        text.SetDragMode(settings.Flag(Keys::DragAndDrop));
    });
    appearance.Add(Look::Font, [&text](const SettingsStore &settings) {
        TextFont font = text.CurrentFont();
        font.family = settings.Text(Keys::Font, font.family);
        font.points = settings.Number(Keys::FontSize, font.points);
        font.italic = settings.Flag(Keys::FontItalic, font.italic);
        font.bold = settings.Flag(Keys::FontBold, font.bold);
        text.ApplyFont(font);
    });
}

void SaveTextFont(const TextControl &text, SettingsStore &settings)
{
    const TextFont font = text.CurrentFont();
    settings.InOneStep([&] {
        settings.SaveText(Keys::Font, font.family);
        settings.SaveFlag(Keys::FontItalic, font.italic);
        settings.SaveFlag(Keys::FontBold, font.bold);
        settings.SaveNumber(Keys::FontSize, font.points);
    });
}

} // namespace zelvane
