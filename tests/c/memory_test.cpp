// What the C interface allocates, and what becomes of it where memory is short. The sanitizers have
// an allocator of their own: there this test has nothing to count.
#include <gtest/gtest.h>

#include <cstring>

#include "c/arrays.h"

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

thread_local long allocations = 0;
thread_local long blocks = 0;         // that have been allocated and not freed
thread_local long failing = -1;       // the number of the one that fails
thread_local bool allBehind = false;  // or all from there on

/// Counts an allocation. @return whether it may be made.
bool Allows() {
  const long number = allocations++;
  const bool fails = failing >= 0 && (allBehind ? number >= failing : number == failing);
  if (!fails) ++blocks;
  return !fails;
}

}  // namespace

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void __libc_free(void* block);

void* malloc(size_t size) {
  return Allows() ? __libc_malloc(size) : nullptr;
}
void* calloc(size_t count, size_t size) {
  return Allows() ? __libc_calloc(count, size) : nullptr;
}
void* realloc(void* block, size_t size) {
  if (!Allows()) return nullptr;
  if (block != nullptr) --blocks;
  return __libc_realloc(block, size);
}
void free(void* block) {
  if (block != nullptr) --blocks;
  __libc_free(block);
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
    ot95_value value = {OT95_KIND_BYTES, 0, {0}};
    value.as.bytes = {"abc", 3};
    blob_ = Give([&](ot95_buffer* out) {
              return ot95_encode(TypeOf("OtBlob"), &value, 1, 1, out);
            }).bytes;
    blobs_ = ArrayOf(TypeOf("OtBlob"), OT95_FORM_NATIVE, blob_);
    for (int i = 0; i < 40; ++i) many_ += "aba";
    many_ += "c";
    for (int i = 0; i < 200; ++i)
      sharp_ +=
          "stra\xc3\x9f"
          "e";
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
    std::vector<Operation> all = ThatScan();
    for (auto part : {ThatMove(), ThatCompare()}) all.insert(all.end(), part.begin(), part.end());
    return all;
  }

 private:
  static constexpr char kText[] =
      "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789ab"
      "cdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef01234567"
      "89abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";

  static int Scan(ot95_buffer* out, const char* type, const char* text,
                  const ot95_scan_options* options = nullptr) {
    const ot95_span span = {text, std::strlen(text)};
    return ot95_scan(TypeOf(type), &span, 1, options, OT95_FORM_NATIVE, out);
  }
  static std::vector<Operation> ThatScan() {
    static constexpr ot95_scan_options latin = {sizeof latin, 1, 1, nullptr, 0};
    static constexpr ot95_scan_options formatted = {sizeof formatted, 253, 1, "%Y-%m-%d", 0};
    static constexpr ot95_scan_options strict = {sizeof strict, 253, 1, nullptr, OT95_STRICT};
    return {
        {"scan a text", [](ot95_buffer* out) { return Scan(out, "OtString", kText); }},
        {"scan a text of another code set",
         [](ot95_buffer* out) { return Scan(out, "OtString", kText, &latin); }},
        {"scan an old text", [](ot95_buffer* out) { return Scan(out, "OtIString", "abc"); }},
        {"scan a number", [](ot95_buffer* out) { return Scan(out, "OtNull_short", "77"); }},
        {"scan a real", [](ot95_buffer* out) { return Scan(out, "double", "7.25"); }},
        {"scan a null", [](ot95_buffer* out) { return Scan(out, "OtNull_long", "{NULL}"); }},
        {"scan a date", [](ot95_buffer* out) { return Scan(out, "OtDate", "Sun 02.Jan 2000"); }},
        {"scan a date by a format",
         [](ot95_buffer* out) { return Scan(out, "OtDate", "2000-12-31", &formatted); }},
        {"scan a date strictly",
         [](ot95_buffer* out) { return Scan(out, "OtDate", "2000-12-31", &strict); }},
        {"scan a text strictly",
         [](ot95_buffer* out) { return Scan(out, "OtString", kText, &strict); }},
        {"scan a number strictly",
         [](ot95_buffer* out) { return Scan(out, "OtNull_double", "7.5", &strict); }},
        {"scan an identifier", [](ot95_buffer* out) { return Scan(out, "OtRef", "(1:0-7#2, 5)"); }},
        {"scan an empty blob", [](ot95_buffer* out) { return Scan(out, "OtBlob", ""); }},
    };
  }

  std::vector<Operation> ThatMove() {
    return {
        {"print a text", [this](ot95_buffer* out) { return ot95_print(&array_, 0, nullptr, out); }},
        {"print a text by a format",
         [this](ot95_buffer* out) { return ot95_print(&array_, 0, "%s", out); }},
        {"print a number",
         [this](ot95_buffer* out) { return ot95_print(&numbers_, 0, nullptr, out); }},
        {"translate", [this](ot95_buffer* out) { return ot95_translate(&array_, 2, out); }},
        {"translate a blob", [this](ot95_buffer* out) { return ot95_translate(&blobs_, 2, out); }},
        {"make a key", [this](ot95_buffer* out) { return ot95_translate(&array_, 0x82, out); }},
        {"convert", [this](ot95_buffer* out) { return ot95_convert(&numbers_, 11, 1, out); }},
        {"convert a text", [this](ot95_buffer* out) { return ot95_convert(&array_, 20, 1, out); }},
        {"default", [](ot95_buffer* out) { return ot95_default(11, 1, 1, out); }},
        {"encode blobs",
         [](ot95_buffer* out) {
           ot95_value value = {OT95_KIND_BYTES, 0, {0}};
           value.as.bytes = {"abc", 3};
           return ot95_encode(TypeOf("OtBlob"), &value, 1, 1, out);
         }},
        {"size in a form",
         [this](ot95_buffer* out) {
           out->size = sizeof(size_t);
           return ot95_size(&array_, 2, static_cast<size_t*>(out->data));
         }},
        {"whether null",
         [this](ot95_buffer* out) {
           out->size = sizeof(int);
           return ot95_is_null(&array_, 0, static_cast<int*>(out->data));
         }},
    };
  }

  std::vector<Operation> ThatCompare() {
    return {
        {"estimate",
         [this](ot95_buffer* out) {
           auto* result = static_cast<ot95_estimate_result*>(out->data);
           result->struct_size = out->size = sizeof *result;
           const ot95_span low = {"\1", 1}, high = {"\377", 1};
           return ot95_estimate(&array_, unsigned{OT95_EQUAL} | OT95_WILDCARDS, &low, &high,
                                result);
         }},
        {"match with many candidates",
         [this](ot95_buffer* out) {
           static constexpr char pattern[] = "*a?a?a?a?a?a?a?a?a?a?ab*c";
           out->size = sizeof(int);
           return ot95_collation_match(collation_, many_.data(), many_.size(), pattern,
                                       sizeof pattern - 1, static_cast<int*>(out->data));
         }},
        {"compare long texts",
         [this](ot95_buffer* out) {
           out->size = sizeof(int);
           return ot95_collation_compare(collation_, long_.data(), long_.size(), long_.data(),
                                         long_.size() - 1, static_cast<int*>(out->data));
         }},
        {"key of a long text",
         [this](ot95_buffer* out) {
           return ot95_collation_key(collation_, long_.data(), long_.size(), out);
         }},
        {"upper case of a long text",
         [this](ot95_buffer* out) {
           return ot95_collation_upper(collation_, long_.data(), long_.size(), out);
         }},
        {"a longer upper case of a long text",
         [this](ot95_buffer* out) {
           return ot95_collation_upper(collation_, sharp_.data(), sharp_.size(), out);
         }},
        {"find",
         [this](ot95_buffer* out) {
           auto* found = static_cast<int*>(out->data);
           size_t place = 0;
           out->size = sizeof *found;
           return ot95_collation_find(collation_, sharp_.data(), sharp_.size(), "sse", 3, found,
                                      &place);
         }},
        {"replace all",
         [this](ot95_buffer* out) {
           const ot95_edit edit = {
               sizeof edit, OT95_REPLACE_ALL, Span(sharp_), {"xyz", 3}, {"st", 2}, 0, OT95_REST};
           return ot95_collation_edit(collation_, &edit, out);
         }},
        {"copy",
         [this](ot95_buffer* out) {
           const ot95_edit edit = {sizeof edit, OT95_COPY, Span(sharp_), {"", 0}, {"", 0}, 3, 100};
           return ot95_collation_edit(collation_, &edit, out);
         }},
        {"split",
         [this](ot95_buffer* out) {
           size_t place = 0;
           return ot95_collation_split(collation_, sharp_.data(), sharp_.size(), "e", 1, &place,
                                       out);
         }},
        {"open a collation",
         [](ot95_buffer* out) {
           ot95_collation* made = nullptr;
           out->size = 0;
           const int status = ot95_collation_open("de-phonebook", 0, &made);
           ot95_free(made);
           return status;
         }},
    };
  }

  int Sign(ot95_buffer* out,
           int (*function)(const ot95_collation*, const char*, size_t, const char*, size_t, int*)) {
    out->size = sizeof(int);
    return function(collation_, kText, 256, kText, 256, static_cast<int*>(out->data));
  }

  ot95_collation* collation_ = nullptr;
  std::string text_, number_, blob_;
  std::string long_ = std::string(5000, 'x'), many_, sharp_;
  ot95_array array_ = {}, numbers_ = {}, blobs_ = {};
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

