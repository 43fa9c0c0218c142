// Loads the first of the libraries that are named, which brings the others along, starts it and
// ends it, and unloads it: none of them may stay behind.
#include <dlfcn.h>

#include <cstdio>

int main(int count, char** libraries) {
  void* const loaded = dlopen(libraries[1], RTLD_NOW | RTLD_LOCAL);
  if (loaded == nullptr) return std::fprintf(stderr, "%s\n", dlerror()), 1;
  // ___OtTypemgrContext(int)
  auto* const context = reinterpret_cast<void (*)(int)>(dlsym(loaded, "_Z19___OtTypemgrContexti"));
  if (context == nullptr) return std::fprintf(stderr, "%s\n", dlerror()), 1;
  context(1);
  context(0);
  dlclose(loaded);
  int left = 0;
  for (int i = 1; i < count; ++i) {
    if (dlopen(libraries[i], RTLD_NOW | RTLD_NOLOAD) == nullptr) continue;
    std::fprintf(stderr, "%s is still loaded\n", libraries[i]);
    ++left;
  }
  return left;
}
