// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/frmnumctrl.h"

#include "instruments/instrumentkeys.h"
#include "instruments/numericediting.h"
#include "instruments/ui/numberslider.h"
#include "platform/desktop.h"
#include "platform/numbers.h"
#include "platform/ui/textcontrol.h"
#include "shell/editorcontext.h"
#include "shell/errorreport.h"
#include "shell/settings.h"
#include "shell/ui/form.h"
#include "shell/ui/screenplace.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPoint>
#include <QRect>
#include <QScopeGuard>
#include <QSignalBlocker>
#include <QString>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QtGlobal>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int LinesHigh = 14; ///< the slider's height, in lines of text

/// What the slider shows at most: more ticks than pixels are a bar, and take long to draw.
constexpr qint64 MostTicks = 1000;

int TickInterval(const NumericSlider &setup)
{
    qint64 interval = setup.tickFrequency;
    while ((qint64(setup.maximum) - setup.minimum) / interval > MostTicks)
        interval *= 10;
    return int(interval);
}

} // namespace

frmNumCtrl::frmNumCtrl(EditorContext &editor, const DocumentSteps &steps, TextControl &text, const QPoint &at,
                       QWidget *parent)
    : QDialog(parent, Qt::Popup),
      m_editor(editor),
      m_steps(steps),
      m_text(text),
      m_setup(SetUpNumericSlider(text.SelectedText(), editor.settings.Flag(Keys::SliderNegative))),
      slNum(Named(new NumberSlider(this), u"slNum"_s, u"Number"_s))
{
    setObjectName(u"frmNumCtrl"_s);
    setWindowTitle(u"Number"_s);
    slNum->setRange(m_setup.minimum, m_setup.maximum);
    slNum->setTickPosition(QSlider::TicksBothSides);
    slNum->setTickInterval(TickInterval(m_setup));
    slNum->setPageStep(m_setup.largeChange);
    slNum->setSingleStep(m_setup.smallChange);
    slNum->setValue(m_setup.value);
    slNum->setProperty("Tag", text.SelectedText());
    slNum->setMinimumHeight(LinesHigh * fontMetrics().lineSpacing());
    connect(slNum, &QSlider::valueChanged, this, &frmNumCtrl::Move);
    connect(slNum, &NumberSlider::Released, this,
            [this] { Guarded(m_editor.desktop, [this] { Release(); }); });
    auto *all = new QVBoxLayout(this);
    all->addWidget(slNum, 0, Qt::AlignHCenter);
    slNum->setFocus();

    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive)
            reject();
    });
    adjustSize();
    move(OnScreen(QRect(at, size()), UsableScreens()).topLeft());
}

void frmNumCtrl::Move()
{
    m_moved = true;
    const bool whole = m_editor.desktop.IsKeyDown(KeyCode::Ctrl);
    ShowStatus(SliderStatus(m_text.SelectedText(), NumberOfSlider(m_setup.fine, slNum->value(), whole)));
}

void frmNumCtrl::ShowStatus(const QString &status)
{
    m_editor.status.Show(status);
    slNum->setAccessibleDescription(status);
}

void frmNumCtrl::Release()
{
    if (!m_moved)
        return;
    m_moved = false;
    // Asked for once: the key may come up meanwhile.
    const bool whole = m_editor.desktop.IsKeyDown(KeyCode::Ctrl);
    const double number = NumberOfSlider(m_setup.fine, slNum->value(), whole);
    const QString status = SliderStatus(m_text.SelectedText(), number);
    {
        m_text.BeginCommand();
        const auto end = qScopeGuard([this] { m_text.EndCommand(); });
        ReplaceNumber(m_editor, m_steps, NumberText(number));
    }
    if (m_setup.fine && whole) {
        const QSignalBlocker quiet(slNum); // not a move of the user's
        slNum->setValue(SnappedSliderValue(slNum->value()));
    }
    // Selecting the number has told of its length; the wheel moves and lets go in one.
    ShowStatus(status);
}

void frmNumCtrl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.lineWidth = style()->pixelMetric(QStyle::PM_MenuPanelWidth, &frame, this);
    style()->drawPrimitive(QStyle::PE_FrameMenu, &frame, &painter, this);
}

} // namespace zelvane
