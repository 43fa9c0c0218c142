# find_package(ot95): ot95::typemgr, and below it ot95::oin and ot95::obs.
include("${CMAKE_CURRENT_LIST_DIR}/ot95Targets.cmake")

# The names of the files are names of the targets, too.
foreach(pair ot95Otms=typemgr ot95Oin=oin ot95Obs=obs)
  string(REPLACE "=" ";" pair "${pair}")
  list(GET pair 0 file)
  list(GET pair 1 name)
  if(NOT TARGET ot95::${file})
    add_library(ot95::${file} ALIAS ot95::${name})
  endif()
endforeach()
