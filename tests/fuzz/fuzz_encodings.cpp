// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/oracle/encodingoracle.h"
#include "fuzz/fuzzcheck.h"
#include "fuzz/fuzzinput.h"
#include "platform/textencoding.h"

using namespace zelvane;

namespace
{

/// Any bytes are read as the decoders written out say, and written back as they were.
void CheckBytes(const QByteArray &bytes)
{
    const DecodedText found = DecodeText(bytes);
    const DecodedText expected = oracle::Decode(bytes);
    fuzz::ExpectSame("text", found.text, expected.text, bytes);
    fuzz::Expect("encoding", found.encoding == expected.encoding, bytes, int(found.encoding.form));
    TextEncoding encoding = found.encoding;
    fuzz::ExpectSame("bytes come back", EncodeText(found.text, encoding), bytes);
    fuzz::Expect("encoding stays", encoding == found.encoding, bytes);
}

QString AllWestern()
{
    QByteArray bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += char(byte);
    return oracle::FromWindows1252(bytes);
}

/// Any text comes back whatever it is written in, and keeps the encoding where that can hold it.
void CheckText(const QString &text)
{
    using Form = TextEncoding::Form;
    for (const TextEncoding before :
         {TextEncoding{Form::Utf8, false}, TextEncoding{Form::Utf8, true},
          TextEncoding{Form::Windows1252, false}, TextEncoding{Form::Utf16Little, false},
          TextEncoding{Form::Utf16Big, false}}) {
        TextEncoding encoding = before;
        const QByteArray bytes = EncodeText(text, encoding);
        fuzz::ExpectSame("text comes back", DecodeText(bytes).text, text, int(before.form), bytes);
        if (before.form == Form::Windows1252 && encoding != before) {
            static const QString all = AllWestern();
            QByteArray western;
            for (const QChar c : text) {
                if (const qsizetype byte = all.indexOf(c); byte >= 0)
                    western += char(byte);
            }
            fuzz::Expect("western where it holds the text",
                         western.size() != text.size() || DecodeText(western).text != text, text);
        } else if (before.form != Form::Windows1252) {
            fuzz::Expect("encoding stays", encoding.form == before.form, text, int(before.form));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    if (input.Bit()) {
        CheckText(fuzz::WithoutHalves(input.Text()));
        return 0;
    }
    const QByteArray bytes = input.Rest();
    CheckBytes(bytes);
    CheckBytes("\xFF\xFE" + bytes);
    CheckBytes("\xFE\xFF" + bytes);
    CheckBytes("\xEF\xBB\xBF" + bytes);
    // Half a character is the one thing that no file can hold: it does no other harm.
    QString halves;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        halves += QChar(char16_t(uchar(bytes[i]) << 8 | uchar(bytes[i + 1])));
    TextEncoding encoding;
    fuzz::Expect("UTF-8", EncodeText(halves, encoding).isValidUtf8(), bytes);
    return 0;
}
