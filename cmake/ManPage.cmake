# Makes a man page of a Markdown page of docs/:
#   cmake -DLOWDOWN=... -DPAGE=docs/x.md -DNAME=x -DSECTION=7 -DSUMMARY="..."
#         -DVERSION=1.0 -DOUTPUT=x.7 -P ManPage.cmake
# The page's title becomes the NAME section, its sections go up one level, its
# pictures are left out, and links to its neighbours keep their words only.
file(READ "${PAGE}" text)
string(REGEX REPLACE "^# [^\n]*\n" "" text "${text}")
string(REPLACE "\n## " "\n# " text "${text}")
string(REPLACE "\n### " "\n## " text "${text}")
string(REGEX REPLACE "\n!\\[[^\n]*\\)\n" "\n" text "${text}")
string(REGEX REPLACE "\\[([^]\n]*)\\]\\([^)\n]*\\)" "\\1" text "${text}")
set(lead "# Name\n\n${NAME} - ${SUMMARY}\n\n")
if(NOT text MATCHES "^\n*# ")
  string(APPEND lead "# Description\n")
endif()
file(WRITE "${OUTPUT}.md" "${lead}${text}")
execute_process(
  COMMAND "${LOWDOWN}" -s -Tman -M "title=${NAME}" -M "section=${SECTION}"
          -M "source=Mirelon ${VERSION}" "${OUTPUT}.md"
  OUTPUT_VARIABLE page COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE "${OUTPUT}.md")
# The first line asks for tbl, which sets the tables; section headings are read
# by man's index only when they stand on the line of their macro.
string(REGEX REPLACE "\n\\.(SH|SS)\n" "\n.\\1 " page "${page}")
# Words in the narrow cells of a table are neither spread nor broken.
string(REPLACE "expand allbox" "allbox" page "${page}")
# Tables start at the edge: tbl reckons with the whole line.
string(REPLACE "\n.TS\n" "\n.in 0\n.TS\n" page "${page}")
string(REPLACE "\n.TE\n" "\n.TE\n.in\n" page "${page}")
string(REGEX REPLACE "(\n\\.TH [^\n]*\n)" "\\1.nh\n.ad l\n" page "${page}")
file(WRITE "${OUTPUT}" "'\\\" t\n${page}")
