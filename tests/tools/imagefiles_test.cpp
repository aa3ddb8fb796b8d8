// mirelon-host preset, bank, convert and verify: preset and bank files.
#include "tests/support/temporaryfolder.h"
#include "tests/tools/hostprogram.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace mirelon::test {
namespace {

using namespace std::string_literals;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

class ImageFiles : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return (folder / name).string(); }

    std::string contents(const std::string& name) const { return contentsOf(folder / name); }

    // Runs it and wants it to succeed.
    std::string run(std::vector<std::string> arguments) const {
        const ProgramResult result = runMirelon(std::move(arguments));
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.output;
    }
    // Runs it and wants it to refuse; what it says.
    std::string refused(std::vector<std::string> arguments) const {
        const ProgramResult result = runMirelon(std::move(arguments));
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.errors, StartsWith("mirelon-host: "));
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1);
        return result.errors;
    }
    void patch(const std::string& name, std::size_t at, std::string_view bytes) const {
        std::string file = contents(name);
        file.replace(at, bytes.size(), bytes);
        writeFile(folder / name, file);
    }
    // A bank of the factory presets in "a.dvb".
    void saveBank() const { run({"bank", "save", path("a.dvb")}); }

    const TemporaryFolder folder;
};

// "extended width": width 0.625, three halves, centred, process on.
const std::string extendedWidth = "nLrM\x21"
                                  "extended width\0\0\0\0\0\0\0\0\0\0"
                                  "\x3F\x20\0\0\x3F\0\0\0\x3F\0\0\0\x3F\0\0\0\x3F\0\0\0"
                                  "\x3F\x80\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s;

TEST_F(ImageFiles, APresetIsSavedAsItsLiteralBytes) {
    run({"preset", "save", path("a.dvp"), "--preset", "1"});
    EXPECT_EQ(contents("a.dvp"), extendedWidth);
}

TEST_F(ImageFiles, APresetIsSavedWithSettings) {
    run({"preset", "save", path("a.dvp"), "--preset", "1", "--set", "width=25", "--set", "-L=1"});
    std::string expected = extendedWidth;
    expected.replace(29, 4, "\x3E\x80\0\0"s);
    expected.replace(29 + 7 * 4, 4, "\x3F\x80\0\0"s);
    EXPECT_EQ(contents("a.dvp"), expected);
}

TEST_F(ImageFiles, APresetIsShownInThePluginsOwnTexts) {
    writeFile(folder / "a.dvp", extendedWidth);
    const std::string shown = run({"preset", "show", path("a.dvp")});
    EXPECT_THAT(shown, HasSubstr("a preset, written by a little-endian machine"));
    EXPECT_THAT(shown, ContainsRegex("extended width +156.25 % +0.00 dB +C +C +C +On +Off"));
}

TEST_F(ImageFiles, ABankIsElevenRecordsBehindItsHeader) {
    saveBank();
    const std::string bank = contents("a.dvb");
    ASSERT_EQ(bank.size(), 665U);
    EXPECT_EQ(bank.substr(0, 5), "nLrM\x37");
    EXPECT_EQ(bank.substr(65, 60), extendedWidth.substr(5));
}

TEST_F(ImageFiles, ABankIsShownInThePluginsOwnTexts) {
    saveBank();
    const std::string shown = run({"bank", "show", path("a.dvb")});
    EXPECT_THAT(shown, HasSubstr("a bank of 11 presets, written by a little-endian machine"));
    EXPECT_THAT(shown, ContainsRegex("   3  balanse to the left +100.00 % +0.00 dB +20L "));
    EXPECT_THAT(shown, ContainsRegex("  10  swapped "));
}

TEST_F(ImageFiles, ABankGoesThroughThePlugin) {
    saveBank();
    patch("a.dvb", 5 + 60 * 4, "renamed\0"s);
    run({"bank", "save", path("b.dvb"), "--bank", path("a.dvb")});
    EXPECT_EQ(contents("b.dvb"), contents("a.dvb"));
}

