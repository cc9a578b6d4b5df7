// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/charclass.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <QtGlobal>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define ZELVANE_SSE2 1
#endif

namespace zelvane
{

/// Facts about 64 UTF-16 code units at once, one bit for each, the first in the lowest bit. The plain
/// functions say what is meant and serve every machine; those of the vector unit give the same bits.
struct CharBlock {
    quint64 starters =
        0; ///< may begin a token: ; / # $ " and, if asked for, ASCII letters and all beyond ASCII
    quint64 separators = 0; ///< code below 33
};

inline constexpr qsizetype CharBlockSize = 64;

template <bool Letters> constexpr bool IsStarter(char16_t c)
{
    if (c == u';' || c == u'/' || (c >= u'"' && c <= u'$'))
        return true;
    return Letters && (c >= 128 || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'));
}

template <bool Letters> inline CharBlock ClassifyPlain(const char16_t *text)
{
    CharBlock block;
    for (int i = 0; i < CharBlockSize; ++i) {
        block.starters |= quint64(IsStarter<Letters>(text[i])) << i;
        block.separators |= quint64(text[i] < 33) << i;
    }
    return block;
}

/// The first place of `c` in [from, end), `end` if there is none.
inline const char16_t *FindPlain(const char16_t *from, const char16_t *end, char16_t c)
{
    return std::find(from, end, c);
}

#ifdef ZELVANE_SSE2

/// Sixteen code units as bytes; all above 255 become 255.
inline __m128i LoadBytes(const char16_t *text)
{
    const __m128i most = _mm_set1_epi16(255);
    __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text));
    __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text + 8));
    low = _mm_sub_epi16(low, _mm_subs_epu16(low, most));
    high = _mm_sub_epi16(high, _mm_subs_epu16(high, most));
    return _mm_packus_epi16(low, high);
}

/// The bytes of `bytes` that lie in [first, first + span].
inline __m128i InRange(__m128i bytes, char first, char span)
{
    const __m128i offset = _mm_sub_epi8(bytes, _mm_set1_epi8(first));
    return _mm_cmpeq_epi8(_mm_subs_epu8(offset, _mm_set1_epi8(span)), _mm_setzero_si128());
}

template <bool Letters> inline CharBlock ClassifyVector(const char16_t *text)
{
    CharBlock block;
    for (int i = 0; i < CharBlockSize; i += 16) {
        const __m128i bytes = LoadBytes(text + i);
        __m128i starters = _mm_or_si128(InRange(bytes, '"', '$' - '"'),
                                        _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(';')),
                                                     _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/'))));
        if constexpr (Letters) {
            const __m128i lower = _mm_or_si128(bytes, _mm_set1_epi8(0x20));
            starters = _mm_or_si128(starters, InRange(lower, 'a', 'z' - 'a'));
            starters = _mm_or_si128(starters, bytes); // the top bit, which is what movemask takes
        }
        block.starters |= quint64(quint32(_mm_movemask_epi8(starters))) << i;
        block.separators |= quint64(quint32(_mm_movemask_epi8(InRange(bytes, 0, 32)))) << i;
    }
    return block;
}

inline const char16_t *FindVector(const char16_t *from, const char16_t *end, char16_t c)
{
    const __m128i wanted = _mm_set1_epi16(short(c));
    for (; end - from >= 16; from += 16) {
        const auto *at = reinterpret_cast<const __m128i *>(from);
        const __m128i low = _mm_cmpeq_epi16(_mm_loadu_si128(at), wanted);
        const __m128i high = _mm_cmpeq_epi16(_mm_loadu_si128(at + 1), wanted);
        const auto hits = quint32(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
        if (hits)
            return from + std::countr_zero(hits);
    }
    return FindPlain(from, end, c);
}

#endif

/// Classifies the 64 code units at `text`; those from `end` on count as separators.
template <bool Letters> inline CharBlock Classify(const char16_t *text, const char16_t *end)
{
    char16_t padded[CharBlockSize];
    if (end - text < CharBlockSize) {
        std::fill_n(padded, CharBlockSize, u'\0');
        std::copy(text, std::max(text, end), padded);
        text = padded;
    }
#ifdef ZELVANE_SSE2
    return ClassifyVector<Letters>(text);
#else
    return ClassifyPlain<Letters>(text);
#endif
}

inline const char16_t *Find(const char16_t *from, const char16_t *end, char16_t c)
{
#ifdef ZELVANE_SSE2
    return FindVector(from, end, c);
#else
    return FindPlain(from, end, c);
#endif
}

} // namespace zelvane
