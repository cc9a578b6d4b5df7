// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scanoracle.h"

#include <QList>
#include <QString>
#include <QStringList>

/// The scanners of the code outline as plain loops over a tree control that is given one node after the
/// other. Slow and obvious; nothing but tests uses them.
namespace zelvane::test::oracle
{

struct TreeNode {
    QString parent; ///< the parent's key
    QString key;
    QString caption;
    QString image;
    QString tag;
    bool grey = false;
};

class OutlineLoops
{
public:
    QList<TreeNode> tree;
    QList<int> instrStart{0}, instrEnd{0}; ///< from 1

    void BuildOutline(const QString &document, int documentKind)
    {
        text = document;
        tree.clear();
        CollectBlockComments();
        if (documentKind == 1) {
            SearchInstr(0, Len(text));
        } else if (documentKind == 2) {
            SearchEndOFSection(0, Len(text));
            SearchNamedSection(0, Len(text));
            SearchFTables(0, Len(text));
        } else if (documentKind == 3) {
            Add("", "rootags", "Tags", "csd", "");
            CollectBlockComments();
            SearchTags(1, Len(text), QStringLiteral("rootags"));
            int a = Find(QStringLiteral("<CsInstruments>"), 0, -1, false, true);
            int b = Find(QStringLiteral("</CsInstruments>"), 0, -1, false, true);
            if (a != -1 && b != -1)
                SearchInstr(a, b);
            a = Find(QStringLiteral("<CsScore>"), 0, -1, false, true);
            b = Find(QStringLiteral("</CsScore>"), 0, -1, false, true);
            if (a != -1 && b != -1) {
                SearchEndOFSection(a, b);
                for (TreeNode &node : tree)
                    if (node.key == QStringLiteral("sec0"))
                        node.tag = QString::number(InStr(1, text, QStringLiteral("<CsScore>")));
                SearchNamedSection(a, b);
                SearchFTables(a, b);
            }
        } else {
            return;
        }
        SearchMacro();
        SearchInclude();
    }

private:
    QString text;
    QList<int> commentStart, commentEnd;