/// Lets each allocation of an operation fail, alone or with all behind it: the answer is right, or
/// says that memory is short, and nothing stays behind.
void FailEachAllocation(const Operation& operation) {
  Room whole;
  ASSERT_EQ(operation.function(&whole.buffer), OT95_OK) << operation.name;
  bool goesOn = true;
  for (long number = 0; goesOn; ++number) {
    Room room;
    room.buffer.size = 12345;
    const long before = blocks;
    allocations = 0;
    failing = number;
    const int status = operation.function(&room.buffer);
    goesOn = allocations > number;
    failing = -1;
    EXPECT_EQ(blocks, before) << operation.name << " " << number;
    if (status == OT95_OK) {
      EXPECT_EQ(room.Result(), whole.Result()) << operation.name << " " << number;
    } else {
      EXPECT_EQ(status, OT95_ERR_MEMORY) << operation.name << " " << number;
    }
    ASSERT_LT(number, 1000) << operation.name;
  }
}

TEST(Memory, MayRunOutAtEveryAllocation) {
  Operations operations;
  for (const bool all : {false, true}) {
    allBehind = all;
    for (const Operation& operation : operations.WithAllocation()) FailEachAllocation(operation);
    for (const Operation& operation : operations.WithoutAllocation()) FailEachAllocation(operation);
  }
}

}  // namespace

#endif
