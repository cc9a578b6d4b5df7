// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/findreplace.h"

#include <optional>
#include <QDialog>
#include <QtGlobal>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace zelvane
{

class Commands;
class TextControl;

/// The modeless dialog of Find and of Replace. It is made when it opens and goes when it is closed; the
/// keyboard stays in it while it searches.
class frmFind : public QDialog
{
    Q_OBJECT

public:
    /// @param commands reports failures @param replace the mode it opens in
    frmFind(EditorContext &editor, TextControl &text, Commands &commands, bool replace, QWidget *parent);

    /// Shows or hides what only Replace needs.
    void SetFindMode(bool replace);

    /// The command was given while the dialog is open: what is selected in the text now is what to find, or
    /// the scope, and the keyboard goes to the text to find.
    void StartAgain(bool replace);

    /// Whether there is a box for regular expressions follows a setting.
    void FollowSettings();

    void done(int result) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void LayOut();
    void Connect();
    /// Place and fields, as the store and the selection have them.
    void Load();
    /// Fills in the text to find and selects it, so that typing replaces it.
    void OfferToFind(const QString &text);
    FindFields Fields() const;
    /// The height that the shown controls need.
    void FitHeight();
    /// Searching by steps works on the whole document only.
    void EnableButtons();
    void Find();
    void Replace();
    void ReplaceEverything();
    /// Does a step, and keeps what it found for the next one.
    void Step(bool (*step)(EditorContext &, const FindFields &));
    void ShowRecentStrings();
    /// Moves the dialog off the selection that it covers, where the screen has room.
    void UncoverSelection();

    EditorContext &m_editor;
    TextControl &m_text;
    Commands &m_commands;
    bool m_replaceMode = false;
    std::optional<qsizetype> m_emptyHit; ///< see FindFields

    QComboBox *txtFind;
    QLabel *lblReplace = nullptr;
    QLineEdit *txtReplace;
    QCheckBox *chkWholeWords;
    QCheckBox *chkCase;
    QCheckBox *chkWrap;
    QCheckBox *chkRegularExpression;
    QGroupBox *fraScope;
    QRadioButton *optScope[2];
    QPushButton *bFind;
    QPushButton *bReplace;
    QPushButton *bReplaceAll;
    QPushButton *bClose;
};

} // namespace zelvane