    static int Len(const QString &s) { return int(s.size()); }
    /// The character at a 1-based position; empty beyond the text.
    QString At(qsizetype position) const { return Mid(text, position, 1); }
    static bool IsBlank(const QString &c) { return c == QStringLiteral(" ") || c == QStringLiteral("\t"); }
    static bool IsEnd(const QString &c) { return c == QStringLiteral("\r") || c == QStringLiteral("\n"); }
    static bool IsWord(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_'); }

    /// The find operation of the text control: offsets from 0, an end of -1 is that of the text.
    int Find(const QString &what, int start, int end, bool wholeWord, bool matchCase) const
    {
        if (end < 0)
            end = Len(text);
        for (int at = start; at + Len(what) <= end; ++at) {
            bool same = true;
            for (int i = 0; i < Len(what) && same; ++i) {
                const QChar one = text[at + i], other = what[i];
                same = matchCase ? one == other : one.toCaseFolded() == other.toCaseFolded();
            }
            if (same && wholeWord) {
                if (at > 0 && IsWord(text[at - 1]))
                    same = false;
                if (at + Len(what) < Len(text) && IsWord(text[at + Len(what)]))
                    same = false;
            }
            if (same)
                return at;
        }
        return -1;
    }

    void CollectBlockComments()
    {
        commentStart.clear();
        commentEnd.clear();
        qsizetype position = 1;
        for (;;) {
            const qsizetype open = InStr(position, text, QStringLiteral("/*"));
            if (open == 0)
                return;
            const qsizetype close = InStr(open, text, QStringLiteral("*/"));
            if (close == 0)
                return;
            commentStart.append(int(open) - 1);
            commentEnd.append(int(close) - 1 + 2);
            position = close;
        }
    }

    bool IsCommented(int pos) const
    {
        for (int i = 0; i < commentStart.size(); ++i)
            if (pos > commentStart[i] && pos < commentEnd[i])
                return true;
        for (int i = pos; i >= 0; --i) {
            if (text[i] == QLatin1Char(';'))
                return true;
            if (text[i] == QLatin1Char('\n') || text[i] == QLatin1Char('\r'))
                return false;
        }
        return false;
    }

    void Add(const QString &parent, const QString &key, const QString &caption, const QString &image,
             const QString &tag, bool grey = false)
    {
        tree.append({parent, key, caption, image, tag, grey});
    }
    void Add(const char *parent, const char *key, const char *caption, const char *image, const char *tag)
    {
        const auto string = [](const char *s) { return QString::fromLatin1(s); };
        Add(string(parent), string(key), string(caption), string(image), string(tag));
    }

    QString RestOfLine(int offset) const
    {
        QString rest;
        for (qsizetype i = offset + 1; i <= text.size() && !IsEnd(At(i)); ++i)
            rest = rest + At(i);
        return rest;
    }

    void SearchInstr(int start, int end)
    {
        QStringList captions{QString()};
        int position = start;
        for (;;) {
            const int hit = Find(QStringLiteral("instr"), position, end, true, false);
            if (hit == -1)
                break;
            if (IsCommented(hit)) {
                position = hit + 1;
                continue;
            }
            const int close = Find(QStringLiteral("endin"), hit, end, true, false);
            if (close == -1)
                break;
            captions.append(NormalizeSpaces(RestOfLine(hit + 5)));
            instrStart.append(hit);
            instrEnd.append(close + 5);
            position = close + 1;
        }
        if (captions.size() == 1)
            return;
        Add("", "rootins", "Instruments", "instr", "");
        for (int i = 1; i < captions.size(); ++i) {
            const QString key = QStringLiteral("ins") + QString::number(i);
            Add(QStringLiteral("rootins"), key, captions[i], QStringLiteral("instr"), QString::number(i));
            SearchLabel(instrStart[i], instrEnd[i], key);
        }
    }

    void SearchLabel(int start, int end, const QString &parentKey)
    {
        int i = 0;
        int position = start;
        for (;;) {
            const int hit = Find(QStringLiteral(":"), position, end, false, true);
            if (hit == -1)
                return;
            position = hit + 1;
            if (IsCommented(hit))
                continue;
            qsizetype back = hit; // 1-based position of the character before the colon
            bool ok = true;
            while (back >= 1 && At(back) != QStringLiteral("\n") && !IsBlank(At(back)))
                back = back - 1;
            if (back >= 1 && IsBlank(At(back))) {
                while (back >= 1 && IsBlank(At(back)))
                    back = back - 1;
                ok = back < 1 || At(back) == QStringLiteral("\n");
            }
            if (!ok)
                continue;
            const QString caption = NormalizeSpaces(Mid(text, back + 1, hit + 1 - back));
            if (InStr(1, caption, QStringLiteral("(")) > 0 || InStr(1, caption, QStringLiteral(" ")) > 0)
                continue;
            i = i + 1;
            Add(parentKey, parentKey + QStringLiteral("lbl") + QString::number(i), caption,
                QStringLiteral("label"), QString::number(hit));
        }
    }

    void SearchMacro()
    {
        QStringList names{QString()}, captions{QString()};
        QList<int> offsets{0};
        int position = 0;
        for (;;) {
            const int hit = Find(QStringLiteral("#define"), position, -1, true, false);
            if (hit == -1)
                break;
            position = hit + 1;
            if (IsCommented(hit))
                continue;
            qsizetype start = hit + 1 + 7 + 1;
            while (IsBlank(At(start)))
                start = start + 1;
            qsizetype nameEnd = 0;
            qsizetype i = start;
            while (i <= text.size() && At(i) != QStringLiteral("#")) {
                if (nameEnd == 0 && (At(i) == QStringLiteral("(") || IsBlank(At(i))))
                    nameEnd = i;
                i = i + 1;
            }
            if (nameEnd == 0)
                nameEnd = i;
            names.append(Mid(text, start, nameEnd - start));
            captions.append(NormalizeSpaces(Mid(text, start, i - start)));
            offsets.append(hit);
        }
        if (names.size() == 1)
            return;
        Add("", "rootmac", "Macros", "macro", "");
        for (int i = 1; i < names.size(); ++i) {
            const QString key = QStringLiteral("mac") + QString::number(i);
            Add(QStringLiteral("rootmac"), key, captions[i], QStringLiteral("macro"),
                QString::number(offsets[i]));
            SearchMacroCall(names[i], offsets[i], key);
        }
    }

    void SearchMacroCall(const QString &name, int start, const QString &parentKey)
    {
        int i = 0;
        int position = start;
        for (;;) {
            const int hit = Find(QStringLiteral("$") + name, position, -1, true, true);
            if (hit == -1)
                return;
            position = hit + 1;
            if (IsCommented(hit))
                continue;
            QString caption = name;
            const qsizetype behind = hit + 1 + 1 + name.size();
            if (At(behind) == QStringLiteral("(")) {
                qsizetype j = behind;
                while (j <= text.size() && At(j) != QStringLiteral(")") && !IsEnd(At(j)))
                    j = j + 1;
                if (At(j) == QStringLiteral(")"))
                    caption = name + Mid(text, behind, j - behind + 1);
            }
            i = i + 1;
            Add(parentKey, parentKey + QStringLiteral("cal") + QString::number(i), caption,
                QStringLiteral("macrocall"), QString::number(hit));
        }
    }

    void SearchNamedSection(int start, int end)
    {
        QList<TreeNode> nodes;
        int position = start;
        for (;;) {
            const int hit = Find(QStringLiteral("m"), position, end, true, true);
            if (hit == -1)
                break;
            position = hit + 1;
            if (IsCommented(hit))
                continue;
            nodes.append(
                {QStringLiteral("rootnse"), QStringLiteral("nse") + QString::number(nodes.size() + 1),
                 NormalizeSpaces(RestOfLine(hit + 1)), QStringLiteral("namedsection"), QString::number(hit)});
        }
        if (nodes.isEmpty())
            return;
        Add("", "rootnse", "Named Sections", "namedsection", "");
        tree.append(nodes);
    }

    void SearchEndOFSection(int start, int end)
    {
        Add("", "rootsec", "Sections", "section", "");
        Add("rootsec", "sec0", "Section 1", "section", "0");
        int i = 0;
        int position = start;
        for (;;) {
            const int hit = Find(QStringLiteral("s"), position, end, true, true);
            if (hit == -1)
                return;
            position = hit + 1;
            if (IsCommented(hit))
                continue;
            i = i + 1;
            Add(QStringLiteral("rootsec"), QStringLiteral("sec") + QString::number(i),
                QStringLiteral("Section ") + QString::number(i + 1), QStringLiteral("section"),
                QString::number(hit));
        }
    }

    void SearchFTables(int start, int end)
    {
        QList<TreeNode> nodes;
        qsizetype fieldStart[5] = {}, fieldLength[5] = {};
        int position = start;
        for (;;) {
            const int hit = Find(QStringLiteral("f"), position, end, false, true);
            if (hit == -1)
                break;
            position = hit + 1;
            if (IsCommented(hit))
                continue;
            if (hit > 0 && !IsBlank(At(hit)) && !IsEnd(At(hit)))
                continue;
            int field = 0;
            qsizetype length = 0;
            bool inField = false;
            for (qsizetype i = hit + 2; i <= text.size(); ++i) {
                const QString c = At(i);
                if (c == QStringLiteral(";"))
                    break;
                if (c == QStringLiteral("/")) {
                    if (At(i + 1) == QStringLiteral("*"))
                        break;
                } else if (IsBlank(c) || IsEnd(c)) {
                    if (inField) {
                        fieldLength[field] = length;
                        inField = false;
                        if (field == 4)
                            break;
                    }
                } else if (inField) {
                    length = length + 1;
                } else {
                    inField = true;
                    field = field + 1;
                    fieldStart[field] = i;
                    length = 1;
                }
            }
            if (field < 4)
                continue;
            const auto part = [&](int n) { return Mid(text, fieldStart[n], fieldLength[n]); };
            if (part(1) == QStringLiteral("0"))
                continue;
            nodes.append({QStringLiteral("rootftb"),
                          QStringLiteral("ftb") + QString::number(nodes.size() + 1),
                          part(1) + QStringLiteral(" GEN") + part(4) + QStringLiteral(" ") + part(3),
                          QStringLiteral("table"), QString::number(hit)});
        }
        if (nodes.isEmpty())
            return;
        Add("", "rootftb", "Function Tables", "table", "");
        tree.append(nodes);
    }

    void SearchInclude()
    {
        QList<TreeNode> nodes;
        int position = 0;
        for (;;) {
            const int hit = Find(QStringLiteral("#include"), position, -1, true, false);
            if (hit == -1)
                break;
            position = hit + 1;
            if (IsCommented(hit))
                continue;
            QString name = RestOfLine(hit + 8);
            const qsizetype semicolon = InStr(1, name, QStringLiteral(";"));
            if (semicolon > 0)
                name = Mid(name, 1, semicolon - 1);
            name = NormalizeSpaces(name);
            if (name.size() <= 2)
                continue;
            nodes.append({QStringLiteral("rootinc"),
                          QStringLiteral("inc") + QString::number(nodes.size() + 1),
                          Mid(name, 2, name.size() - 2), QStringLiteral("include"), QString::number(hit)});
        }
        if (nodes.isEmpty())
            return;
        Add("", "rootinc", "Include", "include", "");
        tree.append(nodes);
    }

    /// Positions count from 1.
    void SearchTags(qsizetype start, qsizetype end, const QString &parent)
    {
        for (;;) {
            const qsizetype sign = InStr(start, text, QStringLiteral("<"));
            if (sign == 0 || sign >= end)
                return;
            const qsizetype bracket = InStr(sign, text, QStringLiteral(">"));
            if (bracket == 0 || bracket >= end)
                return;
            const QString name = Mid(text, sign + 1, bracket - sign - 1);
            const QString closingTag = QStringLiteral("</") + name + QStringLiteral(">");
            const qsizetype closing = InStr(bracket, text, closingTag);
            if (closing == 0 || closing >= end)
                return;
            const QString key = QStringLiteral("tag") + QString::number(tree.size());
            Add(parent, key, name, QStringLiteral("csd"), QString::number(sign - 1),
                IsCommented(int(sign) - 1));
            SearchTags(bracket, closing, key);
            start = closing + 1;
        }
    }
};

} // namespace zelvane::test::oracle
