// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/onelinefield.h"

#include <algorithm>
#include <QChar>
#include <QLineEdit>
#include <QObject>
#include <QString>
#include <QValidator>

namespace zelvane
{

namespace
{

template <typename Iterator> void BlankLineEnds(Iterator first, Iterator last)
{
    const auto isLineEnd = [](QChar c) {
        return c == u'\r' || c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
    };
    std::replace_if(first, last, isLineEnd, QChar(u' '));
}

class OneLine : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &) const override
    {
        BlankLineEnds(text.begin(), text.end());
        return Acceptable;
    }
};

/// Looks at what an edit has put in only: at what stands between the beginning and the end that the text has
/// in common with the one before.
class OneLineInserts : public QValidator
{
public:
    OneLineInserts(const QString &given, QObject *parent)
        : QValidator(parent), m_given(given), m_before(given)
    {
    }

    State validate(QString &text, int &) const override
    {
        // By undo the whole text that was given comes back.
        if (text != m_given && text != m_before) {
            const auto ends = std::mismatch(text.cbegin(), text.cend(), m_before.cbegin(), m_before.cend());
            const auto start = ends.first - text.cbegin();
            const auto tails = std::mismatch(text.crbegin(), text.crend() - start, m_before.crbegin(),
                                             m_before.crend() - start);
            const auto tail = tails.first - text.crbegin();
            BlankLineEnds(text.begin() + start, text.end() - tail);
        }
        m_before = text;
        return Acceptable;
    }

private:
    QString m_given;
    mutable QString m_before;
};

} // namespace

void KeepOneLine(QLineEdit &field)
{
    field.setValidator(new OneLine(&field));
}

void PutKeptText(QLineEdit &field, const QString &text)
{
    const QValidator *const before = field.validator();
    field.setValidator(nullptr);
    delete before;
    field.setText(text);
    field.setValidator(new OneLineInserts(text, &field));
}

} // namespace zelvane
