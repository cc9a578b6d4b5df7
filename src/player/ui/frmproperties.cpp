// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/frmproperties.h"

#include "shell/ui/form.h"

#include <algorithm>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LeastCharacters = 30;
constexpr int MostCharacters = 70;

} // namespace

frmProperties::frmProperties(const QString &name, const std::vector<FileProperty> &properties,
                             QWidget *parent)
    : QDialog(parent), cmdClose(Named(new QPushButton(u"Close"_s, this), u"cmdClose"_s))
{
    setObjectName(u"frmProperties"_s);
    setWindowTitle(ProgramCaption(QString(name).replace(u"[*]"_s, u"[*][*]"_s) + u" Properties"_s));

    qsizetype longest = LeastCharacters;
    for (const FileProperty &property : properties)
        longest = std::max(longest, property.value.size() + 2);
    FormGrid form;
    for (const FileProperty &property : properties) {
        auto *value = Named(new QLineEdit(this), u"txt"_s + QString(property.caption).remove(u' '));
        value->setReadOnly(true);
        value->setFrame(false);
        value->setMinimumWidth(CharacterWidth(*value, int(std::min<qsizetype>(longest, MostCharacters))));
        ShowFromStart(*value, property.value);
        form.Add({.caption = property.caption + u':', .field = value});
    }

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdClose, QDialogButtonBox::RejectRole);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    SetEnterAndEscape(*this, cmdClose, cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form.Layout());
    layout->addWidget(buttons);
    cmdClose->setFocus();
}

} // namespace zelvane
