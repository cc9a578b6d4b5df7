// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ui/keyedcontrols.h"

#include <QDialog>
#include <QString>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTabWidget;

namespace zelvane
{

class Appearance;
class ColourButton;
class Desktop;
class FileTypeRegistry;
class FormGrid;
class SettingsStore;
class TextControl;
struct FileDialogRequest;

/// What the Preferences dialog works on. The parts outlive the dialog.
struct OptionsContext {
    SettingsStore &settings;
    Desktop &desktop;
    const Appearance &looks; ///< what follows the settings at once
    TextControl &text;       ///< whose font is set
    FileTypeRegistry &fileTypes;
};

/// The Preferences dialog. Most controls have the name of the setting that they show, and are loaded and
/// saved by that name. Apply saves, and shows what can be shown at once; Cancel takes nothing back.
class frmOptions : public QDialog
{
    Q_OBJECT

public:
    explicit frmOptions(const OptionsContext &context, QWidget *parent = nullptr);

private:
    QWidget *EditorPage();
    QWidget *SyntaxPage();
    QWidget *GeneralPage();
    QWidget *ProgramsPage();
    QWidget *ExtensionsPage();
    QWidget *WritingPage();
    /// Asks for a file. @param path the one that is set
    using PathRequest = FileDialogRequest (*)(const QString &title, const QString &path);
    /// A field for the path of a program or of the help file, with its button.
    void AddTool(FormGrid &form, const QString &key, const QString &caption, const QString &button,
                 PathRequest request);
    void LayOut();
    void Connect();

    void Load();
    bool Apply();
    void EnableColours();
    void ShowElement(int row);
    void SetFont();
    void StepPage(int step);

    OptionsContext m_context;
    KeyedControls m_keyed;

    QTabWidget *tbsOptions;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    QPushButton *cmdApply;

    QCheckBox *SystemColors = nullptr;
    QLabel *lblBackColor = nullptr;
    ColourButton *bBackColor = nullptr;
    QLabel *lblFontColor = nullptr;
    ColourButton *bFontColor = nullptr;
    QPushButton *bFont = nullptr;
    QCheckBox *FixedPitchFonts = nullptr;

    QListWidget *lstSyntaxElements = nullptr;
    QLabel *lblSample = nullptr;

    QLineEdit *BakPath = nullptr;
    QPushButton *bBakPath = nullptr;
};

} // namespace zelvane
