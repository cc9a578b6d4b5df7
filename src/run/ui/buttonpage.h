// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "run/preseteditor.h"
#include "run/runcontext.h"

#include <QList>
#include <QWidget>

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace zelvane
{

class IconView;

/// The page of the preset editor for the button of the Presets bar: whether there is one, its texts and its
/// image.
class ButtonPage : public QWidget
{
    Q_OBJECT

public:
    explicit ButtonPage(const RunContext &context);

    /// Puts what the page shows into the fields of a preset.
    void Put(PresetFields &fields) const;
    void ShowFields(const PresetFields &fields);
    /// Shows the desktop's icon of a command, as the button does that has no image of its own.
    void ShowIconOf(const QString &command);
    /// Takes a built-in image instead of a picture file.
    void TakeImage(int number);
    /// Shows a picture file in the preview. @return false, with an empty preview, when it cannot be loaded
    bool LoadPicture(const QString &file);

    /// In the order of the Tab key.
    QList<QWidget *> Controls() const;

private:
    void LayOut();
    void Connect();
    void BitmapChanged();
    void PickImage();

    RunContext m_context;
    int m_imageNumber = 0;

    QCheckBox *chkCreateButton;
    QCheckBox *chkNewGroup;
    QLineEdit *txtName;
    QLineEdit *txtTooltip;
    QLineEdit *TxtBitmap;
    QPushButton *bBitmap;
    QPushButton *bImages;
    IconView *imgBitmap;
};

} // namespace zelvane
