// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/buttonpage.h"

#include "platform/ui/fileicon.h"
#include "run/macroexpansion.h"
#include "run/ui/frmimages.h"
#include "run/ui/presetimages.h"
#include "shell/editorcontext.h"
#include "shell/ui/form.h"
#include "shell/ui/icons.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int FieldWidth = 52; ///< of the text fields, in characters

} // namespace

ButtonPage::ButtonPage(const RunContext &context)
    : m_context(context),
      chkCreateButton(Named(new QCheckBox(u"Create &button"_s), u"chkCreateButton"_s)),
      chkNewGroup(Named(new QCheckBox(u"&Start new group"_s), u"chkNewGroup"_s)),
      txtName(Named(new QLineEdit, u"txtName"_s)),
      txtTooltip(Named(new QLineEdit, u"txtTooltip"_s)),
      TxtBitmap(Named(new QLineEdit, u"TxtBitmap"_s)),
      bBitmap(Named(new QPushButton(u"Browse..."_s), u"bBitmap"_s)),
      bImages(Named(new QPushButton(u"Pick a built-in image..."_s), u"bImages"_s)),
      imgBitmap(Named(new IconView, u"imgBitmap"_s, u"Preview of the image"_s))
{
    LayOut();
    Connect();
}

void ButtonPage::LayOut()
{
    chkCreateButton->setToolTip(u"Show a toolbar button for this preset"_s);
    chkNewGroup->setToolTip(u"Insert a separator before preset button"_s);
    imgBitmap->setToolTip(u"The image of the button"_s);
    txtName->setMinimumWidth(CharacterWidth(*txtName, FieldWidth));

    FormGrid form(this);
    form.AddUnder(Line({chkCreateButton, chkNewGroup}));
    form.Add({.caption = u"&Label:"_s,
              .field = txtName,
              .hint = u"Text appearing in the Presets Bar button labels. Should be reasonably short: max 10 "
                      "characters."_s});
    form.Add({.caption = u"&Tooltip:"_s, .field = txtTooltip, .hint = u"Presets Bar button tooltip text."_s});
    form.Add({.caption = u"&Bitmap:"_s,
              .field = TxtBitmap,
              .hint = u"Image should be 16x16 pixels otherwise will be resized. Mask color: Light gray R192 "
                      "G192 B192. Leave empty to use shell icon."_s,
              .button = bBitmap});
    form.AddUnder(Line({imgBitmap, bImages}));
    form.AddStretch();
}

void ButtonPage::Connect()
{
    connect(TxtBitmap, &QLineEdit::textChanged, this, &ButtonPage::BitmapChanged);
    connect(bBitmap, &QPushButton::clicked, this,
            [this] { PickFile(m_context.editor.desktop, BitmapRequest(TxtBitmap->text()), *TxtBitmap); });
    connect(bImages, &QPushButton::clicked, this, &ButtonPage::PickImage);
}

void ButtonPage::Put(PresetFields &fields) const
{
    fields.record.CreateButton = chkCreateButton->isChecked();
    fields.record.NewGroup = chkNewGroup->isChecked();
    fields.record.Name = txtName->text();
    fields.record.Tooltip = txtTooltip->text();
    fields.imageNumber = m_imageNumber;
    fields.bitmap = TxtBitmap->text();
}

void ButtonPage::ShowFields(const PresetFields &fields)
{
    chkCreateButton->setChecked(fields.record.CreateButton);
    chkNewGroup->setChecked(fields.record.NewGroup);
    ShowFromStart(*txtName, fields.record.Name);
    ShowFromStart(*txtTooltip, fields.record.Tooltip);
    ShowFromStart(*TxtBitmap, fields.bitmap);
    // Last: on the way here the changed field has shown its own idea of the image.
    m_imageNumber = fields.imageNumber;
    if (m_imageNumber != 0)
        imgBitmap->SetIcon(Icons::LoadImage(m_imageNumber));
    else
        LoadPicture(fields.bitmap);
}

void ButtonPage::ShowIconOf(const QString &command)
{
    if (TxtBitmap->text().isEmpty() && m_imageNumber == 0)
        imgBitmap->SetIcon(SmallFileIcon(ExpandStaticMacros(command, m_context)));
}

void ButtonPage::TakeImage(int number)
{
    TxtBitmap->clear();
    m_imageNumber = number;
    imgBitmap->SetIcon(Icons::LoadImage(number));
}

void ButtonPage::BitmapChanged()
{
    m_imageNumber = 0;
    LoadPicture(TxtBitmap->text());
}

bool ButtonPage::LoadPicture(const QString &file)
{
    const QIcon picture = FileImage(file);
    imgBitmap->SetIcon(picture);
    return !picture.isNull();
}

void ButtonPage::PickImage()
{
    frmImages picker(m_imageNumber, window());
    if (picker.exec() == QDialog::Accepted)
        TakeImage(picker.Picked());
}

QList<QWidget *> ButtonPage::Controls() const
{
    return {chkCreateButton, chkNewGroup, txtName, txtTooltip, TxtBitmap, bBitmap, bImages};
}

} // namespace zelvane
