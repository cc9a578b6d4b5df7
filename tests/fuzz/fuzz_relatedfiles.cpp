// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/relatedoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "language/relatedfiles.h"

#include <QSet>
#include <QString>
#include <QStringList>

using namespace zelvane;

/// What a text names, beside the plain walk.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    const QSet<QString> files{input.Text(), input.Text(), QStringLiteral("a")};
    const QString text = input.Text();
    const QStringList found =
        ExtractFileReferences(text, [&files](const QString &name) { return files.contains(name); });
    fuzz::ExpectSame("references", found, test::oracle::ExtractFileReferences(text, files), text, files);
    return 0;
}
