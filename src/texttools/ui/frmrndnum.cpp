// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmrndnum.h"

#include "platform/numbers.h"
#include "shell/editorcontext.h"
#include "shell/settings.h"
#include "shell/ui/form.h"
#include "shell/ui/spinner.h"
#include "texttools/insertkeys.h"
#include "texttools/inserts.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QString>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int MostDigits = 15; ///< that a number has
constexpr SpinRange Ends{.least = -1e9, .most = 1e9};
constexpr SpinRange Digits{.least = 0, .most = MostDigits};

} // namespace

frmRndNum::frmRndNum(EditorContext &editor, const DocumentSteps &steps, QWidget *parent)
    : InsertDialog(editor, steps, parent, u"frmRndNum"_s, u"Random Number"_s),
      txtMin(Named(new QLineEdit(Kept(Keys::RandomMin), this), u"txtMin"_s)),
      txtMax(Named(new QLineEdit(Kept(Keys::RandomMax), this), u"txtMax"_s)),
      txtDigits(Named(new QLineEdit(Kept(Keys::RandomDigits), this), u"txtDigits"_s))
{
    for (QLineEdit *field : {txtMin, txtMax, txtDigits})
        SelectOnFocus(field);
    txtMin->selectAll(); // it has the keyboard at first, which comes with the window

    FormGrid form;
    form.Add({.caption = u"&Min:"_s,
              .field = txtMin,
              .spinner = NewSpinner(editor.desktop, txtMin, u"VScroll1"_s, Ends)});
    form.Add({.caption = u"Ma&x:"_s,
              .field = txtMax,
              .spinner = NewSpinner(editor.desktop, txtMax, u"VScroll2"_s, Ends)});
    form.Add({.caption = u"&Digits after decimal:"_s,
              .field = txtDigits,
              .spinner = NewSpinner(editor.desktop, txtDigits, u"VScroll3"_s, Digits)});
    LayOut(form.Layout());
}

void frmRndNum::Insert()
{
    for (const QLineEdit *field : {txtMin, txtMax, txtDigits}) {
        if (!IsNumeric(field->text()))
            return;
    }
    if (ToNumber(txtDigits->text()) > MostDigits)
        txtDigits->setText(QString::number(MostDigits));
    const QString number =
        RandomNumber(QRandomGenerator::global()->generateDouble(), ToNumber(txtMin->text()),
                     ToNumber(txtMax->text()), ToInteger<qint32>(ToNumber(txtDigits->text())));
    InsertAndClose(number);
    // Behind the insertion: where the fields cannot be kept, a second try would insert twice.
    KeepFields();
}

void frmRndNum::KeepFields()
{
    m_editor.settings.InOneStep([this] {
        m_editor.settings.SaveStoredText(Keys::RandomMin, txtMin->text());
        m_editor.settings.SaveStoredText(Keys::RandomMax, txtMax->text());
        m_editor.settings.SaveStoredText(Keys::RandomDigits, txtDigits->text());
    });
}

} // namespace zelvane
