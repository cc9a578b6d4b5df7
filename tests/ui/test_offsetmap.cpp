// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/offsetmap.h"

#include "support/uitest.h"

#include <algorithm>
#include <random>

using namespace zelvane;
using namespace Qt::Literals::StringLiterals;

namespace
{

const QStringList Pieces = {u"a"_s, u"bcdef\n"_s, u"\u00e8"_s, u"\u20ac"_s, u"\U0001d11e"_s};

/// A text and its map, beside each other through every edit.
struct Mapped {
    QByteArray bytes;
    OffsetMap map{
        [this](qsizetype start, qsizetype length) { return QByteArrayView(bytes).sliced(start, length); }};

    explicit Mapped(const QByteArray &text) : bytes(text) { map.Reset(text.size(), Utf16Length(text)); }

    void Insert(qsizetype at, const QByteArray &text)
    {
        bytes.insert(at, text);
        map.Inserted(at, text.size());
    }
    void Delete(qsizetype at, qsizetype length)
    {
        map.Deleting(at, length);
        bytes.remove(at, length);
    }
    /// The start of the character that a byte belongs to.
    qsizetype Whole(qsizetype at) const
    {
        while (at > 0 && at < bytes.size() && (uchar(bytes[at]) & 0xC0) == 0x80)
            --at;
        return at;
    }
};

} // namespace

class OffsetMapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void KnowsEveryOffset();
    void FollowsRandomEdits_data();
    void FollowsRandomEdits();
};

void OffsetMapTest::KnowsEveryOffset()
{
    QString text;
    for (int i = 0; i < 5000; ++i)
        text += Pieces[i * 7 % Pieces.size()];
    const Mapped mapped(text.toUtf8());
    qsizetype byte = 0;
    for (qsizetype unit = 0; unit <= text.size(); ++unit) {
        const bool inside = unit < text.size() && text[unit].isLowSurrogate();
        QCOMPARE(mapped.map.ToByte(unit), inside ? byte - 4 : byte);
        if (!inside)
            QCOMPARE(mapped.map.ToUnits(byte), unit);
        if (unit < text.size() && !inside)
            byte += text.sliced(unit, text[unit].isHighSurrogate() ? 2 : 1).toUtf8().size();
    }
    QCOMPARE(mapped.map.ToByte(-1), 0);
    QCOMPARE(mapped.map.ToByte(text.size() + 1), mapped.bytes.size());
    QCOMPARE(mapped.map.ToUnits(mapped.bytes.size() + 1), text.size());
}

void OffsetMapTest::FollowsRandomEdits_data()
{
    QTest::addColumn<int>("pieces");
    QTest::addColumn<int>("longest");
    QTest::newRow("ascii, then all planes, short edits") << 2 << 10;
    QTest::newRow("all planes, short edits") << int(Pieces.size()) << 10;
    QTest::newRow("all planes, long edits") << int(Pieces.size()) << 9000;
}

void OffsetMapTest::FollowsRandomEdits()
{
    QFETCH(int, pieces);
    QFETCH(int, longest);
    std::mt19937 random(7);
    const auto below = [&](qsizetype limit) {
        return qsizetype(random() % size_t(std::max<qsizetype>(limit, 1)));
    };
    const auto text = [&](qsizetype count, int kinds) {
        QByteArray made;
        for (; count > 0; --count)
            made += Pieces[below(kinds)].toUtf8();
        return made;
    };
    Mapped mapped(text(8000, pieces));
    for (int round = 0; round < 300; ++round) {
        const int kinds = round < 100 ? pieces : int(Pieces.size());
        const qsizetype at = mapped.Whole(below(mapped.bytes.size() + 1));
        if (below(2) == 0 || mapped.bytes.size() < 20000) {
            mapped.Insert(at, text(below(longest), kinds));
        } else {
            const qsizetype most = std::min<qsizetype>(mapped.bytes.size() - at, 4 * longest);
            mapped.Delete(at, mapped.Whole(at + below(most + 1)) - at);
        }
        if (round % 140 == 139)
            mapped.Delete(0, mapped.bytes.size());
        QCOMPARE(mapped.map.Bytes(), mapped.bytes.size());
        QCOMPARE(mapped.map.Units(), Utf16Length(mapped.bytes));
        for (int i = 0; i < 4; ++i) {
            const qsizetype byte = mapped.Whole(below(mapped.bytes.size() + 1));
            const qsizetype unit = Utf16Length(QByteArrayView(mapped.bytes).first(byte));
            QCOMPARE(mapped.map.ToUnits(byte), unit);
            QCOMPARE(mapped.map.ToByte(unit), byte);
            QCOMPARE(OffsetWalk(mapped.map).ToByte(unit), byte);
        }
    }
}

int main(int argc, char **argv)
{
    return zelvane::test::RunUiTest<OffsetMapTest>(argc, argv);
}

#include "test_offsetmap.moc"
