// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmmanual.h"

#include "run/ui/flagpicker.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 48; ///< of the text fields, in characters

} // namespace

frmManual::frmManual(const RunContext &context, QWidget *parent)
    : QDialog(parent),
      m_context(context),
      txtORC(Named(new QLineEdit(this), u"txtORC"_s)),
      bORC(Named(new QPushButton(u"Browse..."_s, this), u"bORC"_s, u"Browse for the orchestra"_s)),
      txtSCO(Named(new QLineEdit(this), u"txtSCO"_s)),
      bSCO(Named(new QPushButton(u"Browse..."_s, this), u"bSCO"_s, u"Browse for the score"_s)),
      cmbArgs(NewTypingList(this, u"cmbArgs"_s)),
      bFlags(Named(new QPushButton(u"&Pick..."_s, this), u"bFlags"_s)),
      chkCsound2(Named(new QCheckBox(u"&Use Csound #2"_s, this), u"chkCsound2"_s)),
      chkSaveFirst(Named(new QCheckBox(u"&Save document first"_s, this), u"chkSaveFirst"_s)),
      fraFolder(Named(new QGroupBox(u"Initial folder"_s, this), u"fraFolder"_s)),
      chkFolderComp(Named(new QRadioButton(u"Compiler"_s, fraFolder), u"chkFolderComp"_s)),
      chkFolderDoc(Named(new QRadioButton(u"Document"_s, fraFolder), u"chkFolderDoc"_s)),
      bOK(Named(new QPushButton(u"&Run Csound"_s, this), u"bOK"_s)),
      bCancel(Named(new QPushButton(u"Cancel"_s, this), u"bCancel"_s))
{
    setObjectName(u"frmManual"_s);
    setWindowTitle(ProgramCaption(u"Run Csound"_s));
    LayOut();
    Connect();
    Load();
}

void frmManual::LayOut()
{
    txtORC->setMinimumWidth(CharacterWidth(*this, FieldWidth));
    txtSCO->setMinimumWidth(CharacterWidth(*this, FieldWidth));
    cmbArgs->setMinimumContentsLength(FieldWidth);
    cmbArgs->setToolTip(u"Parameters passed to Csound. Macros allowed."_s);
    bFlags->setToolTip(u"Pick flags from a list. Ctrl+click: pick one from a menu."_s);
    chkFolderComp->setToolTip(u"This setting is required by Winsound."_s);
    chkFolderDoc->setToolTip(u"Required when #includes with relative paths are used."_s);

    Fill(*fraFolder, {chkFolderComp, chkFolderDoc});
    TabToTheChosen({chkFolderComp, chkFolderDoc});
    auto *options = new QHBoxLayout;
    options->addLayout(Column({chkCsound2, chkSaveFirst}), 1);
    options->addWidget(fraFolder, 1);

    FormGrid form(this);
    form.Add({.caption = u"&Orchestra:"_s, .field = txtORC, .button = bORC, .labelName = u"lblORC"_s});
    form.Add({.caption = u"&Score:"_s, .field = txtSCO, .button = bSCO, .labelName = u"lblSCO"_s});
    form.Add({.caption = u"&Flags:"_s, .field = cmbArgs, .button = bFlags, .labelName = u"lblArgs"_s});
    form.AddUnder(options);
    form.AddStretch();
    form.AddAcross(ButtonBox(*this, bOK, bCancel, [this] { Run(); }));
}

void frmManual::Connect()
{
    SelectOnFocus(txtORC);
    SelectOnFocus(txtSCO);
    new FlagPicker(m_context.editor, bFlags, cmbArgs);
    connect(bORC, &QPushButton::clicked, this, [this] { Browse(FileKind::Orchestra, *txtORC); });
    connect(bSCO, &QPushButton::clicked, this, [this] { Browse(FileKind::Score, *txtSCO); });
}

void frmManual::Load()
{
    RunDialogFields fields;
    try {
        fields = LoadRunDialog(m_context);
    } catch (const RunTimeError &error) {
        ReportError(m_context.editor.desktop, error);
    }
    txtORC->setText(fields.orchestra);
    txtSCO->setText(fields.score);
    cmbArgs->addItems(fields.history);
    if (!fields.history.isEmpty())
        cmbArgs->setCurrentIndex(0);
    chkCsound2->setChecked(fields.csound2);
    chkSaveFirst->setChecked(fields.saveFirst);
    (fields.documentFolder ? chkFolderDoc : chkFolderComp)->setChecked(true);
    // What is left to say when the files are known are the flags.
    if (fields.orchestra.isEmpty())
        txtORC->setFocus();
    else
        cmbArgs->setFocus();
}

void frmManual::DropSaveFirst()
{
    chkSaveFirst->setChecked(false);
    chkSaveFirst->setEnabled(false);
    chkSaveFirst->hide();
}

RunDialogFields frmManual::Fields() const
{
    return {.orchestra = txtORC->text(),
            .score = txtSCO->text(),
            .flags = cmbArgs->currentText(),
            .csound2 = chkCsound2->isChecked(),
            .saveFirst = chkSaveFirst->isChecked(),
            .asksSaveFirst = !chkSaveFirst->isHidden(),
            .documentFolder = chkFolderDoc->isChecked()};
}

void frmManual::Browse(FileKind kind, QLineEdit &field)
{
    EditorContext &editor = m_context.editor;
    PickFile(editor.desktop, BrowseRequest(kind, field.text(), windowTitle(), editor), field);
}

void frmManual::Run()
{
    RunDialogFields fields = Fields();
    bool closes = false;
    try {
        closes = RunCsound(fields, m_context);
    } catch (const RunTimeError &error) {
        ReportError(m_context.editor.desktop, error);
    }
    txtORC->setText(fields.orchestra);
    txtSCO->setText(fields.score);
    if (closes)
        accept();
}

} // namespace zelvane