TEST_F(ImageFiles, ABankAsJsonBecomesTheSameBytes) {
    saveBank();
    patch("a.dvb", 29, "\x3D\xCC\xCC\xCD\x80\0\0\0\0\0\0\x01\x3F\x7F\xFF\xFF"s); // 0.1, -0, tiny
    patch("a.dvb", 65, "abcdefghijklmnopqrstuvwx");
    patch("a.dvb", 125, "caf\xC3\xA9"s + std::string(19, '\0'));
    patch("a.dvb", 185, "caf\xE9"s + std::string(20, '\0'));
    patch("a.dvb", 245, "a\0behind"s);
    const std::string json = run({"bank", "show", path("a.dvb"), "--json"});
    EXPECT_THAT(json, HasSubstr("\"width\": 0.1,"));
    EXPECT_THAT(json, HasSubstr("\"name\": \"caf\xC3\xA9\""));
    writeFile(folder / "a.json", json);
    run({"bank", "import", path("a.json"), path("b.dvb")});
    EXPECT_EQ(contents("b.dvb"), contents("a.dvb"));
}

TEST_F(ImageFiles, ABankThatDoesNotSayItsVersionIsImported) {
    saveBank();
    std::string json = run({"bank", "show", path("a.dvb"), "--json"});
    const std::string version = "  \"version\": 1,\n";
    ASSERT_NE(json.find(version), std::string::npos);
    writeFile(folder / "a.json", json.erase(json.find(version), version.size()));
    run({"bank", "import", path("a.json"), path("b.dvb")});
    EXPECT_EQ(contents("b.dvb"), contents("a.dvb"));
}

TEST_F(ImageFiles, AnEditedBankIsWritten) {
    saveBank();
    std::string json = run({"bank", "show", path("a.dvb"), "--json"});
    const auto name = json.find("extended width");
    json.replace(name, 14, "wide");
    json.replace(json.find("0.625", name), 5, "0.75");
    writeFile(folder / "a.json", json);
    run({"bank", "import", path("a.json"), path("b.dvb")});
    EXPECT_EQ(contents("b.dvb").substr(65, 28), "wide"s + std::string(20, '\0') + "\x3F\x40\0\0"s);
}

TEST_F(ImageFiles, AnImportedBankThatIsWrongIsRefusedAtItsPlaceAndTheOldFileStays) {
    saveBank();
    const std::string json = run({"bank", "show", path("a.dvb"), "--json"});
    const auto withChange = [&](const std::string& from, const std::string& to) {
        std::string changed = json;
        changed.replace(changed.find(from), from.size(), to);
        writeFile(folder / "a.json", changed);
        writeFile(folder / "b.dvb", "as it was");
        const std::string why = refused({"bank", "import", path("a.json"), path("b.dvb")});
        EXPECT_EQ(contents("b.dvb"), "as it was");
        return why;
    };
    EXPECT_THAT(withChange("0.625", "1.5"),
                HasSubstr("presets[1].values.width: 1.5 is not 0 to 1"));
    EXPECT_THAT(withChange("0.625", "\"x\""), HasSubstr("presets[1].values.width: is no number"));
    EXPECT_THAT(withChange("0.625", "null"), HasSubstr("presets[1].values.width: is no number"));
    EXPECT_THAT(withChange("0.625", "1e999"), HasSubstr("no JSON"));
    EXPECT_THAT(withChange("\"width\"", "\"widht\""), HasSubstr("\"width\" is missing"));
    EXPECT_THAT(withChange("extended width", "extended width and much more"),
                HasSubstr("presets[1].name: 28 bytes, 24 is the most"));
    EXPECT_THAT(withChange("\"bank\"", "\"more\": 1, \"bank\""),
                HasSubstr("\"more\" is not known"));
    EXPECT_THAT(withChange("\"version\": 1", "\"version\": 2"), HasSubstr("version: is not 1"));
    EXPECT_THAT(withChange("MrLn", "Else"), HasSubstr("is not \"MrLn\""));
    EXPECT_THAT(withChange("{", "["), HasSubstr("no JSON"));
    EXPECT_THAT(withChange("\"width\"", "\"widht\": 0.5, \"width\""),
                HasSubstr("presets[0].values: \"widht\" is not known"));
    EXPECT_THAT(withChange("\"name\"", "\"nmae\": \"x\", \"name\""),
                HasSubstr("presets[0]: \"nmae\" is not known"));
    EXPECT_THAT(withChange("\"owner\"", "\"ownre\": \"big\", \"owner\""),
                HasSubstr("byteOrder: \"ownre\" is not known"));
    const auto first = json.find("{", json.find("\"presets\""));
    const auto second = json.find("{\n      \"name\"", first + 1);
    ASSERT_NE(second, std::string::npos);
    const std::string preset = json.substr(first, second - first);
    EXPECT_THAT(withChange(preset, preset + preset), HasSubstr("presets: are not 11"));
    EXPECT_THAT(withChange(preset, ""), HasSubstr("presets: are not 11"));
    EXPECT_THAT(withChange(json, "{}"), HasSubstr("\"bank\" is missing"));
    EXPECT_THAT(withChange(json, "[]"), HasSubstr("is no object"));
}

