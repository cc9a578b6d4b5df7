// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/frmimages.h"

#include "run/ui/presetimages.h"
#include "shell/ui/form.h"
#include "shell/ui/icons.h"

#include <algorithm>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int GridWidth = 560; ///< at which the grid wraps, pixels
constexpr int ShownSide = 2 * PresetImageSide;
constexpr int Gap = 2; ///< between two images

} // namespace

frmImages::frmImages(int number, QWidget *parent)
    : QDialog(parent), lblName(Named(new QLabel(this), u"lblName"_s))
{
    setObjectName(u"frmImages"_s);
    setWindowTitle(ProgramCaption(u"Pick an image"_s));
    lblName->setTextFormat(Qt::PlainText);

    LoadImages();
    const int count = int(Img.size());
    Highlight(std::clamp(number - FirstPresetImage, 0, count) % std::max(count, 1));
}

void frmImages::LoadImages()
{
    auto *grid = new QGridLayout;
    grid->setSpacing(Gap);
    int columns = 1;
    for (int number = FirstPresetImage; number < PresetImagesEnd(); ++number) {
        const int row = number - FirstPresetImage;
        const QString name = PresetImageName(number);
        auto *image = Named(new IconView(this, ShownSide), u"Img_"_s + QString::number(row), name);
        image->setToolTip(name);
        image->setFocusPolicy(Qt::StrongFocus);
        image->setMouseTracking(true);
        image->SetIcon(Icons::LoadImage(number));
        image->SetHighlighted(false);
        image->installEventFilter(this);
        if (row == 0)
            columns = std::max(1, (GridWidth + Gap) / (image->sizeHint().width() + Gap));
        grid->addWidget(image, row / columns, row % columns);
        Img.push_back(image);
    }

    auto *all = new QVBoxLayout(this);
    all->addLayout(grid);
    all->addWidget(lblName);
    all->setSizeConstraint(QLayout::SetFixedSize);
}

void frmImages::Highlight(int row)
{
    if (row < 0 || row >= int(Img.size()) || row == m_row)
        return;
    if (m_row >= 0)
        Img[std::size_t(m_row)]->SetHighlighted(false);
    m_row = row;
    IconView *image = Img[std::size_t(row)];
    image->SetHighlighted(true);
    image->setFocus();
    lblName->setText(PresetImageName(row + FirstPresetImage));
}

void frmImages::Pick(int row)
{
    if (row < 0)
        return;
    m_picked = row + FirstPresetImage;
    accept();
}

bool frmImages::eventFilter(QObject *watched, QEvent *event)
{
    const auto found = std::find(Img.begin(), Img.end(), watched);
    if (found != Img.end()) {
        const int row = int(found - Img.begin());
        switch (event->type()) {
        case QEvent::MouseMove: // not Enter: the dialog may open below a mouse that nobody touches
        case QEvent::FocusIn:
            Highlight(row);
            break;
        case QEvent::MouseButtonRelease: {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            if (mouse->button() == Qt::LeftButton && (*found)->rect().contains(mouse->position().toPoint()))
                Pick(row);
            return true;
        }
        default:
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmImages::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Left:
        Highlight(m_row - 1);
        break;
    case Qt::Key_Down:
    case Qt::Key_Right:
        Highlight(m_row + 1);
        break;
    case Qt::Key_Home:
        Highlight(0);
        break;
    case Qt::Key_End:
        Highlight(int(Img.size()) - 1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Pick(m_row);
        break;
    default:
        QDialog::keyPressEvent(event);
    }
}

} // namespace zelvane
