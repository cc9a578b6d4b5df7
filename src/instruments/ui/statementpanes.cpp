// SPDX-License-Identifier: GPL-3.0-or-later
#include "instruments/ui/statementpanes.h"

#include "instruments/instrclass.h"
#include "instruments/statementfields.h"
#include "shell/ui/form.h"
#include "shell/ui/statusbar.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QSizePolicy>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

namespace
{

constexpr int Panes = 4;
constexpr int PaneWidth = 8;   ///< characters
constexpr int WidestPane = 24; ///< of those behind the description, in characters

} // namespace

StatementPanes::StatementPanes(QWidget *parent) : QWidget(parent)
{
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    for (int index = 0; index < Panes; ++index) {
        auto *pane = Named(new ElidedLabel(this), u"lblStatus_"_s + QString::number(index));
        pane->setTextFormat(Qt::PlainText);
        pane->setMinimumWidth(CharacterWidth(*this, PaneWidth));
        pane->setMaximumWidth(index == 0 ? QWIDGETSIZE_MAX : CharacterWidth(*this, WidestPane));
        if (index == 0) // takes what room there is, but asks for none
            pane->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        if (index > 0) {
            auto *edge = new QFrame(this);
            edge->setFrameShape(QFrame::VLine);
            edge->setFrameShadow(QFrame::Sunken);
            line->addWidget(edge);
        }
        line->addWidget(pane, index == 0 ? 1 : 0);
        lblStatus.push_back(pane);
    }
    ShowTexts({}, u"p-Field"_s, u"Variable"_s, u"Format"_s);
}

void StatementPanes::ShowTexts(const QString &description, const QString &field, const QString &variable,
                               const QString &format)
{
    lblStatus[0]->setText(description);
    lblStatus[1]->setText(field);
    lblStatus[2]->setText(variable);
    lblStatus[3]->setText(format);
}

void StatementPanes::ShowField(const pClass &field, qsizetype position)
{
    ShowTexts(field.description, FieldName(position), field.variable, FormatWord(field.formato));
}

} // namespace zelvane
