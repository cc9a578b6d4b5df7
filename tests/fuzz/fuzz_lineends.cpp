// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/lineendloops.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "shell/lineends.h"

using namespace zelvane;

/// The forms of line ends, beside their loops.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    QString text = input.Text();
    text.remove(QChar(0xE000)); // the loop's own mark
    fuzz::ExpectSame("pc", ToPcLineEnds(text), oracle::ToPc(text), text);
    fuzz::ExpectSame("unix", ToUnixLineEnds(text), oracle::ToUnix(text), text);
    fuzz::ExpectSame("mac", ToMacLineEnds(text), oracle::ToMac(text), text);
    fuzz::ExpectSame("feeds", ToLineFeeds(text), oracle::ToUnix(text), text);
    fuzz::ExpectSame("platform", int(DetectPlatform(text)), oracle::DetectPlatform(text), text);
    QString feeds = text;
    fuzz::ExpectSame("mac to unix", MacToUnix(text), feeds.replace(u'\r', u'\n'), text);
    return 0;
}
