// A bank as JSON, for reading, comparing and editing.
//
//   {
//     "version": 1,
//     "bank": "MrLn",
//     "byteOrder": {"owner": "little", "values": "big"},
//     "presets": [
//       {"name": "init", "values": {"width": 0.5, "gain": 0.5, ...}},
//       ...
//     ]
//   }
//
// A name that is no UTF-8 text, or is followed by more than zeros, stands as
// {"bytes": "..."}, its 24 bytes in hexadecimal. A value that JSON has no
// number for is null.
#pragma once

#include "tools/imagefile.h"

#include <span>
#include <string>

namespace mirelon::tools {

// `parameters` are the names of the nine parameters.
std::string jsonOf(const ImageFile& bank, VstInt32 ownerId,
                   std::span<const std::string> parameters);

// The same bytes again for what jsonOf wrote of a valid bank. "version" and
// "byteOrder" may be left out. Throws CommandError, naming the place, for anything else.
ImageFile bankFromJson(const std::string& text, VstInt32 ownerId,
                       std::span<const std::string> parameters);

} // namespace mirelon::tools
