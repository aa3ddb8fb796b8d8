// A shared library, but no plug-in.
#include "tests/hosting/plugins/effectrecord.h"

TEST_PLUGIN_EXPORT int someFunction() {
    return 1;
}
