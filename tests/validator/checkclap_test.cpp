// The validator on the CLAP plug-in.
#include "tests/support/virtualdisplay.h"
#include "tests/validator/checkrun.h"

namespace {

using mirelon::test::VirtualDisplay;
using namespace mirelon::test::checks;

TEST(CheckOfClap, PassesMirelonAtTheHighestLevel) {
    VirtualDisplay::start();
    expectAllPassed(run(host + " check --json --strict --level 10 " + MIRELON_CLAP_FILE));
}

} // namespace
