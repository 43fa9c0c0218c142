// What the object store reads from outside: a schema, a query, a file of objects, and the pages of
// a storage file. All of it is refused with BadInput or understood.
//
// An input: which of the four; then its text or bytes.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "bad_input.h"
#include "fuzzing.h"
#include "import.h"
#include "pages.h"
#include "plan.h"
#include "query.h"
#include "store.h"

using namespace fuzzing;
using ot95::tools::BadInput;

namespace {

constexpr const char* kSchema = R"({"classes": [{"name": "Place", "members": [
  {"name": "code", "type": "OtString", "indexed": true},
  {"name": "sizes", "type": "long", "count": 2, "indexed": true},
  {"name": "since", "type": "OtDate", "indexed": true},
  {"name": "share", "type": "double"}]}]})";

/// A directory in memory where the machine has one, gone with the process.
class Scratch {
 public:
  Scratch() {
    const char* base = std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    path_ = std::string(base) + "/otdb_fuzz_XXXXXX";
    Require(mkdtemp(path_.data()) != nullptr);
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::string File(View bytes) const {
    const std::string path = path_ + "/file";
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
    return path;
  }
  std::string Folder() const { return path_ + "/store"; }

 private:
  std::string path_;
};

const Scratch& Files() {
  static const Scratch scratch;
  return scratch;
}

void ReadSchema(const std::string& text) {
  const otdb::Schema schema = otdb::Schema::FromJson(text);
  // What was understood is what it says of itself.
  Require(otdb::Schema::FromJson(schema.ToJson()).ToJson() == schema.ToJson());
}

void ReadQuery(const std::string& text) {
  static const otdb::Schema schema = otdb::Schema::FromJson(kSchema);
  const otdb::Query query = otdb::ParseQuery(schema, text);
  const otdb::Class& type = *query.type;
  static const otdb::Bytes stored = otdb::Object(type, schema.form).Stored();
  query.where.Holds(type, otdb::Record(type, stored, schema.form), schema.form);
}

void ReadObjects(View bytes) {
  static const bool made = [] {
    otdb::Store::Create(Files().Folder(), otdb::Schema::FromJson(kSchema));
    return true;
  }();
  static_cast<void>(made);
  static otdb::Store store(Files().Folder());
  otdb::ImportOptions options;
  options.skipBad = true;
  otdb::Import(store, store.GetSchema().classes[0], Files().File(bytes), options);
}

template <class Word>
void ReadPages(View bytes) {
  const otdb::PageFile<Word> pages(Files().File(bytes));
  std::uint64_t sum = 0;
  const auto look = [&](otdb::View key, otdb::View value) {
    for (const unsigned char byte : key) sum += byte;
    for (const unsigned char byte : value) sum += byte;
  };
  pages.Visit("facts", look);
  pages.Visit("Place", look);
  Require(sum < std::uint64_t{1} << 40);  // so that every byte is looked at
}

void Run(std::uint8_t choice, View rest) {
  const std::string text(rest.begin(), rest.end());
  switch (choice % 8) {
    case 0:
    case 4:
      return ReadSchema(text);
    case 1:
    case 5:
      return ReadQuery(text);
    case 2:
      return ReadObjects(rest);
    case 3:
      return ReadPages<std::uint32_t>(rest);
    default:
      return ReadPages<std::uint64_t>(rest);
  }
}

}  // namespace

extern "C" OT95_EXPORT int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Start();
  Input in({data, size});
  const std::uint8_t choice = in.Byte();
  try {
    Run(choice, in.Rest());
  } catch (const BadInput&) {
  }
  return 0;
}
