// SPDX-License-Identifier: GPL-3.0-or-later
#include "texttools/ui/frmtabspace.h"

#include "platform/ui/textcontrol.h"
#include "shell/errorreport.h"

#include <QApplication>
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
      lblMode(new QLabel(u"Choose a formatting algorythm:"_s, this)),
      lstMode(new QListWidget(this)),
      lblDesc(new QLabel(this)),
      lblTip(new QLabel(this)),
      bOK(new QPushButton(u"OK"_s, this)),
      bCancel(new QPushButton(u"Cancel"_s, this))
{
    setObjectName(u"frmTabSpace"_s);
    setWindowTitle(u"Formatting Algorythms"_s);
    BuildControls();
    LayOut();
}

void frmTabSpace::BuildControls()
{
    lblMode->setObjectName(u"lblMode"_s);
    lblMode->setBuddy(lstMode);
    lstMode->setObjectName(u"lstMode"_s);
    lstMode->setAccessibleName(u"Formatting algorythm"_s);
    for (const FormattingAlgorithmText &row : FormattingAlgorithmTexts())
        lstMode->addItem(row.name);
    lstMode->setMinimumHeight(lstMode->sizeHintForRow(0) * lstMode->count() + 2 * lstMode->frameWidth());

    lblDesc->setObjectName(u"lblDesc"_s);
    lblDesc->setAccessibleName(u"Description"_s);
    lblDesc->setWordWrap(true);
    lblDesc->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    lblDesc->setMinimumSize(fontMetrics().averageCharWidth() * DescriptionWidth,
                            fontMetrics().lineSpacing() * DescriptionLines);
    lblTip->setObjectName(u"lblTip"_s);
    bOK->setObjectName(u"bOK"_s);
    bOK->setDefault(true);
    bCancel->setObjectName(u"bCancel"_s);

    lstMode->installEventFilter(this);
    connect(lstMode, &QListWidget::itemSelectionChanged, this, &frmTabSpace::ShowDescription);
    connect(lstMode, &QListWidget::itemDoubleClicked, this, &frmTabSpace::Confirm);
    connect(bOK, &QPushButton::clicked, this, &frmTabSpace::Confirm);
    connect(bCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmTabSpace::LayOut()
{
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblTip, 1);
    buttons->addWidget(bOK);
    buttons->addWidget(bCancel);

    auto *all = new QVBoxLayout(this);
    all->addWidget(lblMode);
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
