// Audio that comes through a pipe.
#pragma once

namespace mirelon::tools {

struct InputDescriptor {
    int descriptor; // the caller's to close
    bool stream;    // cannot be sought: its length is what its header says, if that
};

// Standard input for libsndfile: as it is when it is a file or brings a format
// that can be read as it comes in, else copied to a file without a name first.
// Throws CommandError when there is none or no room for the copy.
InputDescriptor openStandardInput();

} // namespace mirelon::tools
