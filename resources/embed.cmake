# cmake -DRSVG_CONVERT=program -DDRAWINGS=folder -DNUMBERS=list -DSCRATCH=folder
#       -DOUTPUT=file.cpp -P embed.cmake
# Renders NUMBER.svg of each number at every scale and writes the PNG files as a
# table of bytes. The output depends on nothing but the drawings and the renderer.

# In halves, since CMake counts in whole numbers only.
set(scales_in_halves 2 3 4 5 6)

set(scales "")
foreach(halves IN LISTS scales_in_halves)
  math(EXPR whole "${halves} / 2")
  math(EXPR tenths "${halves} % 2 * 5")
  list(APPEND scales "${whole}.${tenths}")
endforeach()

set(bytes "")
set(table "")
foreach(number IN LISTS NUMBERS)
  set(drawing "${DRAWINGS}/${number}.svg")
  file(STRINGS "${drawing}" head LIMIT_COUNT 1)
  if(NOT head MATCHES " width=\"([0-9]+)\" height=\"([0-9]+)\"")
    message(FATAL_ERROR "${drawing}: the first line must give width and height in whole pixels")
  endif()
  set(width "${CMAKE_MATCH_1}")
  set(height "${CMAKE_MATCH_2}")

  set(renderings "")
  foreach(halves scale IN ZIP_LISTS scales_in_halves scales)
    math(EXPR pixels_wide "(${width} * ${halves} + 1) / 2")
    math(EXPR pixels_high "(${height} * ${halves} + 1) / 2")
    set(png "${SCRATCH}/picture.png")
    execute_process(
      COMMAND "${RSVG_CONVERT}" --zoom "${scale}" --page-width "${pixels_wide}"
              --page-height "${pixels_high}" --output "${png}" "${drawing}"
      COMMAND_ERROR_IS_FATAL ANY)
    file(READ "${png}" hex HEX)
    file(REMOVE "${png}")
    string(REGEX REPLACE "(..)" "0x\\1," hex "${hex}")
    string(REGEX REPLACE "(................................................................................)"
           "\\1\n" hex "${hex}")
    set(name "png${number}_${halves}")
    string(APPEND bytes "constexpr unsigned char ${name}[] = {\n${hex}};\n")
    string(APPEND renderings "{${name}, sizeof ${name}}, ")
  endforeach()
  string(APPEND table "    {${number}, {${width}, ${height}}, {{${renderings}}}},\n")
endforeach()

list(TRANSFORM scales APPEND "F")
list(JOIN scales ", " scales)
file(WRITE "${OUTPUT}" "// Made from the drawings in resources/ by embed.cmake.
#include \"resources/picturetable.h\"

namespace mirelon {
namespace {
static_assert(pictureScales == std::array{${scales}});

${bytes}
constexpr EmbeddedPicture table[] = {
${table}};
} // namespace

const std::span<const EmbeddedPicture> embeddedPictures{table};

} // namespace mirelon
")
