// Texts in UTF-8 without a record around them.
#include "c/collation.h"

#include <cstdlib>

#include "text/casechange.h"
#include "text/collation/compare.h"
#include "text/collation/comparebytes.h"

namespace ot95::c {

namespace {

/// @param wildcards OT_CMP_NO_WILDCARDS for a pattern, else 0.
int CompareUnits(const ot95_collation& collation, unsigned wildcards, const WideText& a,
                 const WideText& b) {
  const auto op = static_cast<unsigned short>(collation.options & ~wildcards);
  if (collation.keys == nullptr) {
    return Sign(OtStrCmp(OT_CS_UNICODE, collation.language, a.text(), OT_CS_UNICODE,
                         collation.language, b.text(), op, -1, OT_FORMAT_NATIVE, nullptr));
  }
  const WideKeys keys{collation.keys};
  const auto labels = [&collation](std::size_t units) -> TextLabels {
    return {static_cast<std::uint16_t>(2 * units + 2), OT_CS_UNICODE, collation.language};
  };
  if (wildcards != 0) return Sign(MatchWide(keys, a.text(), b.text(), labels(a.count()), op));
  const std::size_t count = std::min(a.count(), b.count());
  return Sign(CompareWide(keys, a.text(), b.text(), labels(count), op, 0));
}

/// Compares two texts in UTF-8 as units. @param wildcards OT_CMP_NO_WILDCARDS for a pattern, else
/// 0.
[[gnu::noinline]] int CompareBoth(const ot95_collation* collation, unsigned wildcards,
                                  const ot95_span& a, const ot95_span& b, int& sign) {
  WideText first, second;
  if (collation == nullptr) return OT95_ERR_ARGUMENT;
  if (const int status = first.Take(a.data, a.size)) return status;
  if (const int status = second.Take(b.data, b.size)) return status;
  sign = CompareUnits(*collation, wildcards, first, second);
  return OT95_OK;
}

[[gnu::noinline]] int CompareAnyTexts(const ot95_collation* collation, const char* a,
                                      std::size_t aSize, const char* b, std::size_t bSize,
                                      int* sign) {
  return GuardedResult(sign, [&](int& made) {
    return CompareBoth(collation, 0, {a, aSize}, {b, bSize}, made);
  });
}

/// Whether texts of these sizes aren't empty, and short enough for any that are strings.
constexpr bool AreTextSizes(std::size_t a, std::size_t b) {
  return ((a - 1) | (b - 1)) < kMostUnits;
}

/// Whether two such texts begin with different letters of several bytes that can be read at once.
[[gnu::always_inline]] inline bool DifferInFirstLetter(const char* a, std::size_t aSize,
                                                       const char* b, std::size_t bSize) {
  if ((*a & 0x80) == 0 || std::min(aSize, bSize) < FirstLetter::kReadable) return false;
  return LoadWide(a) != LoadWide(b);
}

/// Compares two such texts under a collation with keys.
[[gnu::noinline]] int CompareTexts(const ot95_collation* collation, const char* a,
                                   std::size_t aSize, const char* b, std::size_t bSize, int* sign) {
  const int decided = CompareUtf8({collation->keys}, {a, aSize}, {b, bSize}, collation->options);
  if (decided == kUndecided) return CompareAnyTexts(collation, a, aSize, b, bSize, sign);
  *sign = decided;
  return OT95_OK;
}

/// 16-bit units that may become twice as many, on the stack while they are few.
class CaseUnits {
 public:
  int Reserve(std::size_t count) {
    if (count + 1 <= kInline) return OT95_OK;
    heap_.reset(new (std::nothrow) std::uint16_t[count + 1]);
    units_ = heap_.get();
    return units_ != nullptr ? OT95_OK : OT95_ERR_MEMORY;
  }
  std::uint16_t* units() { return units_; }

 private:
  static constexpr std::size_t kInline = 2 * 256 + 1;

