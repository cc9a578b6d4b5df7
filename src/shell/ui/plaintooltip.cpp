// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/plaintooltip.h"

#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

QString PlainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? u"<p style='white-space:pre'>"_s + text.toHtmlEscaped() + u"</p>"_s
                                     : text;
}

} // namespace zelvane
