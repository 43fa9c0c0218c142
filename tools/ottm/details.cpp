// What commands do that their summaries and options don't say.
#include "details.h"

#include <map>

namespace ottm {
namespace {

const std::map<std::string_view, const char*> kDetails = {
    {"batch", "A command that would read the batch's own input is refused."},
    {"completion",
     "bash: source <(ottm completion bash). zsh: put it into a folder of $fpath as _ottm. fish: "
     "ottm completion fish | source."},
    {"diff",
     "Both files are walked at once, and record is held against record, by place. Two values are "
     "the "
     "same if they are stored alike. The first damaged record of either file ends the walk. The "
     "exit "
     "status is 1 if there is a difference or damage."},
    {"estimate",
     "Told are the share of an index from --low to --high that satisfies the comparison, the "
     "operator "
     "word afterwards, and the keys that limit the scan."},
    {"guess",
     "Nothing is taken for granted: each reading is a type in a form, and told are how many values "
     "of it check out, where the first one begins, and how much of the bytes they explain. Texts, "
     "blobs and dates of the years 1000 to 2999 are looked for everywhere, for few bytes at random "
     "would be one. Any bytes are numbers: these stand below, and only where they fill the file "
     "from "
     "its beginning. Readings may overlap, for all of them are possible."},
    {"hash64",
     "The hash is equal where the arrays compare as equal under --op, and the same on all "
     "machines. "
     "In JSON it is a text."},
    {"inspect",
     "Each record is printed behind its offset; an array has a column for each element. With "
     "--json "
     "each record is an object on a line of its own. The walk stops at the first damaged record: "
     "its "
     "offset and the reason are the last line, on standard error with --csv, and the exit status "
     "is "
     "1. The file may be larger than memory. In a batch the answer holds all records and the "
     "damage."},
    {"manual", "It is the part of ottm(1) that is about commands."},
    {"sort-key",
     "Two keys compare byte by byte as the values compare under --op. A status says that the key "
     "was "
     "cut (2101) or that there is no order for the value (-2999)."},
    {"sort-range",
     "The lower end is in the range, the upper one is not. Without a relation in --op it is "
     "equality, "
     "and without no-wildcards the value can be a pattern."},
    {"strcmp", "With --op 0 the second text is a wildcard pattern."},
};

}  // namespace

std::string Footer(std::string_view command, std::string_view example) {
  const auto details = kDetails.find(command);
  const std::string text = details == kDetails.end() ? "" : std::string(details->second) + "\n";
  return text + "Example: " + std::string(example);
}

}  // namespace ottm
