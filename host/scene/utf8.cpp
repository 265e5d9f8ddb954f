#include "scene/utf8.h"

namespace orv {
namespace {

/// What may follow a lead byte: `count` more bytes, the first of them within low..high, the others
/// within 80..BF.
struct sequenceRule {
    unsigned leadLow, leadHigh;
    std::size_t count;
    unsigned low, high;
};

constexpr sequenceRule kRules[] = {
    {0x00, 0x7F, 0, 0x80, 0xBF}, {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x80, 0xBF}, {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x90, 0xBF}, {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

unsigned ByteAt(std::string_view text, std::size_t k)
{
    return static_cast<unsigned char>(text[k]);
}

/// The length of the well-formed sequence at `start`; 0 when there is none.
std::size_t SequenceLength(std::string_view text, std::size_t start)
{
    const unsigned lead = ByteAt(text, start);
    for (const sequenceRule& rule : kRules) {
        if (lead < rule.leadLow || lead > rule.leadHigh) continue;
        if (text.size() - start <= rule.count) return 0;
        for (std::size_t k = 1; k <= rule.count; ++k) {
            const unsigned byte = ByteAt(text, start + k);
            const unsigned low = k == 1 ? rule.low : 0x80, high = k == 1 ? rule.high : 0xBF;
            if (byte < low || byte > high) return 0;
        }
        return rule.count + 1;
    }
    return 0;
}

}  // namespace

std::size_t FirstBadUtf8(std::string_view text)
{
    std::size_t k = 0;
    while (k < text.size()) {
        const std::size_t length = SequenceLength(text, k);
        if (length == 0) return k;
        k += length;
    }
    return k;
}

}  // namespace orv
