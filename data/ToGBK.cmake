# cmake -DINPUT=list.txt -DOUTPUT=list.gbk -DKIND=stop|synonyms -DICONV=iconv -P ToGBK.cmake
#
# Turns one of our UTF-8 word lists into the GBK file the library reads:
# drops comment and blank lines, turns each synonym line's tab into the byte
# 0x01, and converts with iconv, which fails on any character that GBK
# lacks (the library would silently drop it).
file(READ ${INPUT} text)
string(REPLACE "\r" "" text "${text}")
string(REGEX REPLACE "(^|\n)[ \t]*#[^\n]*" "\\1" text "${text}")
string(REGEX REPLACE "\n[ \t\n]*\n" "\n" text "${text}")
string(REGEX REPLACE "^[ \t\n]+" "" text "${text}")
string(REGEX REPLACE "[ \t\n]+$" "" text "${text}")

if(KIND STREQUAL "synonyms")
  if(text MATCHES "(^|\n)([^\t\n]*|[^\n]*\t[^\n]*\t[^\n]*)(\n|$)")
    message(FATAL_ERROR "${INPUT}: not a word, a tab and a replacement: '${CMAKE_MATCH_2}'")
  endif()
  string(ASCII 1 separator)
  string(REGEX REPLACE "[ ]*\t[ \t]*" "${separator}" text "${text}")
endif()

file(WRITE ${OUTPUT}.utf8 "${text}\n")
execute_process(
  COMMAND ${ICONV} -f UTF-8 -t GBK ${OUTPUT}.utf8
  OUTPUT_FILE ${OUTPUT}
  ERROR_VARIABLE error
  RESULT_VARIABLE result)
file(REMOVE ${OUTPUT}.utf8)
if(NOT result EQUAL 0)
  file(REMOVE ${OUTPUT})
  message(FATAL_ERROR "${INPUT}: cannot be written in GBK: ${error}")
endif()
