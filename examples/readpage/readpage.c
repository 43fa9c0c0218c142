/* Reads an old page: readpage FILE TYPE... prints its records, members behind one another, in big-endian
   form. Bytes that can't be such values are told with their offset; none is taken on trust. */
#include <ot95c/ot95c.h>
#include <stdio.h>
#include <stdlib.h>

enum { kMostBytes = 1 << 20, kMostMembers = 16 };

static int Fail(const char* what, int status) {
  fprintf(stderr, "readpage: %s: %s\n", what, ot95_strerror(status));
  return 2;
}

/* Prints the value at an offset. Returns how many bytes it takes, or 0. */
static size_t PrintValue(int type, const unsigned char* page, size_t size, size_t at) {
  const ot95_array value = {type, OT95_FORM_BIG_ENDIAN, page + at, size - at, 1};
  char text[4096];
  ot95_buffer printed = {text, sizeof text, 0};
  size_t end = 0;
  int status = ot95_verify(&value, &end);
  if (status == OT95_OK) status = ot95_print(&value, 0, NULL, &printed);
  if (status != OT95_OK) {
    printf("offset %zu: %s\n", at + end, ot95_strerror(status));
    return 0;
  }
  fwrite(text, 1, printed.size, stdout);
  return end;
}

int main(int count, char** arguments) {
  static unsigned char page[kMostBytes];
  int types[kMostMembers], members = count - 2;
  if (members < 1 || members > kMostMembers) return Fail("FILE TYPE...", OT95_ERR_ARGUMENT);
  for (int i = 0; i < members; ++i) {
    const int status = ot95_type_by_name(arguments[i + 2], &types[i]);
    if (status != OT95_OK) return Fail(arguments[i + 2], status);
  }
  FILE* file = fopen(arguments[1], "rb");
  if (file == NULL) return Fail(arguments[1], OT95_ERR_ARGUMENT);
  const size_t size = fread(page, 1, sizeof page, file);
  fclose(file);

  for (size_t at = 0; at < size;) {
    for (int i = 0; i < members; ++i) {
      const size_t taken = PrintValue(types[i], page, size, at);
      if (taken == 0) return 1;
      at += taken;
      putchar(i + 1 < members ? '\t' : '\n');
    }
  }
  return 0;
}
