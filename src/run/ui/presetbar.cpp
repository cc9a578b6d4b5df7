// SPDX-License-Identifier: GPL-3.0-or-later
#include "run/ui/presetbar.h"

#include "platform/ui/fileicon.h"
#include "run/presetbar.h"
#include "run/presetrun.h"
#include "run/presetstore.h"
#include "shell/editorcontext.h"
#include "shell/ui/commands.h"
#include "shell/ui/icons.h"

#include <QContextMenuEvent>
#include <QImageReader>
#include <QMenu>
#include <QTextDocument>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int ImageSide = 16;
constexpr QRgb MaskColour = qRgb(192, 192, 192); ///< light grey: seen through

QString Escaped(QString text)
{
    return text.replace(u'&', u"&&"_s);
}

/// A text of the user's, shown as it stands even where it looks like marked-up text.
QString PlainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? u"<qt>"_s + text.toHtmlEscaped() + u"</qt>"_s : text;
}

/// An icon file as it is, any other picture without its light grey; null when the file cannot be read as a
/// picture.
QIcon FileImage(const QString &path)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    QImage image;
    if (reader.canRead() && (reader.format() == "ico" || reader.format() == "cur")) {
        // One file holds several sizes: the smallest that needs no magnifying is the sharpest.
        for (int i = 0; i < std::max(1, reader.imageCount()); ++i) {
            if (!reader.jumpToImage(i) && i > 0)
                break;
            const QImage frame = reader.read();
            const bool better = image.isNull() ||
                                (image.width() < ImageSide && frame.width() > image.width()) ||
                                (frame.width() >= ImageSide && frame.width() < image.width());
            if (!frame.isNull() && better)
                image = frame;
        }
    } else {
        image = reader.read().convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                if ((line[x] | 0xFF000000U) == MaskColour)
                    line[x] = 0;
            }
        }
    }
    if (image.isNull())
        return {};
    QIcon icon;
    for (const int scale : {1, 2}) {
        const int side = ImageSide * scale;
        QPixmap pixmap = QPixmap::fromImage(image.scaled(
            side, side, Qt::IgnoreAspectRatio,
            image.width() % side == 0 && image.width() == image.height() ? Qt::FastTransformation
                                                                         : Qt::SmoothTransformation));
        pixmap.setDevicePixelRatio(scale);
        icon.addPixmap(pixmap);
    }
    return icon;
}

/// A built-in image, a picture file, else the desktop's icon of the command, else the default image.
QIcon ButtonIcon(const PresetButton &button)
{
    QIcon icon;
    if (button.image.form == PresetImage::Form::BuiltIn)
        icon = Icons::LoadImage(button.image.number);
    else if (button.image.form == PresetImage::Form::File)
        icon = FileImage(button.image.file);
    if (icon.isNull() && button.image.form != PresetImage::Form::BuiltIn)
        icon = SmallFileIcon(button.command);
    return icon.isNull() ? Icons::Load(u"preset"_s) : icon;
}

} // namespace

PresetBar::PresetBar(const RunContext &context, Commands &commands, QMenu &presets, QMenu &popup,
                     QWidget *parent)
    : QToolBar(parent), m_context(context), m_commands(commands), m_presets(presets), m_popup(popup)
{
    setObjectName(u"tbPresets"_s);
    setIconSize(QSize(ImageSide, ImageSide));
    m_commands.Bind(u"mnuPreset"_s, [this](int row) {
        RunPreset(RowKey(row), m_context.editor.desktop.IsKeyDown(KeyCode::Ctrl), false, m_context);
    });
    m_commands.Bind(u"mnuPresetPopupItem"_s, [this](int entry) {
        const QString key = m_popup.property("tag").toString();
        RunPreset(key, entry == 1, entry == 3, m_context);
    });
    for (QAction *action : m_presets.actions()) {
        if (action->objectName() == u"linea1"_s)
            action->setVisible(false);
    }
}

void PresetBar::PresetsButtons()
{
    const QStringList presets = PresetStore(m_context.editor.settings).ReadPresetList();
    RemoveButtons();
    if (!presets.isEmpty()) {
        setUpdatesEnabled(false);
        for (const QString &key : presets)
            AddPresetButton(key);
        setUpdatesEnabled(true);
        BuildMenuRows(presets);
    }
    Q_EMIT Rebuilt();
}

