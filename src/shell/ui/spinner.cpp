// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/spinner.h"

#include "shell/errorreport.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int ArrowWidth = 18; ///< pixels

class Spinner : public QWidget
{
public:
    Spinner(Desktop &desktop, QLineEdit *field, const SpinStep &step)
        : QWidget(field->parentWidget()), m_desktop(desktop), m_field(field), m_step(step)
    {
        auto *arrows = new QVBoxLayout(this);
        arrows->setContentsMargins(0, 0, 0, 0);
        arrows->setSpacing(0);
        arrows->addWidget(NewArrow(Qt::UpArrow, u"up"_s, 1));
        arrows->addWidget(NewArrow(Qt::DownArrow, u"down"_s, -1));
        setFixedSize(ArrowWidth, field->sizeHint().height());
        setEnabled(field->isEnabled());
        field->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange) {
            setEnabled(m_field->isEnabled());
        } else if (event->type() == QEvent::KeyPress) {
            const auto *key = static_cast<QKeyEvent *>(event);
            const bool plain = !(key->modifiers() & ~Qt::KeypadModifier);
            if (plain && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down)) {
                Step(key->key() == Qt::Key_Up ? 1 : -1);
                return true;
            }
        }
        return QWidget::eventFilter(watched, event);
    }

private:
    QToolButton *NewArrow(Qt::ArrowType type, const QString &word, int direction)
    {
        auto *arrow = new QToolButton(this);
        arrow->setObjectName(word);
        arrow->setArrowType(type);
        arrow->setAutoRepeat(true);
        arrow->setFocusPolicy(Qt::NoFocus);
        arrow->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
        connect(arrow, &QToolButton::clicked, this, [this, direction] { Step(direction); });
        return arrow;
    }

    void Step(int direction)
    {
        Guarded(m_desktop, [this, direction] { m_field->setText(m_step(m_field->text(), direction)); });
        m_field->setFocus(Qt::OtherFocusReason);
    }

    Desktop &m_desktop;
    QLineEdit *m_field;
    SpinStep m_step;
};

} // namespace

QWidget *NewSpinner(Desktop &desktop, QLineEdit *field, const QString &name, const SpinStep &step)
{
    auto *spinner = new Spinner(desktop, field, step);
    spinner->setObjectName(name);
    return spinner;
}

QWidget *NewSpinner(Desktop &desktop, QLineEdit *field, const QString &name, const SpinRange &range)
{
    return NewSpinner(desktop, field, name, [range](const QString &text, int direction) {
        return SteppedNumber(text, direction, range);
    });
}

} // namespace zelvane
