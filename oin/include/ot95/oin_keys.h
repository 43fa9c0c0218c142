#ifndef OT95_OIN_KEYS_H
#define OT95_OIN_KEYS_H

/// @file
/// Finished keys: what a character sorts as in a language, in two loads.
///
/// @code
///   const ot95::FinishedKeys* keys = ot95::FinishedKeys::Of(9);  // Swedish
///   const std::uint32_t key = keys->Make('b') ? keys->At('b') : ot95::kLook;
///   const bool standsForItself = (key & ot95::kLook) == 0;  // standsForItself == true
/// @endcode
///
/// A key is the comparable one of the character's record, tailored, with its script byte. Flags
/// stand in bits that keys don't use. Whoever meets a flagged one asks the records: no flag is ever
/// missing, one too many costs time only.
///
/// The keys of languages that tailor nothing and write Latin letters are constant data. The others
/// share these, and make pages of 256 keys where they differ, on first use. A page that can't be
/// made for want of memory reads as flags only.

#include <array>
#include <atomic>

#include "ot95/oin.h"

namespace ot95 {

// Flags of finished keys.
/// Anything but a letter, digit or ideograph that stands for itself whatever is around it, save for
/// what joins it from behind. Set with all other flags, and for symbols and the terminator.
inline constexpr std::uint32_t kLook = 0x80;
/// May be part of what stands before an opener below OT_FIRST_MARK.
inline constexpr std::uint32_t kJoinsOpener = 0x20000000;
/// More than its key: contracts with something below OT_FIRST_MARK, or has several keys or none.
inline constexpr std::uint32_t kOpens = 0x40000000;
/// May be part of whatever stands before it, or takes its script from there.
inline constexpr std::uint32_t kJoins = 0x80000000;
/// The key without flags.
inline constexpr std::uint32_t kKeyBits = 0x1fffff7f;

/// The characters that stand one behind another in memory: their key is also First()[character].
inline constexpr unsigned kFirstKeys = 0x300;

/// The keys of one language.
class OT95_EXPORT FinishedKeys {
 public:
  /// The keys of a language; null if nobody knows it, or memory is short.
  static const FinishedKeys* Of(unsigned char language) {
    const FinishedKeys* keys = Known(language);
    return keys != nullptr || language >= kLanguages ? keys : MakeSheet(language);
  }
  /// The keys of the bytes of a one-byte code set; null if there is no such set, too.
  static const std::uint32_t* OfBytes(unsigned char codeSet, unsigned char language) {
    const std::uint32_t* keys = KnownBytes(codeSet, language);
    const bool valid = codeSet < kByteSets && language < kLanguages;
    return keys != nullptr || !valid ? keys : MakeByteSheet(codeSet, language);
  }
  /// The same, null also before the first use: for who has another way and no room for a call.
  static const FinishedKeys* Known(unsigned char language) {
    return language < kLanguages ? sheets_[language].load(std::memory_order_acquire) : nullptr;
  }
  static const std::uint32_t* KnownBytes(unsigned char codeSet, unsigned char language) {
    if (codeSet >= kByteSets || language >= kLanguages) return nullptr;
    return byteSheets_[codeSet][language].load(std::memory_order_acquire);
  }

  /// The key of a Unicode unit, with its flags.
  std::uint32_t At(unsigned unit) const {
    return pages_[unit >> 8].load(std::memory_order_acquire)[unit & 0xff];
  }
  const std::uint32_t* First() const { return pages_[0].load(std::memory_order_acquire); }

  /// Whether the language puts records of its own in the place of some.
  bool Tailors() const { return tailors_; }
  /// The script byte of the language's own letters.
  unsigned char Script() const { return script_; }

  /// Makes the page of a unit if there is none. @return whether there is one.
  bool Make(unsigned unit) const { return At(unit) != kUnmade || MakePage(unit >> 8); }

 private:
  using Page = std::atomic<const std::uint32_t*>;
  static constexpr std::uint32_t kUnmade = kJoins | kOpens | kJoinsOpener | kLook;
  static const std::array<std::uint32_t, kFirstKeys> kUnmadePages;

  static const FinishedKeys* MakeSheet(unsigned char language);
  static const FinishedKeys* MakeNeutral();
  static const std::uint32_t* MakeByteSheet(unsigned char codeSet, unsigned char language);
  constexpr FinishedKeys() = default;  // The neutral one, without its pages.
  explicit FinishedKeys(const OtLanguage* language);
  bool MakePage(unsigned high) const;

  static constexpr unsigned kLanguages = 0x80;
  static constexpr unsigned kByteSets = 0x52;  // behind the last there is
  static std::array<std::atomic<const FinishedKeys*>, kLanguages> sheets_;
  static std::array<std::array<Page, kLanguages>, kByteSets> byteSheets_;

  static FinishedKeys neutral_;

  mutable std::array<Page, 256> pages_{};
  const OtLanguage* language_ = nullptr;
  bool tailors_ = false;
  unsigned char script_ = 1;
};

}  // namespace ot95

#endif