void PresetBar::RemoveButtons()
{
    // They belong to the bar, which only lets go of them when it is cleared. One of them may be what runs
    // now.
    const QList<QAction *> buttons = actions();
    clear();
    for (QAction *button : buttons) {
        button->setParent(nullptr);
        button->deleteLater();
    }
}

void PresetBar::AddPresetButton(const QString &key)
{
    const auto button = ButtonOf(key, m_context);
    if (!button)
        return;
    if (button->newGroup)
        addSeparator();
    QAction *action = addAction(Escaped(key));
    action->setObjectName(objectName() + u'_' + key);
    action->setData(key);
    // Set apart from the text, from which the toolkit would take the dots away.
    action->setIconText(Escaped(button->label));
    action->setToolTip(PlainToolTip(button->tooltip));
    action->setIcon(ButtonIcon(*button));
    connect(action, &QAction::triggered, this, [this, key] {
        const Desktop &desktop = m_context.editor.desktop;
        m_commands.Guard([&] {
            RunPreset(key, desktop.IsKeyDown(KeyCode::Ctrl), desktop.IsKeyDown(KeyCode::Alt), m_context);
        });
    });
    auto *face = qobject_cast<QToolButton *>(widgetForAction(action));
    face->setObjectName(action->objectName());
    face->setAccessibleName(key);
    face->setAutoRaise(m_flat);
}

void PresetBar::BuildMenuRows(const QStringList &presets)
{
    QAction *line = nullptr;
    for (QAction *action : m_presets.actions()) {
        if (action->objectName() == u"linea1"_s)
            line = action;
    }
    if (line)
        line->setVisible(true);
    for (int row = 0; row < int(presets.size()); ++row) {
        QAction *action = m_commands.Action(u"mnuPreset"_s, row);
        if (!action) {
            action = new QAction(&m_presets);
            action->setObjectName(u"mnuPreset_"_s + QString::number(row));
            m_presets.insertAction(line, action);
            m_commands.AddAction(u"mnuPreset"_s, row, action);
        }
        action->setText(PresetMenuCaption(Escaped(presets[row]), row));
        action->setData(presets[row]);
    }
    for (int row = m_rows - 1; row >= int(presets.size()); --row) {
        QAction *action = m_commands.Action(u"mnuPreset"_s, row);
        m_commands.RemoveAction(u"mnuPreset"_s, row);
        delete action;
    }
    m_rows = int(presets.size());
}

void PresetBar::ShowLabels(bool shown)
{
    setToolButtonStyle(shown ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
}

void PresetBar::SetFlat(bool flat)
{
    m_flat = flat;
    for (QToolButton *face : findChildren<QToolButton *>())
        face->setAutoRaise(flat);
}

QString PresetBar::RowKey(int row) const
{
    const QAction *action = m_commands.Action(u"mnuPreset"_s, row);
    return action ? action->data().toString() : QString();
}

void PresetBar::RunRow(int row)
{
    const QString key = RowKey(row);
    if (!key.isEmpty())
        m_commands.Guard([&] { RunPreset(key, false, false, m_context); });
}

QString PresetBar::ButtonAt(const QPoint &point) const
{
    const QAction *action = actionAt(point);
    return action ? action->data().toString() : QString();
}

void PresetBar::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    const QString key = ButtonAt(event->pos());
    if (key.isEmpty())
        m_presets.exec(event->globalPos());
    else
        Popup(key, event->globalPos());
}

void PresetBar::Popup(const QString &key, const QPoint &at)
{
    m_popup.setProperty("tag", key);
    const QStringList captions = PresetPopupCaptions(Escaped(key));
    const int entries[] = {0, 1, 3};
    for (int i = 0; i < 3; ++i)
        m_commands.Action(u"mnuPresetPopupItem"_s, entries[i])->setText(captions[i]);
    m_popup.exec(at);
    m_popup.setProperty("tag", QString());
}

} // namespace zelvane
