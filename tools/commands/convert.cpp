// convert IN OUT --byte-order: a preset or bank file as another machine writes it.
#include "tools/commandoptions.h"
#include "tools/commands.h"
#include "tools/imagefile.h"
#include "tools/loadedplugin.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

namespace mirelon::tools {

namespace {

struct ConvertOptions {
    std::string plugin;
    std::string input;
    std::string output;
    std::endian order = std::endian::native;
};

void convert(const ConvertOptions& options) {
    LoadedPlugin plugin(options.plugin);
    const VstInt32 owner = plugin.effect.record().uniqueID;
    ImageFile image = readImageFile(options.input, owner);
    image.ownerOrder = options.order;
    image.valueOrder = std::endian::big;
    writeImageFile(options.output, image, owner);
    std::printf("%s: a %s as a %s-endian machine writes it\n", options.output.c_str(),
                kindName(image.kind), orderName(options.order));
}

Run defineConvert(CLI::App& parser) {
    const auto options = std::make_shared<ConvertOptions>();
    const std::map<std::string, std::endian> orders{{"big", std::endian::big},
                                                    {"little", std::endian::little}};
    parser.add_option("IN", options->input, "A preset file or bank file of either byte order")
        ->required();
    parser.add_option("OUT", options->output, "The same with the byte order asked for")->required();
    parser
        .add_option("--byte-order", options->order,
                    "big or little: whose file it is to be (values are big-endian in both)")
        ->required()
        ->type_name("ORDER")
        ->transform(CLI::Transformer(orders).description(""))
        ->transform(CLI::IsMember(orders)); // comes first
    addPluginOption(parser, options->plugin);
    return [options] { convert(*options); };
}

} // namespace

Command convertCommand() {
    return {"convert", "Write a preset or bank file in a byte order", defineConvert};
}

} // namespace mirelon::tools
