// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmmanual.h"

#include "run/ui/flagpicker.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 48; ///< of the text fields, in characters

template <typename Widget> Widget *Named(Widget *widget, const QString &name)
{
    widget->setObjectName(name);
    return widget;
}

/// Editable from the start: the Tab key goes through the controls in the order of their making, and the
/// combo box makes its line edit then.
QComboBox *NewEditableCombo(QWidget *parent, const QString &name)
{
    auto *combo = Named(new QComboBox(parent), name);
    combo->setEditable(true);
    return combo;
}

} // namespace

frmManual::frmManual(const RunContext &context, QWidget *parent)
    : QDialog(parent),
      m_context(context),
      lblORC(Named(new QLabel(u"&Orchestra:"_s, this), u"lblORC"_s)),
      txtORC(Named(new QLineEdit(this), u"txtORC"_s)),
      bORC(Named(new QPushButton(u"Browse..."_s, this), u"bORC"_s)),
      lblSCO(Named(new QLabel(u"&Score:"_s, this), u"lblSCO"_s)),
      txtSCO(Named(new QLineEdit(this), u"txtSCO"_s)),
      bSCO(Named(new QPushButton(u"Browse..."_s, this), u"bSCO"_s)),
      lblArgs(Named(new QLabel(u"&Flags:"_s, this), u"lblArgs"_s)),
      cmbArgs(NewEditableCombo(this, u"cmbArgs"_s)),
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
    setWindowTitle(ApplicationTitle() + u" - Run Csound"_s);
    BuildControls();
    LayOut();
    Load();
}

void frmManual::BuildControls()
{
    for (QLineEdit *field : {txtORC, txtSCO}) {
        field->setMinimumWidth(fontMetrics().averageCharWidth() * FieldWidth);
        field->installEventFilter(this);
    }
    lblORC->setBuddy(txtORC);
    lblSCO->setBuddy(txtSCO);
    lblArgs->setBuddy(cmbArgs);
    txtORC->setAccessibleName(u"Orchestra"_s);
    txtSCO->setAccessibleName(u"Score"_s);
    bORC->setAccessibleName(u"Browse for the orchestra"_s);
    bSCO->setAccessibleName(u"Browse for the score"_s);
    cmbArgs->setAccessibleName(u"Flags"_s);
    cmbArgs->setToolTip(u"Parameters passed to Csound. Macros allowed."_s);
    cmbArgs->setInsertPolicy(QComboBox::NoInsert);
    cmbArgs->setCompleter(nullptr);
    cmbArgs->setMinimumContentsLength(FieldWidth);
    cmbArgs->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    bFlags->setToolTip(u"Pick flags from a list. Ctrl+click: pick one from a menu."_s);
    chkFolderComp->setToolTip(u"This setting is required by Winsound."_s);
    chkFolderDoc->setToolTip(u"Required when #includes with relative paths are used."_s);
    for (QPushButton *button : {bORC, bSCO, bFlags, bCancel})
        button->setAutoDefault(false);
    bOK->setDefault(true);

    new FlagPicker(m_context.editor, bFlags, cmbArgs);
    connect(bORC, &QPushButton::clicked, this, [this] { Browse(FileKind::Orchestra, *txtORC); });
    connect(bSCO, &QPushButton::clicked, this, [this] { Browse(FileKind::Score, *txtSCO); });
    connect(bOK, &QPushButton::clicked, this, &frmManual::Run);
    connect(bCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmManual::LayOut()
{
    auto *folder = new QVBoxLayout(fraFolder);
    folder->addWidget(chkFolderComp);
    folder->addWidget(chkFolderDoc);

    auto *checks = new QVBoxLayout;
    checks->addWidget(chkCsound2);
    checks->addWidget(chkSaveFirst);
    checks->addStretch();

    auto *options = new QHBoxLayout;
    options->addLayout(checks, 1);
    options->addWidget(fraFolder, 1);

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(bOK, QDialogButtonBox::AcceptRole);
    buttons->addButton(bCancel, QDialogButtonBox::RejectRole);

    auto *all = new QGridLayout(this);
    int row = 0;
    const auto add = [all, &row](QLabel *label, QWidget *field, QPushButton *button) {
        all->addWidget(label, row, 0);
        all->addWidget(field, row, 1);
        all->addWidget(button, row, 2);
        ++row;
    };
    add(lblORC, txtORC, bORC);
    add(lblSCO, txtSCO, bSCO);
    add(lblArgs, cmbArgs, bFlags);
    all->addLayout(options, row++, 1, 1, 2);
    all->setRowStretch(row++, 1);
    all->addWidget(buttons, row, 0, 1, 3);
    all->setColumnStretch(1, 1);
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
    // The pair is one stop of the Tab key, at the option that holds; the toolkit sees to it from the first
    // focus on.
    (fields.documentFolder ? chkFolderComp : chkFolderDoc)->setFocusPolicy(Qt::ClickFocus);
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

bool frmManual::eventFilter(QObject *watched, QEvent *event)
{
    // A field that gets the focus selects its whole text: after the click that gives it the focus, which sets
    // the caret, and not when the window or a menu only gives it back.
    auto *field = qobject_cast<QLineEdit *>(watched);
    switch (event->type()) {
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::MouseFocusReason)
            m_clicked = field;
        else if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            field->selectAll();
        break;
    }
    case QEvent::MouseButtonRelease:
        if (field == m_clicked && !field->hasSelectedText())
            QMetaObject::invokeMethod(field, &QLineEdit::selectAll, Qt::QueuedConnection);
        m_clicked = nullptr;
        break;
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

RunDialogFields frmManual::Fields() const
{
    return {.orchestra = txtORC->text(),
            .score = txtSCO->text(),
            .flags = cmbArgs->currentText(),
            .csound2 = chkCsound2->isChecked(),
            .saveFirst = chkSaveFirst->isChecked(),
            .documentFolder = chkFolderDoc->isChecked()};
}

void frmManual::Browse(FileKind kind, QLineEdit &field)
{
    const EditorContext &editor = m_context.editor;
    const FileDialogAnswer answer =
        editor.desktop.OpenFileDialog(BrowseRequest(kind, field.text(), windowTitle(), editor));
    if (!answer.path.isEmpty())
        field.setText(answer.path);
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
