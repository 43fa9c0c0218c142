#ifndef OT95_TESTS_C_ARRAYS_H
#define OT95_TESTS_C_ARRAYS_H

// Stored arrays as the tests of the C interface ask for them.

#include <functional>
#include <string>
#include <vector>

#include "bytes_testing.h"
#include "ot95c/ot95c.h"

/// What a function gave: its status, and the bytes.
struct Given {
  int status = 0;
  std::string bytes;

  std::string Hex() const { return ::Hex(bytes.data(), bytes.size()); }
  bool operator==(const Given& other) const {
    return status == other.status && bytes == other.bytes;
  }
};

/// Asks for the size first, and then for the result in a block of exactly that size.
inline Given Give(const std::function<int(ot95_buffer*)>& function) {
  ot95_buffer out = {nullptr, 0, 0};
  const int asked = function(&out);
  if (asked != OT95_ERR_ROOM) return {asked, ""};
  const ExactBlock block(out.size);
  out = {block.data(), out.size, 0};
  Given given{function(&out), ""};
  if (given.status == OT95_OK) given.bytes.assign(static_cast<char*>(out.data), out.size);
  return given;
}

inline int TypeOf(const char* name) {
  int type = -1;
  ot95_type_by_name(name, &type);
  return type;
}

inline ot95_span Span(const std::string& text) {
  return {text.data(), text.size()};
}

inline Given Scanned(int type, const std::vector<std::string>& texts, unsigned form,
                     const ot95_scan_options* options = nullptr) {
  std::vector<ot95_span> spans;
  for (const std::string& text : texts) spans.push_back(Span(text));
  return Give([&](ot95_buffer* out) {
    return ot95_scan(type, spans.data(), spans.size(), options, form, out);
  });
}

inline ot95_array ArrayOf(int type, unsigned form, const std::string& bytes, size_t count = 1) {
  return {type, form, bytes.data(), bytes.size(), count};
}

inline Given Printed(const ot95_array& array, size_t index, const char* format = nullptr) {
  return Give([&](ot95_buffer* out) { return ot95_print(&array, index, format, out); });
}

#endif
