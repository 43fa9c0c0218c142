// What the C interface allocates, and what becomes of it where memory is short. The sanitizers have
// an allocator of their own: there this test has nothing to count.
#include <gtest/gtest.h>

#include "c/arrays.h"

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

thread_local long allocations = 0;
thread_local long failing = -1;  // the number of the one that fails, and all behind it

bool Fails() {
  return failing >= 0 && allocations >= failing;
}

}  // namespace

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size) {
  const bool fails = Fails();
  ++allocations;
  return fails ? nullptr : __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
  const bool fails = Fails();
  ++allocations;
  return fails ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, size_t size) {
  const bool fails = Fails();
  ++allocations;
  return fails ? nullptr : __libc_realloc(block, size);
}
}

namespace {

struct Operation {
  const char* name;
  std::function<int(ot95_buffer*)> function;
};

class Operations {
 public:
  Operations() {
    ot95_collation_open("sv", OT95_IGNORE_CASE, &collation_);
    text_ = Scanned(11, {"\xc3\x96rebro, and a tail"}, OT95_FORM_NATIVE).bytes;
    number_ = Scanned(32, {"7"}, OT95_FORM_NATIVE).bytes;
    array_ = ArrayOf(11, OT95_FORM_NATIVE, text_);
    numbers_ = ArrayOf(32, OT95_FORM_NATIVE, number_);
  }
  ~Operations() { ot95_free(collation_); }
  Operations(const Operations&) = delete;
  Operations& operator=(const Operations&) = delete;

  std::vector<Operation> WithoutAllocation() {
    return {
        {"collation compare",
         [this](ot95_buffer* out) { return Sign(out, &ot95_collation_compare); }},
        {"collation match", [this](ot95_buffer* out) { return Sign(out, &ot95_collation_match); }},
        {"collation upper",
         [this](ot95_buffer* out) { return ot95_collation_upper(collation_, kText, 256, out); }},
        {"collation lower",
         [this](ot95_buffer* out) { return ot95_collation_lower(collation_, kText, 256, out); }},
        {"collation key",
         [this](ot95_buffer* out) { return ot95_collation_key(collation_, kText, 256, out); }},
        {"collation hash",
         [this](ot95_buffer* out) {
           out->size = sizeof(uint64_t);
           return ot95_collation_hash(collation_, kText, 256, 9, static_cast<uint64_t*>(out->data));
         }},
        {"sort key", [this](ot95_buffer* out) { return ot95_sort_key(&array_, 0, out); }},
        {"compare",
         [this](ot95_buffer* out) {
           int sign = 0;
           out->size = 0;
           return ot95_compare(&array_, &array_, 0, &sign);
         }},
        {"hash",
         [this](ot95_buffer* out) {
           out->size = sizeof(uint32_t);
           return ot95_hash(&array_, static_cast<uint32_t*>(out->data));
         }},
    };
  }

  std::vector<Operation> WithAllocation() {
    return {
        {"scan a text",
         [](ot95_buffer* out) {
           const ot95_span text = {kText, 256};
           return ot95_scan(11, &text, 1, nullptr, 1, out);
         }},
        {"scan a text of another code set",
         [](ot95_buffer* out) {
           const ot95_span text = {kText, 256};
           const ot95_scan_options options = {sizeof options, 1, 1, nullptr};
           return ot95_scan(11, &text, 1, &options, 1, out);
         }},
        {"scan a number",
         [](ot95_buffer* out) {
           const ot95_span text = {"77", 2};
           return ot95_scan(32, &text, 1, nullptr, 1, out);
         }},
        {"print a text", [this](ot95_buffer* out) { return ot95_print(&array_, 0, nullptr, out); }},
        {"print a number",
         [this](ot95_buffer* out) { return ot95_print(&numbers_, 0, nullptr, out); }},
        {"translate", [this](ot95_buffer* out) { return ot95_translate(&array_, 2, out); }},
        {"make a key", [this](ot95_buffer* out) { return ot95_translate(&array_, 0x82, out); }},
        {"convert", [this](ot95_buffer* out) { return ot95_convert(&numbers_, 11, 1, out); }},
        {"default", [](ot95_buffer* out) { return ot95_default(11, 1, 1, out); }},
        {"upper case of a long text",
         [this](ot95_buffer* out) {
           return ot95_collation_upper(collation_, long_.data(), long_.size(), out);
         }},
    };
  }

 private:
  static constexpr char kText[] =
      "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789ab"
      "cdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef01234567"
      "89abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";

  int Sign(ot95_buffer* out,
           int (*function)(const ot95_collation*, const char*, size_t, const char*, size_t, int*)) {
    out->size = sizeof(int);
    return function(collation_, kText, 256, kText, 256, static_cast<int*>(out->data));
  }

  ot95_collation* collation_ = nullptr;
  std::string text_, number_, long_ = std::string(5000, 'x');
  ot95_array array_ = {}, numbers_ = {};
};

struct Room {
  unsigned char bytes[8192] = {};
  ot95_buffer buffer = {bytes, sizeof bytes, 0};

  std::string Result() const { return std::string(bytes, bytes + buffer.size); }
};

TEST(Memory, IsNotAllocatedForShortTexts) {
  Operations operations;
  for (const Operation& operation : operations.WithoutAllocation()) {
    Room room;
    ASSERT_EQ(operation.function(&room.buffer), OT95_OK) << operation.name;
    const long before = allocations;
    operation.function(&room.buffer);
    EXPECT_EQ(allocations, before) << operation.name;
  }
}

TEST(Memory, MayRunOutAtEveryAllocation) {
  Operations operations;
  for (const Operation& operation : operations.WithAllocation()) {
    int status = OT95_ERR_MEMORY;
    for (long number = 0; number < 200; ++number) {
      Room room;
      allocations = 0;
      failing = number;
      status = operation.function(&room.buffer);
      failing = -1;
      EXPECT_TRUE(status <= OT95_OK && status > OT95_ERR_INTERNAL)
          << operation.name << " " << number;
    }
    EXPECT_EQ(status, OT95_OK) << operation.name;
  }
}

}  // namespace

#endif
