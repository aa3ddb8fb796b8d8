#include "tests/support/fontsettings.h"

#include <fstream>

namespace mirelon::test {

std::filesystem::path writeFontSettings(const std::filesystem::path& folder) {
    const auto file = folder / "fonts.conf";
    std::ofstream(file) << R"(<?xml version="1.0"?>
        <!DOCTYPE fontconfig SYSTEM "fonts.dtd">
        <fontconfig>
        <include>/etc/fonts/fonts.conf</include>
        <match target="pattern">
        <test name="family"><string>sans-serif</string></test>
        <edit name="family" mode="prepend" binding="strong"><string>Liberation Sans</string></edit>
        </match>
        <match target="pattern">
        <edit name="antialias" mode="assign"><bool>true</bool></edit>
        <edit name="hinting" mode="assign"><bool>true</bool></edit>
        <edit name="hintstyle" mode="assign"><const>hintslight</const></edit>
        <edit name="autohint" mode="assign"><bool>false</bool></edit>
        <edit name="rgba" mode="assign"><const>none</const></edit>
        </match>
        </fontconfig>)";
    return file;
}

} // namespace mirelon::test
