# cmake -DRSVG_CONVERT=program -DOPTIPNG=program -DDRAWINGS=folder -DNUMBERS=list
#       -DSCRATCH=folder -DOUTPUT=file.cpp -P embed.cmake
# Renders NUMBER.svg of each number at every scale and writes the PNG files as a
# table of bytes, as few as the same pixels can be told in. The output depends on
# nothing but the drawings and the two programs.

# In quarters, since CMake counts in whole numbers only.
set(scales_in_quarters 4 5 6 7 8 10 12)

set(scales "")
foreach(quarters IN LISTS scales_in_quarters)
  math(EXPR whole "${quarters} / 4")
  math(EXPR hundredths "${quarters} % 4 * 25")
  list(APPEND scales "${whole}.${hundredths}")
endforeach()

# At `quarters`, pictures of a strip that are not a whole number of pixels tall
# stand a little further apart, so that each begins on a whole pixel.
function(spread_strip drawing quarters count cell pixels spread)
  file(READ "${drawing}" text)
  set(step_in_millionths "1000000 * 4 * ${pixels} / ${quarters}")
  foreach(index RANGE 1 ${count})
    math(EXPR from "${index} * ${cell}")
    math(EXPR to_whole "${index} * ${step_in_millionths} / 1000000")
    math(EXPR to_rest "1000000 + ${index} * ${step_in_millionths} % 1000000")
    string(SUBSTRING "${to_rest}" 1 -1 to_rest)
    set(to "${to_whole}.${to_rest}")
    string(REPLACE "translate(0 ${from})" "translate(0 ${to})" text "${text}")
  endforeach()
  # The last is where the drawing ends.
  string(REPLACE " height=\"${from}\" viewBox=\"0 0 ${width} ${from}\""
                 " height=\"${to}\" viewBox=\"0 0 ${width} ${to}\"" text "${text}")
  file(WRITE "${spread}" "${text}")
endfunction()

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

  file(READ "${drawing}" text)
  string(REGEX MATCHALL "translate\\(0 [0-9]+\\)" places "${text}")
  list(LENGTH places count)
  if(count EQUAL 0)
    set(count 1)
  endif()
  math(EXPR cell "${height} / ${count}")

  set(renderings "")
  foreach(quarters scale IN ZIP_LISTS scales_in_quarters scales)
    math(EXPR pixels_wide "(${width} * ${quarters} + 3) / 4")
    math(EXPR cell_high "(${cell} * ${quarters} + 3) / 4")
    math(EXPR pixels_high "${count} * ${cell_high}")
    math(EXPR excess "${cell_high} * 4 - ${cell} * ${quarters}")
    set(png "${SCRATCH}/picture.png")
    set(drawn "${drawing}")
    if(count GREATER 1 AND excess GREATER 0)
      set(drawn "${SCRATCH}/spread.svg")
      spread_strip("${drawing}" "${quarters}" "${count}" "${cell}" "${cell_high}" "${drawn}")
    endif()
    execute_process(
      COMMAND "${RSVG_CONVERT}" --zoom "${scale}" --page-width "${pixels_wide}"
              --page-height "${pixels_high}" --output "${png}" "${drawn}"
      COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND "${OPTIPNG}" -quiet -o2 "${png}" COMMAND_ERROR_IS_FATAL ANY)
    file(READ "${png}" hex HEX)
    file(REMOVE "${png}")
    string(REGEX REPLACE "(..)" "0x\\1," hex "${hex}")
    string(REGEX REPLACE "(................................................................................)"
           "\\1\n" hex "${hex}")
    set(name "png${number}_${quarters}")
    string(APPEND bytes "constexpr unsigned char ${name}[] = {\n${hex}};\n")
    string(APPEND renderings "{${name}, sizeof ${name}}, ")
  endforeach()
  string(APPEND table "    {${number}, {${width}, ${height}}, ${count}, {{${renderings}}}},\n")
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
