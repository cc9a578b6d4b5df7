// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/frmpmapping.h"

#include "instruments/mapping.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/form.h"
#include "shell/ui/spinner.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr SpinRange Instruments{.least = 1, .most = 32767};

} // namespace

frmPMapping::frmPMapping(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_steps(steps),
      txtNumber(Named(new QLineEdit(u"1"_s, this), u"txtNumber"_s)),
      chkComment(Named(new QCheckBox(u"Add descriptive &comments"_s, this), u"chkComment"_s)),
      chkAsk(Named(new QCheckBox(u"Ask missing variable names"_s, this), u"chkAsk"_s))
{
    setObjectName(u"frmPMapping"_s);
    setWindowTitle(u"p-Fields Mapping"_s);
    txtNumber->selectAll();
    chkComment->setToolTip(u"Uses the parameter description field."_s);
    chkAsk->setToolTip(u"Display an input box if the variable name has not been specified."_s);

    FormGrid form;
    form.Add({.caption = u"&Instrument #:"_s,
              .field = txtNumber,
              .hint = u"Instrument number."_s,
              .spinner = NewSpinner(editor.desktop, txtNumber, u"VScroll1"_s, Instruments)});
    form.AddAcross(chkComment);
    form.AddAcross(chkAsk);

    auto *bOK = Named(new QPushButton(u"OK"_s, this), u"bOK"_s);
    auto *bCancel = Named(new QPushButton(u"Cancel"_s, this), u"bCancel"_s);
    auto *all = new QVBoxLayout(this);
    all->addLayout(form.Layout());
    all->addStretch();
    all->addWidget(
        ButtonBox(*this, bOK, bCancel, [this] { Guarded(m_editor.desktop, [this] { Confirm(); }); }));
}

void frmPMapping::Confirm()
{
    const MappingResult result = MapParameters(
        m_editor, m_steps,
        {.number = txtNumber->text(), .comments = chkComment->isChecked(), .ask = chkAsk->isChecked()});
    if (result == MappingResult::Finished) {
        accept();
    } else if (result == MappingResult::NumberIsMissing) {
        txtNumber->selectAll();
        txtNumber->setFocus(Qt::OtherFocusReason);
    }
}

} // namespace zelvane
