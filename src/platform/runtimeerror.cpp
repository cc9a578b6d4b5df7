// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/runtimeerror.h"

#include "platform/programinfo.h"

using namespace Qt::Literals::StringLiterals;

namespace zelvane
{

RunTimeError::RunTimeError(ErrorNumber number, const QString &description, const QString &source)
    : m_number(number),
      m_description(description),
      m_source(source.isEmpty() ? ApplicationTitle() : source),
      m_what(description.toUtf8())
{
}

QString OutOfMemoryText()
{
    return u"Out of memory"_s;
}

RunTimeError OutOfMemory(const QString &source)
{
    return {ErrorNumber::OutOfMemory, OutOfMemoryText(), source};
}

} // namespace zelvane
