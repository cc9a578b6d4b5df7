// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The whitespace algorithms as the loops that define them: a working string rebuilt at each step, positions
/// from 1.
namespace zelvane::oracle
{

struct Reformatter {
    QString s;

    qsizetype Len() const { return s.size(); }
    QChar At(qsizetype p) const { return s[p - 1]; }
    qsizetype Find(const QString &what, qsizetype p) const
    {
        return p > Len() ? 0 : s.indexOf(what, p - 1) + 1;
    }
    /// Puts `with` in place of positions `from` to `to`.
    void Put(qsizetype from, qsizetype to, const QString &with) { s = s.left(from - 1) + with + s.mid(to); }

    void OneToOne(const QString &what, const QString &with)
    {
        qsizetype p = 1;
        while ((p = Find(what, p)) != 0)
            Put(p, p, with);
    }

    /// @return false when the round changed nothing
    bool ReplaceRun(qsizetype p, const QString &with)
    {
        const QString before = s;
        qsizetype j = p;
        while (j != Len() && At(j) == QLatin1Char(' '))
            ++j;
        Put(p, j - 1, with);
        return s != before;
    }

    void MultipleTo(const QString &with)
    {
        qsizetype p = 1;
        while ((p = Find(QStringLiteral("  "), p)) != 0)
            if (!ReplaceRun(p, with))
                return;
    }

    void OneOrMultipleToTab()
    {
        qsizetype p = 1;
        while ((p = Find(QStringLiteral(" "), p)) != 0) {
            if (p < Len() && At(p + 1) == QLatin1Char(' '))
                ReplaceRun(p, QStringLiteral("\t"));
            else
                Put(p, p, QStringLiteral("\t"));
        }
    }

    void TabToSpaces(int n)
    {
        qsizetype p = 1;
        while ((p = Find(QStringLiteral("\t"), p)) != 0) {
            qsizetype k = p - 1;
            while (k > 0 && At(k) != QLatin1Char('\r') && At(k) != QLatin1Char('\n'))
                --k;
            const qsizetype col = p - k + 1;
            qsizetype m = 0;
            while (m <= col)
                m += n;
            Put(p, p, QString(m - col, QLatin1Char(' ')));
        }
    }

    void RemoveTrailing()
    {
        qsizetype p = 1;
        while (true) {
            const qsizetype feed = Find(QStringLiteral("\n"), p);
            if (feed == 0)
                return;
            qsizetype k = feed - 1;
            qsizetype count = 0;
            while (k > 0 && (At(k) == QLatin1Char('\n') || At(k) == QLatin1Char('\r'))) {
                --k;
                ++count;
            }
            const qsizetype ends = k;
            while (k > 0 && (At(k) == QLatin1Char(' ') || At(k) == QLatin1Char('\t')))
                --k;
            s = s.left(k) + s.mid(ends, count + 1) + s.mid(feed);
            p = feed + 1;
        }
    }

    void RemoveIndent()
    {
        qsizetype p = 1;
        while ((p = Find(QStringLiteral("\n"), p)) != 0) {
            qsizetype j = p + 1;
            while (j < Len() && (At(j) == QLatin1Char(' ') || At(j) == QLatin1Char('\t')))
                ++j;
            if (j > p + 1)
                s = s.left(p) + s.mid(j - 1);
            ++p;
        }
    }

    void JoinBlankLines()
    {
        qsizetype p = 1;
        while ((p = Find(QStringLiteral("\n"), p)) != 0) {
            ++p;
            while (p < Len() && At(p) == QLatin1Char('\r'))
                ++p;
            if (p >= Len() || At(p) == QLatin1Char('\n')) {
                qsizetype j = p + 1;
                while (j < Len() && (At(j) == QLatin1Char('\r') || At(j) == QLatin1Char('\n')))
                    ++j;
                if (j > p + 1)
                    s = s.left(p) + s.mid(j - 1);
            }
            ++p;
        }
    }

    void RemoveBlankLines()
    {
        qsizetype p = 1;
        while ((p = Find(QStringLiteral("\n"), p)) != 0) {
            qsizetype j = p + 1;
            while (j < Len() && (At(j) == QLatin1Char('\r') || At(j) == QLatin1Char('\n')))
                ++j;
            if (j > p + 1)
                s = s.left(p) + s.mid(j - 1);
            ++p;
        }
    }

    static QString Run(int algorithm, const QString &text, int tabSpaces)
    {
        Reformatter r{text};
        const QString tab = QStringLiteral("\t");
        const QString blank = QStringLiteral(" ");
        switch (algorithm) {
        case 0:
            r.OneToOne(blank, tab);
            break;
        case 1:
            r.MultipleTo(tab);
            break;
        case 2:
            r.OneOrMultipleToTab();
            break;
        case 3:
            r.MultipleTo(blank);
            break;
        case 4:
            r.OneToOne(tab, blank);
            break;
        case 5:
            r.TabToSpaces(tabSpaces);
            break;
        case 6:
            r.RemoveTrailing();
            break;
        case 7:
            r.RemoveIndent();
            break;
        case 8:
            r.JoinBlankLines();
            break;
        case 9:
            r.RemoveBlankLines();
            break;
        }
        return r.s;
    }
};

} // namespace zelvane::oracle
