#ifndef OTDB_AUDIT_H
#define OTDB_AUDIT_H

#include <functional>
#include <map>
#include <string>

#include "snapshot.h"

namespace otdb {

/// Walks all pages of a store, of each tree and of those that are free: every one is sound and in
/// use once, as deep as its tree is said to be, and the trees hold as many pages and entries as
/// they say. Throws BadInput at the first that isn't so. What the storage engine is let at has to
/// pass.
void RequireSoundPages(const StorePages& pages);

/// The same, and all keys and values stand in their order, where a search comes to them.
/// @param trees by their names. The store may hold no other.
/// @param report is told of each tree that is damaged.
void AuditPages(const StorePages& pages, const std::map<std::string, const Tree*>& trees,
                const std::function<void(const std::string&)>& report);

}  // namespace otdb

#endif
