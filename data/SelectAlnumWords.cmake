# cmake -DWORDS=jieba-dict -DOWN=our-list -DOUT=result -P SelectAlnumWords.cmake
# Writes the entries of WORDS whose word has a Latin letter or a digit,
# followed by the entries of OWN.
foreach(var WORDS OWN OUT)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "SelectAlnumWords.cmake: ${var} is not set")
  endif()
endforeach()

# The word is the text before the first blank.
file(STRINGS "${WORDS}" selected ENCODING UTF-8 REGEX "^[^ \t]*[A-Za-z0-9]")
file(STRINGS "${OWN}" own ENCODING UTF-8)
list(APPEND selected ${own})
list(JOIN selected "\n" text)
file(WRITE "${OUT}.tmp" "${text}\n")
file(RENAME "${OUT}.tmp" "${OUT}")
