// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/form.h"

#include "platform/desktop.h"
#include "platform/programinfo.h"
#include "shell/ui/focusreason.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QBoxLayout>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QFrame>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPoint>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QSize>
#include <QStyle>
#include <QTimerEvent>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr QSize SmallestPage(24, 6); ///< of what scrolls, in characters and lines

/// A caption as it is said.
QString Spoken(const QString &caption)
{
    return QString(caption).remove(u'&').remove(u':');
}

class FocusSelector : public QObject
{
public:
    explicit FocusSelector(QLineEdit *field) : QObject(field), m_field(field)
    {
        field->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::FocusIn: {
            const auto &focus = *static_cast<QFocusEvent *>(event);
            if (focus.reason() == Qt::MouseFocusReason)
                m_clicked = true;
            else if (!IsAway(focus))
                m_field->selectAll();
            break;
        }
        case QEvent::FocusOut:
            m_clicked = false;
            break;
        case QEvent::MouseButtonRelease:
            if (m_clicked && !m_field->hasSelectedText())
                QMetaObject::invokeMethod(m_field, &QLineEdit::selectAll, Qt::QueuedConnection);
            m_clicked = false;
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QLineEdit *m_field;
    bool m_clicked = false; ///< a mouse button that is still down has given it the focus
};

/// Not the toolkit's own size of such an area, which is smaller than a page of controls.
class PageScroller : public QScrollArea
{
public:
    explicit PageScroller(QWidget *content)
    {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        setWidget(content);
        viewport()->setAutoFillBackground(false);
        content->setAutoFillBackground(false);
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) {
            // What moves away under the mouse is not clicked.
            if (now && widget()->isAncestorOf(now) && QGuiApplication::mouseButtons() == Qt::NoButton)
                BringIntoView(*now);
        });
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }
    QSize minimumSizeHint() const override
    {
        return widget()->minimumSizeHint().boundedTo(QSize(CharacterWidth(*this, SmallestPage.width()),
                                                           fontMetrics().height() * SmallestPage.height()));
    }

private:
    /// The whole control: of a field the area itself minds no more than the caret.
    void BringIntoView(const QWidget &control)
    {
        const QPoint middle = control.mapTo(widget(), control.rect().center());
        const int frame = fontMetrics().height() / 2;
        ensureVisible(middle.x(), middle.y(), control.width() / 2 + frame, control.height() / 2 + frame);
    }
};

/// Clicks at once what a key of its own has pressed: the toolkit shows it down for a moment before. A click
/// by other means would be a second one.
void FinishPressed(const QDialog &dialog)
{
    QList<QPointer<QAbstractButton>> pressed;
    for (QAbstractButton *button : dialog.findChildren<QAbstractButton *>())
        if (button->isDown() && !button->autoRepeat())
            pressed.append(button);
    for (const QPointer<QAbstractButton> &button : pressed) {
        if (!button)
            continue;
        for (const auto &timer : QAbstractEventDispatcher::instance()->registeredTimers(button)) {
            QTimerEvent end(timer.timerId);
            if (button)
                QCoreApplication::sendEvent(button, &end);
        }
    }
}

/// Lets Enter find the controls as the keys before it have left them.
class EnterComesLast : public QObject
{
public:
    explicit EnterComesLast(QDialog &dialog) : QObject(&dialog), m_dialog(dialog) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent *>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                FinishPressed(m_dialog);
                if (!m_dialog.isVisible())
                    return true; // that was its end
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QDialog &m_dialog;
};

} // namespace

QString ProgramCaption(const QString &dialog)
{
    return ApplicationTitle() + u" - "_s + dialog;
}

QLabel *LabelFor(QWidget *field, const QString &caption, const QString &hint)
{
    auto *label = new QLabel(caption);
    label->setBuddy(field);
    if (!hint.isEmpty()) {
        label->setToolTip(hint);
        field->setToolTip(hint);
        field->setAccessibleDescription(hint);
    }
    if (field->accessibleName().isEmpty())
        field->setAccessibleName(Spoken(caption));
    return label;
}

int CharacterWidth(const QWidget &widget, int characters)
{
    return widget.fontMetrics().averageCharWidth() * characters;
}

QComboBox *NewTypingList(QWidget *parent, const QString &name)
{
    // Editable from the start: the Tab key goes through the controls in the order of their making, and the
    // list makes its line edit then.
    auto *list = Named(new QComboBox(parent), name);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setCompleter(nullptr);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    return list;
}

void ShowFromStart(QLineEdit &field, const QString &text)
{
    field.setText(text);
    field.setCursorPosition(0);
}

void SelectOnFocus(QLineEdit *field)
{
    new FocusSelector(field);
}

void PickFile(Desktop &desktop, const FileDialogRequest &request, QLineEdit &field)
{
    const FileDialogAnswer answer = desktop.OpenFileDialog(request);
    if (!answer.path.isEmpty())
        field.setText(answer.path);
}

