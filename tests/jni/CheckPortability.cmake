# cmake -DOBJDUMP=objdump -DLIBRARY=libzegnormalizer.so -DMAX_GLIBC=2.34
#       -DSTATIC_CXX=ON -P CheckPortability.cmake
# Fails when the library needs a glibc symbol version newer than MAX_GLIBC,
# or (with STATIC_CXX) the shared C++ runtime: either would stop it loading
# on the older nodes it is meant for.
execute_process(COMMAND ${OBJDUMP} -T -p ${LIBRARY}
  OUTPUT_VARIABLE table RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "GLIBC_[0-9]+\\.[0-9]+(\\.[0-9]+)?" versions "${table}")
list(REMOVE_DUPLICATES versions)
set(newest 0)
foreach(v ${versions})
  string(REPLACE "GLIBC_" "" number ${v})
  if(number VERSION_GREATER newest)
    set(newest ${number})
  endif()
endforeach()
if(newest VERSION_GREATER MAX_GLIBC)
  string(REGEX MATCHALL "[^\n]*GLIBC_${newest}[^\n]*" users "${table}")
  message(FATAL_ERROR "${LIBRARY} needs glibc ${newest} (> ${MAX_GLIBC}):\n${users}")
endif()
if(STATIC_CXX AND table MATCHES "NEEDED +libstdc\\+\\+")
  message(FATAL_ERROR "${LIBRARY} needs the shared libstdc++")
endif()
message(STATUS "newest glibc symbol version: ${newest}")