TEST_F(ImageFiles, AFileIsConvertedToTheOtherByteOrderAndBack) {
    for (const std::string kind : {"preset", "bank"}) {
        run({kind, "save", path("a")});
        EXPECT_THAT(run({"convert", path("a"), path("b"), "--byte-order", "big"}),
                    HasSubstr("a " + kind + " as a big-endian machine writes it"));
        EXPECT_EQ(contents("b"), "MrLn" + contents("a").substr(4));
        run({"convert", path("b"), path("c"), "--byte-order", "little"});
        EXPECT_EQ(contents("c"), contents("a"));
        run({"convert", path("a"), path("d"), "--byte-order", "little"});
        EXPECT_EQ(contents("d"), contents("a"));
    }
}

TEST_F(ImageFiles, ReversedValuesArePutRightByConverting) {
    std::string reversed = extendedWidth;
    for (std::size_t at = 29; at < 65; at += 4)
        std::reverse(&reversed[at], &reversed[at] + 4);
    writeFile(folder / "a.dvp", reversed);
    EXPECT_THAT(run({"verify", path("a.dvp")}), HasSubstr("right click"));
    run({"convert", path("a.dvp"), path("b.dvp"), "--byte-order", "little"});
    EXPECT_EQ(contents("b.dvp"), extendedWidth);
}

TEST_F(ImageFiles, ABankOfTheOtherByteOrderKeepsItThroughJson) {
    saveBank();
    run({"convert", path("a.dvb"), path("b.dvb"), "--byte-order", "big"});
    writeFile(folder / "b.json", run({"bank", "show", path("b.dvb"), "--json"}));
    run({"bank", "import", path("b.json"), path("c.dvb")});
    EXPECT_EQ(contents("c.dvb"), contents("b.dvb"));
}

TEST_F(ImageFiles, ABankIsMadeInTheByteOrderThatItsJsonNames) {
    saveBank();
    std::string json = run({"bank", "show", path("a.dvb"), "--json"});
    const std::string big = "\"values\": \"big\"";
    ASSERT_NE(json.find(big), std::string::npos) << json;
    json.replace(json.find(big), big.size(), "\"values\": \"little\"");
    writeFile(folder / "b.json", json);
    run({"bank", "import", path("b.json"), path("c.dvb")});
    EXPECT_NE(contents("c.dvb"), contents("a.dvb"));
    EXPECT_THAT(run({"bank", "show", path("c.dvb"), "--json"}),
                HasSubstr("\"values\": \"little\""));
}

TEST_F(ImageFiles, AnUnknownByteOrderIsRefused) {
    writeFile(folder / "a.dvp", extendedWidth);
    refused({"convert", path("a.dvp"), path("b.dvp"), "--byte-order", "middle"});
    refused({"convert", path("a.dvp"), path("b.dvp")});
    EXPECT_FALSE(exists(folder / "b.dvp"));
}

TEST_F(ImageFiles, GoodFilesAreVerified) {
    saveBank();
    writeFile(folder / "a.dvp", extendedWidth);
    EXPECT_EQ(run({"verify", path("a.dvb"), path("a.dvp")}),
              path("a.dvb") + ": a good bank\n" + path("a.dvp") + ": a good preset\n");
}

