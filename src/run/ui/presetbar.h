// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/runcontext.h"

#include <QToolBar>

class QAction;
class QMenu;

namespace zelvane
{

class Commands;

/// `tbPresets`: a button for each preset that wants one, and the rows `mnuPreset` of the Presets menu. Both
/// are built anew after every change of the store.
class PresetBar : public QToolBar
{
    Q_OBJECT

public:
    /// Binds `mnuPreset` and `mnuPresetPopupItem`.
    /// @param presets the Presets menu, which holds the separator `linea1`; @param popup the menu of a button
    PresetBar(const RunContext &context, Commands &commands, QMenu &presets, QMenu &popup,
              QWidget *parent = nullptr);

    /// Builds buttons and menu rows. Without any preset the menu's rows stay as they were.
    void PresetsButtons();

    void ShowLabels(bool shown);

    /// Runs the preset of a menu row, counted from 0, as a key does it: nothing is to be confirmed. A row
    /// that does not exist is ignored.
    void RunRow(int row);

Q_SIGNALS:
    /// There are new buttons: the band may want another width.
    void Rebuilt();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    /// The row that offers presets to begin with; it is there as long as there are none.
    void ShowReadyRow(bool shown);
    void OfferReadyPresets();
    void RemoveButtons();
    /// Adds the button of one preset at the end, unless the preset wants none.
    void AddPresetButton(const QString &key);
    void BuildMenuRows(const QStringList &presets);
    /// The key of the button at a point of the bar, empty outside all buttons.
    QString ButtonAt(const QPoint &point) const;
    void Popup(const QString &key, const QPoint &at);
    QString RowKey(int row) const;

    RunContext m_context;
    Commands &m_commands;
    QMenu &m_presets;
    QMenu &m_popup;
    int m_rows = 0;
    QAction *m_ready = nullptr; ///< none before it was first shown
};

} // namespace zelvane
