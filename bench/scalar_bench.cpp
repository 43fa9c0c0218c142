// Arrays of scalars: stored, compared, hashed; and the price of the table.
#include <cstring>
#include <memory>
#include <vector>

#include "ot95/typemgr.h"
#include "workload.h"

namespace bench {
namespace {

constexpr std::size_t kMebibyte = 1 << 20;

using Block = std::vector<unsigned char>;

std::shared_ptr<Block> Filled(std::size_t size) {
  auto block = std::make_shared<Block>(size);
  for (std::size_t i = 0; i < size; ++i) (*block)[i] = static_cast<unsigned char>(i * 31 + 7);
  return block;
}

void Store(char id, std::size_t size, Goal goal) {
  const OtTypeDescriptor* row = CurrentFactory[int{id}];
  const auto source = Filled(size);
  const auto disk = std::make_shared<Block>(size);
  Add(
      std::string("store big-endian ") + row->name + ", " + std::to_string(size / kMebibyte) +
          " MiB",
      goal,
      [=] {
        row->Store(disk->data(), source->data(), OT_FORMAT_BIG_ENDIAN, size / row->memoryLength);
        benchmark::ClobberMemory();
      },
      [=] {
        std::memcpy(disk->data(), source->data(), size);
        benchmark::ClobberMemory();
      });
}

void Compare(char id, unsigned char format, const char* form, Goal goal) {
  const OtTypeDescriptor* row = CurrentFactory[int{id}];
  const auto a = Filled(kMebibyte);
  const auto b = Filled(kMebibyte);
  Add(
      std::string("compare equal ") + row->name + " " + form + ", 1 MiB", goal,
      [=] {
        int status = 0;
        benchmark::DoNotOptimize(row->Compare(format, 0, a->data(), 0, b->data(), 0,
                                              kMebibyte / row->memoryLength, status));
      },
      [=] { benchmark::DoNotOptimize(std::memcmp(a->data(), b->data(), kMebibyte)); });
}

__attribute__((target_clones("avx2", "default"), optimize("O3"))) std::uint32_t PlainFold(
    const std::uint32_t* words, std::size_t count) {
  std::uint32_t folded = 0;
  for (std::size_t i = 0; i < count; ++i) folded ^= words[i];
  return folded;
}

void Hash(std::size_t size, Goal goal) {
  const OtTypeDescriptor* row = CurrentFactory[7];
  const auto block = Filled(size);
  Add(
      "hash int, " + std::to_string(size / 1024) + " KiB", goal,
      [=] {
        int status = 0;
        benchmark::DoNotOptimize(row->Hash(OT_FORMAT_MEMORY, 0, block->data(), size / 4, status));
      },
      [=] {
        benchmark::DoNotOptimize(
            PlainFold(reinterpret_cast<const std::uint32_t*>(block->data()), size / 4));
      });
}

void Dispatch() {
  static int a = 5;
  static int b = 7;
  static OtTypeMgr manager;
  static OtCompareFunc direct = manager.CmpFuncPtrGet(7);
  benchmark::DoNotOptimize(direct);
  Add(
      "compare one int through the manager", 0.5,
      [] { benchmark::DoNotOptimize(manager.Cmp(7, &a, &b, 0, 1, OT_FORMAT_MEMORY)); },
      [] {
        int status = 0;
        benchmark::DoNotOptimize(direct(OT_FORMAT_MEMORY, 0, &a, 0, &b, 0, 1, status));
      });
}

}  // namespace

void RegisterScalars() {
  for (const char id : {char{1}, char{2}, char{3}}) {  // 2, 4 and 8 bytes wide
    Store(id, kMebibyte, 0.85);
    Store(id, 64 * kMebibyte, 1);
  }
  for (const char id : {char{1}, char{7}, char{3}}) {
    Compare(id, OT_FORMAT_MEMORY, "in memory", 0.8);
    Compare(id, OT_FORMAT_BIG_ENDIAN, "big-endian", 0.4);
  }
  Hash(1024, 0.9);
  Hash(64 * kMebibyte, 0.9);
  Dispatch();
}

}  // namespace bench
