// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/textbuffer.h"
#include "writing/ui/writingaid.h"

#include <QObject>
#include <QTimer>
#include <vector>

namespace zelvane
{

/// Marks the word at the caret wherever it stands in the view, as long as it stands there more than once.
class SameWord : public QObject, public WritingAid
{
    Q_OBJECT

public:
    explicit SameWord(const WritingContext &context);
    ~SameWord() override;

private:
    void Wait();
    void Mark();
    std::vector<TextSpan> Words() const;

    TextControl &m_text;
    TextDecorations &m_decorations;
    QTimer m_pause;
};

} // namespace zelvane
