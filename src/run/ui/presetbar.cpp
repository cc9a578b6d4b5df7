// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/presetbar.h"

#include "platform/desktop.h"
#include "platform/runtimeerror.h"
#include "run/presetbuttons.h"
#include "run/presetrun.h"
#include "run/presetstore.h"
#include "run/readypresets.h"
#include "run/ui/presetimages.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "shell/ui/menutable.h"
#include "shell/ui/plaintooltip.h"
#include "shell/ui/toolbutton.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

QString Escaped(QString text)
{
    return text.replace(u'&', u"&&"_s);
}

} // namespace

PresetBar::PresetBar(const RunContext &context, Commands &commands, QMenu &presets, QMenu &popup,
                     QWidget *parent)
    : QToolBar(parent), m_context(context), m_commands(commands), m_presets(presets), m_popup(popup)
{
    setObjectName(u"tbPresets"_s);
    setIconSize(QSize(PresetImageSide, PresetImageSide));
    m_commands.Bind(Cmd::mnuPreset, [this](int row) {
        RunPreset(RowKey(row), m_context.editor.desktop.IsKeyDown(KeyCode::Ctrl), false, m_context);
    });
    m_commands.Bind(Cmd::mnuPresetPopupItem, [this](PresetEntry entry) {
        const QString key = m_popup.property("tag").toString();
        RunPreset(key, entry == PresetEntry::Confirm, entry == PresetEntry::Edit, m_context);
    });
    if (QAction *line = FindSeparator(m_presets, Separators::linea1))
        line->setVisible(false);
}

void PresetBar::PresetsButtons()
{
    const QStringList presets = PresetStore(m_context.editor.settings).ReadPresetList();
    RemoveButtons();
    ShowReadyRow(presets.isEmpty());
    if (!presets.isEmpty()) {
        setUpdatesEnabled(false);
        // A preset that cannot be read is reported, and takes no other one's button away.
        for (const QString &key : presets)
            m_commands.Guard([&] { AddPresetButton(key); });
        ShowFlatButtons(*this, m_context.editor.settings);
        setUpdatesEnabled(true);
        BuildMenuRows(presets);
        Q_EMIT Rebuilt();
    }
}

void PresetBar::ShowReadyRow(bool shown)
{
    if (!m_ready && !shown)
        return;
    if (!m_ready) {
        m_ready = m_presets.addAction(u"&Ready-made presets..."_s);
        m_ready->setObjectName(u"mnuReadyPresets"_s);
        connect(m_ready, &QAction::triggered, this,
                [this] { m_commands.Guard([this] { OfferReadyPresets(); }); });
    }
    m_ready->setVisible(shown);
}

void PresetBar::OfferReadyPresets()
{
    EditorContext &editor = m_context.editor;
    const QString file = ReadyPresetsFile();
    const QStringList names = ReadyPresets(file);
    if (names.isEmpty())
        throw RunTimeError(ErrorNumber::FileNotFound, u"File not found"_s, file);
    if (editor.desktop.MessageBox(
            {.text = ReadyPresetsQuestion(names), .icon = BoxIcon::Question, .buttons = BoxButtons::YesNo}) !=
        BoxAnswer::Yes)
        return;
    AddReadyPresets(file, editor.settings);
    PresetsButtons();
}

void PresetBar::RemoveButtons()
{
    // They belong to the bar, which only lets go of them when it is cleared. One of them may be what runs
    // now.
    const QList<QAction *> buttons = actions();
    clear();
    for (QAction *button : buttons) {
        button->setParent(nullptr);
        button->deleteLater();
    }
}

void PresetBar::AddPresetButton(const QString &key)
{
    const auto button = ButtonOf(key, m_context);
    if (!button)
        return;
    if (button->newGroup)
        addSeparator();
    QAction *action = addAction(Escaped(key));
    action->setObjectName(objectName() + u'_' + key);
    action->setData(key);
    // Set apart from the text, from which the toolkit would take the dots away.
    action->setIconText(Escaped(button->label));
    action->setToolTip(PlainToolTip(button->tooltip));
    action->setIcon(ButtonIcon(*button));
    connect(action, &QAction::triggered, this, [this, key] {
        const Desktop &desktop = m_context.editor.desktop;
        m_commands.Guard([&] {
            RunPreset(key, desktop.IsKeyDown(KeyCode::Ctrl), desktop.IsKeyDown(KeyCode::Alt), m_context);
        });
    });
    auto *face = qobject_cast<QToolButton *>(widgetForAction(action));
    face->setObjectName(action->objectName());
    face->setAccessibleName(key);
}

void PresetBar::BuildMenuRows(const QStringList &presets)
{
    QAction *line = FindSeparator(m_presets, Separators::linea1);
    if (line)
        line->setVisible(true);
    for (int row = 0; row < int(presets.size()); ++row) {
        QAction *action = m_commands.Action(Cmd::mnuPreset[row]);
        if (!action) {
            action = new QAction(&m_presets);
            action->setObjectName(Cmd::mnuPreset[row].RowName());
            m_presets.insertAction(line, action);
            m_commands.AddAction(Cmd::mnuPreset[row], action);
        }
        action->setText(PresetMenuCaption(Escaped(presets[row]), row));
        action->setData(presets[row]);
    }
    for (int row = m_rows - 1; row >= int(presets.size()); --row) {
        QAction *action = m_commands.Action(Cmd::mnuPreset[row]);
        m_commands.RemoveAction(Cmd::mnuPreset[row]);
        delete action;
    }
    m_rows = int(presets.size());
}

void PresetBar::ShowLabels(bool shown)
{
    setToolButtonStyle(shown ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
}

QString PresetBar::RowKey(int row) const
{
    const QAction *action = m_commands.Action(Cmd::mnuPreset[row]);
    return action ? action->data().toString() : QString();
}

void PresetBar::RunRow(int row)
{
    const QString key = RowKey(row);
    if (!key.isEmpty())
        m_commands.Guard([&] { RunPreset(key, false, false, m_context); });
}

QString PresetBar::ButtonAt(const QPoint &point) const
{
    const QAction *action = actionAt(point);
    return action ? action->data().toString() : QString();
}

void PresetBar::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    const QString key = ButtonAt(event->pos());
    if (key.isEmpty())
        m_presets.exec(event->globalPos());
    else
        Popup(key, event->globalPos());
}

void PresetBar::Popup(const QString &key, const QPoint &at)
{
    m_popup.setProperty("tag", key);
    const QStringList captions = PresetPopupCaptions(Escaped(key));
    const PresetEntry entries[] = {PresetEntry::Run, PresetEntry::Confirm, PresetEntry::Edit};
    for (int i = 0; i < 3; ++i)
        m_commands.Action(Cmd::mnuPresetPopupItem[entries[i]])->setText(captions[i]);
    m_popup.exec(at);
    m_popup.setProperty("tag", QString());
}

} // namespace zelvane
