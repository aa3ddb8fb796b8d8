// What the plug-in's window promises in every format.
#pragma once

#include "tests/formats/windowhost.h"

#include <gtest/gtest.h>
#include <memory>

namespace mirelon::test {

using MakeWindowHost = std::unique_ptr<WindowHost> (*)();

// The tests are in formatwindow_test.cpp; each format instantiates them with a host of
// its own.
class FormatWindow : public testing::TestWithParam<MakeWindowHost> {
  protected:
    const std::unique_ptr<WindowHost> owned = GetParam()();
    WindowHost& host = *owned;
};

} // namespace mirelon::test