  std::uint16_t inline_[kInline];
  std::uint16_t* units_ = inline_;
  std::unique_ptr<std::uint16_t[]> heap_;
};

/// Where the other case of a letter is longer. @param text in its first case.
[[gnu::noinline]] int ChangeLength(const ot95_collation& collation, const WideText& text,
                                   OtCharOperation& operation, ot95_buffer* out) {
  CaseUnits changed;
  if (const int status = changed.Reserve(2 * text.count())) return status;  // tails are one unit
  OtStringIterator source(text.text(), OT_CS_UNICODE, collation.language, OT_FORMAT_NATIVE);
  OtStringIterator target(reinterpret_cast<const char*>(changed.units()), OT_CS_UNICODE,
                          collation.language, OT_FORMAT_NATIVE);
  source.Transform(target, operation);
  std::size_t count = 0;
  while (changed.units()[count] != 0) ++count;
  return GiveUnits(out, changed.units(), count);
}

template <CaseOp op, class Operation>
int ChangeCase(const ot95_collation* collation, const ot95_span& utf8, ot95_buffer* out) {
  WideText text;
  if (collation == nullptr) return OT95_ERR_ARGUMENT;
  if (const int status = text.Take(utf8.data, utf8.size)) return status;
  auto* const units = reinterpret_cast<char*>(text.units());
  if (ChangeCaseInPlace(op, collation->language, units, text.count() + 1) == text.count()) {
    return GiveUnits(out, text.units(), text.count());
  }
  Operation operation;
  WideText again;
  if (const int status = again.Take(utf8.data, utf8.size)) return status;
  return ChangeLength(*collation, again, operation, out);
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;
using ot95::CaseOp;

int ot95_collation_open(const char* tag, unsigned options, ot95_collation** out) {
  return Guarded([&]() -> int {
    unsigned short cmpOp = 0;
    if (out == nullptr || (options & OT95_WILDCARDS) != 0) return OT95_ERR_ARGUMENT;
    if (const int status = OpenOptions(options, cmpOp)) return status;
    const bool isNeutral = tag == nullptr || *tag == 0;
    const unsigned char language =
        isNeutral ? OT_LANG_NEUTRAL : OtLanguageContext::LanguageOfTag(tag);
    if (language == 0) return OT95_ERR_LANGUAGE;
    auto* made = static_cast<ot95_collation*>(std::malloc(sizeof(ot95_collation)));
    if (made == nullptr) return OT95_ERR_MEMORY;
    const bool isLevelled = (cmpOp & OT_CMP_ORDER_ONLY) == 0;
    *made = {language, cmpOp, isLevelled ? ot95::FinishedKeys::Of(language) : nullptr};
    *out = made;
    return OT95_OK;
  });
}

int ot95_collation_compare(const ot95_collation* collation, const char* a, size_t a_size,
                           const char* b, size_t b_size, int* sign) {
  if (sign == nullptr || collation == nullptr) return OT95_ERR_ARGUMENT;
  const ot95::FinishedKeys* const keys = collation->keys;
  if (keys == nullptr || !AreTextSizes(a_size, b_size) || a == nullptr || b == nullptr) {
    return CompareAnyTexts(collation, a, a_size, b, b_size, sign);
  }
  int first = ot95::SignOfFirstByte({keys}, a, a_size, b, b_size);
  if (first == 0 && DifferInFirstLetter(a, a_size, b, b_size)) {
    first = ot95::SignOfFirstLetter({keys}, a, b);
  }
  if (first == 0) return CompareTexts(collation, a, a_size, b, b_size, sign);
  *sign = first;
  return OT95_OK;
}

int ot95_collation_match(const ot95_collation* collation, const char* text, size_t size,
                         const char* pattern, size_t pattern_size, int* matches) {
  return GuardedResult(matches, [&](int& made) {
    int sign = 0;
    const int status =
        CompareBoth(collation, OT_CMP_NO_WILDCARDS, {text, size}, {pattern, pattern_size}, sign);
    made = sign == 0;
    return status;
  });
}

int ot95_collation_upper(const ot95_collation* collation, const char* text, size_t size,
                         ot95_buffer* out) {
  return GuardedFor(out, [&] {
    return ChangeCase<CaseOp::kUpper, OtToUpper>(collation, {text, size}, out);
  });
}

int ot95_collation_lower(const ot95_collation* collation, const char* text, size_t size,
                         ot95_buffer* out) {
  return GuardedFor(out, [&] {
    return ChangeCase<CaseOp::kLower, OtToLower>(collation, {text, size}, out);
  });
}
