#ifndef OTDB_REWRITE_H
#define OTDB_REWRITE_H

#include <string>

namespace otdb {

/// The storage engine lays out its pages by the word of the machine. What the type manager stored
/// in them is the same on all machines: so a store that was written with the other word is read
/// page by page, and its objects are put into a new one, which then takes its place. Does nothing
/// to a store of this machine. Throws BadInput when the file is damaged or in use.
void RewriteForThisMachine(const std::string& directory);

}  // namespace otdb

#endif