void PickFolder(Desktop &desktop, const QString &title, const QString &start, QLineEdit &field)
{
    const QString folder = desktop.BrowseFolder(title, start);
    if (!folder.isEmpty())
        field.setText(folder);
}

FormGrid::FormGrid(QWidget *page) : m_grid(new QGridLayout(page))
{
    m_grid->setColumnStretch(1, 1);
}

QLabel *FormGrid::Add(const FormRow &row)
{
    QLabel *label = Named(LabelFor(row.field, row.caption, row.hint), row.labelName);
    m_grid->addWidget(label, m_row, 0);
    if (row.spinner) {
        auto *both = new QHBoxLayout;
        both->setSpacing(0);
        both->addWidget(row.field, 1);
        both->addWidget(row.spinner);
        m_grid->addLayout(both, m_row, 1);
    } else {
        m_grid->addWidget(row.field, m_row, 1);
    }
    if (row.button) {
        if (row.button->accessibleName().isEmpty())
            row.button->setAccessibleName(row.field->accessibleName() + u": "_s + Spoken(row.button->text()));
        m_grid->addWidget(row.button, m_row, 2);
    }
    ++m_row;
    return label;
}

void FormGrid::AddUnder(QWidget *widget)
{
    m_grid->addWidget(widget, m_row++, 1, 1, -1);
}

void FormGrid::AddUnder(QLayout *layout)
{
    m_grid->addLayout(layout, m_row++, 1, 1, -1);
}

void FormGrid::AddAcross(QWidget *widget)
{
    m_grid->addWidget(widget, m_row++, 0, 1, -1);
}

void FormGrid::AddAcross(QLayout *layout)
{
    m_grid->addLayout(layout, m_row++, 0, 1, -1);
}

void FormGrid::AddStretch()
{
    m_grid->setRowStretch(m_row++, 1);
}

QVBoxLayout *Column(std::initializer_list<QWidget *> controls)
{
    auto *column = new QVBoxLayout;
    for (QWidget *control : controls)
        column->addWidget(control);
    column->addStretch();
    return column;
}

QHBoxLayout *Line(std::initializer_list<QWidget *> controls)
{
    auto *line = new QHBoxLayout;
    for (QWidget *control : controls)
        line->addWidget(control);
    line->addStretch();
    return line;
}

void Fill(QWidget &frame, std::initializer_list<QWidget *> controls)
{
    auto *column = new QVBoxLayout(&frame);
    for (QWidget *control : controls)
        column->addWidget(control);
}

void TabToTheChosen(std::initializer_list<QRadioButton *> options)
{
    for (QRadioButton *option : options) {
        const auto follow = [option] {
            option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
        };
        QObject::connect(option, &QRadioButton::toggled, option, follow);
        follow();
    }
}

void SetTabOrder(const QList<QWidget *> &controls)
{
    QWidget *before = nullptr;
    for (QWidget *control : controls) {
        if (before)
            QWidget::setTabOrder(before, control);
        before = control;
    }
}

QWidget *ScrollPage(QWidget *content)
{
    return new PageScroller(content);
}

void FitToScreen(QDialog &dialog)
{
    const QStyle &style = *dialog.style();
    const int frame = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    const QSize around(2 * frame, 2 * frame + style.pixelMetric(QStyle::PM_TitleBarHeight));
    const QSize room = dialog.screen()->availableSize() - around;
    QSize wanted = dialog.sizeHint();
    if (wanted.height() > room.height())
        wanted.rwidth() += style.pixelMetric(QStyle::PM_ScrollBarExtent);
    dialog.resize(wanted.boundedTo(room));
}

void SetEnterAndEscape(QDialog &dialog, QPushButton *enter, QPushButton *escape)
{
    for (QPushButton *button : dialog.findChildren<QPushButton *>())
        button->setAutoDefault(enter && (button == enter || button == escape));
    if (enter)
        enter->setDefault(true);
    auto *last = new EnterComesLast(dialog);
    for (QObject *taker :
         {static_cast<QObject *>(&dialog), static_cast<QObject *>(enter), static_cast<QObject *>(escape)})
        if (taker)
            taker->installEventFilter(last);
    QObject::connect(escape, &QPushButton::clicked, &dialog, &QDialog::reject);
}

QDialogButtonBox *ButtonBox(QDialog &dialog, QPushButton *ok, QPushButton *cancel,
                            const std::function<void()> &confirm)
{
    auto *box = new QDialogButtonBox(&dialog);
    box->addButton(ok, QDialogButtonBox::AcceptRole);
    box->addButton(cancel, QDialogButtonBox::RejectRole);
    QObject::connect(ok, &QPushButton::clicked, &dialog, confirm);
    SetEnterAndEscape(dialog, ok, cancel);
    return box;
}

} // namespace zelvane
