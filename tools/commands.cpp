#include "tools/commands.h"

#include <array>

namespace mirelon::tools {

std::span<const Command> commands() {
    static constexpr std::array table{
        Command{"check", "Find out what an effect gets wrong", defineCheck},
        Command{"info", "Show what the plug-in says about itself", defineInfo},
        Command{"render", "Send an audio file through the plug-in", defineRender},
        Command{"plot", "Draw a file's stereo image before and after the plug-in", definePlot},
        Command{"compare", "Say whether two audio files hold the same sound", defineCompare},
        Command{"chunk", "Save, load or show the plug-in's state", defineChunk},
        Command{"preset", "Save or show preset files", definePreset},
        Command{"bank", "Save, show or make bank files", defineBank},
        Command{"convert", "Write a preset or bank file in a byte order", defineConvert},
        Command{"verify", "Say what is wrong with preset and bank files", defineVerify},
        Command{"edit", "Open the plug-in's editor in a window", defineEdit},
        Command{"screenshot", "Take a picture of the plug-in's editor", defineScreenshot},
    };
    return table;
}

} // namespace mirelon::tools
