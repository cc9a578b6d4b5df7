// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/onelinefield.h"

#include <algorithm>
#include <QChar>
#include <QLineEdit>
#include <QString>
#include <QValidator>

namespace zelvane
{

namespace
{

class OneLine : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &) const override
    {
        const auto isLineEnd = [](QChar c) {
            return c == u'\r' || c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
        };
        std::replace_if(text.begin(), text.end(), isLineEnd, QChar(u' '));
        return Acceptable;
    }
};

} // namespace

void KeepOneLine(QLineEdit &field)
{
    field.setValidator(new OneLine(&field));
}

} // namespace zelvane
