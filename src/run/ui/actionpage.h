// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/preseteditor.h"
#include "run/runcontext.h"
#include "shell/ui/form.h"

#include <QList>
#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace zelvane
{

/// The fields of one action of a preset: command, parameters, initial folder, window.
class ActionPage : public QWidget
{
    Q_OBJECT

public:
    /// What tells the two actions apart: the names of the controls, and words.
    struct Words {
        QString command;
        QString browseCommand;
        QString args;
        QString pickFlag;
        QString folder;
        QString browseFolder;
        QString window;
        QString spoken = {}; ///< in front of the spoken names
        QString folderHint = {};
        QString folderTitle = {}; ///< of the picker
    };

    ActionPage(const RunContext &context, const Words &words);

    PresetAction Action() const;
    void ShowAction(const PresetAction &action);

    /// Adds the rows of the window list and chooses the usual one.
    void AddWindowStates();
    void ClearWindowStates();

    QLineEdit *Command() const { return m_command; }
    /// Takes what stands below the fields.
    FormGrid &Form() { return m_form; }
    /// In the order of the Tab key.
    QList<QWidget *> Controls() const;

private:
    void Connect();

    RunContext m_context;
    Words m_words;
    FormGrid m_form;
    QLineEdit *m_command;
    QPushButton *m_browseCommand;
    QLineEdit *m_args;
    QPushButton *m_pickFlag;
    QLineEdit *m_folder;
    QPushButton *m_browseFolder;
    QComboBox *m_window;
};

} // namespace zelvane
