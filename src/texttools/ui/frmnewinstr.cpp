// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmnewinstr.h"

#include "platform/numbers.h"
#include "shell/editorcontext.h"
#include "shell/ui/form.h"
#include "shell/ui/spinner.h"
#include "texttools/inserts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr SpinRange Instruments{.least = 1, .most = 32767};

} // namespace

frmNewInstr::frmNewInstr(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : InsertDialog(editor, steps, parent, u"frmNewInstr"_s, u"Instrument"_s),
      txtNumber(Named(new QLineEdit(u"1"_s, this), u"txtNumber"_s)),
      txtName(Named(new QLineEdit(this), u"txtName"_s)),
      chkEndofFile(Named(new QCheckBox(u"Insert at end of file"_s, this), u"chkEndofFile"_s))
{
    txtNumber->selectAll();
    chkEndofFile->setToolTip(u"If not checked instrument will be inserted at current caret position."_s);

    FormGrid form;
    form.Add({.caption = u"&Instrument #:"_s,
              .field = txtNumber,
              .hint = u"Instrument number."_s,
              .spinner = NewSpinner(editor.desktop, txtNumber, u"VScroll1"_s, Instruments)});
    form.Add({.caption = u"Instrument &name:"_s, .field = txtName});
    form.AddAcross(chkEndofFile);
    LayOut(form.Layout());
}

void frmNewInstr::Insert()
{
    if (Val(txtNumber->text()) <= 0) {
        Refuse(u"Specify an Instrument number or press Cancel."_s, txtNumber);
        return;
    }
    QString text = InstrumentText(txtNumber->text(), txtName->text());
    if (chkEndofFile->isChecked()) {
        m_editor.text.SetSelection(m_editor.text.Length(), -1);
        text.prepend(u"\r\n"_s);
    }
    InsertAndClose(text);
}

} // namespace zelvane
