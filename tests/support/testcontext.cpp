// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/testcontext.h"

#include <gtest/gtest.h>
#include <QFile>

namespace zelvane::test
{

QString TestContext::WriteFile(const QString &name, const QByteArray &bytes)
{
    const QString path = folder.filePath(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
    return path;
}

} // namespace zelvane::test
