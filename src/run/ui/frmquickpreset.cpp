// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmquickpreset.h"

#include "platform/ui/digitkey.h"
#include "run/presetbuttons.h"
#include "run/presetrun.h"
#include "run/quickpreset.h"
#include "run/ui/presetimages.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/ui/form.h"
#include "shell/ui/icons.h"
#include "shell/ui/leftdoubleclick.h"
#include "shell/ui/plaintooltip.h"

#include <algorithm>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int ListWidth = 44;   ///< in characters
constexpr int ListRows = 12;    ///< shown without scrolling
constexpr int TooltipLines = 2; ///< room for the description
constexpr int LongestName = 60; ///< of a file name before it is cut in the middle, in characters

} // namespace

frmQuickPreset::frmQuickPreset(const RunContext &context, QWidget *parent)
    : QDialog(parent),
      m_context(context),
      lblFileName(Named(new QLabel(this), u"lblFileName"_s)),
      lstPreset(Named(new QListWidget(this), u"lstPreset"_s, u"Presets"_s)),
      lblTooltip(Named(new QLabel(this), u"lblTooltip"_s)),
      imgBitmap(Named(new IconView(this), u"imgBitmap"_s, u"Image of the preset"_s)),
      cmdOK(Named(new QPushButton(u"OK"_s, this), u"cmdOK"_s)),
      cmdEdit(Named(new QPushButton(u"&Edit..."_s, this), u"cmdEdit"_s)),
      cmdCancel(Named(new QPushButton(u"Cancel"_s, this), u"cmdCancel"_s))
{
    setObjectName(u"frmQuickPreset"_s);
    setWindowTitle(QuickPresetCaption());
    BuildControls();
    LayOut();
    Guard([this] { FillList(); });
    lstPreset->setFocus();
}

void frmQuickPreset::BuildControls()
{
    lblFileName->setTextFormat(Qt::PlainText);
    const QString line = QuickPresetFileLine(m_context.editor);
    lblFileName->setText(fontMetrics().elidedText(line, Qt::ElideMiddle, CharacterWidth(*this, LongestName)));
    lblFileName->setAccessibleName(line);
    lblFileName->setToolTip(PlainToolTip(m_context.editor.document.CurrentFile));
    lstPreset->setUniformItemSizes(true);
    lblTooltip->setTextFormat(Qt::PlainText);
    lblTooltip->setWordWrap(true);
    lblTooltip->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    imgBitmap->setFrameShape(QFrame::NoFrame);
    cmdOK->setToolTip(u"Run the preset. With Ctrl: confirm macros; with Alt: edit the preset"_s);
    cmdEdit->setToolTip(u"Open the document in the editor"_s);

    connect(lstPreset, &QListWidget::currentRowChanged, this, [this] { ShowSelected(); });
    OnlyLeftDoubleClicks(*lstPreset);
    connect(lstPreset, &QListWidget::itemDoubleClicked, this, &frmQuickPreset::RunSelected);
    connect(cmdOK, &QPushButton::clicked, this, &frmQuickPreset::RunSelected);
    connect(cmdEdit, &QPushButton::clicked, this, &frmQuickPreset::Edit);
}

void frmQuickPreset::LayOut()
{
    const QFontMetrics metrics = fontMetrics();
    lstPreset->setMinimumSize(CharacterWidth(*this, ListWidth), metrics.lineSpacing() * ListRows);
    // Its first line stands beside the middle of the image.
    const int above = std::max(0, (imgBitmap->sizeHint().height() - metrics.height()) / 2);
    lblTooltip->setContentsMargins(0, above, 0, 0);
    lblTooltip->setMinimumHeight(metrics.lineSpacing() * TooltipLines + above);

    auto *preview = new QHBoxLayout;
    preview->addWidget(imgBitmap, 0, Qt::AlignTop);
    preview->addWidget(lblTooltip, 1);

    auto *fields = new QVBoxLayout;
    fields->addWidget(lblFileName);
    fields->addWidget(lstPreset, 1);
    fields->addLayout(preview);

    auto *all = new QHBoxLayout(this);
    all->addLayout(fields, 1);
    all->addLayout(Column({cmdOK, cmdCancel, cmdEdit}));
    SetEnterAndEscape(*this, cmdOK, cmdCancel);
    SetTabOrder({lstPreset, cmdOK, cmdCancel, cmdEdit});
}

void frmQuickPreset::FillList()
{
    lstPreset->addItems(PresetStore(m_context.editor.settings).ReadPresetList());
    lstPreset->setCurrentRow(lstPreset->count() > 0 ? 0 : -1);
    ShowSelected();
}

void frmQuickPreset::ShowSelected()
{
    const QListWidgetItem *item = lstPreset->currentItem();
    cmdOK->setEnabled(item != nullptr);
    const QuickPresetPreview preview =
        item ? PreviewOf(item->text(), m_context.editor) : QuickPresetPreview();
    lblTooltip->setText(preview.tooltip);
    imgBitmap->SetIcon(preview.imageNumber == 0 ? QIcon() : Icons::LoadImage(preview.imageNumber));
}

void frmQuickPreset::RunRow(int row, bool confirm, bool edit)
{
    const QListWidgetItem *item = lstPreset->item(row);
    if (!item)
        return;
    Guard([&] { RunPreset(item->text(), confirm, edit, m_context); });
    accept();
}

void frmQuickPreset::RunSelected()
{
    const Desktop &desktop = m_context.editor.desktop;
    RunRow(lstPreset->currentRow(), desktop.IsKeyDown(KeyCode::Ctrl), desktop.IsKeyDown(KeyCode::Alt));
}

void frmQuickPreset::Edit()
{
    Guard([this] { EditFromChooser(m_context.editor); });
    accept();
}

void frmQuickPreset::keyPressEvent(QKeyEvent *event)
{
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    const bool alt = event->modifiers() & Qt::AltModifier;
    const int key = event->key();
    if (const int digit = DigitKey(*event); digit >= 0) {
        if (const int row = PresetRowOfDigit(digit, ctrl, alt); row >= 0) {
            if (!event->isAutoRepeat())
                RunRow(row, false, false);
            return;
        }
    }
    // The toolkit gives the default button the plain key only.
    if ((ctrl || alt) && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
        RunRow(lstPreset->currentRow(), ctrl, alt);
        return;
    }
    QDialog::keyPressEvent(event);
}

void frmQuickPreset::Guard(const std::function<void()> &work)
{
    Guarded(m_context.editor.desktop, work);
}

} // namespace zelvane
