// The library's start and end, and who it is.
#include <new>

#include "ot95/fault.h"
#include "ot95/oin.h"
#include "ot95/typemgr.h"
#include "ot95/version.h"

namespace {

constexpr char kDescription[] = "Orvane Typemanager";
constexpr char kLibraryName[] = "ot95Otms";
constexpr char kBuildDate[] = __DATE__;
constexpr char kBuildTime[] = __DATE__ " " __TIME__;

#if defined(__clang__)
constexpr char kCompilerName[] = "clang";
constexpr unsigned long kCompilerVersion = __clang_major__ * 100 + __clang_minor__;
#else
constexpr char kCompilerName[] = "GNU C++";
constexpr unsigned long kCompilerVersion = __GNUC__ * 100 + __GNUC_MINOR__;
#endif

OtTypeMgr* defaultManager = nullptr;
long options = 0;

}  // namespace

OtTypeMgr* DefaultTypeMgr(OtTypeMgr* manager) {
  OtTypeMgr* before = defaultManager;
  if (manager != nullptr) defaultManager = manager;
  return before;
}

void ___OtTypemgrContext(int attach) {
  ___OtI18NContext(attach);
  if (attach != 0) {
    defaultManager = ot95::Noted(new (std::nothrow) OtTypeMgr(5));
  } else {
    delete defaultManager;
    defaultManager = nullptr;
  }
}

long& ___OtTypeMgrOptions() {
  return options;
}

int OtCheckDll(int flags) {
  return CheckOtVersionNumber(OT_VERSION_MAJOR, OT_VERSION_MINOR, OT_VERSION_REVISION,
                              OT_VERSION_BUILD, OT_VERSION_PATCH, flags | 3);
}

const char* OtDescribeDll(unsigned long* major, unsigned long* minor, unsigned long* release,
                          unsigned long* build, unsigned long* patch, const char** libraryName,
                          const char** buildTime, const char** buildTag,
                          unsigned long* compilerVersion, const char** compilerName,
                          const char** extra) {
  *major = OT_VERSION_MAJOR;
  *minor = OT_VERSION_MINOR;
  *release = OT_VERSION_REVISION;
  *build = OT_VERSION_BUILD;
  *patch = OT_VERSION_PATCH;
  *libraryName = kLibraryName;
  *buildTime = kBuildTime;
  *buildTag = "unknown";
  *compilerVersion = kCompilerVersion;
  *compilerName = kCompilerName;
  *extra = "";
  return kDescription;
}

void GetOtTypeMgrInfo(const char** compilerName, unsigned long* compilerVersion,
                      const char** description, const char** buildDate, const char** libraryName) {
  // Constant rather than written by each call, so that threads may ask at once.
  static constexpr char combined[] = "Orvane Typemanager 9.5.26.340.0 ";
  if (compilerName != nullptr) *compilerName = kCompilerName;
  if (compilerVersion != nullptr) *compilerVersion = kCompilerVersion;
  if (description != nullptr) *description = combined;
  if (buildDate != nullptr) *buildDate = kBuildDate;
  if (libraryName != nullptr) *libraryName = kLibraryName;
}
