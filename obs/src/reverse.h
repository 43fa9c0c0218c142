#ifndef OT95_OBS_REVERSE_H
#define OT95_OBS_REVERSE_H

#include <cstdint>

namespace ot95 {

/// Copies `count` words with the bytes of each reversed. The places need no alignment; they are the
/// same or apart.
template <class Word>
void ReverseWords(void* target, const void* source, unsigned long count);

extern template void ReverseWords<std::uint16_t>(void*, const void*, unsigned long);
extern template void ReverseWords<std::uint32_t>(void*, const void*, unsigned long);
extern template void ReverseWords<std::uint64_t>(void*, const void*, unsigned long);

}  // namespace ot95

#endif
