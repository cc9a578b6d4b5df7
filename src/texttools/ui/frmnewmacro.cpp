// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmnewmacro.h"

#include "shell/ui/form.h"
#include "texttools/inserts.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 40; ///< characters

} // namespace

frmNewMacro::frmNewMacro(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : InsertDialog(editor, steps, parent, u"frmNewMacro"_s, u"Macro Definition"_s),
      txtName(Named(new QLineEdit(this), u"txtName"_s)),
      txtArgs(Named(new QLineEdit(this), u"txtArgs"_s)),
      txtReplacement(Named(new QLineEdit(this), u"txtReplacement"_s))
{
    txtReplacement->setMinimumWidth(CharacterWidth(*this, FieldWidth));

    FormGrid form;
    form.Add({.caption = u"Macro &name:"_s, .field = txtName});
    form.Add(
        {.caption = u"&Arguments:"_s,
         .field = txtArgs,
         .hint = u"Arguments are separated by straight single quote characters. Do not type parenthesis."_s});
    form.Add({.caption = u"&Replacement text:"_s, .field = txtReplacement});
    LayOut(form.Layout());
    txtReplacement->setValidator(nullptr); // what a macro stands for may have several lines
}

void frmNewMacro::Insert()
{
    if (txtName->text().isEmpty())
        Refuse(u"Specify a Macro name or press Cancel."_s, txtName);
    else if (txtReplacement->text().contains(u'#'))
        Refuse(u"Replacement text contains a #."_s, txtReplacement);
    else
        InsertAndClose(MacroText(txtName->text(), txtArgs->text(), txtReplacement->text()));
}

} // namespace zelvane
