# cmake -DNM=nm -DLIBRARY=libzegnormalizer.so -P CheckExports.cmake
# Fails unless the library's dynamic symbol table defines exactly the native
# methods of the Java class.
execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY}
  OUTPUT_VARIABLE table RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${NM} failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${table}")
set(symbols "")
foreach(line ${lines})
  string(REGEX REPLACE "^.* " "" symbol "${line}")
  list(APPEND symbols ${symbol})
endforeach()
list(SORT symbols)
set(expected
  Java_com_orvane_dw_comm_zeg_Normalizer_initializationFailure
  Java_com_orvane_dw_comm_zeg_Normalizer_initialize
  Java_com_orvane_dw_comm_zeg_Normalizer_normalize
  Java_com_orvane_dw_comm_zeg_Normalizer_unitialize)
if(NOT symbols STREQUAL expected)
  message(FATAL_ERROR "${LIBRARY} exports: ${symbols}\nexpected only: ${expected}")
endif()
message(STATUS "exports: ${symbols}")
