# cmake -DOUTPUT=FILE.h -DNAMESPACE=NAME "-DFILES=NAME=PATH;..." -P embed_files.cmake: writes a header that has the bytes of
# each file as a text of that name.
set(text "#pragma once\n\n#include <string_view>\n\nnamespace ${NAMESPACE} {\n\n")
foreach(entry IN LISTS FILES)
  string(REGEX MATCH "^([^=]+)=(.+)$" entry "${entry}")
  set(name ${CMAKE_MATCH_1})
  file(READ ${CMAKE_MATCH_2} bytes HEX)
  string(LENGTH "${bytes}" digits)
  math(EXPR size "${digits} / 2")
  string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${bytes}")
  string(APPEND text "inline constexpr std::string_view ${name}(\"${bytes}\", ${size});\n")
endforeach()
file(WRITE ${OUTPUT} "${text}\n} // namespace ${NAMESPACE}\n")