TEST_F(ImageFiles, WhatIsWrongIsSaidWithItsPlace) {
    saveBank();
    const std::string bank = contents("a.dvb");
    writeFile(folder / "a.dvp", extendedWidth);
    const auto problemOf = [&](const std::string& name, const std::string& bytes) {
        writeFile(folder / name, bytes);
        const ProgramResult result = runMirelon({"verify", path(name)});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.errors, "mirelon-host: 1 problem found\n");
        return result.output;
    };
    std::string outOfRange = bank;
    outOfRange.replace(29 + 60 * 2 + 4, 4, "\x3F\xC0\0\0"s);
    EXPECT_THAT(problemOf("b.dvb", outOfRange),
                HasSubstr("byte 153: preset 2 \"reduced width\", gain: 1.5 is not 0 to 1"));
    std::string notANumber = extendedWidth;
    notANumber.replace(61, 4, "\x7F\xC0\0\0"s);
    EXPECT_THAT(problemOf("b.dvp", notANumber), HasSubstr("byte 61: \"extended width\", -R: nan"));
    EXPECT_THAT(problemOf("b.dvp", extendedWidth.substr(0, 60)), HasSubstr("byte 60: ends here"));
    EXPECT_THAT(problemOf("b.dvp", extendedWidth + "x"), HasSubstr("byte 65: more follows"));
    EXPECT_THAT(problemOf("b.dvp", bank), HasSubstr("byte 4: a bank, though"));
    EXPECT_THAT(problemOf("b.dvp", "x" + extendedWidth.substr(1)),
                HasSubstr("byte 0: the owner is 78 4C 72 4D"));
    EXPECT_THAT(problemOf("b.dvp", "nLrM\x0B"), HasSubstr("byte 4: the type is 0B"));
    EXPECT_THAT(problemOf("b.dvp", "nLr"), HasSubstr("byte 3: ends before its header does"));
    EXPECT_THAT(problemOf("b.dvp", ""), HasSubstr("byte 0: ends before its header does"));
}

TEST_F(ImageFiles, AFileThatCannotBeReadDoesNotKeepTheOthersFromBeingVerified) {
    writeFile(folder / "a.dvp", extendedWidth);
    writeFile(folder / "b.dvp", extendedWidth + "x");
    const ProgramResult result = runMirelon({"verify", path("none"), path("b.dvp"), path("a.dvp")});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.output, HasSubstr(path("none") + ": "));
    EXPECT_THAT(result.output, HasSubstr("byte 65: more follows"));
    EXPECT_THAT(result.output, HasSubstr("a.dvp: a good preset"));
    EXPECT_EQ(result.errors, "mirelon-host: 1 problem found, 1 file not read\n");
}

TEST_F(ImageFiles, WhatIsNoSuchFileIsRefused) {
    saveBank();
    writeFile(folder / "a.dvp", extendedWidth);
    writeFile(folder / "short.dvp", extendedWidth.substr(0, 64));
    EXPECT_THAT(refused({"bank", "show", path("a.dvp")}), HasSubstr("a preset, not a bank"));
    EXPECT_THAT(refused({"preset", "show", path("a.dvb")}), HasSubstr("a bank, not a preset"));
    EXPECT_THAT(refused({"preset", "show", path("short.dvp")}), HasSubstr("65 bytes"));
    EXPECT_THAT(refused({"preset", "show", path("none")}), HasSubstr("No such file"));
    EXPECT_THAT(refused({"bank", "show", folder.path.string()}), HasSubstr("Is a directory"));
    EXPECT_THAT(refused({"bank", "save", path("b.dvb"), "--bank", path("a.dvp")}),
                HasSubstr("a preset, not a bank"));
    refused({"bank", "save", path("no/folder/b.dvb")});
    refused({"verify", path("none")});
    EXPECT_FALSE(exists(folder / "b.dvb"));
}

TEST_F(ImageFiles, AValueOutOfRangeIsMarkedAndNotLoaded) {
    saveBank();
    patch("a.dvb", 29, "\x40\0\0\0"s);
    EXPECT_THAT(run({"bank", "show", path("a.dvb")}), ContainsRegex("init +2!"));
    EXPECT_THAT(refused({"bank", "save", path("b.dvb"), "--bank", path("a.dvb")}),
                HasSubstr("value 0 of preset 0 is not 0 to 1"));
}

} // namespace
} // namespace mirelon::test
