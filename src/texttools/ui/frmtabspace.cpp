// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmtabspace.h"

#include "platform/ui/textcontrol.h"
#include "shell/errorreport.h"
#include "shell/ui/form.h"
#include "shell/ui/leftdoubleclick.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScopeGuard>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int DescriptionWidth = 52; ///< of the description and so of the dialog, in characters
constexpr int DescriptionLines = 4;  ///< what the longest description takes

} // namespace

frmTabSpace::frmTabSpace(EditorContext &editor, TextControl &text, QWidget *parent)
    : QDialog(parent),
      m_editor(editor),
      m_text(text),
      lstMode(Named(new QListWidget(this), u"lstMode"_s, u"Formatting algorythm"_s)),
      lblDesc(Named(new QLabel(this), u"lblDesc"_s, u"Description"_s)),
      lblTip(Named(new QLabel(this), u"lblTip"_s)),
      bOK(Named(new QPushButton(u"OK"_s, this), u"bOK"_s)),
      bCancel(Named(new QPushButton(u"Cancel"_s, this), u"bCancel"_s))
{
    setObjectName(u"frmTabSpace"_s);
    setWindowTitle(u"Formatting Algorythms"_s);
    BuildControls();
    LayOut();
}

void frmTabSpace::BuildControls()
{
    for (const FormattingAlgorithmText &row : FormattingAlgorithmTexts())
        lstMode->addItem(row.name);
    lstMode->setMinimumHeight(lstMode->sizeHintForRow(0) * lstMode->count() + 2 * lstMode->frameWidth());

    lblDesc->setWordWrap(true);
    lblDesc->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    lblDesc->setMinimumSize(CharacterWidth(*this, DescriptionWidth),
                            fontMetrics().lineSpacing() * DescriptionLines);

    lstMode->installEventFilter(this);
    connect(lstMode, &QListWidget::itemSelectionChanged, this, &frmTabSpace::ShowDescription);
    OnlyLeftDoubleClicks(*lstMode);
    connect(lstMode, &QListWidget::itemDoubleClicked, this, &frmTabSpace::Confirm);
}

void frmTabSpace::LayOut()
{
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblTip, 1);
    buttons->addWidget(ButtonBox(*this, bOK, bCancel, [this] { Confirm(); }));

    auto *all = new QVBoxLayout(this);
    all->addWidget(Named(LabelFor(lstMode, u"Choose a formatting algorythm:"_s), u"lblMode"_s));
    all->addWidget(lstMode, 1);
    all->addWidget(lblDesc);
    all->addLayout(buttons);
}

bool frmTabSpace::eventFilter(QObject *watched, QEvent *event)
{
    // The toolkit takes the first row as the place of the keyboard before it is chosen, and moves on from
    // there.
    if (watched == lstMode && event->type() == QEvent::KeyPress && lstMode->selectedItems().isEmpty()) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Home) {
            lstMode->setCurrentRow(0);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmTabSpace::ShowDescription()
{
    const auto selected = lstMode->selectionModel()->selectedRows();
    lblDesc->setText(selected.isEmpty()
                         ? QString()
                         : FormattingAlgorithmTexts()[size_t(selected.first().row())].description);
}

void frmTabSpace::Confirm()
{
    if (m_running)
        return;
    const auto selected = lstMode->selectionModel()->selectedRows();
    if (selected.isEmpty()) {
        m_editor.desktop.MessageBox(
            {.text = u"Choose a formatting algorythm or press Cancel."_s, .icon = BoxIcon::Information});
        return;
    }
    try {
        if (Run(FormattingAlgorithm(selected.first().row())))
            accept();
    } catch (const RunTimeError &error) {
        // The user can put a setting right that the algorithm cannot work with, so the dialog stays.
        if (error.Number() == ErrorNumber::InvalidCall)
            m_editor.desktop.MessageBox({.text = error.Description(), .icon = BoxIcon::Warning});
        else
            ReportError(m_editor.desktop, error);
    }
}

bool frmTabSpace::Run(FormattingAlgorithm algorithm)
{
    m_stopped = false;
    ShowRunning(true);
    m_text.BeginCommand();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_text.setUpdatesEnabled(false);
    // A text that something else has changed meanwhile (an editor that was woken by another one) ends the
    // run, too.
    const auto changed = connect(&m_text, &TextControl::textChanged, this, [this] { m_stopped = true; });
    const auto release = qScopeGuard([this, changed] {
        disconnect(changed);
        m_text.EndCommand();
        m_text.setUpdatesEnabled(true);
        QApplication::restoreOverrideCursor();
        ShowRunning(false);
    });
    return ReformatSelection(m_editor, algorithm, [this] {
        QCoreApplication::processEvents();
        return !m_stopped;
    });
}

void frmTabSpace::ShowRunning(bool running)
{
    m_running = running;
    bOK->setEnabled(!running);
    lstMode->setEnabled(!running);
    lblTip->setText(running ? u"Processing..."_s : QString());
}

void frmTabSpace::done(int result)
{
    m_stopped = true;
    QDialog::done(result);
}

} // namespace zelvane
