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
/// function says what is meant and serves every machine; that of the vector unit gives the same bits.
struct CharBlock {
    quint64 letters = 0;    ///< by IsAnsiLetter; only if asked for
    quint64 specials = 0;   ///< ; / # $ "
    quint64 separators = 0; ///< code below 33; only if asked for
    bool isAscii = false;   ///< nothing in the block is beyond ASCII; only if asked for

    bool operator==(const CharBlock &) const = default;
};

inline constexpr qsizetype CharBlockSize = 64;

template <bool Words> inline CharBlock ClassifyPlain(const char16_t *text)
{
    CharBlock block{.isAscii = Words};
    for (int i = 0; i < CharBlockSize; ++i) {
        const char16_t c = text[i];
        block.isAscii &= c < 128;
        block.specials |= quint64(c == u';' || c == u'/' || (c >= u'"' && c <= u'$')) << i;
        block.letters |= quint64(Words && IsAnsiLetter(c)) << i;
        block.separators |= quint64(Words && c < 33) << i;
    }
    return block;
}

/// The first place of `c` in [from, end), `end` if there is none.
inline const char16_t *FindPlain(const char16_t *from, const char16_t *end, char16_t c)
{
    return std::find(from, end, c);
}

#ifdef ZELVANE_SSE2

inline __m128i LoadAsciiBytes(const char16_t *text)
{
    const auto *at = reinterpret_cast<const __m128i *>(text);
    return _mm_packus_epi16(_mm_loadu_si128(at), _mm_loadu_si128(at + 1));
}

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

template <bool Words> inline CharBlock ClassifyVector(const char16_t *text)
{
    CharBlock block;
    quint64 beyondAscii = 0;
    for (int i = 0; i < CharBlockSize; i += 16) {
        const auto put = [i](quint64 &bits, __m128i bytes) {
            bits |= quint64(quint32(_mm_movemask_epi8(bytes))) << i;
        };
        const __m128i bytes = LoadBytes(text + i);
        const __m128i marks = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(';')),
                                           _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/')));
        put(block.specials, _mm_or_si128(marks, InRange(bytes, '"', '$' - '"')));
        if constexpr (Words) {
            const __m128i lower = _mm_or_si128(bytes, _mm_set1_epi8(0x20));
            put(block.letters, InRange(lower, 'a', 'z' - 'a'));
            put(block.separators, InRange(bytes, 0, 32));
            put(beyondAscii, bytes); // the mask is made of the top bits
        }
    }
    block.isAscii = Words && beyondAscii == 0;
    if (beyondAscii) [[unlikely]] {
        block.letters &= ~beyondAscii;
        for (quint64 rest = beyondAscii; rest; rest &= rest - 1) {
            const int i = std::countr_zero(rest);
            block.letters |= quint64(IsAnsiLetter(text[i])) << i;
        }
    }
    return block;
}

inline const char16_t *FindVector(const char16_t *from, const char16_t *end, char16_t c)
{
    // A whole block at a time: what is looked for is mostly near, and one branch is then enough.
    const __m128i wanted = _mm_set1_epi16(short(c));
    for (; end - from >= CharBlockSize; from += CharBlockSize) {
        quint64 hits = 0;
        for (int i = 0; i < CharBlockSize; i += 16) {
            const auto *at = reinterpret_cast<const __m128i *>(from + i);
            const __m128i low = _mm_cmpeq_epi16(_mm_loadu_si128(at), wanted);
            const __m128i high = _mm_cmpeq_epi16(_mm_loadu_si128(at + 1), wanted);
            hits |= quint64(quint32(_mm_movemask_epi8(_mm_packs_epi16(low, high)))) << i;
        }
        if (hits)
            return from + std::countr_zero(hits);
    }
    return FindPlain(from, end, c);
}

#endif

/// Classifies the 64 code units at `text`; those from `end` on count as separators.
template <bool Words> inline CharBlock Classify(const char16_t *text, const char16_t *end)
{
    char16_t padded[CharBlockSize];
    if (end - text < CharBlockSize) {
        std::fill_n(padded, CharBlockSize, u'\0');
        std::copy(text, std::max(text, end), padded);
        text = padded;
    }
#ifdef ZELVANE_SSE2
    return ClassifyVector<Words>(text);
#else
    return ClassifyPlain<Words>(text);
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
