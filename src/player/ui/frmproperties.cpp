// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/ui/frmproperties.h"

#include "platform/ui/plaincaption.h"
#include "shell/ui/form.h"

#include <algorithm>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LeastCharacters = 30;
constexpr int MostCharacters = 90;
constexpr int Margin = 16; ///< pixels beside a text in its field

} // namespace

frmProperties::frmProperties(const QString &name, const std::vector<FileProperty> &properties,
                             QWidget *parent)
    : QDialog(parent), cmdClose(Named(new QPushButton(u"Close"_s, this), u"cmdClose"_s))
{
    setObjectName(u"frmProperties"_s);
    setWindowTitle(ProgramCaption(PlainCaption(name) + u" Properties"_s));

    int width = CharacterWidth(*this, LeastCharacters);
    for (const FileProperty &property : properties)
        width = std::max(width, fontMetrics().horizontalAdvance(property.value) + Margin);
    width = std::min(width, CharacterWidth(*this, MostCharacters));
    FormGrid form;
    for (const FileProperty &property : properties) {
        auto *value = Named(new QLineEdit(this), u"txt"_s + QString(property.caption).remove(u' '));
        value->setReadOnly(true);
        value->setFrame(false);
        value->setMinimumWidth(width);
        QPalette colours = value->palette();
        colours.setBrush(QPalette::Base, Qt::transparent); // nothing can be typed here
        value->setPalette(colours);
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
