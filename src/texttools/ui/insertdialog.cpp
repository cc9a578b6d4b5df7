// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/insertdialog.h"

#include "platform/numbers.h"
#include "platform/ui/onelinefield.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/insertcoloured.h"
#include "shell/settings.h"
#include "shell/ui/form.h"

#include <QDialogButtonBox>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

InsertDialog::InsertDialog(EditorContext &editor, const DocumentSteps &steps, QWidget *parent,
                           const QString &name, const QString &caption)
    : QDialog(parent), m_editor(editor), m_steps(steps)
{
    setObjectName(name);
    setWindowTitle(caption);
}

void InsertDialog::LayOut(QLayout *fields)
{
    for (QLineEdit *field : findChildren<QLineEdit *>())
        KeepOneLine(*field);
    bOK = Named(new QPushButton(u"Insert"_s, this), u"bOK"_s);
    bCancel = Named(new QPushButton(u"Cancel"_s, this), u"bCancel"_s);
    auto *all = new QVBoxLayout(this);
    all->addLayout(fields);
    all->addStretch();
    all->addWidget(
        ButtonBox(*this, bOK, bCancel, [this] { Guarded(m_editor.desktop, [this] { Insert(); }); }));
}

void InsertDialog::Refuse(const QString &warning, QLineEdit *field)
{
    m_editor.desktop.MessageBox({.text = warning, .icon = BoxIcon::Warning});
    field->setFocus(Qt::OtherFocusReason);
}

void InsertDialog::InsertAndClose(const QString &text)
{
    InsertColoured(m_editor, m_steps, text);
    accept();
}

QString InsertDialog::Kept(const NumberKey &key) const
{
    return m_editor.settings.StoredText(key).value_or(NumberText(key.fallback));
}

} // namespace zelvane
