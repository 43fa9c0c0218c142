// Stored bytes of every type: what verifies must load, store, compare, hash, translate and be
// estimated; what doesn't must be safe where an operation takes lengths.
//
// An input: version, type, format, count, op (2 bytes), room, length of the first record; then the
// first record and, to the end, the second.
#include "fuzzing.h"

using namespace fuzzing;

namespace {

constexpr unsigned char kKeyForm = 0x80;

bool IsMemoryForm(unsigned char format) {
  return (format & OT_FORMAT_MEMORY) != 0;
}

/// Keys that may go as they came or be replaced.
class Keys : public OtIdxBounds {
 public:
  Keys() = default;
  Keys(View lower, View upper) {
    Set(lowerKey, lowerKeyLength, lower);
    Set(upperKey, upperKeyLength, upper);
  }
  ~Keys() {
    std::free(lowerKey);
    std::free(upperKey);
  }
  Keys(const Keys&) = delete;
  Keys& operator=(const Keys&) = delete;

 private:
  static void Set(void*& key, unsigned char& length, View bytes) {
    if (bytes.empty()) return;  // a length of 0 would stand for a whole value
    bytes = bytes.first(bytes.size() < 255 ? bytes.size() : 255);
    key = std::malloc(bytes.size());
    std::memcpy(key, bytes.data(), bytes.size());
    length = static_cast<unsigned char>(bytes.size());
  }
};

/// One input on its type. With the memory bit the bytes are stored ones to Load and Store, and
/// values to the operations on either form: those get values then.
class Trial {
 public:
  explicit Trial(Input& in)
      : manager_(in.Byte() % 2 != 0 ? 3 : 5),
        id_(static_cast<char>(in.Byte() % 41)),
        format_(in.Byte()),
        count_(in.Byte() % 8 + 1UL),
        op_(in.Word()),
        room_(in.Byte()) {}

  void Run(View first, View second) {
    const Block a(first);
    const Block b(second);
    if (!manager_.IsFixed(id_)) TryLengths(a, b);
    unsigned long size = 0;
    if (!IsMemoryForm(format_) &&
        manager_.VerifyStored(id_, a.Data(), a.Length(), format_, count_, size) == 0) {
      Require(size <= a.Length());
      Estimate(a, first, second);
    }
    // Loading takes no length: a key that was cut isn't for it.
    const auto whole = static_cast<unsigned char>(format_ & ~kKeyForm);
    if (Holds(a, whole, size)) {
      const Block record(first.first(size));
      TryVerified(record);
      Pair(record, b, whole);
    }
  }

 private:
  /// Whether a block begins with a record, of `size` bytes. Bytes in a form of memory are nobody's
  /// record, but Load and Store of a fixed-size type take them.
  bool Holds(const Block& block, unsigned char format, unsigned long& size) {
    if (!IsMemoryForm(format)) {
      return manager_.VerifyStored(id_, block.Data(), block.Length(), format, count_, size) == 0;
    }
    size = manager_.IsFixed(id_) ? manager_.DiskLenGet(id_, nullptr, format, count_, format) : 0;
    return manager_.IsFixed(id_) && size <= block.Length();
  }

  // The texts, whose operations know how many bytes there are.
  void TryLengths(const Block& a, const Block& b) {
    if (IsMemoryForm(format_) || a.Length() == 0 || b.Length() == 0) return;
    int status = 0;
    manager_.Cmp(id_, a.Length(), a.Data(), b.Length(), b.Data(), op_, count_, format_, status);
    manager_.Hash(id_, a.Length(), a.Data(), count_, format_, status);
    TranslateStored(a);
  }

  void TranslateStored(const Block& from) {
    for (const unsigned form : {0x81u, 0x82u, 0x01u, 0x02u}) {
      const Block to(manager_.IsFixed(id_) ? room_ + 16 * count_ : room_);
      manager_.Translate(id_, to.Data(), static_cast<unsigned char>(form), to.Length(), from.Data(),
                         format_, from.Length(), count_);
    }
  }

  void Estimate(const Block& a, View first, View second) {
    const View half = second.first(second.size() / 2);
    Keys bounds(half, second.subspan(half.size()));
    Keys limits;
    Keys filled(half, first);
    unsigned short op = op_;
    manager_.EvalAndBound(id_, &bounds, op, a.Data(), format_, count_, &limits, nullptr);
    op = op_;
    manager_.EvalAndBound(id_, &bounds, op, a.Data(), format_, count_, &filled, nullptr);
    op = op_;
    manager_.EvalAndBound(id_, nullptr, op, a.Data(), format_, count_, nullptr, nullptr);
    // Guards that were set in the operand are gone again.
    Require(std::memcmp(a.Data(), first.data(), first.size()) == 0);
  }

  void TryVerified(const Block& record) {
    void* values = manager_.Create(id_, count_);
    if (values == nullptr) return;
    if (const auto construct = manager_.ConstructorPtrGet(id_);
        construct && manager_.IsFixed(id_)) {
      construct(values, count_, 0);
    }
    Require(manager_.Load(id_, values, record.Data(), Whole(), count_) == record.Length());
    int status = 0;
    manager_.Hash(id_, 0, values, count_, OT_FORMAT_MEMORY, status);
    StoreAgain(values);
    if (!IsMemoryForm(format_)) {
      manager_.Hash(id_, 0, record.Data(), count_, Whole(), status);
      TranslateStored(record);
      manager_.Translate(id_, values, OT_FORMAT_MEMORY, manager_.MemLenGet(id_, count_),
                         record.Data(), Whole(), record.Length(), count_);
    }
    manager_.Delete(id_, values, count_);
  }

  void StoreAgain(void* values) {
    const unsigned long size = manager_.DiskLenGet(id_, values, Whole(), count_, OT_FORMAT_MEMORY);
    const Block stored(size);
    Require(manager_.Store(id_, stored.Data(), values, Whole(), count_) == size);
    unsigned long consumed = 0;
    Require(Holds(stored, Whole(), consumed));
    if (IsMemoryForm(format_)) return;
    int status = 0;
    manager_.Cmp(id_, size, stored.Data(), size, stored.Data(), op_, count_, Whole(), status);
  }

  /// Two records that are both good, with lengths and without.
  void Pair(const Block& a, const Block& b, unsigned char whole) {
    if (IsMemoryForm(whole)) return;
    manager_.Cmp(id_, a.Data(), a.Data(), op_, count_, whole);
    unsigned long size = 0;
    if (manager_.VerifyStored(id_, b.Data(), b.Length(), whole, count_, size) != 0) return;
    int status = 0;
    manager_.Cmp(id_, a.Data(), b.Data(), op_, count_, whole);
    manager_.Cmp(id_, a.Length(), a.Data(), b.Length(), b.Data(), op_, count_, whole, status);
  }

  unsigned char Whole() const { return static_cast<unsigned char>(format_ & ~kKeyForm); }

  OtTypeMgr manager_;
  char id_;
  unsigned char format_;
  unsigned long count_;
  unsigned short op_;
  std::size_t room_;
};

}  // namespace

extern "C" OT95_EXPORT int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Start();
  Input in({data, size});
  Trial trial(in);
  const View first = in.Take(in.Byte());
  trial.Run(first, in.Rest());
  return 0;
}
